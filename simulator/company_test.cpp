#include "simulator/company.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "simulator/company_error.h"
#include "simulator/shared_file.h"
#include "simulator/simulator.h"
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

// Other ways to make a file.
void Folder(const fs::path& file, const std::string&) { fs::create_directory(file); }
void Pipe(const fs::path& file, const std::string&) { mkfifo(file.c_str(), 0600); }

TEST_F(CompanyTest, SaysWhatIsWrongAndWhere) {
  const std::string key = "ACCOUNT_REF:text(4)\n";
  const std::string header = "ACCOUNT_REF:text(4)\tAGE:integer16\tON:boolean\n";
  const std::string price = "TYPE:integer8\tEXT_REF:text(4)\tSTOCK_CODE:text(4)\n";
  const auto cell = [](const std::string& type, const std::string& text) {
    return "ACCOUNT_REF:text(4)\tX:" + type + "\nA\t" + text + "\n";
  };
  const char* const kSales = "SalesData.table";
  const std::string no_type =
      " is no type: text(length from 1 to 32767), boolean, integer8, integer16, long, double, "
      "currency and date are";
  const std::string no_header =
      "1: there is no header: a line of NAME:type columns, separated by TABs";
  const char* const kNone =
      "FOLDER/company: there is no company here: no table, such as SalesData.table";
  const struct {
    const char* file;
    std::string text;
    std::string problem;
    void (*make)(const fs::path&, const std::string&) = Write;
  } cases[] = {
      // The folder.
      {"", "", "FOLDER/company: No such file or directory", [](auto&, auto&) {}},
      {"", "", kNone, Folder},
      {"", key, "FOLDER/company: Not a directory"},
      {"notes.txt", key, kNone},
      {"BankData.table.new", "ACCOUNT_REF:te", kNone},
      {"salesdata.table", key, "salesdata.table: a table has to be named like SalesData.table"},
      {"SaleData.table", key, "SaleData.table: the engine has no data file of this name"},
      {kSales, "", "SalesData.table: Is no regular file", Pipe},
      {"company.lock", key, "FOLDER/company: company.lock: Is a directory",
       [](auto& file, auto& text) {
         fs::create_directory(file);
         Write(file.parent_path() / "SalesData.table", text);
       }},
      // The header.
      {kSales, "# SalesData\n\n", "3:" + no_header},
      {kSales, "ACCOUNT-REF:text(4)\n",
       "1:1: \"ACCOUNT-REF:text(4)\" is no column: NAME:type is wanted, with letters, digits and "
       "_"},
      {kSales, "ACCOUNT_REF:text(32768)\n", "1:13: \"text(32768)\"" + no_type},
      {kSales, "ACCOUNT_REF:text(4)\taccount_ref:long\n",
       "1:21: there are two columns of the name account_ref"},
      {kSales, "NAME:text(4)\n", "1:1: the column ACCOUNT_REF is missing: it is the key"},
      {kSales, "# c\nACCOUNT_REF:double\n",
       "2:1: ACCOUNT_REF is the key: it has to be text or a whole number"},
      // The records.
      {kSales, header + "A\t1\n", "2:4: this record has 2 cells, the header has 3"},
      {kSales, header + "\u00E9\t32768\tno\n",
       "2:3: AGE takes a whole number from -32768 to 32767, not \"32768\""},
      {kSales, header + "A\t1\tYES\n", "2:5: ON takes yes or no, not \"YES\""},
      {kSales, header + "ABCDE\t1\tno\n", "2:1: ACCOUNT_REF holds 4 characters, this text has 5"},
      {kSales, header + "A\\x\t1\tno\n", "2:2: \\ has to be followed by t, n, r, s, # or \\"},
      {kSales, header + "A\t1\tno\n\n\u00E9\xFF\t1\tno\n", "4:2: this is not UTF-8"},
      {kSales, cell("integer8", "-1"), "2:3: X takes a whole number from 0 to 255, not \"-1\""},
      {kSales, cell("long", "2147483648"),
       "2:3: X takes a whole number from -2147483648 to 2147483647, not \"2147483648\""},
      {kSales, cell("double", "lots"), "2:3: X takes a number, such as 1250.5, not \"lots\""},
      {kSales, cell("currency", "1.00001"),
       "2:3: X takes an amount with at most four decimals, not \"1.00001\""},
      {kSales, cell("date", "2026-02-29"),
       "2:3: X takes a date, such as 2026-11-21, not \"2026-02-29\""},
      {kSales, key + "\\s\n", "2:1: the key is blank"},
      {kSales, key + "A\n# c\na \n", "4:1: the key \"a \" is that of line 2"},
      {"PriceData.table", price + "83\tABC\tNUT\n83\tABC\tBOLT\n83\tabc\tnut\n",
       "4:1: the key \"83\", \"abc\", \"nut\" is that of line 2"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file + std::string(": ") + c.text);
    const fs::path company = folder_ / "company";
    if (*c.file != '\0') fs::create_directory(company);
    c.make(*c.file == '\0' ? company : company / c.file, c.text);
    const bool placed = c.problem.front() >= '0' && c.problem.front() <= '9';
    EXPECT_EQ(Problem(company), placed ? c.file + (":" + c.problem) : c.problem);
    fs::remove_all(company);
  }
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

}  // namespace
}  // namespace ard::simulator
