#include "windows/dialogs/progress_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>

namespace ard::windows {
namespace {

constexpr int kProgressWidth = 146;  // in dialog units
constexpr ULONGLONG kMoment = 500;   // milliseconds

}  // namespace

void ProgressWindow::CreateControls(HINSTANCE) {
  bar_ = CreateControl(handle(), {PROGRESS_CLASSW, L"", 0});
  SendMessageW(bar_, PBM_SETRANGE32, 0, std::max(maximum_, 1));
  head().Add({{bar_, kProgressWidth}}, kBox, 0);
  cancel_ = AddButton(IDCANCEL, L"Cancel");
  foot().Add({{nullptr, 0, true}, {cancel_, kButtonWidth}}, kButtons, 0);
}

bool ProgressWindow::Advance() {
  ++done_;
  if (!bar_) {
    if (GetTickCount64() - start_ < kMoment) return true;
    Open(module_);
  }
  SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(done_), 0);
  // At once: the task takes the time in which the system would have it painted.
  UpdateWindow(handle());
  UpdateWindow(bar_);
  AnswerPending();
  return !cancelled_;
}

void ProgressWindow::Command(int id) {
  if (id == IDCANCEL) CloseBox();
}

}  // namespace ard::windows
