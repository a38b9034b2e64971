// The reader of company files: any bytes are a table or an error that tells the place, and what a
// table is written as reads the same.
#include "fuzzers/support_fuzz.h"
#include "simulator/company.h"
#include "simulator/company_error.h"
#include "simulator/table_text.h"

namespace ard::fuzz {
namespace {

using simulator::Company;
using simulator::CompanyError;
using simulator::ParseTable;
using simulator::TableText;

constexpr char kFile[] = "Some.table";

void CheckError(const CompanyError& error, const std::string& bytes) {
  const std::string place = std::string(kFile) + ":" + std::to_string(error.line()) + ":" +
                            std::to_string(error.column()) + ": ";
  Require(error.file() == kFile && std::string(error.what()).starts_with(place) &&
              !error.problem().empty(),
          "a place and a problem", std::string(error.what()));
  const simulator::TableLines lines(bytes);
  const auto line = static_cast<std::size_t>(error.line());
  const std::size_t length = line >= 1 && line <= lines.size() ? lines[line - 1].size() : 0;
  Require(line >= 1 && line <= lines.size() + 1 && error.column() >= 1 &&
              static_cast<std::size_t>(error.column()) <= length + 1,
          "a place in the file", std::string(error.what()));
}

// Every record stored anew is in the same line, and nothing else has changed.
void CheckWriting(TableText table) {
  const std::string before = table.lines.Text();
  Require(ParseTable(before, kFile).rows == table.rows, "the lines are the file", before);
  std::int32_t record = 0;
  for (const simulator::Row& row : table.rows) {
    table.lines.SetRecord(++record, FormatRow(table.columns, row));
  }
  if (record > 0) {
    table.lines.SetRecord(record + 1, FormatRow(table.columns, table.rows[0]));
    table.rows.push_back(table.rows[0]);
  }
  const std::string written = table.lines.Text();
  const TableText again = ParseTable(written, kFile);
  Require(again.rows == table.rows && again.lines.size() == table.lines.size(),
          "what is written reads the same", before, written);
}

void CheckTable(std::wstring_view name, const std::string& bytes) {
  Company company;
  try {
    company.Parse(name, bytes, kFile);
  } catch (const CompanyError& error) {
    CheckError(error, bytes);
    Require(company.Find(name) == nullptr, "a refused table is not there", bytes);
    return;
  }
  const simulator::Table& table = *company.Find(name);
  for (std::int32_t position = 1; position <= table.size() && !table.key().empty(); ++position) {
    const std::wstring key = table.KeyAt(position);
    Require(table.PositionOf(table.RecordAt(position)) == position &&
                table.FindKey(key, engine::Match::kExact) == position,
            "a record is where its key is", bytes, key);
    const std::wstring half = LowerCase(key.substr(0, (key.size() + 1) / 2));
    const auto begins = [&](int at) { return StartsWithIgnoreCase(table.KeyAt(at), half); };
    const std::int32_t first = table.FindKey(half, engine::Match::kPartial);
    Require(first >= 1 && first <= position && begins(first) && (first == 1 || !begins(first - 1)),
            "a part of a key finds the first that begins with it", bytes, key);
    Require(position == 1 || CompareIgnoreCase(table.KeyAt(position - 1), key) < 0, "keys ascend",
            bytes, key);
  }
}

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ard::fuzz;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (bytes.starts_with('!')) {
    bytes.replace(0, 1,
                  "ACCOUNT_REF:text(4)\tORDER_NUMBER:long\tTYPE:integer8\tEXT_REF:text(3)\t"
                  "STOCK_CODE:text(4)\tC:currency\tD:double\tW:date\tB:boolean\tI:integer16\n");
  }
  try {
    CheckWriting(ParseTable(bytes, kFile));
  } catch (const CompanyError& error) {
    CheckError(error, bytes);
  }
  // Keys of every kind: text, a number, several fields, none.
  for (const wchar_t* table : {L"SalesData", L"SopData", L"PriceData", L"SetupData"}) {
    CheckTable(table, bytes);
  }
  return 0;
}
