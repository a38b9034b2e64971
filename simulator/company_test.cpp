#include "simulator/company.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "simulator/company_error.h"
#include "simulator/shared_file.h"
#include "simulator/simulator.h"
#include "simulator/table_text.h"
#include "tests/core/temporary_folder.h"

namespace ard::simulator {
namespace {

namespace fs = std::filesystem;

class CompanyTest : public ::testing::Test {
 protected:
  static void Write(const fs::path& file, const std::string& text) { std::ofstream(file) << text; }

  // What is wrong with the company; "" for nothing.
  std::string Problem(const fs::path& folder) const {
    try {
      Simulator::Open(folder);
      return {};
    } catch (const CompanyError& error) {
      const std::string text = error.what();
      const std::string path = folder_.string();
      return text.starts_with(path) ? "FOLDER" + text.substr(path.size()) : text;
    }
  }

  testing::TemporaryFolder folder_;
};

// Those of files as company_problems.txt has them.
TEST_F(CompanyTest, SaysWhatIsWrongAndWhere) {
  const fs::path company = folder_ / "company";
  const char* const kNone =
      "FOLDER/company: there is no company here: no table, such as SalesData.table";
  EXPECT_EQ(Problem(company), "FOLDER/company: No such file or directory");
  Write(company, "");
  EXPECT_EQ(Problem(company), "FOLDER/company: Not a directory");
  fs::remove(company);
  fs::create_directory(company);
  EXPECT_EQ(Problem(company), kNone);
  std::ifstream cases(ARD_PROBLEMS);
  std::string line, problem;
  for (std::getline(cases, line); std::getline(cases, line) && std::getline(cases, problem);) {
    const std::size_t equals = line.find(" = ");
    std::string text = line.substr(equals + 3);
    std::ranges::replace(text, '|', '\n');
    std::ranges::replace(text, '>', '\t');
    Write(company / line.substr(0, equals), text);
    EXPECT_EQ("  " + Problem(company), problem) << line;
    fs::remove(company / line.substr(0, equals));
  }
  EXPECT_TRUE(cases.eof() && problem.ends_with("line 2"));
  const fs::path sales = company / "SalesData.table";
  Write(sales, "ACCOUNT_REF:text(4)\n\nA\n\u00E9\xFF\n");
  EXPECT_EQ(Problem(company), "SalesData.table:4:2: this is not UTF-8");
  fs::remove(sales);
  mkfifo(sales.c_str(), 0600);
  EXPECT_EQ(Problem(company), "SalesData.table: Is no regular file");
  fs::remove(sales);
  fs::remove(company / "company.lock");
  fs::create_directory(company / "company.lock");
  Write(sales, "ACCOUNT_REF:text(4)\n");
  EXPECT_EQ(Problem(company), "FOLDER/company: company.lock: Is a directory");
}

// Who may not write there opens it, too; but nothing is made.
TEST_F(CompanyTest, ATableIsEnough) {
  Write(folder_ / "SalesData.table", "ACCOUNT_REF:text(4)\nA\nB\n");
  for (const char* other : {"SalesData.table~", "StockData.table.new", "notes.table.txt"}) {
    Write(folder_ / other, "none");
  }
  const auto open = [&] {
    const auto engine = Simulator::Open(folder_);
    const auto control = engine->workspace()->CreateDataFile(L"ControlData");
    return control->Open(engine::Mode::kRead) && control->Read(1) && control->Count() == 1 &&
           control->GetFields()->Item(L"NO_OF_SALES")->GetValue() == Value(2) &&
           control->GetFields()->Item(L"NO_OF_STOCK")->GetValue() == Value(0);
  };
  constexpr auto kNobodyWrites = static_cast<fs::perms>(0555);
  fs::permissions(folder_, kNobodyWrites);
  const pid_t reader = fork();
  if (reader == 0) _exit((geteuid() != 0 || seteuid(65534) == 0) && open() ? 0 : 1);
  int status = -1;
  waitpid(reader, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(fs::exists(folder_ / "company.lock") || fs::exists(folder_ / "queue.dta"));
  fs::permissions(folder_, fs::perms::owner_all);
  EXPECT_TRUE(open());
  EXPECT_NO_THROW(TryToRead((folder_ / "queue.dta").wstring()));
}

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
