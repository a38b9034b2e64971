// A dialog that shows labelled texts and nothing else, without its window.
#ifndef ARD_DIALOGS_FIELDS_DIALOG_H_
#define ARD_DIALOGS_FIELDS_DIALOG_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dialogs/resizable.h"

namespace ard::dialogs {

class FieldsDialog : public Resizable {
 public:
  struct Line {
    std::wstring label;
    std::wstring text;
    bool number = false;
  };

  // The published name of the form, and the window's caption.
  std::wstring_view form() const { return form_; }
  std::wstring_view caption() const { return caption_; }
  const std::vector<Line>& lines() const { return lines_; }

  // True until the button, or the close box, has closed the dialog.
  bool visible() const { return visible_; }
  void CloseClick() { visible_ = false; }
  void CloseBox() { CloseClick(); }

 protected:
  FieldsDialog(std::wstring_view form, std::wstring_view caption, std::vector<Line> lines)
      : form_(form), caption_(caption), lines_(std::move(lines)) {}
  ~FieldsDialog() = default;

 private:
  std::wstring_view form_;
  std::wstring_view caption_;
  std::vector<Line> lines_;
  bool visible_ = true;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_FIELDS_DIALOG_H_
