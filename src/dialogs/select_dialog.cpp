#include "dialogs/select_dialog.h"

#include <cstddef>
#include <utility>

#include "dialogs/show.h"

namespace ard::dialogs {

void SelectDialog::KeyPress(wchar_t key) {
  if (key == kEnterKey) return DoubleClick();
  if (key != L' ' || !list().SelectCursor()) TypeAhead(key);
}

void SelectDialog::DoubleClick() {
  if (ok_enabled()) Ok();
}

void SelectDialog::Ok() {
  if (!ok_enabled()) return;
  if (list().multiple() || Accepts(*list().selected())) Hide(true);
}

void SelectDialog::Cancel() { Hide(false); }

void SelectDialog::Hide(bool result) {
  result_ = result;
  visible_ = false;
}

void RowsInMemory::Add(std::wstring text) {
  rows_.push_back({count() + 1, std::move(text), kDefaultColor});
}

bool RowsInMemory::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  rows.insert(rows.end(), rows_.begin() + first - 1, rows_.begin() + last);
  return true;
}

void SelectRecordDialog::AddRow(std::wstring text) {
  Add(std::move(text));
  list().SetRowCount(count());
}

std::optional<Row> ChooseRow(const Context& context, SelectDialog& dialog) {
  Show(context, dialog);
  return dialog.result() ? dialog.list().selected() : std::nullopt;
}

}  // namespace ard::dialogs
