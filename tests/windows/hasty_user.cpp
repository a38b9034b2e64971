#include "tests/windows/hasty_user.h"

#include <functional>

namespace ard::windows::testing {
namespace {

HastyUser* current = nullptr;

using Visit = std::function<bool(HWND)>;

BOOL CALLBACK VisitVisible(HWND window, LPARAM visit) {
  return !IsWindowVisible(window) || (*reinterpret_cast<const Visit*>(visit))(window);
}

// From the topmost window down, until `visit` has had enough.
void VisitWindows(const Visit& visit) {
  EnumThreadWindows(GetCurrentThreadId(), VisitVisible, reinterpret_cast<LPARAM>(&visit));
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
  HWND front = nullptr;
  VisitWindows([&](HWND window) {
    if (IsWindowEnabled(window)) front = window;
    return !front;
  });
  if (front) current->Answer(front);
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

int VisibleWindows() {
  int count = 0;
  VisitWindows([&](HWND) { return ++count > 0; });
  return count;
}

}  // namespace ard::windows::testing
