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

TEST_F(PromptTest, AnswersMembersByName) {
  EXPECT_EQ(Run("? Customers.GetName(\"ABC001\")\n\n' a remark\ncustomers.isvalid( \"abc001\" )\r\n"
                "? Customers.GetName(\"a\"\"b\")\nCustomers.AppName = \"My App\"\n"
                "? Customers.AppName\nquit\n? Customers.AppName"),
            "? Customers.GetName(\"ABC001\")\n\"The \"\"ABC\"\" Café\"\n"
            "customers.isvalid( \"abc001\" )\nTrue\n"
            "? Customers.GetName(\"a\"\"b\")\n\"\"\n"
            "Customers.AppName = \"My App\"\n? Customers.AppName\n\"My App\"\n");
}

TEST_F(PromptTest, NamesWhatIsWrongAndWhere) {
  const struct {
    const char* line;
    const char* error;
  } cases[] = {{"? Customers", "character 12: Expected \".\""},
               {"? Nothing.GetName(\"A\")", "There is no class Nothing. \"help\" lists them."},
               {"? Custmers.GetName", "character 11: There is no class Custmers. Do you mean Cus"},
               {"? customers.getnme", "There is no member Customers.getnme. Do you mean GetName?"},
               {"help Banc.List", "There is no class Banc. Do you mean Bank?"},
               {"help Bank.Lost", "There is no member Bank.Lost. Do you mean List?"},
               {"help Bank List", "Nothing may follow the name."},
               {"? Customers.GetName", "GetName takes 1 argument(s)."},
               {"? Customers.GetName(\"A", "The text does not end."},
               {"? Customers.GetName(A)", "character 21: Expected \"text\""},
               {"? Customers.GetName(\"A\") x", "Nothing may follow the call."},
               {"? Customers.AppName = ", "Expected \"text\""}};
  for (const auto& c : cases) {
    EXPECT_NE(Run(c.line, false).find(c.error), std::string::npos) << Run(c.line, false);
  }
}

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

TEST_F(PromptTest, HelpsByClassWithTypes) {
  const std::string bank =
      "Bank\n  Bank.AppName = String\n  Bank.RegistryPath = String\n"
      "  ? Bank.IsValid(AccRef As String) As Boolean\n  ? Bank.FastList() As String\n"
      "  ? Bank.List(SearchCriteria As String) As String\n";
  EXPECT_EQ(Run("HELP bank\nExit\n? Customers.AppName"), bank);
  const std::string all = Run("Help\nQUIT\n? Customers.AppName");
  EXPECT_NE(all.find('\n' + bank), std::string::npos) << all;
  EXPECT_TRUE(all.ends_with("shows one of them, \"quit\" ends.\n")) << all;
  const char* const members[] = {
      "? cDeliveryAddress.GetAddress([AccRef As String], [AccName As String], [DelType As Long]) "
      "As Boolean\nLets the user pick a delivery address into the properties: True when one was "
      "confirmed; False, and they stay, when cancelled.",
      "? General.GetCategories(LowerBound, UpperBound), CatList As String()\nFills each element "
      "with "
      "its number, three blanks and the stock category of that number; it stays when they cannot "
      "be "
      "read.",
      "? Products.GetAllocOnOrder(ProdCode As String, [Allocated As Double], [OnOrder As Double]), "
      "Allocated As Double, OnOrder As Double\nSets the quantities allocated and on order; both "
      "stay "
      "when the product is not found.",
      "? Products.GetAveragePrice(ProdHeader) As Double\nAverage cost of a unit over what is left "
      "of "
      "the stock record's receipts; 0 when nothing is.",
      "CustomerRecord.DueDays = Integer\nDays within which the settlement discount is given."};
  for (const std::string member : members) {
    const std::size_t name = member.find_first_not_of("? ");
    EXPECT_EQ(Run("help " + member.substr(name, member.find_first_of(" (", name) - name)),
              member + '\n');
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
