// The engine's logon queue: who is logged on to the accounts data.
#ifndef ARD_ENGINE_LOGON_QUEUE_H_
#define ARD_ENGINE_LOGON_QUEUE_H_

#include <string>
#include <vector>

#include "frame/context.h"

namespace ard::engine {

// Both without blanks around them.
struct ActiveLogon {
  std::wstring name;
  std::wstring station;
};

// The slots in use, in the order of the queue. A slot that cannot be read counts as free.
std::vector<ActiveLogon> ActiveLogons(const Context& context);

}  // namespace ard::engine

#endif  // ARD_ENGINE_LOGON_QUEUE_H_
