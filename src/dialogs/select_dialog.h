// The record selection dialogs, without their windows: what each handler does when the user
// presses a key, clicks or closes. The fast-select dialogs (dialogs/fast_select.h) add paging over
// an engine file and type-ahead; frmSelectRecord shows the rows that its caller put into it.
#ifndef ARD_DIALOGS_SELECT_DIALOG_H_
#define ARD_DIALOGS_SELECT_DIALOG_H_

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dialogs/list_model.h"
#include "dialogs/resizable.h"
#include "frame/context.h"

namespace ard::dialogs {

inline constexpr wchar_t kEnterKey = 13;

class SelectDialog : public Resizable {
 public:
  SelectDialog(const SelectDialog&) = delete;
  SelectDialog& operator=(const SelectDialog&) = delete;
  virtual ~SelectDialog() = default;

  // The published name of the form, such as "frmFastSelectCust", and the window's caption.
  std::wstring_view form() const { return form_; }
  const std::wstring& caption() const { return caption_; }
  // The width that the window is to have, in twips; 0 for one that suits the columns.
  virtual int width() const { return 0; }
  // Whether it opens in the middle of the screen, rather than of its owner.
  virtual bool on_screen() const { return false; }
  // The list that the commands work on.
  virtual ListModel& list() { return list_; }

  // True until a handler has hidden the dialog; a presentation ends its modal loop then.
  bool visible() const { return visible_; }
  // True once the user confirmed with OK.
  bool result() const { return result_; }
  bool ok_enabled() { return list().HasSelection(); }

  // The handlers. `key` is a character code: Enter acts as OK when a row is selected, a blank
  // selects the row at the cursor when that is not selected yet, any other character is the form's
  // type-ahead.
  void KeyPress(wchar_t key);
  void DoubleClick();
  void Ok();
  void Cancel();
  void CloseBox() { Cancel(); }

 protected:
  SelectDialog(std::wstring_view form, std::wstring caption, RowSource& source)
      : form_(form), caption_(std::move(caption)), list_(source) {}

  // Whether OK may confirm the selected row of a list with single selection.
  virtual bool Accepts(const Row&) { return true; }
  virtual void TypeAhead(wchar_t) {}

 private:
  void Hide(bool result);

  std::wstring_view form_;
  std::wstring caption_;
  ListModel list_;
  bool visible_ = true;
  bool result_ = false;
};

// Rows held in memory.
class RowsInMemory : public RowSource {
 public:
  void Add(std::wstring text);
  void Clear() { rows_.clear(); }
  std::int32_t count() const { return static_cast<std::int32_t>(rows_.size()); }
  bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override;

 private:
  std::vector<Row> rows_;
};

// frmSelectRecord: the caller adds the columns and the rows, then selects one.
class SelectRecordDialog : private RowsInMemory, public SelectDialog {
 public:
  // `width` is in twips; 0 for one that suits the columns.
  explicit SelectRecordDialog(std::wstring caption, int width = 0)
      : SelectDialog(L"frmSelectRecord", std::move(caption), *this), width_(width) {}

  int width() const override { return width_; }
  bool on_screen() const override { return true; }

  void AddRow(std::wstring text);

 private:
  int width_;
};

// Shows the dialog. Returns the row that the user confirmed, nothing when they cancelled.
std::optional<Row> ChooseRow(const Context& context, SelectDialog& dialog);

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_SELECT_DIALOG_H_
