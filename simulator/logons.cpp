#include "simulator/logons.h"

#include <utility>

#include "frame/text.h"

namespace ard::simulator {
namespace {

constexpr std::wstring_view kManager = L"MANAGER";
constexpr std::wstring_view kStation = L"THIS-PC";

// The engine's own.
const Error kWrongUser{1101, L"The user name or the password is wrong."};
const Error kHeldExclusively{1102, L"The data is held by a single-user program."};

// The cell of a column that may be missing; nothing then.
Value CellOf(const Table& table, std::int32_t record, std::wstring_view column) {
  const int found = table.columns().Find(column);
  return found < 0 ? Value() : table.Cell(record, static_cast<std::size_t>(found));
}

}  // namespace

std::optional<Error> Logons::Connect(std::wstring_view user, std::wstring_view password) {
  const std::optional<std::wstring> right = PasswordOf(user);
  const bool vouched_for = by_windows_ && trusts_windows_ && EqualsIgnoreCase(Trimmed(user), user_);
  if (!right || (*right != Trimmed(password) && !vouched_for)) return kWrongUser;
  return Enter(user, vouched_for);
}

std::optional<Error> Logons::ConnectNT(std::wstring_view account) {
  if (!PasswordOf(account)) return kWrongUser;
  return Enter(account, true);
}

void Logons::Disconnect() {
  ++disconnects_;
  Leave();
}

void Logons::HoldExclusively(bool hold) {
  held_.reset();
  if (hold) held_.emplace(company_.folder() / "queue.dta");
}

std::optional<std::wstring> Logons::PasswordOf(std::wstring_view user) const {
  if (const Table* access = company_.Find(L"AccessData")) {
    for (std::int32_t record = 1; record <= access->size(); ++record) {
      const std::wstring name = CellOf(*access, record, L"NAME").ToText();
      if (Trimmed(name).empty() || !EqualsIgnoreCase(Trimmed(name), Trimmed(user))) continue;
      return CellOf(*access, record, L"PASSWORD").ToText();
    }
  }
  if (EqualsIgnoreCase(Trimmed(user), kManager)) return L"";
  return std::nullopt;
}

std::optional<Error> Logons::Enter(std::wstring_view user, bool by_windows) {
  if (held_) return kHeldExclusively;
  Leave();
  user_ = UpperCase(Trimmed(user));
  by_windows_ = by_windows;
  if (const Table* queue = company_.Find(L"QueueData")) {
    slot_ = FreeSlot(*queue);
    StoreSlot(slot_, user_);
  }
  return std::nullopt;
}

void Logons::Leave() {
  user_.clear();
  by_windows_ = false;
  if (slot_ != 0) StoreSlot(std::exchange(slot_, 0), L"");
}

std::int32_t Logons::FreeSlot(const Table& queue) const {
  for (std::int32_t slot = 1; slot <= queue.size(); ++slot) {
    const std::wstring name = CellOf(queue, slot, L"LOGON_NAME").ToText();
    if (Trimmed(name).empty() || CellOf(queue, slot, L"EMPTY_FLAG").ToBoolean()) return slot;
  }
  return queue.size() + 1;
}

void Logons::StoreSlot(std::int32_t slot, std::wstring_view user) {
  Table& queue = *company_.Find(L"QueueData");
  Row row(queue.columns().size());
  const auto set = [&](std::wstring_view column, const Value& value) {
    const int found = queue.columns().Find(column);
    if (found < 0) return;
    const auto place = static_cast<std::size_t>(found);
    row[place] = ConvertTo(queue.columns()[place].type, value);
  };
  set(L"LOGON_NAME", user);
  set(L"STATION_NAME", user.empty() ? std::wstring_view() : kStation);
  set(L"EMPTY_FLAG", user.empty());
  queue.Store(slot, std::move(row));
}

}  // namespace ard::simulator
