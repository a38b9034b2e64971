// The product lists, with the dialog's model, over a real database.
#include "dialogs/product_dialog.h"
#include "host_database/odbc_connection.h"
#include "products/products.h"
#include "tests/core/company_test.h"

namespace ard::products {
namespace {

using dialogs::ListModel;
using dialogs::Pick;
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
  void Answer(testing::ScriptedEnvironment::ProductScript script) {
    environment_.AnswerProducts(std::move(script));
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

TEST_F(SearchTest, OffersBothListsAndReturnsFromTheOneInFront) {
  Answer([](ProductDialog& dialog) {
    EXPECT_EQ(dialog.tab(), Tab::kProducts);
    EXPECT_EQ(Keys(dialog.list()), (Texts{L"AA1", L"AB1", L"AB2", L"BX1", L"CX1", L"CX2", L"ZZ"}));
    EXPECT_EQ(Selected(dialog.list()), L"AA1");
    EXPECT_EQ(Shown(dialog.info_list()),
              (Texts{L"AB1|Zinc", L"AB2|Brass", L"CX2|Brass", L"O'B|Anvil 50%"}));
    dialog.KeyPress(L'c');
    EXPECT_EQ(Selected(dialog.list()), L"CX1");
    dialog.KeyPress(dialogs::kEnterKey);
    EXPECT_EQ(std::exchange(dialog.placement, L"moved"), L"as before");
  });
  environment_.settings()[kPlacement] = L"as before";
  EXPECT_EQ(products_.FastList(), L"CX1");
  EXPECT_EQ(environment_.settings()[kPlacement], L"moved");
  EXPECT_EQ(environment_.settings()[kFieldSetting], L"0");
  EXPECT_EQ(environment_.settings()[kTabSetting], L"1");

  Answer([](ProductDialog& dialog) {
    dialog.TabClick(Tab::kProductInfo);
    EXPECT_FALSE(dialog.ok_enabled());
    dialog.KeyPress(L'c');  // no type-ahead here
    EXPECT_EQ(Selected(dialog.list()), L"-");
    dialog.SearchFieldChange(Field::kDescription);
    dialog.list().SelectItem(2);
    dialog.DoubleClick();
  });
  EXPECT_EQ(products_.FastList(), L"AB2");
  EXPECT_EQ(environment_.settings()[kFieldSetting], L"1");
  EXPECT_EQ(environment_.settings()[kTabSetting], L"2");

  // What was remembered is honoured; a cancelled dialog remembers nothing.
  Answer([](ProductDialog& dialog) {
    EXPECT_EQ(dialog.tab(), Tab::kProductInfo);
    EXPECT_EQ(dialog.search_field(), Field::kDescription);
    dialog.TabClick(Tab::kProducts);
    dialog.Cancel();
  });
  EXPECT_EQ(products_.FastList(), L"");
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

TEST_F(SearchTest, WithoutProductInformationThereIsOnePage) {
  environment_.settings()[kTabSetting] = L"2";
  products_.context().database = nullptr;
  Answer([](ProductDialog& dialog) {
    EXPECT_FALSE(dialog.has_product_info());
    dialog.TabClick(Tab::kProductInfo);
    EXPECT_EQ(dialog.tab(), Tab::kProducts);
    dialog.Ok();
  });
  EXPECT_EQ(products_.List(L"AB", false), L"AB1");
  EXPECT_EQ(environment_.settings()[kTabSetting], L"1");
}

TEST_F(SearchTest, CriteriaPositionOneListAndFilterTheOther) {
  Answer([](ProductDialog& dialog) {
    EXPECT_EQ(Selected(dialog.stock_list()), L"AB1");
    EXPECT_EQ(Keys(dialog.info_list()), (Texts{L"AB1", L"AB2"}));
    EXPECT_EQ(dialog.search_text(), L"AB");
    dialog.Ok();
  });
  EXPECT_EQ(products_.List(L"AB"), L"AB1");

  Answer([](ProductDialog& dialog) { EXPECT_EQ(dialog.info_list().row_count(), 4); });
  EXPECT_EQ(products_.List(L"  "), L"");
}

TEST_F(SearchTest, SearchesAsTypedAndAgainWhenTheFieldChanges) {
  Answer([&](ProductDialog& dialog) {
    dialog.TabClick(Tab::kProductInfo);
    for (const auto& [text, found] : {std::pair(L"ab", 2),
                                      {L"%B", 3},
                                      {L"' OR 1=1 --", 3},
                                      {L"_B2", 1},
                                      {L"A?", 0},
                                      {L"*2", 2},
                                      {L"a*", 2},
                                      {L"o'b", 2},
                                      {L"o''b", 1}}) {
      dialog.SearchTextChange(text);
      dialog.SearchClick();
      EXPECT_EQ(dialog.list().row_count(), found) << text;
      EXPECT_EQ(dialog.search_text(), text);
    }
    dialog.SearchTextChange(L"  ");
    dialog.SearchFieldChange(Field::kStockCode);  // nothing to search for: as the clear button
    EXPECT_EQ(dialog.search_text(), L"");
    EXPECT_EQ(dialog.list().row_count(), 4);
    dialog.SearchTextChange(L"zinc");
    dialog.SearchFieldChange(Field::kDescription);  // repeats the search at once
    EXPECT_EQ(Keys(dialog.list()), (Texts{L"AB1"}));
    dialog.ClearClick();
    dialog.ColumnClick(1);
    EXPECT_EQ(Keys(dialog.list()), (Texts{L"O'B", L"AB2", L"CX2", L"AB1"}));
    EXPECT_EQ(dialog.list().columns()[1].sort, dialogs::SortOrder::kAscending);
    EXPECT_EQ(Selected(dialog.list()), L"O'B");
    dialog.ColumnClick(1);
    dialog.ColumnClick(2);  // there is none
    EXPECT_EQ(Keys(dialog.list()), (Texts{L"AB1", L"AB2", L"CX2", L"O'B"}));
    EXPECT_EQ(dialog.list().columns()[1].sort, dialogs::SortOrder::kDescending);
  });
  EXPECT_EQ(products_.FastList(), L"");
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
    const Texts rows = Shown(list);
    EXPECT_EQ(Texts(rows.begin(), rows.begin() + 3),
              (Texts{L"S1|Special Product Item, Tax chargeable",
                     L"S2|Special Product Item, Tax zero rated",
                     L"S3|Special Service Item, Tax chargeable"}));
    EXPECT_EQ(list.rows()[0].color, 16711680u);
    EXPECT_EQ(list.rows()[3].color, dialogs::kDefaultColor);
    // Every row can be reached by the arrow keys alone.
    std::wstring walked;
    for (int i = 0; i < 10; ++i, list.LineDown()) walked += Selected(list) + L" ";
    EXPECT_EQ(walked, L"S1 S2 S3 AA1 AB1 AB2 BX1 CX1 CX2 ZZ ");
    list.Home();
    list.LineDown();
    dialog.Ok();
  });
  EXPECT_EQ(products_.FastList(), L"S2");
}

TEST_F(SearchTest, SeveralProductsComeInTheOrderOfTheList) {
  Answer([](ProductDialog& dialog) {
    ListModel& list = dialog.list();
    list.SetPageSize(3);
    EXPECT_EQ(Selected(list), L"AB1");
    list.End(Pick::kNone);
    list.Toggle();
    list.SelectRow(0, Pick::kToggle);
    dialog.Ok();
  });
  // The top of the last page is the fifth of them.
  EXPECT_EQ(products_.ListMultipleSelect(L"AB"), L";AB1;CX2;ZZ;");
  Answer([](ProductDialog& dialog) {
    dialog.TabClick(Tab::kProductInfo);
    dialog.list().SelectRow(0);
    dialog.list().LineDown(Pick::kExtend);
    dialog.Ok();
  });
  EXPECT_EQ(products_.ListMultipleSelect(L"AB"), L";AB1;AB2;");

  CompanyBuilder company;
  Open(company.Product(L"C3").Product(L" A1").Product(L"B2"), products_);
  Answer([](ProductDialog& dialog) {
    dialog.TabClick(Tab::kProducts);
    dialog.list().End(Pick::kExtend);
    dialog.Ok();
  });
  EXPECT_EQ(products_.ListMultipleSelect(L""), L";A1;B2;C3;");
  products_.details().show_special_prods = true;
  Answer([](ProductDialog& dialog) {
    ListModel& list = dialog.list();
    list.SelectRow(2);
    list.LineDown(Pick::kExtend);
    std::wstring picked;
    for (const Row& row : list.SelectedRows()) picked += row.Cell(1);
    EXPECT_EQ(Trimmed(picked), L"S3 A1");
    list.Toggle();
    list.LineUp(Pick::kNone);
    EXPECT_TRUE(dialog.ok_enabled());
    list.Toggle();
    EXPECT_FALSE(dialog.ok_enabled());
    dialog.Ok();
    EXPECT_TRUE(dialog.visible());
  });
  EXPECT_EQ(products_.ListMultipleSelect(L""), L"");
}

TEST_F(SearchTest, WithoutADatabaseTheStockListStillWorks) {
  const auto closed = std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  closed->Close();
  const auto without_table = std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  for (const auto& connection : {std::shared_ptr<OdbcConnection>(), closed, without_table}) {
    products_.context().database = connection;
    Answer([](ProductDialog& dialog) {
      dialog.TabClick(Tab::kProductInfo);
      dialog.SearchTextChange(L"AB");
      dialog.SearchClick();
      dialog.ColumnClick(0);
      EXPECT_TRUE(dialog.list().rows().empty());
      EXPECT_EQ(dialog.list().columns().size(), 2u);
      EXPECT_EQ(dialog.list().columns()[0].sort, dialogs::SortOrder::kNone);
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
