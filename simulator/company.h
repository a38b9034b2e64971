// Company: the tables that the engine opens, and the folder of text files that they come from.
#ifndef ARD_SIMULATOR_COMPANY_H_
#define ARD_SIMULATOR_COMPANY_H_

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/company_share.h"
#include "simulator/memory_table.h"
#include "simulator/table.h"
#include "simulator/table_text.h"

namespace ard::simulator {

// Tables go by the name of their data file, such as "SalesData". A name that is not in the
// catalogue throws Error.
class Company {
 public:
  // A company without any table.
  Company();
  Company(const Company&) = delete;
  Company& operator=(const Company&) = delete;

  // Reads every "<name>.table" of `folder`. What is stored in such a table later is written to its
  // file before it counts; a crash leaves the old table or the new one. What other processes store
  // there is brought in. The logon queue alone is not written: its file says who is logged on to
  // begin with. A ControlData that is not there is made up, in memory, and so is the file queue.dta
  // where the folder may be written. Throws CompanyError.
  static std::unique_ptr<Company> Load(const std::filesystem::path& folder);

  // The table as it is now. Null when the company has no such table, or there is none of that name.
  // The second form takes the table's ordinal in the catalogue. Throws Error when others have made
  // it unreadable.
  Table* Find(std::wstring_view name);
  Table* Find(std::size_t ordinal);

  // Puts a table in, or takes it out when `table` is null.
  void Set(std::wstring_view name, std::unique_ptr<Table> table);

  // An empty table for this company; it becomes a part of the company with Set.
  std::unique_ptr<MemoryTable> NewTable(std::wstring_view name, Columns columns);

  // How many records its tables have stored, those that it has been made of included.
  std::int64_t records_written() const;

  // Puts in the table that `text` holds, in memory only. An error calls it `file`. Throws
  // CompanyError; the company is then as it was.
  void Parse(std::wstring_view name, std::string_view text, const std::string& file);

  // Where it has been loaded from; empty for a company in memory.
  const std::filesystem::path& folder() const { return folder_; }

 private:
  void LoadFile(const std::filesystem::path& path);
  // What a company needs beside its tables.
  void Complete();

  std::filesystem::path folder_;
  // Before the tables, which use it. Null for a company in memory, or in a folder of others.
  std::unique_ptr<CompanyShare> share_;
  std::vector<std::unique_ptr<Table>> tables_;  // by their ordinal in the catalogue
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_COMPANY_H_
