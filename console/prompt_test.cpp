#include "console/prompt.h"

#include <gtest/gtest.h>

#include <sstream>

#include "simulator/testing/company_builder.h"

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
               {"? Nothing.GetName(\"A\")", "There is no member Nothing.GetName."},
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

TEST_F(PromptTest, ShowsADialogAsTextAndObeysItsCommands) {
  const std::string output = Run("? Customers.FastList()\nb\nnonsense\ndown\npgup\nselect 2\n\n");
  EXPECT_NE(output.find("--- Select Customer ---"), std::string::npos);
  EXPECT_NE(output.find(">    2! BCD001"), std::string::npos) << output;
  EXPECT_NE(output.find("There is no command \"nonsense\" here."), std::string::npos);
  EXPECT_NE(output.find("[!] Manufacturing: Account is over credit limit."), std::string::npos);
  EXPECT_EQ(output.substr(output.size() - 9), "\"BCD001\"\n");
  EXPECT_NE(Run("? Customers.FastList()").find("\"\"\n"), std::string::npos);  // the input ends
}

}  // namespace
}  // namespace ard::console
