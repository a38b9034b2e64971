#include "simulator/company_share.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

using Sharing = SharedFile::Sharing;

// Where in the file the locks are: of turns at tables, of slots, of records.
constexpr std::uint64_t kFirstSlot = 1000;
constexpr std::uint64_t Place(std::size_t table, std::int32_t record) {
  return (std::uint64_t{table} + 1) << 32 | static_cast<std::uint32_t>(record);
}

}  // namespace

std::unique_ptr<CompanyShare> CompanyShare::Open(const std::filesystem::path& folder) {
  auto file = SharedFile::Open(folder / "company.lock", sizeof(State));
  if (!file) return nullptr;
  return std::unique_ptr<CompanyShare>(new CompanyShare(std::move(file)));
}

std::uint32_t* CompanyShare::stores(std::size_t table) const { return &state().stores[table]; }

void CompanyShare::CountStore(std::size_t table) { ++std::atomic_ref(state().stores[table]); }

CompanyShare::Turn::Turn(CompanyShare* share, std::size_t table, Sharing sharing)
    : share_(share), table_(table) {
  if (share_ == nullptr) return;
  if (sharing == Sharing::kNone && !share_->is_writable()) {
    throw Error(kErrorFailed, L"company.lock cannot be written.");
  }
  if (share_->turns_[table_] == 0) share_->file_->Lock(table_, sharing);
  ++share_->turns_[table_];
}

CompanyShare::Turn::~Turn() {
  if (share_ != nullptr && --share_->turns_[table_] == 0) share_->file_->Unlock(table_);
}

std::shared_ptr<void> CompanyShare::TryHold(std::size_t table, std::int32_t record) {
  const std::uint64_t place = Place(table, record);
  if (const auto found = held_.find(place); found != held_.end()) return found->second.lock();
  if (!file_->TryLock(place)) return nullptr;
  std::shared_ptr<void> held(this, [this, place](void*) {
    file_->Unlock(place);
    held_.erase(place);
  });
  held_[place] = held;
  return held;
}

std::wstring CompanyShare::OtherUser(std::size_t slot) const {
  const char* const user = state().users[slot];
  const bool taken = user[0] != '\0' && file_->IsLocked(kFirstSlot + slot);
  return taken ? FromUtf8({user, strnlen(user, sizeof state().users[slot])}) : std::wstring();
}

void CompanyShare::TakeSlot(std::size_t slot, std::wstring_view user) {
  const std::string name = ToUtf8(user);
  char(&place)[sizeof state().users[slot]] = state().users[slot];
  if (name.size() >= sizeof place) throw Error(kErrorOverflow, L"The user's name is too long.");
  if (!file_->TryLock(kFirstSlot + slot)) {
    throw Error(kErrorFailed, L"The slot of the logon queue is taken.");
  }
  *std::copy(name.begin(), name.end(), place) = '\0';
}

void CompanyShare::LeaveSlot(std::size_t slot) {
  state().users[slot][0] = '\0';
  file_->Unlock(kFirstSlot + slot);
}

}  // namespace ard::simulator
