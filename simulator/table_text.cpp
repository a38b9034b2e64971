#include "simulator/table_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "frame/date.h"
#include "frame/text.h"
#include "simulator/company_error.h"

namespace ard::simulator {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestText = 32767;

struct TypeName {
  std::string_view name;
  ColumnType type;
};
constexpr TypeName kTypeNames[] = {
    {"boolean", ColumnType::kBoolean},     {"integer8", ColumnType::kInteger8},
    {"integer16", ColumnType::kInteger16}, {"long", ColumnType::kLong},
    {"double", ColumnType::kDouble},       {"currency", ColumnType::kCurrency},
    {"date", ColumnType::kDate},
};

struct Escape {
  char letter;
  char character;
};
constexpr Escape kEscapes[] = {{'t', '\t'}, {'n', '\n'}, {'r', '\r'},
                               {'s', ' '},  {'#', '#'},  {'\\', '\\'}};

// One line of a file, for its errors.
struct Line {
  const std::string& file;
  int number;  // from 1
  std::string_view text;

  // `place` is a part of `text`.
  [[noreturn]] void Fail(std::string_view place, const std::string& problem) const {
    const auto before = text.substr(0, static_cast<std::size_t>(place.data() - text.data()));
    const auto characters = std::count_if(before.begin(), before.end(), [](char c) {
      return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    });
    throw CompanyError(file, number, static_cast<int>(characters) + 1, problem);
  }
};

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string_view TrimmedBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return text.substr(0, 0);
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool IsBlank(std::string_view line) { return TrimmedBlanks(line).empty(); }
bool IsComment(std::string_view line) { return line.starts_with('#'); }

// The parts of a line between its TABs. They are views into it.
std::vector<std::string_view> Split(std::string_view line) {
  std::vector<std::string_view> cells;
  for (;;) {
    const std::size_t tab = line.find('\t');
    cells.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) return cells;
    line.remove_prefix(tab + 1);
  }
}

// Malformed text does not survive the trip through the conversions: they put U+FFFD in its place.
void CheckUtf8(const Line& line) {
  const std::string survived = ToUtf8(FromUtf8(line.text));
  if (survived == line.text) return;
  const auto [differs, other] =
      std::mismatch(line.text.begin(), line.text.end(), survived.begin(), survived.end());
  line.Fail(line.text.substr(static_cast<std::size_t>(differs - line.text.begin())),
            "this is not UTF-8");
}

// --- Header

bool IsNameStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsNameCharacter(char c) { return IsNameStart(c) || (c >= '0' && c <= '9') || c == '_'; }

bool IsName(std::string_view text) {
  return !text.empty() && IsNameStart(text[0]) &&
         std::all_of(text.begin(), text.end(), IsNameCharacter);
}

// The length in "text(30)"; nothing when `type` is not written so.
std::optional<std::size_t> TextLength(std::string_view type) {
  if (!type.starts_with("text(") || !type.ends_with(')')) return std::nullopt;
  type = type.substr(5, type.size() - 6);
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(type.data(), type.data() + type.size(), length);
  if (error != std::errc() || end != type.data() + type.size()) return std::nullopt;
  if (length < 1 || length > kLongestText) return std::nullopt;
  return length;
}

Column ParseColumn(const Line& line, std::string_view cell) {
  const std::size_t colon = cell.find(':');
  const std::string_view name = TrimmedBlanks(cell.substr(0, colon));
  if (colon == std::string_view::npos || !IsName(name)) {
    line.Fail(cell,
              Quoted(cell) + " is no column: NAME:type is wanted, with letters, digits and _");
  }
  const std::string_view type = TrimmedBlanks(cell.substr(colon + 1));
  Column column{FromUtf8(name)};
  if (const auto length = TextLength(type)) {
    column.length = *length;
    return column;
  }
  const auto known = std::find_if(std::begin(kTypeNames), std::end(kTypeNames),
                                  [type](const TypeName& t) { return t.name == type; });
  if (known == std::end(kTypeNames)) {
    line.Fail(type, Quoted(type) +
                        " is no type: text(length from 1 to 32767), boolean, integer8, " +
                        "integer16, long, double, currency and date are");
  }
  column.type = known->type;
  return column;
}

Columns ParseHeader(const Line& line) {
  Columns columns;
  for (const std::string_view cell : Split(line.text)) {
    if (!columns.Add(ParseColumn(line, cell))) {
      line.Fail(cell, "there are two columns of the name " +
                          std::string(TrimmedBlanks(cell.substr(0, cell.find(':')))));
    }
  }
  return columns;
}

