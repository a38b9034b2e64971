#include "tests/windows/hasty_user.h"

namespace ard::windows::testing {
namespace {

HastyUser* current = nullptr;

BOOL CALLBACK AddVisible(HWND window, LPARAM windows) {
  if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

}  // namespace

HastyUser::HastyUser(bool cancels)
    : timer_(SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Look)), cancels_(cancels) {
  current = this;
}

HastyUser::~HastyUser() {
  KillTimer(nullptr, timer_);
  current = nullptr;
}

void CALLBACK HastyUser::Look(HWND, UINT, UINT_PTR, DWORD) {
  for (const HWND window : VisibleWindows()) {
    if (IsWindowEnabled(window)) return current->Answer(window);
  }
}

void HastyUser::Answer(HWND window) {
  Step& next = next_[window];
  const HWND ok = cancels_ ? nullptr : GetDlgItem(window, IDOK);
  const bool can_confirm = ok && IsWindowEnabled(ok);
  if (next == Step::kPick && (!ok || can_confirm)) next = Step::kConfirm;
  if (next == Step::kConfirm && !can_confirm) next = Step::kClose;
  switch (next) {
    case Step::kPick:
      PostMessageW(GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
      next = Step::kConfirm;
      break;
    case Step::kConfirm:
      PostMessageW(window, WM_COMMAND, IDOK, 0);
      next = Step::kClose;
      break;
    case Step::kClose:
      PostMessageW(window, WM_CLOSE, 0, 0);
      next = Step::kAbort;
      break;
    case Step::kAbort:
      PostMessageW(window, WM_COMMAND, IDABORT, 0);
      next = Step::kClose;
      break;
  }
}

std::vector<HWND> VisibleWindows() {
  std::vector<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), AddVisible, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

}  // namespace ard::windows::testing
