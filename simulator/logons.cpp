#include "simulator/logons.h"

#include <utility>

#include "frame/text.h"
#include "simulator/queue_table.h"

namespace ard::simulator {
namespace {

constexpr const char* kRegister = "queue.dta";
constexpr std::wstring_view kManager = L"MANAGER";

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
  if (hold) held_.emplace(company_.folder() / kRegister);
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
  if (IsHeld()) return kHeldExclusively;
  Leave();
  std::wstring name = UpperCase(Trimmed(user));
  if (QueueTable* const queue = Queue()) queue->Enter(name);
  user_ = std::move(name);
  by_windows_ = by_windows;
  return std::nullopt;
}

void Logons::Leave() {
  user_.clear();
  by_windows_ = false;
  if (QueueTable* const queue = Queue()) queue->Leave();
}

bool Logons::IsHeld() const {
  const std::filesystem::path file = company_.folder() / kRegister;
  if (company_.folder().empty() || !std::filesystem::exists(file)) return false;
  try {
    TryToRead(file.wstring());
    return false;
  } catch (const Error&) {
    return true;
  }
}

QueueTable* Logons::Queue() const { return dynamic_cast<QueueTable*>(company_.Find(L"QueueData")); }

}  // namespace ard::simulator
