#include "engine/logon_queue.h"

#include <cstdint>
#include <utility>

#include "engine/handles.h"

namespace ard::engine {

std::vector<ActiveLogon> ActiveLogons(const Context& context) {
  std::vector<ActiveLogon> logons;
  DataFile queue(context, L"QueueData");
  if (!queue.Open(Mode::kRead)) return logons;
  const std::int32_t count = queue.Count();
  for (std::int32_t slot = 1; slot <= count; ++slot) {
    if (!queue.Read(slot)) continue;
    ActiveLogon logon;
    bool empty = true;
    queue.Get(L"LOGON_NAME", logon.name, kTrimmed);
    queue.Get(L"EMPTY_FLAG", empty);
    if (logon.name.empty() || empty) continue;
    queue.Get(L"STATION_NAME", logon.station, kTrimmed);
    logons.push_back(std::move(logon));
  }
  return logons;
}

}  // namespace ard::engine
