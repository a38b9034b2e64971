#include "simulator/queue_table.h"

#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

constexpr std::wstring_view kStation = L"THIS-PC";

using Sharing = SharedFile::Sharing;

}  // namespace

QueueTable::QueueTable(Columns columns, CompanyShare* share, std::size_t ordinal)
    : MemoryTable(std::move(columns), {}), share_(share), ordinal_(ordinal) {
  if (share_ != nullptr) stores_ = share_->stores(ordinal_);
}

// Where nobody may write, the logon is known to this engine alone.
void QueueTable::Enter(std::wstring_view user) {
  Leave();
  const bool shared = share_ != nullptr && share_->is_writable();
  const CompanyShare::Turn turn(shared ? share_ : nullptr, ordinal_, Sharing::kNone);
  Reload();
  std::int32_t record = 1;
  while (record <= size() && !IsFree(record)) ++record;
  const auto slot = static_cast<std::size_t>(record) - 1;
  if (slot >= CompanyShare::kSlots) throw Error(kErrorFailed, L"Too many users are logged on.");
  if (shared) {
    share_->TakeSlot(slot, user);
    share_->CountStore(ordinal_);
  }
  user_ = user;
  record_ = record;
  Reload();
}

void QueueTable::Leave() {
  if (record_ == 0) return;
  const bool shared = share_ != nullptr && share_->is_writable();
  const CompanyShare::Turn turn(shared ? share_ : nullptr, ordinal_, Sharing::kNone);
  const auto slot = static_cast<std::size_t>(std::exchange(record_, 0)) - 1;
  if (shared) {
    share_->LeaveSlot(slot);
    share_->CountStore(ordinal_);
  }
  Reload();
}

void QueueTable::Reload() {
  const CompanyShare::Turn turn(share_, ordinal_, Sharing::kShared);
  if (stores_ != nullptr) stores_seen_ = std::atomic_ref(*stores_).load();
  shown_.resize(CompanyShare::kSlots);
  for (std::size_t slot = 0; slot < shown_.size(); ++slot) {
    const auto record = static_cast<std::int32_t>(slot) + 1;
    std::wstring user = record == record_   ? user_
                        : share_ != nullptr ? share_->OtherUser(slot)
                                            : std::wstring();
    if (user == shown_[slot]) continue;
    while (size() < record) Show(size() + 1, L"");
    Show(record, user);
    shown_[slot] = std::move(user);
  }
}

bool QueueTable::IsFree(std::int32_t record) const {
  const auto cell = [&](std::wstring_view column) {
    const int found = columns().Find(column);
    return found < 0 ? Value() : Cell(record, static_cast<std::size_t>(found));
  };
  return Trimmed(cell(L"LOGON_NAME").ToText()).empty() || cell(L"EMPTY_FLAG").ToBoolean();
}

void QueueTable::Show(std::int32_t record, std::wstring_view user) {
  Row row(columns().size());
  const auto set = [&](std::wstring_view name, const Value& value) {
    const int found = columns().Find(name);
    if (found < 0) return;
    const auto place = static_cast<std::size_t>(found);
    const Column& column = columns()[place];
    const bool is_text = column.type == ColumnType::kText;
    row[place] =
        is_text ? Value(value.ToText().substr(0, column.length)) : ConvertTo(column.type, value);
  };
  set(L"LOGON_NAME", user);
  set(L"STATION_NAME", user.empty() ? std::wstring_view() : kStation);
  set(L"EMPTY_FLAG", user.empty());
  Store(record, std::move(row));
}

}  // namespace ard::simulator
