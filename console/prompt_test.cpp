#include "console/prompt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "simulator/testing/company_builder.h"
#include "tests/core/temporary_folder.h"

namespace ard::console {
namespace {

class PromptTest : public ::testing::Test {
 protected:
  PromptTest() {
    simulator::CompanyBuilder company;
    company.Customer(L"ABC001", L"NAME=The \"ABC\" Café")
        .Customer(L"BCD001", L"BALANCE=2|CREDIT_LIMIT=1");
    engine_ = company.Build();
  }

  // The output of a run over these lines.
  std::string Run(const std::string& lines, bool good = true) {
    std::istringstream in(lines);
    std::ostringstream out;
    Prompt prompt(in, out, {engine_->workspace(), nullptr});
    EXPECT_EQ(prompt.Run(false), good);
    EXPECT_EQ(engine_->counters().open_files, 0);
    return out.str();
  }

  std::unique_ptr<simulator::Simulator> engine_;
};

TEST_F(PromptTest, RepeatsNoPassword) {
  std::string output =
      Run("? Messaging.LogonUser(\"BOB\", \"Secret\")\nmessaging . PASSLOGGED = \"Secret\"\n"
          "? Customers.FastList\n PASSWORD Secret\n  password Secret\ncancel\n");
  output += Run("Password Secret", false);
  EXPECT_EQ(output.find("Secret"), std::string::npos) << output;
  for (const char* repeated :
       {"? Messaging.LogonUser...\n", "\nmessaging . PASSLOGGED...\n", "(? helps)  PASSWORD...\n",
        "There is no command \"PASSWORD...\" here.\n", "(? helps)   password...\n",
        "\"\"\nPassword...\n"}) {
    EXPECT_NE(output.find(repeated), std::string::npos) << repeated << output;
  }
}

TEST_F(PromptTest, CompletesClassesAndMembers) {
  std::istringstream in;
  std::ostringstream out;
  const Prompt prompt(in, out, {engine_->workspace(), nullptr});
  using Words = std::vector<std::string>;
  EXPECT_EQ(prompt.Completions("cust"), (Words{"CustomerRecord.", "Customers."}));
  EXPECT_EQ(prompt.Completions("bank.l"), Words{"Bank.List("});
  EXPECT_EQ(prompt.Completions("Customers.A"), Words{"Customers.AppName"});
  EXPECT_EQ(prompt.Completions("Bank.x"), Words());
}

// The commands up to that of the prompt, and then what is typed there and what it answers.
TEST(DocumentTest, TheSmallestCompanyIsMadeAsItSays) {
  std::ifstream file(ARD_SIMULATOR_DOCUMENT);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  text.erase(0, text.find("```\n", text.find("**The smallest company**")) + 4);
  text.resize(text.find("```"));
  const std::string prompt = "ard_console shop\n";
  const std::size_t start = text.find(prompt);
  ASSERT_NE(start, text.npos);
  namespace fs = std::filesystem;
  const fs::path before = fs::current_path();
  const testing::TemporaryFolder folder;
  fs::current_path(folder);
  EXPECT_EQ(std::system(text.substr(0, start).c_str()), 0);

  const std::string session =
      std::regex_replace(text.substr(start + prompt.size()), std::regex("(^|\n)> "), "$1");
  const std::shared_ptr<simulator::Simulator> engine = simulator::Simulator::Open("shop");
  std::istringstream in(std::regex_replace(session, std::regex("(^|\n)[^?\n][^\n]*"), ""));
  std::ostringstream out;
  EXPECT_TRUE(Prompt(in, out, {engine->workspace(), nullptr, engine, L"shop"}).Run(false));
  // What is typed is repeated, but for passwords.
  EXPECT_EQ(out.str(), std::regex_replace(session, std::regex("LogonUser.*"), "LogonUser..."));
  EXPECT_EQ(std::count(session.begin(), session.end(), '\n'), 6);
  fs::current_path(before);
}

}  // namespace
}  // namespace ard::console
