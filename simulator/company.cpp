#include "simulator/company.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/catalogue.h"
#include "simulator/company_error.h"
#include "simulator/control_table.h"
#include "simulator/queue_table.h"

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

constexpr std::string_view kEnding = ".table";

// The table whose file somebody must have meant by the name: one in other letters, or with the
// ending that an editor has added. Nothing when it is a table's very name, or no such thing.
std::string TableMeantBy(const std::string& file) {
  const std::wstring name = FromUtf8(file);
  for (const TableInfo& info : Catalogue()) {
    const std::string table = ToUtf8(info.data_file).append(kEnding);
    if (file == table) return {};
    for (const wchar_t* added : {L"", L".txt"}) {
      if (EqualsIgnoreCase(name, FromUtf8(table) + added)) return table;
    }
  }
  return {};
}

// The files of the tables, by name. Files that are none are left alone, but not those that look
// like one.
std::vector<std::filesystem::path> TablesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  std::map<std::string, std::string> meant;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string file = entry.path().filename().string();
    if (std::string table = TableMeantBy(file); !table.empty()) meant[file] = std::move(table);
    if (file.ends_with(kEnding)) files.push_back(entry.path());
  }
  if (!meant.empty()) {
    std::string names;
    for (const auto& [file, table] : meant) names += (names.empty() ? "" : ", ") + file;
    throw CompanyError(names, 0, 0, "a table has to be named like " + meant.begin()->second);
  }
  if (files.empty()) {
    throw CompanyError(folder.string(), 0, 0,
                       "there is no company here: no table, such as SalesData.table");
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

Company::Company() : tables_(Catalogue().size()) {}

std::unique_ptr<Company> Company::Load(const std::filesystem::path& folder) {
  auto company = std::make_unique<Company>();
  company->folder_ = folder;
  try {
    const std::vector<std::filesystem::path> files = TablesIn(folder);
    company->share_ = CompanyShare::Open(folder);
    for (const auto& file : files) company->LoadFile(file);
    company->Complete();
  } catch (const std::system_error& error) {
    throw CompanyError(folder.string(), 0, 0, error.code().message());
  } catch (const Error& error) {
    throw CompanyError(folder.string(), 0, 0, ToUtf8(error.text()));
  }
  return company;
}

void Company::LoadFile(const std::filesystem::path& path) {
  const std::string file_name = path.filename().string();
  const std::wstring name = FromUtf8(path.stem().string());
  const ObjectName found = LookUp(name);
  if (found.kind != ObjectKind::kDataFile) {
    throw CompanyError(file_name, 0, 0, "the engine has no data file of this name");
  }
  auto file = std::make_unique<TableFile>(path, share_.get(), found.table);
  TableText text = file->Read();
  CheckKey(Info(name), text, file_name);
  std::unique_ptr<MemoryTable> table = NewTable(name, text.columns);
  if (name == kQueueData) {
    table->Fill(text, file_name);
  } else {
    table->Attach(std::move(file), std::move(text));
  }
  Set(name, std::move(table));
}

void Company::Complete() {
  if (Find(kControlData) == nullptr) {
    auto control = NewTable(kControlData, {});
    control->Store(1, {});
    Set(kControlData, std::move(control));
  }
  const std::filesystem::path queue = folder_ / "queue.dta";
  if (share_ != nullptr && share_->is_writable() && !std::filesystem::exists(queue)) {
    std::ofstream(queue, std::ios::app)
        << "The register of logons to this company. A single-user program holds this file "
           "exclusively.\n";
  }
}

void Company::Parse(std::wstring_view name, std::string_view text, const std::string& file) {
  TableText parsed = ParseTable(text, file);
  CheckKey(Info(name), parsed, file);
  std::unique_ptr<MemoryTable> table = NewTable(name, parsed.columns);
  table->Fill(parsed, file);
  Set(name, std::move(table));
}

Table* Company::Find(std::wstring_view name) {
  const ObjectName found = LookUp(name);
  return found.kind == ObjectKind::kDataFile ? Find(found.table) : nullptr;
}

Table* Company::Find(std::size_t ordinal) {
  Table* const table = tables_[ordinal].get();
  if (table != nullptr) table->Refresh();
  return table;
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
  if (name == kQueueData) {
    return std::make_unique<QueueTable>(std::move(columns), share_.get(), LookUp(name).table);
  }
  return std::make_unique<MemoryTable>(std::move(columns), Info(name).key);
}

}  // namespace ard::simulator
