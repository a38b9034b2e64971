// The record on which a data file or record object stands, with the field values set on it since.
#ifndef ARD_SIMULATOR_CURRENT_RECORD_H_
#define ARD_SIMULATOR_CURRENT_RECORD_H_

#include <cstdint>
#include <map>
#include <vector>

#include "simulator/table.h"

namespace ard::simulator {

class CurrentRecord {
 public:
  // Stands on the table's first record; null for none at all, as while a file is closed.
  void Attach(Table* table);
  Table* table() const { return table_; }

  // Forgets what has been set. Record 0 is a blank record that is not stored.
  void MoveTo(std::int32_t record);
  // The same for one that has been stored: what others have changed has still not been read.
  void Stored(std::int32_t record);
  // Stands on the blank record, with what has been set.
  void Leave() {
    record_ = 0;
    ++state_;
  }
  std::int32_t record() const { return record_; }
  // Changes whenever another record may have become current, and when the record is to be edited.
  std::int64_t state() const { return state_; }
  void BeginEdit() { ++state_; }

  // Whether another process has changed the record, or any other one, since this one became
  // current.
  bool IsStale() const { return IsStale(record_); }
  bool IsStale(std::int32_t record) const { return table_->IsChangedSince(record, generation_); }

  // What has been set, else what the table holds now; text is padded to the length of its field.
  Value Get(std::size_t column) const;
  // Throws Error when the value does not convert to the column's type.
  void Set(std::size_t column, const Value& value);

  // The whole record and its key, to store and to find it. Text is as it was set.
  Row Contents() const;
  std::vector<Value> Key() const;

 private:
  Value Raw(std::size_t column) const;

  Table* table_ = nullptr;
  std::int32_t record_ = 0;
  std::int64_t state_ = 0;
  std::uint32_t generation_ = 0;      // of the table, when the record became current
  std::map<std::size_t, Value> set_;  // by column
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_CURRENT_RECORD_H_
