#include "dialogs/fast_select.h"

#include <algorithm>
#include <limits>

namespace ard::dialogs {
namespace {

using engine::Match;
using engine::Mode;

constexpr std::int32_t kRowsFilled = 12;
// Selecting a row this far below the wanted one first leaves the wanted one near the top.
constexpr std::int32_t kRowsBelow = 12;
constexpr std::uint8_t kPostingAccount = 1;

std::int32_t RowCount(const Context& context, std::wstring_view count_field) {
  std::int32_t count = 0;
  engine::DataFile control(context, L"ControlData");
  if (control.Open(Mode::kRead) && control.Read(1)) control.Get(count_field, count);
  return count;
}

}  // namespace

const FastSelectForm kFastSelectCust = {L"frmFastSelectCust",
                                        L"Select Customer",
                                        L"SalesData",
                                        L"SalesIndex",
                                        L"NO_OF_SALES",
                                        true,
                                        FastSelectForm::Ok::kAnyRow,
                                        FastSelectForm::Fill::kPaged};
const FastSelectForm kFastSelectSupp = {L"frmFastSelectSupp",
                                        L"Select Supplier",
                                        L"PurchaseData",
                                        L"PurchaseIndex",
                                        L"NO_OF_PURCHASE",
                                        true,
                                        FastSelectForm::Ok::kAnyRow,
                                        FastSelectForm::Fill::kPaged};
const FastSelectForm kFastSelectNom = {L"frmFastSelectNom",
                                       L"Select Nominal Code",
                                       L"NominalData",
                                       L"NominalIndex",
                                       L"NO_OF_NOMINAL",
                                       false,
                                       FastSelectForm::Ok::kPostingAccountsOnly,
                                       FastSelectForm::Fill::kPaged};
const FastSelectForm kFastSelectBank = {L"frmFastSelectBank",
                                        L"Select Bank Account",
                                        L"BankData",
                                        L"BankIndex",
                                        L"NO_OF_BANK",
                                        false,
                                        FastSelectForm::Ok::kAnyRow,
                                        FastSelectForm::Fill::kFirstTwelve};

bool IsOverCreditLimit(Currency balance, Currency limit) {
  return limit > Currency{} && balance > limit;
}

FastSelectDialog::FastSelectDialog(const Context& context, const FastSelectForm& form)
    : SelectDialog(form.name, std::wstring(form.caption), *this),
      context_(context),
      spec_(form),
      data_file_(context, form.data_file),
      index_file_(context, form.index_file) {
  list().AddColumn(L"A/C", 15);
  list().AddColumn(L"Name", 60);
}

void FastSelectDialog::Load(std::int32_t row_count) {
  data_file_.Open(Mode::kRead);
  index_file_.Open(Mode::kRead);
  if (spec_.fill == FastSelectForm::Fill::kFirstTwelve) {
    FillFirstTwelve();
    row_count = filled_.count();
  }
  list().SetRowCount(row_count);
  list().SelectItem(1);
}

void FastSelectDialog::PositionOn(std::wstring_view criteria) {
  std::wstring account_ref;
  {
    engine::DataFile search(context_, spec_.data_file);
    search.Open(Mode::kQuery);
    // Found or not, the record that the file now stands on is the one wanted.
    search.FindFirst(L"ACCOUNT_REF", criteria);
    if (!search.Get(L"ACCOUNT_REF", account_ref)) return;
  }
  const std::int32_t position = FindPosition(account_ref);
  if (position == 0) return;
  if (position <= std::numeric_limits<std::int32_t>::max() - kRowsBelow) {
    list().SelectItem(position + kRowsBelow);
  }
  list().SelectItem(position);
}

bool FastSelectDialog::Accepts(const Row& row) {
  if (spec_.ok == FastSelectForm::Ok::kAnyRow) return true;
  if (FindPosition(row.Cell(1)) == 0 || !ReadCurrentEntry()) return false;
  std::uint8_t type = 0;
  data_file_.Get(L"ACCOUNT_TYPE", type);
  if (type == kPostingAccount) return true;
  context_.ShowMessage(Icon::kStop, L"Entry to a major Control Account is not permitted",
                       spec_.caption);
  return false;
}

void FastSelectDialog::TypeAhead(wchar_t key) {
  const std::wstring pattern = UpperCase(std::wstring_view(&key, 1)) + L'*';
  std::wstring account_ref;
  if (!data_file_.FindFirst(L"ACCOUNT_REF", pattern) || !account_ref_.Get(account_ref)) return;
  list().SelectItem(FindPosition(account_ref));
}

void FastSelectDialog::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  if (spec_.fill == FastSelectForm::Fill::kFirstTwelve) return filled_.LoadPage(first, last, rows);
  if (!index_file_.MoveTo(first)) return;
  rows.reserve(static_cast<std::size_t>(last - first + 1));
  for (std::int32_t position = first; position <= last; ++position) {
    bool deleted = false;
    if (ReadCurrentEntry()) {
      deleted_.Get(deleted);
      if (!deleted) rows.push_back({position, RowText(), OverLimit() ? kRed : kDefaultColor});
    }
    if (!index_file_.MoveNext()) break;
  }
}

void FastSelectDialog::FillFirstTwelve() {
  if (!index_file_.MoveFirst()) return;
  for (std::int32_t i = 1; i <= kRowsFilled; ++i) {
    if (ReadCurrentEntry()) filled_.Add(RowText());
    if (!index_file_.MoveNext()) break;
  }
}

bool FastSelectDialog::ReadCurrentEntry() {
  const std::int32_t record = index_file_.RecordNumber();
  return record != 0 && data_file_.Read(record);
}

std::wstring FastSelectDialog::RowText() {
  std::wstring text;
  std::wstring name;
  account_ref_.Get(text);
  name_.Get(name);
  text += L'\t';
  text += name;
  return text;
}

bool FastSelectDialog::OverLimit() {
  if (!spec_.red_rows) return false;
  Currency balance;
  Currency limit;
  credit_limit_.Get(limit);
  // An account without a limit is never over it, whatever its balance.
  return limit > Currency{} && balance_.Get(balance) && IsOverCreditLimit(balance, limit);
}

std::int32_t FastSelectDialog::FindPosition(std::wstring_view account_ref) {
  if (!index_file_.SetKey(account_ref) || !index_file_.Find(Match::kExact)) return 0;
  return index_file_.Position();
}

std::optional<Row> FastSelect(const Context& context, const FastSelectForm& form,
                              std::optional<std::wstring_view> criteria) {
  const std::int32_t row_count = RowCount(context, form.count_field);
  FastSelectDialog dialog(context, form);
  dialog.Load(row_count);
  if (criteria) dialog.PositionOn(*criteria);
  Attempt(context.trace(), {form.name, L"Show"}, [&] { context.environment.Show(dialog); });
  if (!dialog.result()) return std::nullopt;
  return dialog.list().selected();
}

}  // namespace ard::dialogs
