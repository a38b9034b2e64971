#include "windows/dialogs/progress_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>

#include "windows/dialogs/metrics.h"
#include "windows/dialogs/modal_window.h"

namespace ard::windows {
namespace {

// In dialog units.
constexpr int kProgressWidth = 160;
constexpr int kBarHeight = 10;

}  // namespace

ProgressWindow::ProgressWindow(HINSTANCE module, std::wstring_view title, std::int32_t maximum)
    : visual_styles_(module) {
  const HWND owner = GetActiveWindow();
  Create(module, owner, WS_POPUP | WS_CAPTION, WS_EX_DLGMODALFRAME);
  SetWindowTextW(handle(), std::wstring(title).c_str());
  bar_ = CreateControl(handle(), {PROGRESS_CLASSW, L"", 0});
  SendMessageW(bar_, PBM_SETRANGE32, 0, std::max(maximum, 1));
  SendMessageW(bar_, PBM_SETSTEP, 1, 0);

  const Metrics metrics(DpiOf(handle()));
  const SIZE frame = FrameOf(handle());
  const int width = metrics.X(kProgressWidth) + static_cast<int>(frame.cx);
  const int height = metrics.Y(kBarHeight + 2 * kMargin) + static_cast<int>(frame.cy);
  RECT around = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  if (IsWindowVisible(owner)) GetWindowRect(owner, &around);
  Place(handle(), static_cast<int>(around.left + around.right - width) / 2,
        static_cast<int>(around.top + around.bottom - height) / 2, width, height);
  Place(bar_, metrics.X(kMargin), metrics.Y(kMargin), metrics.X(kProgressWidth - 2 * kMargin),
        metrics.Y(kBarHeight));
  ShowWindow(handle(), SW_SHOWNOACTIVATE);
  Draw();
}

void ProgressWindow::Advance() {
  SendMessageW(bar_, PBM_STEPIT, 0, 0);
  Draw();
}

// At once: no message is dispatched before the task is done.
void ProgressWindow::Draw() const {
  RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace ard::windows
