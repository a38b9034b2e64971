// ProgressWindow: a bar that fills while a task runs, and a button that cancels the task.
#ifndef ARD_WINDOWS_DIALOGS_PROGRESS_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_PROGRESS_WINDOW_H_

#include <windows.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/environment.h"
#include "windows/dialogs/modal_window.h"

namespace ard::windows {

class ProgressWindow : public ProgressDisplay, private ModalWindow {
 public:
  // To be seen when the task takes longer than a moment; modal from then on.
  ProgressWindow(HINSTANCE module, std::wstring_view title, std::int32_t maximum)
      : ModalWindow(Border::kFixed), module_(module), title_(title), maximum_(maximum) {}
  ~ProgressWindow() override {
    if (bar_) Close();
  }

  bool Advance() override;

 private:
  const wchar_t* Caption() const override { return title_.c_str(); }
  void CreateControls(HINSTANCE module) override;
  HWND InitialFocus() const override { return cancel_; }
  void Command(int id) override;
  void CloseBox() override { cancelled_ = true; }

  HINSTANCE module_;
  std::wstring title_;
  std::int32_t maximum_;
  std::int32_t done_ = 0;
  ULONGLONG start_ = GetTickCount64();
  HWND bar_ = nullptr;
  HWND cancel_ = nullptr;
  bool cancelled_ = false;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_PROGRESS_WINDOW_H_
