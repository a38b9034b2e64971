// The product lists, with the dialog's model, over a real database.
#include "dialogs/product_dialog.h"
#include "host_database/odbc_connection.h"
#include "products/products.h"
#include "tests/core/company_test.h"

namespace ard::products {
namespace {

using dialogs::ProductDialog;
using host_database::OdbcConnection;
using Tab = ProductDialog::Tab;
using Field = ProductDialog::SearchField;

constexpr const wchar_t* kFieldSetting = L"Soft\\Demo|Options\\ProductSearch|Field";
constexpr const wchar_t* kPlacement = L"Soft\\Demo|Options\\Windows|frmFastSelectProduct";
constexpr const wchar_t* kTabSetting = L"Soft\\Demo|Options\\ProductSearch|Tab";

class SearchTest : public testing::CompanyTest {
 protected:
  SearchTest() {
    simulator::CompanyBuilder company;
    Open(company.Product(L"AA1"), products_);
    database_ = std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
    database_->Execute(L"CREATE TABLE ProdInfoStockFields (StockCode, Description)");
    database_->Execute(L"INSERT INTO ProdInfoStockFields VALUES ('B', 'Zinc'), ('A', 'Tin')");
    products_.context().database = database_;
    products_.context().registry_path = L"Soft\\Demo";
  }
  ~SearchTest() override { EXPECT_EQ(database_->open_recordsets(), 0); }

  void Answer(std::function<void(ProductDialog&)> script) {
    environment_.Answer([script = std::move(script)](dialogs::SelectDialog& dialog) {
      script(dynamic_cast<ProductDialog&>(dialog));
    });
  }

  std::shared_ptr<OdbcConnection> database_;
  Products products_{environment_};
};

TEST_F(SearchTest, AConfirmedDialogIsRemembered) {
  environment_.settings()[kPlacement] = L"as before";
  Answer([](ProductDialog& dialog) {
    EXPECT_EQ(std::exchange(dialog.placement, L"moved"), L"as before");
    dialog.TabClick(Tab::kProductInfo);
    dialog.SearchFieldChange(Field::kDescription);
    dialog.ColumnClick(1);
    EXPECT_EQ(dialog.list().columns()[1].sort, dialogs::SortOrder::kAscending);
    dialog.ColumnClick(1);
    EXPECT_EQ(dialog.list().columns()[1].sort, dialogs::SortOrder::kDescending);
    dialog.list().SelectItem(2);
    dialog.ColumnClick(2);  // there is none
    dialog.DoubleClick();
  });
  EXPECT_EQ(products_.FastList(), L"A");
  EXPECT_EQ(environment_.settings(),
            (std::map<std::wstring, std::wstring>{
                {kFieldSetting, L"1"}, {kPlacement, L"moved"}, {kTabSetting, L"2"}}));
}

// Nor is there a database.
TEST_F(SearchTest, SettingsThatMakeNoSenseAreIgnored) {
  products_.context().database = nullptr;
  for (const wchar_t* nonsense : {L"3", L"-1", L"x", L"1e99"}) {
    environment_.settings() = {{kFieldSetting, nonsense}, {kTabSetting, nonsense}};
    Answer([](ProductDialog& dialog) {
      EXPECT_EQ(dialog.tab(), Tab::kProducts);
      EXPECT_EQ(dialog.search_field(), Field::kStockCode);
      EXPECT_TRUE(dialog.info_list().rows().empty());
      dialog.ColumnClick(0);
      EXPECT_EQ(dialog.info_list().columns()[0].sort, dialogs::SortOrder::kNone);
      dialog.Ok();
    });
    EXPECT_EQ(products_.FastList(), L"AA1") << nonsense;
  }
}

TEST_F(SearchTest, EveryPageOfTheInformationCostsTheSame) {
  database_->Execute(
      L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 99998)"
      L" INSERT INTO ProdInfoStockFields (StockCode, Description)"
      L" SELECT printf('P%06d', i), 'Made up' FROM n");
  simulator::FaultPlan counted;
  database_->Obey(counted);
  Answer([&](ProductDialog& dialog) {
    dialog.TabClick(Tab::kProductInfo);
    EXPECT_EQ(dialog.list().row_count(), 100'000);
    for (const std::int32_t top : {1, 99'000}) {
      dialog.list().ScrollTo(top);
      const std::int64_t before = counted.operations();
      const auto rows = static_cast<std::int64_t>(dialog.list().rows().size());
      EXPECT_EQ(rows, dialog.list().page_size());
      EXPECT_EQ(counted.operations() - before, 1 + 4 * rows);  // move; a row's end, cells, next
    }
    dialog.list().SelectItem(99'998);
    dialog.Ok();
  });
  EXPECT_EQ(products_.FastList(), L"P099996");
}

}  // namespace
}  // namespace ard::products
