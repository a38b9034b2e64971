#include "dialogs/fast_select.h"

namespace ard::dialogs {
namespace {

constexpr std::int32_t kRowsFilled = 12;
constexpr std::uint8_t kPostingAccount = 1;

}  // namespace

FastSelectDialog::FastSelectDialog(const Context& context, const FastSelectForm& form)
    : SelectDialog(form.name, std::wstring(form.caption), *this),
      context_(context),
      spec_(form),
      file_(context, form.file) {
  DescribeList(form.file, list());
}

void FastSelectDialog::Load(std::optional<std::int32_t> row_count) {
  file_.Open(list(), row_count);
  if (spec_.fill == FastSelectForm::Fill::kFirstTwelve) {
    for (std::wstring& row : file_.FirstRows(kRowsFilled)) filled_.Add(std::move(row));
    row_count = filled_.count();
  }
  list().SetRowCount(row_count.value_or(0));
  if (spec_.fill == FastSelectForm::Fill::kPaged) list().SelectFirst();
}

bool FastSelectDialog::Accepts(const Row& row) {
  if (spec_.ok == FastSelectForm::Ok::kAnyRow) return true;
  if (!file_.ReadKey(row.Cell(1))) return false;
  std::uint8_t type = 0;
  file_.data_file().Get(L"ACCOUNT_TYPE", type);
  if (type == kPostingAccount) return true;
  context_.ShowMessage(Icon::kStop, L"Entry to a major Control Account is not permitted",
                       spec_.caption);
  return false;
}

bool FastSelectDialog::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  if (spec_.fill == FastSelectForm::Fill::kFirstTwelve) return filled_.LoadPage(first, last, rows);
  return file_.LoadPage(first, last, rows);
}

std::wstring FastSelect(const Context& context, const FastSelectForm& form,
                        std::optional<std::wstring_view> criteria,
                        const std::function<void(const Row&)>& check) {
  const std::optional<std::int32_t> row_count = RecordCount(context, form.file);
  FastSelectDialog dialog(context, form);
  dialog.Load(row_count);
  if (criteria) dialog.PositionOn(*criteria);
  const std::optional<Row> choice = ChooseRow(context, dialog);
  if (!choice) return {};
  std::wstring key(Trimmed(choice->Cell(1)));
  if (check) Attempt(context.trace(), {form.name, L"Check"}, [&] { check(*choice); });
  return key;
}

}  // namespace ard::dialogs
