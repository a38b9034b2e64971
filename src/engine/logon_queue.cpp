#include "engine/logon_queue.h"

namespace ard::engine {
namespace {

constexpr std::wstring_view kQueue = L"QueueData";
constexpr std::wstring_view kName = L"LOGON_NAME";
constexpr std::wstring_view kEmptyFlag = L"EMPTY_FLAG";
constexpr std::wstring_view kStation = L"STATION_NAME";

}  // namespace

LogonQueue::LogonQueue(const Context& context)
    : queue_(context, kQueue),
      name_of_(queue_, kName),
      empty_flag_(queue_, kEmptyFlag),
      station_of_(queue_, kStation) {
  if (queue_.Open(Mode::kRead)) slots_ = queue_.Count();
}

bool LogonQueue::Next() {
  while (slot_ < slots_) {
    if (!queue_.Read(++slot_) || !name_of_.Get(name_)) continue;
    bool empty = true;
    const bool named = name_.find_first_not_of(L' ') != std::wstring::npos;
    if (named && empty_flag_.Get(empty) && !empty) return true;
  }
  return false;
}

std::wstring LogonQueue::Station() {
  std::wstring station;
  station_of_.Get(station);
  Trim(station);
  return station;
}

}  // namespace ard::engine
