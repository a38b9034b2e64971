#include "dialogs/fast_select.h"

#include "accounts/ledger_accounts.h"
#include "tests/core/company_test.h"

namespace ard::dialogs {
namespace {

using simulator::CompanyBuilder;
using testing::Texts;

class FastSelectTest : public testing::CompanyTest {
 protected:
  void Open(CompanyBuilder& company) {
    CompanyTest::Open(company);
    Use(context_);
  }

  // Shows the form; `script` sees the dialog. Returns the picked reference.
  std::wstring Pick(const FastSelectForm& form, testing::ScriptedEnvironment::Script script,
                    std::optional<std::wstring_view> criteria = std::nullopt) {
    environment_.Answer(std::move(script));
    return FastSelect(context_, form, criteria);
  }

  Context context_{environment_};
};

TEST_F(FastSelectTest, CriteriaPutTheMatchNearTheTopOfThePage) {
  CompanyBuilder builder;
  for (int i = 100; i < 200; ++i) builder.Customer(L"C" + std::to_wstring(i));
  Open(builder);
  const struct {
    const wchar_t* criteria;
    const wchar_t* selected;
    std::int32_t top;
  } cases[] = {{L"C130", L"C130", 31},  // exact
               {L"c14*", L"C140", 41},  // a pattern
               {L"C187", L"C187", 88},  // the last with a row twelve further down
               {L"C188", L"C188", 77},
               {L"ZZZ*", L"C100", 1},  // no match: where a file stands when just opened
               {L"", L"C100", 1}};
  for (const auto& c : cases) {
    const auto look = [&](SelectDialog& dialog) {
      EXPECT_EQ(Selected(dialog.list()), c.selected) << c.criteria;
      EXPECT_EQ(dialog.list().top(), c.top) << c.criteria;
    };
    Pick(accounts::kSalesLedger.list, look, c.criteria);
  }
}

TEST_F(FastSelectTest, TheRowCountIsTheCompanysWhateverTheFileHolds) {
  const struct {
    std::int32_t count;
    std::size_t rows;
    const wchar_t* missing = L"StockData";
    const wchar_t* why_empty = L"The list could not be read.";
  } cases[] = {{0, 0, L"StockData", L"There are no customers."},
               {2, 2, L"StockData", L""},
               {50, 3, L"StockData", L""},
               {0, 0, L"ControlData"},
               {3, 0, L"SalesData"}};
  for (const auto& c : cases) {
    CompanyBuilder builder;
    builder.Customer(L"A1").Customer(L"A2").Customer(L"A3");
    Open(builder.Control({{L"NO_OF_SALES", c.count}}).Without(c.missing));
    Pick(accounts::kSalesLedger.list, [&](SelectDialog& dialog) {
      EXPECT_EQ(dialog.list().row_count(), c.count);
      EXPECT_EQ(dialog.list().rows().size(), c.rows);
      EXPECT_EQ(dialog.ok_enabled(), c.rows > 0);
      EXPECT_EQ(dialog.list().WhyEmpty(), c.why_empty);
    });
  }
  context_.workspace = nullptr;
  const auto nothing = [](SelectDialog& dialog) {
    EXPECT_TRUE(dialog.list().rows().empty());
    dialog.KeyPress(L'A');
    dialog.KeyPress(kEnterKey);
    EXPECT_TRUE(dialog.visible());
  };
  EXPECT_EQ(Pick(accounts::kSalesLedger.list, nothing, L"A*"), L"");
}

// A ledger of any size opens alike: nothing is read before the first page, then one page.
TEST_F(FastSelectTest, OpeningCostsTheSameWhateverTheLedgersSize) {
  std::vector<std::int64_t> operations;
  for (const std::int32_t accounts : {1'000, 1'000'000, 10'000'000}) {
    engine_ = simulator::Simulator::OpenSynthetic(accounts);
    context_.workspace = engine_->workspace();
    Pick(accounts::kSalesLedger.list, [&](SelectDialog& dialog) {
      EXPECT_EQ(dialog.list().row_count(), accounts);
      dialog.list().SetPageSize(20);
      EXPECT_EQ(engine_->records_read(), 1);  // ControlData's
      for (int i = 0; i < 2; ++i) dialog.list().rows();
      EXPECT_EQ(engine_->records_read(), 1 + 20);
      operations.push_back(engine_->operations());
      dialog.list().End();
      EXPECT_EQ(engine_->records_read(), 1 + 20 + 20);
    });
  }
  EXPECT_EQ(operations, std::vector<std::int64_t>(3, operations.front()));
}

}  // namespace
}  // namespace ard::dialogs
