// The text of a table: a header with the columns, then one record per line. The format is described
// in docs/manual/simulator.md.
#ifndef ARD_SIMULATOR_TABLE_TEXT_H_
#define ARD_SIMULATOR_TABLE_TEXT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/column.h"

namespace ard::simulator {

// The lines of a table as a person left them, comments and blank lines included. Storing a record
// changes the line of that record and no other.
class TableLines {
 public:
  // Splits `text`; a byte order mark at its start and the kind of line ends are remembered.
  explicit TableLines(std::string_view text);

  std::size_t size() const { return lines_.size(); }
  // Without its line end; `line` counts from 0.
  const std::string& operator[](std::size_t line) const { return lines_[line]; }

  // Makes `line` that of the next record.
  void MarkRecord(std::size_t line) { record_lines_.push_back(line); }
  std::size_t LineOf(std::int32_t record) const;

  // Replaces the line of a record; the one after the last is appended.
  void SetRecord(std::int32_t record, std::string text);
  // The whole file.
  std::string Text() const;

 private:
  bool byte_order_mark_ = false;
  bool carriage_returns_ = false;
  std::vector<std::string> lines_;
  std::vector<std::size_t> record_lines_;
};

struct TableText {
  Columns columns;
  std::vector<Row> rows;
  TableLines lines;
  int header_line = 0;  // from 1
};

// Reads a table from UTF-8 text. `file` is what an error calls it. Throws CompanyError.
TableText ParseTable(std::string_view text, const std::string& file);

// Reads columns from the text of a header line. Throws CompanyError.
Columns ParseColumns(std::string_view header, const std::string& file);

// The line of a record, without a line end. Parsing it gives the row back.
std::string FormatRow(const Columns& columns, const Row& row);

// Cell number `cell` (from 0) of a line as it is written, and the column, in characters from 1, at
// which it starts.
std::string_view CellText(std::string_view line, std::size_t cell);
int CellColumn(std::string_view line, std::size_t cell);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_TABLE_TEXT_H_
