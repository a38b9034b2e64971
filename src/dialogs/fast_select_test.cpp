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

TEST_F(FastSelectTest, AnEmptyListSaysWhyAndCanOnlyBeClosed) {
  CompanyBuilder empty;
  Open(empty);
  Pick(accounts::kSalesLedger.list, [&](SelectDialog& dialog) {
    EXPECT_EQ(dialog.list().WhyEmpty(), L"There are no customers.");
  });
  context_.workspace = nullptr;
  const auto nothing = [](SelectDialog& dialog) {
    EXPECT_EQ(dialog.list().WhyEmpty(), L"The list could not be read.");
    EXPECT_TRUE(dialog.list().rows().empty());
    dialog.KeyPress(L'A');
    dialog.KeyPress(kEnterKey);
    EXPECT_TRUE(dialog.visible());
  };
  EXPECT_EQ(Pick(accounts::kSalesLedger.list, nothing, L"A*"), L"");
}

// It stays, or goes to what was looked for; nowhere else.
TEST_F(FastSelectTest, ALookUpThatFailsLeavesTheSelection) {
  CompanyBuilder company;
  for (const wchar_t* ref : {L"A", L"B", L"C", L"D"}) company.Customer(ref);
  Open(company);
  Pick(accounts::kSalesLedger.list, [&](SelectDialog& dialog) {
    for (std::int64_t n = 1; n < 10; ++n) {
      dialog.list().SelectItem(3);
      dialog.list().rows();
      engine_->faults().FailFrom(n, false);
      dialog.KeyPress(L'D');
      engine_->faults().Reset();
      const std::wstring at = Keys(dialog.list())
                                  .at(static_cast<std::size_t>(dialog.list().selected()->position -
                                                               dialog.list().top()));
      EXPECT_TRUE(at == L"C" || at == L"D") << n << ToUtf8(at);
    }
  });
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
