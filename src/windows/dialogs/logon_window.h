// LogonWindow: the window of a logon dialog (dialogs/logon_dialog.h). F1 is the help button.
#ifndef ARD_WINDOWS_DIALOGS_LOGON_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_LOGON_WINDOW_H_

#include <windows.h>

#include <vector>

#include "dialogs/logon_dialog.h"
#include "windows/dialogs/modal_window.h"

namespace ard::windows {

class LogonWindow : public ModalWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit LogonWindow(dialogs::LogonDialog& dialog)
      : ModalWindow(Border::kFixed), dialog_(dialog) {}

 private:
  // Controls side by side: a label, which may be missing, and what it is for.
  struct Line {
    HWND label;
    HWND control;
    int height;     // in dialog units
    int gap_below;  // likewise
  };

  const wchar_t* Caption() const override { return dialog_.caption().c_str(); }
  void CreateControls(HINSTANCE module) override;
  SIZE InitialSize() const override;
  void Layout(SIZE client) override;
  HWND InitialFocus() const override { return Box(); }
  void Command(int id) override;
  void CloseBox() override;
  bool HandleKey(HWND control, WPARAM key) override;

  // A static text; an ampersand in it is one.
  HWND AddText(const wchar_t* text);
  HWND AddLabel(const wchar_t* text);
  HWND AddEdit(std::wstring_view text, DWORD style);
  // The box that is to have the focus.
  HWND Box() const;
  void TakeInput();

  dialogs::LogonDialog& dialog_;
  std::vector<Line> lines_;
  HWND name_ = nullptr;
  HWND password_ = nullptr;
  HWND remember_ = nullptr;
  std::vector<HWND> buttons_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_LOGON_WINDOW_H_
