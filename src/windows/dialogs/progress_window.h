// ProgressWindow: a bar that fills while a task runs.
#ifndef ARD_WINDOWS_DIALOGS_PROGRESS_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_PROGRESS_WINDOW_H_

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/environment.h"
#include "windows/dialogs/activation_context.h"
#include "windows/dialogs/dialog_window.h"

namespace ard::windows {

class ProgressWindow : public ProgressDisplay, private DialogWindow {
 public:
  // Shown from now on, over the active window, which keeps the focus.
  ProgressWindow(HINSTANCE module, std::wstring_view title, std::int32_t maximum);

  void Advance() override;

 private:
  std::optional<LRESULT> Handle(UINT, WPARAM, LPARAM) override { return std::nullopt; }
  void Draw() const;

  ActivationContext visual_styles_;
  HWND bar_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_PROGRESS_WINDOW_H_
