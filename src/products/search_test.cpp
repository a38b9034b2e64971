// The product lists, with the dialog's model, over a real database.
#include "dialogs/product_dialog.h"
#include "host_database/odbc_connection.h"
#include "products/products.h"
#include "tests/core/company_test.h"

namespace ard::products {
namespace {

using dialogs::ListModel;
using dialogs::ProductDialog;
using dialogs::Row;
using host_database::OdbcConnection;
using simulator::CompanyBuilder;
using testing::Texts;
using Tab = ProductDialog::Tab;
using Field = ProductDialog::SearchField;

constexpr const wchar_t* kFieldSetting = L"Soft\\Demo|Options\\ProductSearch|Field";
constexpr const wchar_t* kPlacement = L"Soft\\Demo|Options\\Windows|frmFastSelectProduct";
constexpr const wchar_t* kTabSetting = L"Soft\\Demo|Options\\ProductSearch|Tab";

class SearchTest : public testing::CompanyTest {
 protected:
  SearchTest() {
    CompanyBuilder builder;
    for (const wchar_t* code : {L"AA1", L"AB1", L"AB2", L"BX1", L"CX1", L"CX2"}) {
      builder.Product(code, {{L"DESCRIPTION", std::wstring(L"Stock ") + code}});
    }
    builder.Product(L"DEAD", L"DELETED_FLAG=True").Product(L"ZZ");
    Open(builder, products_);
    database_ = std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
    database_->Execute(
        L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30),"
        L" Description VARCHAR(60), Approved BOOLEAN, Reviewed DATE, Weight REAL)");
    for (const wchar_t* row :
         {L"'AB1', 'Zinc', 1, '2006-10-13', 0.5", L"'AB2', 'Brass', 0, NULL, NULL",
          L"'CX2', 'Brass', 1, '2026-01-02', 12", L"'O''B', 'Anvil 50%', 0, '2026-01-03', 3"}) {
      database_->Execute(L"INSERT INTO ProdInfoStockFields VALUES (" + std::wstring(row) + L")");
    }
    products_.context().database = database_;
    products_.context().registry_path = L"Soft\\Demo";
  }
  void TearDown() override {
    CompanyTest::TearDown();
    EXPECT_EQ(database_->open_recordsets(), 0);
    EXPECT_EQ(environment_.dialogs_shown(), expected_dialogs_);
    EXPECT_EQ(environment_.TakeMessages(), Texts{});
  }

  // Answers the next dialog, and makes sure that it is shown.
  void Answer(std::function<void(ProductDialog&)> script) {
    environment_.Answer([script = std::move(script)](dialogs::SelectDialog& dialog) {
      script(dynamic_cast<ProductDialog&>(dialog));
    });
    ++expected_dialogs_;
  }
  // The rows of the page shown, without padding: "AA1|Stock AA1".
  static Texts Shown(ListModel& list) {
    Texts texts;
    for (const Row& row : list.rows()) {
      texts.emplace_back(Trimmed(row.Cell(1)));
      for (std::size_t i = 2; i <= list.columns().size(); ++i) {
        texts.back().append(L"|").append(Trimmed(row.Cell(static_cast<int>(i))));
      }
    }
    return texts;
  }

  std::shared_ptr<OdbcConnection> database_;
  Products products_{environment_};
  int expected_dialogs_ = 0;
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
    dialog.ColumnClick(2);  // there is none
    dialog.list().SelectItem(2);
    dialog.DoubleClick();
  });
  EXPECT_EQ(products_.FastList(), L"AB2");
  EXPECT_EQ(environment_.settings()[kPlacement], L"moved");
  EXPECT_EQ(environment_.settings()[kFieldSetting], L"1");
  EXPECT_EQ(environment_.settings()[kTabSetting], L"2");
}

TEST_F(SearchTest, SettingsThatMakeNoSenseAreIgnored) {
  for (const wchar_t* nonsense : {L"3", L"-1", L"x", L"1e99"}) {
    environment_.settings() = {{kFieldSetting, nonsense}, {kTabSetting, nonsense}};
    Answer([](ProductDialog& dialog) {
      EXPECT_EQ(dialog.tab(), Tab::kProducts);
      EXPECT_EQ(dialog.search_field(), Field::kStockCode);
    });
    EXPECT_EQ(products_.FastList(), L"") << nonsense;
  }
}

TEST_F(SearchTest, SpecialRowsStandOnTheFirstPages) {
  products_.details().show_special_prods = true;
  Answer([](ProductDialog& dialog) {
    ListModel& list = dialog.list();
    list.SetPageSize(5);
    EXPECT_EQ(list.row_count(), 8);
    const Texts pages[] = {{L"S1", L"S2", L"S3", L"AA1", L"AB1"},
                           {L"S2", L"S3", L"AB1", L"AB2", L"BX1"},
                           {L"S3", L"AB2", L"BX1", L"CX1", L"CX2"},
                           {L"BX1", L"CX1", L"CX2", L"ZZ"}};
    for (std::int32_t top = 1; top <= 4; ++top) {
      list.ScrollTo(top);
      EXPECT_EQ(Keys(list), pages[top - 1]) << top;
    }
    list.Home();
    EXPECT_EQ(list.rows()[0].color, 16711680u);
    EXPECT_EQ(list.rows()[3].color, dialogs::kDefaultColor);
  });
  EXPECT_EQ(products_.FastList(), L"");
}

TEST_F(SearchTest, WithoutADatabaseTheStockListStillWorks) {
  database_->Close();
  for (const auto& connection : {std::shared_ptr<OdbcConnection>(), database_}) {
    products_.context().database = connection;
    Answer([](ProductDialog& dialog) {
      dialog.TabClick(Tab::kProductInfo);
      EXPECT_TRUE(dialog.list().rows().empty());
      EXPECT_EQ(dialog.list().columns().size(), 2u);
      EXPECT_FALSE(dialog.ok_enabled());
      dialog.TabClick(Tab::kProducts);
      dialog.Ok();
    });
    EXPECT_EQ(products_.List(L"C"), L"CX1");
  }
}

TEST_F(SearchTest, CellsShowTheirValueByTheTypeOfTheField) {
  dialogs::ProductInfo info(products_.context());
  ListModel list(info);
  info.Open(list, L"SELECT * FROM ProdInfoStockFields");
  list.SetRowCount(info.RecordCount());
  EXPECT_EQ(list.columns()[0].header, L"Stock Code");
  EXPECT_EQ(list.columns()[3].header, L"Reviewed");
  EXPECT_EQ(Shown(list), (Texts{L"AB1|Zinc|Yes|2006-10-13|0.5", L"AB2|Brass|No||",
                                L"CX2|Brass|Yes|2026-01-02|12", L"O'B|Anvil 50%|No|2026-01-03|3"}));
}

TEST_F(SearchTest, EveryPageOfTheInformationCostsTheSame) {
  database_->Execute(
      L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 99996)"
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
  });
  EXPECT_EQ(products_.FastList(), L"");
}

}  // namespace
}  // namespace ard::products
