#include "dialogs/fast_select.h"

namespace ard::dialogs {
namespace {

constexpr std::int32_t kRowsFilled = 12;
constexpr std::uint8_t kPostingAccount = 1;

constexpr FieldColumn kAccountColumns[] = {{L"A/C", 15, L"ACCOUNT_REF"}, {L"Name", 60, L"NAME"}};
constexpr FieldColumn kSalesOrderColumns[] = {
    {L"S.Order No.", 12, L"ORDER_NUMBER"}, {L"A/C", 15, L"ACCOUNT_REF"}, {L"Name", 45, L"NAME"}};
constexpr FieldColumn kPurchaseOrderColumns[] = {
    {L"P.Order No.", 12, L"ORDER_NUMBER"}, {L"A/C", 15, L"ACCOUNT_REF"}, {L"Name", 45, L"NAME"}};

}  // namespace

const FastSelectForm kFastSelectCust = {
    L"frmFastSelectCust",
    L"Select Customer",
    {L"SalesData", L"SalesIndex", L"NO_OF_SALES", kAccountColumns, /*red_rows=*/true}};
const FastSelectForm kFastSelectSupp = {
    L"frmFastSelectSupp",
    L"Select Supplier",
    {L"PurchaseData", L"PurchaseIndex", L"NO_OF_PURCHASE", kAccountColumns, /*red_rows=*/true}};
const FastSelectForm kFastSelectNom = {
    L"frmFastSelectNom",
    L"Select Nominal Code",
    {L"NominalData", L"NominalIndex", L"NO_OF_NOMINAL", kAccountColumns},
    FastSelectForm::Ok::kPostingAccountsOnly};
const FastSelectForm kFastSelectBank = {L"frmFastSelectBank",
                                        L"Select Bank Account",
                                        {L"BankData", L"BankIndex", L"NO_OF_BANK", kAccountColumns},
                                        FastSelectForm::Ok::kAnyRow,
                                        FastSelectForm::Fill::kFirstTwelve};
const FastSelectForm kFastSelectSop = {L"frmFastSelectSop",
                                       L"Select Sales Order",
                                       {L"SopData", L"SopIndex", L"NO_OF_SOP", kSalesOrderColumns}};
const FastSelectForm kFastSelectPop = {
    L"frmFastSelectPop",
    L"Select Purchase Order",
    {L"PopData", L"PopIndex", L"NO_OF_POP", kPurchaseOrderColumns}};

FastSelectDialog::FastSelectDialog(const Context& context, const FastSelectForm& form)
    : SelectDialog(form.name, std::wstring(form.caption), *this),
      context_(context),
      spec_(form),
      file_(context, form.file) {
  file_.AddColumns(list());
}

void FastSelectDialog::Load(std::int32_t row_count) {
  file_.Open();
  if (spec_.fill == FastSelectForm::Fill::kFirstTwelve) {
    for (std::wstring& row : file_.FirstRows(kRowsFilled)) filled_.Add(std::move(row));
    row_count = filled_.count();
  }
  list().SetRowCount(row_count);
  list().SelectItem(1);
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

void FastSelectDialog::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  if (spec_.fill == FastSelectForm::Fill::kFirstTwelve) return filled_.LoadPage(first, last, rows);
  file_.LoadPage(first, last, rows);
}

std::optional<Row> FastSelect(const Context& context, const FastSelectForm& form,
                              std::optional<std::wstring_view> criteria) {
  const std::int32_t row_count = RecordCount(context, form.file);
  FastSelectDialog dialog(context, form);
  dialog.Load(row_count);
  if (criteria) dialog.PositionOn(*criteria);
  Attempt(context.trace(), {form.name, L"Show"}, [&] { context.environment.Show(dialog); });
  if (!dialog.result()) return std::nullopt;
  return dialog.list().selected();
}

}  // namespace ard::dialogs
