// FieldsWindow: labelled texts to read and copy, and a button that closes the window.
#ifndef ARD_WINDOWS_DIALOGS_FIELDS_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_FIELDS_WINDOW_H_

#include <windows.h>

#include <vector>

#include "dialogs/fields_dialog.h"
#include "windows/dialogs/modal_window.h"

namespace ard::windows {

class FieldsWindow : public ModalWindow {
 public:
  // `dialog` must outlive the window.
  explicit FieldsWindow(dialogs::FieldsDialog& dialog)
      : ModalWindow(Border::kResizable), dialog_(dialog) {}

 private:
  const wchar_t* Caption() const override { return dialog_.caption().data(); }
  void CreateControls(HINSTANCE module) override;
  int OpeningWidth() const override;
  std::wstring* Kept() override { return &dialog_.placement; }
  HWND InitialFocus() const override { return close_; }
  void Command(int id) override;
  void CloseBox() override { Finish(); }

  dialogs::FieldsDialog& dialog_;
  std::vector<HWND> texts_;
  HWND close_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_FIELDS_WINDOW_H_
