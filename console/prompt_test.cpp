#include "console/prompt.h"

#include <gtest/gtest.h>

#include <sstream>

#include "simulator/testing/company_builder.h"

namespace ard::console {
namespace {

using Words = std::vector<std::string>;

class PromptTest : public ::testing::Test {
 protected:
  std::stringstream in_, out_;
  const std::shared_ptr<simulator::Simulator> engine_ = simulator::CompanyBuilder().Build();
  Prompt prompt_{in_, out_, {engine_->workspace(), nullptr}};
};

TEST_F(PromptTest, RepeatsNoPassword) {
  in_ << "? Messaging.LogonUser(\"BOB\", \"Secret\")\nmessaging . PASSLOGGED = \"Secret\"\n"
         "? Customers.FastList\n PASSWORD Secret\n  password Secret\ncancel\nPassword Secret";
  EXPECT_FALSE(prompt_.Run(false)) << "there is no such command";
  Words repeated;
  for (std::string line; std::getline(out_, line);) {
    EXPECT_EQ(line.find("Secret"), line.npos) << line;
    if (line.find("...") != line.npos) repeated.push_back(line);
  }
  EXPECT_EQ(repeated, (Words{"? Messaging.LogonUser...", "messaging . PASSLOGGED...",
                             "0 rows, Cancel (? helps)  PASSWORD...",
                             "There is no command \"PASSWORD...\" here.",
                             "0 rows, Cancel (? helps)   password...",
                             "There is no command \"password...\" here.", "Password..."}));
}

TEST_F(PromptTest, CompletesClassesAndMembers) {
  EXPECT_EQ(prompt_.Completions("cust"), (Words{"CustomerRecord.", "Customers."}));
  EXPECT_EQ(prompt_.Completions("bank.l"), Words{"Bank.List("});
  EXPECT_EQ(prompt_.Completions("Customers.A"), Words{"Customers.AppName"});
  EXPECT_EQ(prompt_.Completions("Bank.x"), Words());
}

}  // namespace
}  // namespace ard::console
