#include "simulator/company.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/catalogue.h"
#include "simulator/company_error.h"
#include "simulator/control_table.h"
#include "simulator/safe_file.h"

namespace ard::simulator {
namespace {

constexpr std::wstring_view kControlData = L"ControlData";
constexpr std::wstring_view kQueueData = L"QueueData";

const TableInfo& Info(std::wstring_view name) {
  const ObjectName found = LookUp(name);
  if (found.kind != ObjectKind::kDataFile) {
    throw Error(kErrorUnknownName, L"The engine has no data file " + std::wstring(name) + L".");
  }
  return Catalogue()[found.table];
}

// A key field that is missing, or of a type that makes no key, is reported at the header.
void CheckKey(const TableInfo& info, const TableText& text, const std::string& file) {
  for (const std::wstring_view field : info.key) {
    const int column = text.columns.Find(field);
    if (column < 0) {
      throw CompanyError(file, text.header_line, 1,
                         "the column " + ToUtf8(field) + " is missing: it is the key");
    }
    if (!MakesKey(text.columns[static_cast<std::size_t>(column)].type)) {
      throw CompanyError(file, text.header_line, 1,
                         ToUtf8(field) + " is the key: it has to be text or a whole number");
    }
  }
}

void StoreRows(MemoryTable& table, TableText& text, const std::string& file) {
  std::int32_t record = 0;
  for (Row& row : text.rows) {
    row.resize(table.columns().size());
    if (table.Store(++record, std::move(row))) continue;
    const std::size_t line = text.lines.LineOf(record);
    throw CompanyError(file, static_cast<int>(line) + 1,
                       CellColumn(text.lines[line], table.key().front()),
                       "the key is blank or that of an earlier record");
  }
}

// Writes a table's file anew for every record stored.
class FileWriter {
 public:
  FileWriter(std::filesystem::path path, Columns columns, TableLines lines)
      : path_(std::move(path)), columns_(std::move(columns)), lines_(std::move(lines)) {}

  void operator()(std::int32_t record, const Row& row) {
    TableLines lines = lines_;
    lines.SetRecord(record, FormatRow(columns_, row));
    try {
      ReplaceFile(path_, lines.Text());
    } catch (const std::system_error& error) {
      throw Error(kErrorFailed, FromUtf8(error.what()));
    }
    lines_ = std::move(lines);
  }

 private:
  std::filesystem::path path_;
  Columns columns_;
  TableLines lines_;
};

}  // namespace

Company::Company() : tables_(Catalogue().size()) {}

std::unique_ptr<Company> Company::Load(const std::filesystem::path& folder) {
  auto company = std::make_unique<Company>();
  company->folder_ = folder;
  try {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() == ".table") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) company->LoadFile(file);
  } catch (const std::system_error& error) {
    throw CompanyError(folder.string(), 0, 0, error.code().message());
  }
  return company;
}

void Company::LoadFile(const std::filesystem::path& path) {
  const std::string file = path.filename().string();
  const std::wstring name = path.stem().wstring();
  if (LookUp(name).kind != ObjectKind::kDataFile) {
    throw CompanyError(file, 0, 0, "the engine has no data file of this name");
  }
  TableText text = ParseTable(ReadFile(path), file);
  std::unique_ptr<MemoryTable> table = Fill(name, text, file);
  if (name != kQueueData) {
    table->set_writer(FileWriter(path, std::move(text.columns), std::move(text.lines)));
  }
  Set(name, std::move(table));
}

void Company::Parse(std::wstring_view name, std::string_view text, const std::string& file) {
  TableText parsed = ParseTable(text, file);
  Set(name, Fill(name, parsed, file));
}

std::unique_ptr<MemoryTable> Company::Fill(std::wstring_view name, TableText& text,
                                           const std::string& file) {
  CheckKey(Info(name), text, file);
  std::unique_ptr<MemoryTable> table = NewTable(name, text.columns);
  StoreRows(*table, text, file);
  return table;
}

Table* Company::Find(std::wstring_view name) {
  const ObjectName found = LookUp(name);
  return found.kind == ObjectKind::kDataFile ? Find(found.table) : nullptr;
}

void Company::Set(std::wstring_view name, std::unique_ptr<Table> table) {
  tables_[static_cast<std::size_t>(&Info(name) - Catalogue().data())] = std::move(table);
}

std::int64_t Company::records_written() const {
  std::int64_t written = 0;
  for (const auto& table : tables_) {
    if (table) written += table->records_written();
  }
  return written;
}

std::unique_ptr<MemoryTable> Company::NewTable(std::wstring_view name, Columns columns) {
  if (name == kControlData) return std::make_unique<ControlTable>(std::move(columns), *this);
  return std::make_unique<MemoryTable>(std::move(columns), Info(name).key);
}

}  // namespace ard::simulator
