// What the dialogs cost, and what only their windows show.
#include "accounts/ledger_accounts.h"
#include "dialogs/fast_select.h"
#include "host_database/odbc_connection.h"
#include "orders/orders.h"
#include "products/products.h"
#include "tests/core/company_test.h"

namespace ard::dialogs {
namespace {

class DialogsTest : public testing::CompanyTest {};

// A ledger of any size opens alike: nothing is read before the first page, then one page.
TEST_F(DialogsTest, OpeningCostsTheSameWhateverTheLedgersSize) {
  Context context(environment_);
  std::vector<std::int64_t> operations;
  for (const std::int32_t accounts : {1'000, 1'000'000, 10'000'000}) {
    engine_ = simulator::Simulator::OpenSynthetic(accounts);
    context.workspace = engine_->workspace();
    environment_.Answer([&](SelectDialog& dialog) {
      EXPECT_EQ(dialog.list().row_count(), accounts);
      dialog.list().SetPageSize(20);
      EXPECT_EQ(engine_->records_read(), 1);  // ControlData's
      for (int i = 0; i < 2; ++i) dialog.list().rows();
      EXPECT_EQ(engine_->records_read(), 1 + 20);
      operations.push_back(engine_->operations());
      dialog.list().End();
      EXPECT_EQ(engine_->records_read(), 1 + 20 + 20);
      // Nor does one that cannot be read.
      engine_->faults().FailFrom(1, true);
      dialog.list().SelectFirst();
      EXPECT_TRUE(dialog.list().rows().empty() && !dialog.list().looking());
      EXPECT_EQ(engine_->faults().failed(), 1);
      engine_->faults().Reset();
    });
    FastSelect(context, accounts::kSalesLedger.list);
  }
  EXPECT_EQ(operations, std::vector<std::int64_t>(3, operations.front()));
}

TEST_F(DialogsTest, AnEmptyFileHasOneRowThoughItsBlankRecordIsNull) {
  simulator::CompanyBuilder company;
  orders::PurchaseOrders orders(environment_);
  Open(company, orders);
  engine_->SnapshotFields(true);
  environment_.Answer([](SelectDialog& dialog) { EXPECT_EQ(dialog.list().row_count(), 1); });
  EXPECT_EQ(orders.List(), 0);
}

// Nor does a page of the product information far down cost more. A confirmed dialog is remembered.
TEST_F(DialogsTest, EveryPageOfTheInformationCostsTheSame) {
  simulator::CompanyBuilder company;
  products::Products products(environment_);
  Open(company, products);
  const auto database =
      std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  database->Execute(
      L"CREATE TABLE ProdInfoStockFields AS WITH RECURSIVE n(i) AS"
      L" (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000)"
      L" SELECT printf('P%06d', i) AS StockCode, 'Made up' AS Description FROM n");
  products.context().database = database;
  products.context().registry_path = L"Soft";
  simulator::FaultPlan counted;
  database->Obey(counted);
  auto& settings = environment_.machine().user_settings;
  settings[L"Soft|Options\\Windows|frmFastSelectProduct"] = L"as before";
  environment_.Answer<ProductDialog>([&](ProductDialog& dialog) {
    EXPECT_EQ(std::exchange(dialog.placement, L"moved"), L"as before");
    dialog.TabClick(ProductDialog::Tab::kProductInfo);
    for (const std::int32_t top : {1, 9'000}) {
      dialog.list().ScrollTo(top);
      const std::int64_t before = counted.operations();
      const auto rows = static_cast<std::int64_t>(dialog.list().rows().size());
      EXPECT_EQ(rows, dialog.list().page_size());
      EXPECT_EQ(counted.operations() - before, 1 + 4 * rows);  // move; a row's end, cells, next
    }
    for (const SortOrder order : {SortOrder::kAscending, SortOrder::kDescending}) {
      dialog.ColumnClick(1);
      EXPECT_EQ(dialog.list().columns()[1].sort, order);
      dialog.list().SelectItem(2);
      dialog.ColumnClick(2);  // there is none
      EXPECT_EQ(dialog.list().selected()->position, 2);
    }
    counted.FailFrom(1, true);
    dialog.ColumnClick(0);
    EXPECT_EQ(dialog.list().columns()[0].sort, SortOrder::kNone);
    EXPECT_FALSE(dialog.ok_enabled() || dialog.list().looking());
    EXPECT_EQ(counted.failed(), 2);
    counted.Reset();
    dialog.list().SelectFirst();
    dialog.Ok();
  });
  EXPECT_EQ(products.FastList(), L"P000001");
  EXPECT_EQ(settings, (std::map<std::wstring, std::wstring>{
                          {L"Soft|Options\\ProductSearch|Field", L"0"},
                          {L"Soft|Options\\ProductSearch|Tab", L"2"},
                          {L"Soft|Options\\Windows|frmFastSelectProduct", L"moved"}}));
}

// The focus goes where something is to be entered, and only of a missing page it is said that it
// is.
TEST_F(DialogsTest, ARefusedLogonStartsAnew) {
  using Box = LogonDialog::Box;
  const Context context(environment_);
  simulator::FaultPlan plan;
  environment_.Obey(plan);
  for (const auto& [form, first] : {std::pair(LogonDialog::Form::kUserDetails, Box::kName),
                                    {LogonDialog::Form::kCompanyPassword, Box::kPassword}}) {
    LogonDialog dialog(context, form, [](auto&, auto&) { return false; });
    EXPECT_EQ(dialog.focus(), first);
    dialog.SetName(L"ANN");
    EXPECT_EQ(dialog.focus(), Box::kPassword);
    dialog.Ok();
    EXPECT_EQ(dialog.focus(), first);
    dialog.SetName(L"ANN");
    dialog.NameChange(L" ");
    dialog.Ok();
    EXPECT_EQ(dialog.focus(), Box::kName);
    environment_.machine().has_help = false;
    dialog.HelpClick();
    EXPECT_EQ(dialog.notice(), L"The help page Logging On.htm is not there.");
    environment_.machine().has_help = true;
    plan.FailFrom(1, true);
    dialog.HelpClick();
    EXPECT_EQ(dialog.notice(), L"");
    plan.Reset();
  }
}

}  // namespace
}  // namespace ard::dialogs
