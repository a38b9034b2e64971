// CompanyShare: what the processes that have one company open tell each other, through the file
// "company.lock" in its folder. All of it is memory and locks; the records are in the tables'
// files.
#ifndef ARD_SIMULATOR_COMPANY_SHARE_H_
#define ARD_SIMULATOR_COMPANY_SHARE_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "simulator/shared_file.h"

namespace ard::simulator {

// Tables go by their ordinal in the catalogue.
class CompanyShare {
 public:
  // Null when the folder has no such file and none can be made. Throws Error.
  static std::unique_ptr<CompanyShare> Open(const std::filesystem::path& folder);

  // Whether records can be stored and logons entered.
  bool is_writable() const { return file_->is_writable(); }

  // How often the table has been stored since the file was made, by anyone: a table that has been
  // read at another count is to be read again. Others may count at any time.
  std::uint32_t* stores(std::size_t table) const;
  // Called by who has the turn to store, before others can see what has been stored. So if it ends
  // there, they read once too often, rather than not at all.
  void CountStore(std::size_t table);

  // A turn at a table, among all processes: to store, alone, or to read while nobody stores. Waits
  // for it. A turn within a turn is the same one. Throws Error.
  class Turn {
   public:
    // `share` may be null: then there are no others.
    Turn(CompanyShare* share, std::size_t table, SharedFile::Sharing sharing);
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn();

   private:
    CompanyShare* share_;
    std::size_t table_;
  };

  // Holds a record for as long as the result lives. Null when another process holds it.
  std::shared_ptr<void> TryHold(std::size_t table, std::int32_t record);

  // The logons, in slots from 0: slot i is record i + 1 of QueueData. Who takes or leaves one has
  // the turn to store QueueData.
  static constexpr std::size_t kSlots = 100;
  // The user in a slot; "" for nobody, this engine or one whose process has ended.
  std::wstring OtherUser(std::size_t slot) const;
  // Throws Error when the name is too long, or the slot another's.
  void TakeSlot(std::size_t slot, std::wstring_view user);
  void LeaveSlot(std::size_t slot);

 private:
  static constexpr std::size_t kTables = 64;
  struct State {
    std::uint32_t stores[kTables];
    char users[kSlots][128];  // UTF-8, ended by a NUL
  };

  explicit CompanyShare(std::unique_ptr<SharedFile> file) : file_(std::move(file)) {}

  State& state() const { return *static_cast<State*>(file_->data()); }

  std::unique_ptr<SharedFile> file_;
  std::uint8_t turns_[kTables] = {};  // how many of this engine's, one within the other
  std::map<std::uint64_t, std::weak_ptr<void>> held_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_COMPANY_SHARE_H_
