// InputWindow: asks for a line of text.
#ifndef ARD_WINDOWS_DIALOGS_INPUT_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_INPUT_WINDOW_H_

#include <windows.h>

#include <string>
#include <string_view>

#include "windows/dialogs/modal_window.h"

namespace ard::windows {

class InputWindow : public ModalWindow {
 public:
  InputWindow(std::wstring_view prompt, std::wstring_view title)
      : ModalWindow(Border::kFixed), prompt_text_(prompt), title_(title) {}

  // What the user entered; "" when they cancelled.
  const std::wstring& text() const { return text_; }

 private:
  const wchar_t* Caption() const override { return title_.c_str(); }
  void CreateControls(HINSTANCE module) override;
  HWND InitialFocus() const override { return edit_; }
  void Command(int id) override;
  void CloseBox() override { Finish(); }

  std::wstring prompt_text_;
  std::wstring title_;
  std::wstring text_;
  HWND edit_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_INPUT_WINDOW_H_
