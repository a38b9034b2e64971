// FieldsWindow: labelled texts to read and copy, and a button that closes the window.
#ifndef ARD_WINDOWS_DIALOGS_FIELDS_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_FIELDS_WINDOW_H_

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "windows/dialogs/modal_window.h"

namespace ard::windows {

class FieldsWindow : public ModalWindow {
 public:
  enum class Align { kLeft, kRight };

  explicit FieldsWindow(std::wstring_view caption, Align align = Align::kLeft)
      : ModalWindow(Border::kFixed), caption_(caption), align_(align) {}

  // Before Run.
  void Add(std::wstring_view label, std::wstring_view text) {
    fields_.push_back({std::wstring(label), std::wstring(text)});
  }

 private:
  struct Field {
    std::wstring label;
    std::wstring text;
    HWND label_control = nullptr;
    HWND text_control = nullptr;
  };

  const wchar_t* Caption() const override { return caption_.c_str(); }
  void CreateControls(HINSTANCE module) override;
  SIZE InitialSize() const override;
  void Layout(SIZE client) override;
  HWND InitialFocus() const override { return close_; }
  void Command(int id) override;
  void CloseBox() override { Finish(); }

  int LabelWidth() const;

  std::wstring caption_;
  Align align_;
  std::vector<Field> fields_;
  HWND close_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_FIELDS_WINDOW_H_
