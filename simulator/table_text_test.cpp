#include "simulator/table_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/company.h"
#include "simulator/company_error.h"

namespace ard::simulator {
namespace {

TEST(TableTextTest, ReadsEveryTypeAndRemembersEveryLine) {
  const std::string text =
      "\xEF\xBB\xBF# Made up\r\n"
      "REF:text(8)\tB:boolean\tI8:integer8\tI16:integer16\tL:long\tD:double\tC:currency\tW:date\r\n"
      "\r\n"
      "  Aé\\t\\n\\\\\\s\\s\tyes\t255\t-32768\t 7 \t-1.5e3\t-0.0625\t2026-02-28\r\n"
      "# second\r\n"
      "\\#B\t\t\t\t\t\t\t\r\n";
  const TableText table = ParseTable(text, "T.table");
  EXPECT_EQ(table.lines.Text(), text);
  EXPECT_EQ(table.header_line, 2);
  ASSERT_EQ(table.rows.size(), 2u);
  const Row first = {L"  A\u00E9\t\n\\",   true,       std::uint8_t{255},
                     std::int16_t{-32768}, 7,          -1500.0,
                     Currency{-625},       Date{46081}};
  EXPECT_EQ(table.rows[0], first);
  EXPECT_EQ(table.rows[1], (Row{L"#B", {}, {}, {}, {}, {}, {}, {}}));
  EXPECT_EQ(FormatRow(table.columns, first),
            "  Aé\\t\\n\\\\\tyes\t255\t-32768\t7\t-1500\t-0.0625\t2026-02-28");
  EXPECT_EQ(FormatRow(table.columns, table.rows[1]), table.lines[5]);
  EXPECT_TRUE(ParseTable("T:text(9)\n\r\r", "").rows.empty()) << "an end of a line, and no text";
}

TEST(TableTextTest, SaysWhereAndWhatIsWrong) {
  const std::string header = "ACCOUNT_REF:text(4)\tAGE:integer16\tON:boolean\n";
  const std::string key = "ACCOUNT_REF:text(4)\n";
  const struct {
    std::string text;
    int line, column;
    std::string problem;
  } cases[] = {
      {"", 1, 1, "there is no header"},
      {"ACCOUNT_REF\n", 1, 1, "is no column"},
      {"ACCOUNT_REF:string\n", 1, 13, "\"string\" is no type"},
      {"ACCOUNT_REF:text(32768)\n", 1, 13, "is no type"},
      {"ACCOUNT_REF:text(4)\taccount_ref:long\n", 1, 21, "two columns"},
      {"NAME:text(4)\n", 1, 1, "ACCOUNT_REF is missing"},
      {"# c\nACCOUNT_REF:double\n", 2, 1, "ACCOUNT_REF is the key"},
      {header + "A\t1\n", 2, 4, "2 cells, the header has 3"},
      {header + "é\t32768\tno\n", 2, 3, "whole number from -32768 to 32767, not \"32768\""},
      {header + "A\t1\tYES\n", 2, 5, "ON takes yes or no"},
      {header + "ABCDE\t1\tno\n", 2, 1, "holds 4 characters, this text has 5"},
      {header + "A\\x\t1\tno\n", 2, 2, "followed by"},
      {header + "A\t1\tno\n\n\xC3\xA9\xFF\t1\tno\n", 4, 2, "not UTF-8"},
      {key + "A\n# c\na \n", 4, 1, "that of an earlier record"},
      {key + "\\s\n", 2, 1, "key is blank"},
      {"ACCOUNT_REF:text(4)\tD:date\nA\t2026-02-29\n", 2, 3, "D takes a date"},
      {"ACCOUNT_REF:text(4)\tD:double\nA\tinf\n", 2, 3, "D takes a number"},
      {"ACCOUNT_REF:text(4)\tC:currency\nA\t1.00001\n", 2, 3, "C takes an amount"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    try {
      Company().Parse(L"SalesData", c.text, "SalesData.table");
      ADD_FAILURE() << "no error";
    } catch (const CompanyError& error) {
      EXPECT_EQ(error.line(), c.line);
      EXPECT_EQ(error.column(), c.column);
      EXPECT_NE(error.problem().find(c.problem), std::string::npos) << error.problem();
      EXPECT_EQ(std::string(error.what()).find("SalesData.table:"), 0u);
    }
  }
}

}  // namespace
}  // namespace ard::simulator