// --- Cells

std::wstring ParseText(const Line& line, std::string_view cell) {
  std::string bytes;
  bytes.reserve(cell.size());
  for (std::size_t i = 0; i < cell.size(); ++i) {
    if (cell[i] != '\\') {
      bytes.push_back(cell[i]);
      continue;
    }
    const char letter = i + 1 < cell.size() ? cell[i + 1] : '\0';
    const auto escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                     [letter](const Escape& e) { return e.letter == letter; });
    if (escape == std::end(kEscapes)) {
      line.Fail(cell.substr(i), "\\ has to be followed by t, n, r, s, # or \\");
    }
    bytes.push_back(escape->character);
    ++i;
  }
  std::wstring text = FromUtf8(bytes);
  text.resize(WithoutPadding(text).size());
  return text;
}

template <class Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

template <class Integer>
std::optional<Value> ParseInteger(std::string_view text) {
  const auto number = ParseNumber<Integer>(text);
  if (!number) return std::nullopt;
  return Value(*number);
}

std::optional<Value> ParseDouble(std::string_view text) {
  const auto number = ParseNumber<double>(text);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  return Value(*number);
}

// Digits with at most four of them behind a point.
std::optional<Value> ParseCurrency(std::string_view text) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view fraction = text.substr(std::min(point + 1, text.size()));
  if (fraction.size() > 4 || (point < text.size() && fraction.empty())) return std::nullopt;
  std::string units(text.substr(0, point));
  units += fraction;
  units.append(4 - fraction.size(), '0');
  const auto number = ParseNumber<std::int64_t>(units);
  if (!number) return std::nullopt;
  return Value(Currency{*number});
}

std::optional<Value> ParseDate(std::string_view text) {
  const auto date = ParseIsoDate(FromUtf8(text));
  if (!date) return std::nullopt;
  return Value(*date);
}

std::optional<Value> ParseBoolean(std::string_view text) {
  if (text == "yes") return Value(true);
  if (text == "no") return Value(false);
  return std::nullopt;
}

// What a column type takes; `parse` answers nothing when the text is not that.
struct CellType {
  ColumnType type;
  std::optional<Value> (*parse)(std::string_view);
  const char* wanted;
};
constexpr CellType kCellTypes[] = {
    {ColumnType::kBoolean, ParseBoolean, "yes or no"},
    {ColumnType::kInteger8, ParseInteger<std::uint8_t>, "a whole number from 0 to 255"},
    {ColumnType::kInteger16, ParseInteger<std::int16_t>, "a whole number from -32768 to 32767"},
    {ColumnType::kLong, ParseInteger<std::int32_t>,
     "a whole number from -2147483648 to 2147483647"},
    {ColumnType::kDouble, ParseDouble, "a number, such as 1250.5"},
    {ColumnType::kCurrency, ParseCurrency, "an amount with at most four decimals"},
    {ColumnType::kDate, ParseDate, "a date, such as 2026-11-21"},
};

Value ParseCell(const Line& line, const Column& column, std::string_view cell) {
  const std::string name = ToUtf8(column.name);
  if (column.type == ColumnType::kText) {
    std::wstring text = ParseText(line, cell);
    if (text.size() > column.length) {
      line.Fail(cell, name + " holds " + std::to_string(column.length) + " characters, " +
                          "this text has " + std::to_string(text.size()));
    }
    return text.empty() ? Value() : Value(std::move(text));
  }
  const std::string_view text = TrimmedBlanks(cell);
  if (text.empty()) return {};
  const CellType& type = *std::find_if(std::begin(kCellTypes), std::end(kCellTypes),
                                       [&](const CellType& t) { return t.type == column.type; });
  std::optional<Value> value = type.parse(text);
  if (!value) line.Fail(text, name + " takes " + type.wanted + ", not " + Quoted(text));
  return *std::move(value);
}

Row ParseRow(const Line& line, const Columns& columns) {
  const std::vector<std::string_view> cells = Split(line.text);
  if (cells.size() != columns.size()) {
    const bool too_many = cells.size() > columns.size();
    line.Fail(too_many ? cells[columns.size()] : line.text.substr(line.text.size()),
              "this record has " + std::to_string(cells.size()) + " cells, the header has " +
                  std::to_string(columns.size()));
  }
  Row row;
  row.reserve(cells.size());
  for (std::size_t i = 0; i < cells.size(); ++i) {
    row.push_back(ParseCell(line, columns[i], cells[i]));
  }
  return row;
}

