#include "simulator/table_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

}  // namespace
}  // namespace ard::simulator
