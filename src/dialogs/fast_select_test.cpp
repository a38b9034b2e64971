#include "dialogs/fast_select.h"

#include "accounts/ledger_accounts.h"
#include "accounts/nominal_bank.h"
#include "tests/core/company_test.h"

namespace ard::dialogs {
namespace {

using simulator::CompanyBuilder;

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

// Nor is an account taken whose type cannot be read, nor anything from a dialog that is not shown.
TEST_F(FastSelectTest, WhatCannotBeReadIsNotAccepted) {
  CompanyBuilder company;
  Open(company.Nominal(L"1001", L"ACCOUNT_TYPE=1").Bank(L"1200"));
  Pick(accounts::kNominalList, [&](SelectDialog& dialog) {
    EXPECT_TRUE(dialog.ok_enabled());
    int refused = 0;
    for (; dialog.visible(); ++refused) {
      engine_->faults().FailFrom(refused + 1, false);
      dialog.Ok();
    }
    EXPECT_GT(refused, 5);
  });
  Pick(accounts::kBankList, [&](SelectDialog& dialog) {
    const std::int64_t operations = engine_->operations();
    dialog.KeyPress(L' ');
    EXPECT_TRUE(dialog.list().selected());
    EXPECT_EQ(engine_->operations(), operations) << "it looks nothing up";
  });
  simulator::FaultPlan plan;
  plan.FailFrom(1, true);
  environment_.Obey(plan);
  EXPECT_EQ(FastSelect(context_, accounts::kSalesLedger.list), L"");
}

// A refused logon goes back to where it began, and only of a missing page it is said that it is.
TEST_F(FastSelectTest, ARefusedLogonStartsAnew) {
  for (const auto form : {LogonDialog::Form::kUserDetails, LogonDialog::Form::kCompanyPassword}) {
    LogonDialog dialog(context_, form, [](auto&, auto&) { return false; });
    const LogonDialog::Box first = dialog.focus();
    dialog.SetName(L"ANN");
    dialog.Ok();
    EXPECT_EQ(dialog.focus(), first);
    simulator::FaultPlan plan;
    plan.FailFrom(1, true);
    environment_.Obey(plan);
    dialog.HelpClick();
    EXPECT_EQ(dialog.notice(), L"");
  }
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
