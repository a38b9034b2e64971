// LogonWindow: the window of a logon dialog (dialogs/logon_dialog.h). F1 is the help button.
#ifndef ARD_WINDOWS_DIALOGS_LOGON_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_LOGON_WINDOW_H_

#include <windows.h>

#include "dialogs/logon_dialog.h"
#include "windows/dialogs/modal_window.h"

namespace ard::windows {

class LogonWindow : public ModalWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit LogonWindow(dialogs::LogonDialog& dialog)
      : ModalWindow(Border::kFixed), dialog_(dialog) {}

 private:
  const wchar_t* Caption() const override { return dialog_.caption().c_str(); }
  void CreateControls(HINSTANCE module) override;
  HWND InitialFocus() const override { return Box(); }
  void Command(int id) override;
  void CloseBox() override;
  bool HandleKey(HWND control, WPARAM key) override;

  // The box that is to have the focus.
  HWND Box() const;
  void TakeInput();
  void ShowHelp();

  dialogs::LogonDialog& dialog_;
  HWND welcome_ = nullptr;
  HWND name_ = nullptr;
  HWND password_ = nullptr;
  HWND remember_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_LOGON_WINDOW_H_
