#include "engine/logon_queue.h"

namespace ard::engine {
namespace {

constexpr std::wstring_view kQueue = L"QueueData";
constexpr std::wstring_view kName = L"LOGON_NAME";
constexpr std::wstring_view kEmptyFlag = L"EMPTY_FLAG";
constexpr std::wstring_view kStation = L"STATION_NAME";

}  // namespace

LogonQueue::LogonQueue(const Context& context)
    : queue_(context, kQueue), is_open_(queue_.Open(Mode::kRead)), slots_(queue_.Count()) {}

bool LogonQueue::Next() {
  while (slot_ < slots_) {
    if (!queue_.Read(++slot_) || !queue_.Get(kName, name_)) continue;
    if (name_.find_first_not_of(L' ') == std::wstring::npos) continue;
    bool empty = true;
    queue_.Get(kEmptyFlag, empty);
    if (!empty) return true;
  }
  return false;
}

std::wstring LogonQueue::Station() {
  std::wstring station;
  queue_.Get(kStation, station, kTrimmed);
  return station;
}

}  // namespace ard::engine
