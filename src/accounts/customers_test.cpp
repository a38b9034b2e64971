#include "accounts/customers.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "simulator/testing/company_builder.h"
#include "testing/scripted_environment.h"

namespace ard::accounts {
namespace {

using dialogs::SelectDialog;
using simulator::CompanyBuilder;
using simulator::Simulator;
using testing::Message;

constexpr const wchar_t* kOnHold = L"Account is on hold.";
constexpr const wchar_t* kOverLimit = L"Account is over credit limit.";
constexpr const wchar_t* kNoTerms = L"Terms have not been agreed with this account.";

class CustomersTest : public ::testing::Test {
 protected:
  void Open(CompanyBuilder& builder) {
    engine_ = builder.Build();
    customers_.context().workspace = engine_->workspace();
    customers_.context().app_name = L"Manufacturing";
  }
  void OpenUsual(bool terms_warning = true) {
    CompanyBuilder builder;
    builder.Customer(L"ABC001", {{L"NAME", L"  ABC Ltd "}, {L"CONTACT_NAME", L" Ann "}})
        .Customer(L"HOLD", {{L"ACCOUNT_ON_HOLD", true}, {L"NAME", L"Held"}})
        .Customer(L"NOTERMS", {{L"TERMS_AGREED_FLAG", false}})
        .Customer(L"WORST", {{L"ACCOUNT_ON_HOLD", true},
                             {L"BALANCE", 11.0},
                             {L"CREDIT_LIMIT", 10.0},
                             {L"TERMS_AGREED_FLAG", false}})
        .Customer(L"ZERO", {{L"BALANCE", 11.0}, {L"CREDIT_LIMIT", 0.0}})
        .Setup({{L"TERMS_WARNING", terms_warning}});
    Open(builder);
  }
  void TearDown() override {
    if (!engine_) return;
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }
  // Answers the next dialog: selects item `position` and confirms.
  void Choose(std::int32_t position) {
    environment_.Answer([=](SelectDialog& dialog) {
      dialog.list().SelectItem(position);
      dialog.Ok();
    });
  }
  std::wstring Warnings() {
    std::wstring warnings;
    for (const Message& message : environment_.messages()) {
      EXPECT_EQ(message.icon, Icon::kExclamation);
      EXPECT_EQ(message.title, L"Manufacturing");
      warnings += message.text + L"|";
    }
    return warnings;
  }