// --- Writing

std::string FormatText(std::wstring_view text) {
  std::string escaped;
  for (const char c : ToUtf8(text)) {
    const auto escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                     [c](const Escape& e) { return e.character == c; });
    const bool plain = escape == std::end(kEscapes) || c == ' ' || (c == '#' && !escaped.empty());
    if (plain) {
      escaped.push_back(c);
    } else {
      escaped += {'\\', escape->letter};
    }
  }
  return escaped;
}

// The shortest text that reads back as the same number.
template <class Number>
std::string FormatNumber(Number number) {
  char text[40];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string FormatCurrency(Currency amount) {
  std::string digits = FormatNumber(amount.units);
  const std::string sign = amount.units < 0 ? "-" : "";
  digits.erase(0, sign.size());
  if (digits.size() < 5) digits.insert(0, 5 - digits.size(), '0');
  return sign + digits.insert(digits.size() - 4, ".");
}

std::string FormatCell(const Column& column, const Value& cell) {
  if (cell.is_empty()) return {};
  switch (column.type) {
    case ColumnType::kBoolean:
      return cell.ToBoolean() ? "yes" : "no";
    case ColumnType::kInteger8:
    case ColumnType::kInteger16:
    case ColumnType::kLong:
      return FormatNumber(cell.ToLong());
    case ColumnType::kDouble:
      return FormatNumber(cell.ToDouble());
    case ColumnType::kCurrency:
      return FormatCurrency(cell.ToCurrency());
    case ColumnType::kDate:
      return ToUtf8(FormatIsoDate(cell.ToDate()));
    case ColumnType::kText:
      break;
  }
  return FormatText(cell.ToText());
}

}  // namespace

TableLines::TableLines(std::string_view text) {
  byte_order_mark_ = text.starts_with(kByteOrderMark);
  if (byte_order_mark_) text.remove_prefix(kByteOrderMark.size());
  carriage_returns_ = text.find("\r\n") != std::string_view::npos;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    // One that is left would end the line when it is written again.
    while (line.ends_with('\r')) line.remove_suffix(1);
    lines_.emplace_back(line);
  }
}

std::size_t TableLines::LineOf(std::int32_t record) const {
  return record_lines_[static_cast<std::size_t>(record) - 1];
}

void TableLines::SetRecord(std::int32_t record, std::string text) {
  if (static_cast<std::size_t>(record) <= record_lines_.size()) {
    lines_[LineOf(record)] = std::move(text);
  } else {
    MarkRecord(lines_.size());
    lines_.push_back(std::move(text));
  }
}

std::string TableLines::Text() const {
  std::string text(byte_order_mark_ ? kByteOrderMark : "");
  for (const std::string& line : lines_) {
    text += line;
    text += carriage_returns_ ? "\r\n" : "\n";
  }
  return text;
}

TableText ParseTable(std::string_view text, const std::string& file) {
  TableText table{{}, {}, TableLines(text), 0};
  for (std::size_t i = 0; i < table.lines.size(); ++i) {
    const Line line{file, static_cast<int>(i) + 1, table.lines[i]};
    CheckUtf8(line);
    if (IsBlank(line.text) || IsComment(line.text)) continue;
    if (table.columns.size() == 0) {
      table.columns = ParseHeader(line);
      table.header_line = line.number;
      continue;
    }
    table.rows.push_back(ParseRow(line, table.columns));
    table.lines.MarkRecord(i);
  }
  if (table.columns.size() == 0) {
    throw CompanyError(file, static_cast<int>(table.lines.size()) + 1, 1,
                       "there is no header: a line of NAME:type columns, separated by TABs");
  }
  return table;
}

Columns ParseColumns(std::string_view header, const std::string& file) {
  return ParseHeader({file, 1, header});
}

std::string FormatRow(const Columns& columns, const Row& row) {
  std::string line;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) line.push_back('\t');
    line += FormatCell(columns[i], row[i]);
  }
  // A blank line would be no record at all.
  return line.empty() ? "\\s" : line;
}

std::string_view CellText(std::string_view line, std::size_t cell) { return Split(line)[cell]; }

int CellColumn(std::string_view line, std::size_t cell) {
  const std::string_view place = CellText(line, cell);
  const auto before = line.substr(0, static_cast<std::size_t>(place.data() - line.data()));
  return static_cast<int>(FromUtf8(before).size()) + 1;
}

}  // namespace ard::simulator
