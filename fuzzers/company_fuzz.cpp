// The reader of company files: any bytes are a table or an error that tells the place, and what a
// table is written as reads the same.
#include <algorithm>
#include <string>
#include <string_view>

#include "frame/error.h"
#include "fuzzers/support_fuzz.h"
#include "simulator/company.h"
#include "simulator/company_error.h"
#include "simulator/table_text.h"

namespace ard::fuzz {
namespace {

using simulator::Company;
using simulator::CompanyError;
using simulator::ParseTable;
using simulator::Row;
using simulator::TableText;

// Keys of every kind: text, a number, several fields, none.
constexpr std::wstring_view kTables[] = {L"SalesData", L"SopData", L"PriceData", L"SetupData"};
constexpr char kFile[] = "Some.table";

void CheckError(const CompanyError& error, const std::string& bytes) {
  const std::string place = std::string(kFile) + ":" + std::to_string(error.line()) + ":" +
                            std::to_string(error.column()) + ": ";
  Require(error.file() == kFile && std::string(error.what()) == (place + error.problem()).c_str(),
          "a place", error.what());
  Require(!error.problem().empty(), "a problem", error.what());
  const simulator::TableLines lines(bytes);
  const auto line = static_cast<std::size_t>(error.line());
  Require(line >= 1 && line <= lines.size() + 1, "a line of the file", error.what());
  const std::size_t length = line <= lines.size() ? lines[line - 1].size() : 0;
  Require(error.column() >= 1 && static_cast<std::size_t>(error.column()) <= length + 1,
          "a column of the line", error.what());
}

// Every record stored anew is in the same line, and nothing else has changed.
void CheckWriting(TableText table) {
  const std::string before = table.lines.Text();
  const TableText same = ParseTable(before, kFile);
  Require(same.rows == table.rows && same.lines.Text() == before, "the lines are the file", before);
  std::int32_t record = 0;
  for (const Row& row : table.rows) {
    table.lines.SetRecord(++record, FormatRow(table.columns, row));
  }
  const std::string written = table.lines.Text();
  const TableText again = ParseTable(written, kFile);
  Require(again.rows == table.rows, "what is written reads the same", before, written);
  Require(again.lines.size() == same.lines.size(), "in as many lines", before, written);
  if (!table.rows.empty()) {
    table.lines.SetRecord(record + 1, FormatRow(table.columns, table.rows[0]));
    const TableText appended = ParseTable(table.lines.Text(), kFile);
    Require(appended.rows.size() == table.rows.size() + 1 && appended.rows.back() == table.rows[0],
            "a record is appended", before);
  }
}

void CheckTable(Company& company, std::wstring_view name, const std::string& bytes) {
  simulator::Table* const old = company.Find(name);
  try {
    company.Parse(name, bytes, kFile);
  } catch (const CompanyError& error) {
    CheckError(error, bytes);
    Require(company.Find(name) == old, "a refused table leaves the company as it was", bytes);
    return;
  }
  const simulator::Table& table = *company.Find(name);
  const TableText text = ParseTable(bytes, kFile);
  Require(table.size() == static_cast<std::int32_t>(text.rows.size()), "all records", bytes);
  if (table.key().empty()) return;
  for (std::int32_t position = 1; position <= table.size(); ++position) {
    const std::int32_t record = table.RecordAt(position);
    Require(table.PositionOf(record) == position, "a record is where the index has it", bytes);
    Require(table.FindKey(table.KeyAt(position), engine::Match::kExact) == position,
            "a record is found by its key", bytes, table.KeyAt(position));
    Require(
        position == 1 || CompareIgnoreCase(table.KeyAt(position - 1), table.KeyAt(position)) < 0,
        "keys ascend", bytes);
  }
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ard::fuzz;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  // Half of what is tried begins with a good header.
  if (!bytes.empty() && bytes[0] == '!') {
    bytes.replace(0, 1,
                  "ACCOUNT_REF:text(4)\tORDER_NUMBER:long\tTYPE:integer8\tEXT_REF:text(3)\t"
                  "STOCK_CODE:text(4)\tC:currency\tD:double\tW:date\tB:boolean\tI:integer16\n");
  }
  try {
    CheckWriting(ParseTable(bytes, kFile));
  } catch (const CompanyError& error) {
    CheckError(error, bytes);
  }
  Company company;
  for (const std::wstring_view table : kTables) CheckTable(company, table, bytes);
  return 0;
}