  testing::ScriptedEnvironment environment_;
  Customers customers_{environment_};
  std::unique_ptr<Simulator> engine_;
};

TEST_F(CustomersTest, LooksAccountsUpExactlyAsGiven) {
  OpenUsual();
  const struct {
    std::wstring acc_ref;
    bool valid;
    std::wstring name;
    std::wstring contact;
  } cases[] = {{L"ABC001", true, L"ABC Ltd", L"Ann"},
               {L"abc001", true, L"ABC Ltd", L"Ann"},  // the engine's key, without regard to case
               {L"ABC001 ", false, L"", L""},
               {L" ABC001", false, L"", L""},
               {L"ABC", false, L"", L""},
               {L"ABC*", false, L"", L""},
               {L"", false, L"", L""},
               {std::wstring(L"ABC001\0", 7), false, L"", L""},
               {std::wstring(1 << 20, L'A'), false, L"", L""},
               {L"\U0001F600", false, L"", L""},
               {std::wstring(1, wchar_t{0xD800}), false, L"", L""}};
  for (const auto& c : cases) {
    EXPECT_EQ(customers_.IsValid(c.acc_ref), c.valid);
    EXPECT_EQ(customers_.GetName(c.acc_ref), c.name);
    EXPECT_EQ(customers_.GetContact(c.acc_ref), c.contact);
  }
}

TEST_F(CustomersTest, AnAccountToWarnAboutIsValidWithoutAMessage) {
  OpenUsual();
  for (const auto* acc_ref : {L"HOLD", L"NOTERMS", L"WORST", L"ZERO"}) {
    EXPECT_TRUE(customers_.IsValid(acc_ref)) << acc_ref;
  }
  EXPECT_TRUE(environment_.messages().empty());
}

TEST_F(CustomersTest, WarnsAboutTheChoiceAndReturnsIt) {
  const std::wstring gap = L"\r\n\r\n";
  const struct {
    std::int32_t position;
    std::wstring acc_ref;
    std::wstring warning;
  } cases[] = {{1, L"ABC001", L""},
               {2, L"HOLD", kOnHold},
               {3, L"NOTERMS", kNoTerms},
               {4, L"WORST", kOnHold + gap + kOverLimit + gap + kNoTerms},
               {5, L"ZERO", L""}};
  std::wstring expected;
  OpenUsual();
  for (const auto& c : cases) {
    Choose(c.position);
    EXPECT_EQ(customers_.FastList(), c.acc_ref);
    if (!c.warning.empty()) expected += c.warning + L"|";
    EXPECT_EQ(Warnings(), expected);
  }
}

TEST_F(CustomersTest, TheTraceTellsWhatTheUserSawAndNoFieldValues) {
  OpenUsual();
  std::string trace;
  environment_.trace().Attach([&](std::string_view line) { (trace += line) += '\n'; });
  Choose(2);
  customers_.FastList();
  customers_.GetName(L"ABC001");
  customers_.GetName(L"NOBODY");
  EXPECT_NE(trace.find("\tmessage\tManufacturing\tAccount is on hold.\n"), std::string::npos);
  EXPECT_NE(trace.find("\tcall\tCustomers.FastList\t"), std::string::npos);
  EXPECT_EQ(trace.find("ABC Ltd"), std::string::npos);
  EXPECT_EQ(trace.find("\tskip\t"), std::string::npos) << trace;
}

TEST_F(CustomersTest, KeepsQuietWhenTheTermsWarningIsOffOrUnreadable) {
  OpenUsual(false);
  Choose(4);
  EXPECT_EQ(customers_.FastList(), L"WORST");
  CompanyBuilder builder;
  builder.Customer(L"A", {{L"ACCOUNT_ON_HOLD", true}}).Without(L"SetupData");
  Open(builder);
  Choose(1);
  EXPECT_EQ(customers_.FastList(), L"A");
  EXPECT_TRUE(environment_.messages().empty());
}

TEST_F(CustomersTest, ListStartsOnTheCriteria) {
  OpenUsual();
  environment_.Answer([](SelectDialog& dialog) { dialog.Ok(); });
  EXPECT_EQ(customers_.List(L"z*"), L"ZERO");
  environment_.Answer([](SelectDialog& dialog) { dialog.Cancel(); });
  EXPECT_EQ(customers_.List(L"z*"), L"");
  EXPECT_TRUE(environment_.messages().empty());
}

// The account can go between the moment it was listed and the moment it is chosen: its row's colour
// and what a blank record says of it are shown all the same, but for the on-hold test.
TEST_F(CustomersTest, AChosenAccountThatCannotBeFoundHasNoTerms) {
  OpenUsual();
  environment_.Answer([&](SelectDialog& dialog) {
    dialog.list().SelectItem(4);
    dialog.Ok();
    customers_.context().workspace = Simulator::OpenSynthetic(0)->workspace();
  });
  EXPECT_EQ(customers_.FastList(), L"WORST");
  EXPECT_EQ(Warnings(), std::wstring(kOverLimit) + L"\r\n\r\n" + kNoTerms + L"|");
}

TEST_F(CustomersTest, AnswersNeutrallyWithoutAWorkspace) {
  EXPECT_FALSE(customers_.IsValid(L"ABC001"));
  EXPECT_EQ(customers_.GetName(L"ABC001"), L"");
  EXPECT_EQ(customers_.GetContact(L"ABC001"), L"");
  EXPECT_EQ(customers_.FastList(), L"");
  EXPECT_EQ(customers_.List(L"A"), L"");
  EXPECT_TRUE(environment_.messages().empty());
}

}  // namespace
}  // namespace ard::accounts
