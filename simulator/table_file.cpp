#include "simulator/table_file.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/company_error.h"
#include "simulator/safe_file.h"

namespace ard::simulator {

using std::filesystem::file_type;
using Sharing = SharedFile::Sharing;

TableFile::TableFile(std::filesystem::path path, CompanyShare* share, std::size_t table)
    : path_(std::move(path)), share_(share), table_(table) {}

TableText TableFile::Read() {
  const CompanyShare::Turn turn(share_, table_, Sharing::kShared);
  try {
    // Not opened, because opening a pipe waits for its other end.
    const file_type type = std::filesystem::status(path_).type();
    if (type == file_type::directory) {
      throw std::system_error(std::make_error_code(std::errc::is_a_directory));
    }
    if (type != file_type::regular && type != file_type::not_found) {
      throw CompanyError(name(), 0, 0, "Is no regular file");
    }
    if (share_ != nullptr) stores_seen_ = std::atomic_ref(*stores()).load();
    read_ = StampNow();
    TableText text = ParseTable(ReadFile(path_), name());
    if (columns_.size() != 0 && !std::ranges::equal(text.columns, columns_)) {
      throw CompanyError(name(), text.header_line, 1,
                         "these are not the columns with which the company was opened");
    }
    return text;
  } catch (const std::system_error& error) {
    throw CompanyError(name(), 0, 0, error.code().message());
  }
}

void TableFile::Accept(TableText text) {
  columns_ = std::move(text.columns);
  lines_ = std::move(text.lines);
  stamp_ = read_;
}

void TableFile::BeginTurn() { turn_.emplace(share_, table_, Sharing::kNone); }

std::shared_ptr<void> TableFile::TryHold(std::int32_t record) {
  const bool shared = share_ != nullptr && share_->is_writable();
  return shared ? share_->TryHold(table_, record) : std::make_shared<char>();
}

void TableFile::Write(std::int32_t record, const Row& row) {
  TableLines lines = lines_;
  lines.SetRecord(record, FormatRow(columns_, row));
  try {
    WriteAside(path_, lines.Text());
    if (share_ != nullptr) share_->CountStore(table_);
    PutInPlace(path_);
  } catch (const std::system_error& error) {
    throw Error(kErrorFailed, FromUtf8(error.what()));
  }
  if (share_ != nullptr) stores_seen_ = *stores();
  stamp_ = StampNow();
  lines_ = std::move(lines);
}

TableFile::Stamp TableFile::StampNow() const {
  std::error_code none;
  Stamp stamp;
  stamp.time = std::filesystem::last_write_time(path_, none);
  stamp.size = std::filesystem::file_size(path_, none);
  return stamp;
}

}  // namespace ard::simulator
