// TableFile: the file of a table, which other processes read and store records in as well.
#ifndef ARD_SIMULATOR_TABLE_FILE_H_
#define ARD_SIMULATOR_TABLE_FILE_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "simulator/company_share.h"
#include "simulator/table_text.h"

namespace ard::simulator {

class TableFile {
 public:
  // `table` is its ordinal in the catalogue. `share` may be null, for a file that is ours alone,
  // and lives longer.
  TableFile(std::filesystem::path path, CompanyShare* share, std::size_t table);

  std::string name() const { return path_.filename().string(); }
  // What counts the records that all processes store, null where there is no share; and what it
  // said before the table was read last, or after a record was written.
  std::uint32_t* stores() const { return share_ ? share_->stores(table_) : nullptr; }
  std::uint32_t stores_seen() const { return stores_seen_; }

  // What the file holds. Throws CompanyError when it cannot be read or is malformed, Error when
  // there is no turn to be had.
  TableText Read();
  // Called when the table holds what has been read last.
  void Accept(TableText text);
  // Whether the file is not the one accepted or written last, as after an editor saved it.
  bool IsOther() const { return StampNow() != stamp_; }

  // The turn to store records, among all processes. Throws Error.
  void BeginTurn();
  void EndTurn() { turn_.reset(); }

  // As that of a table; there is no need where nobody may write.
  std::shared_ptr<void> TryHold(std::int32_t record);

  // Replaces the line of a record in the file, or appends one; it is on the disk, or the file is as
  // it was. Needs the turn. Throws Error.
  void Write(std::int32_t record, const Row& row);

 private:
  struct Stamp {
    std::filesystem::file_time_type time;
    std::uintmax_t size = 0;

    bool operator==(const Stamp&) const = default;
  };
  // Of the file now; of nothing when it cannot be had.
  Stamp StampNow() const;

  std::filesystem::path path_;
  CompanyShare* share_;
  std::size_t table_;
  std::optional<CompanyShare::Turn> turn_;
  std::uint32_t stores_seen_ = 0;
  Stamp read_;  // the file as it was read last
  // The file as the table holds it.
  Stamp stamp_;
  Columns columns_;
  TableLines lines_{{}};
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_TABLE_FILE_H_
