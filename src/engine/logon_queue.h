// The engine's logon queue: who is logged on to the accounts data.
#ifndef ARD_ENGINE_LOGON_QUEUE_H_
#define ARD_ENGINE_LOGON_QUEUE_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/handles.h"
#include "frame/text.h"

namespace ard::engine {

// Walks the slots in use, in the order of the queue. A slot that cannot be read counts as free.
class LogonQueue {
 public:
  explicit LogonQueue(const Context& context);

  bool is_open() const { return is_open_; }
  // Goes to the next slot in use, or to the first; false when there is none.
  bool Next();
  // Of the slot; both without blanks around them. The name lasts until the next slot.
  std::wstring_view name() const { return Trimmed(name_); }
  std::wstring Station();

 private:
  DataFile queue_;
  bool is_open_;
  std::int32_t slots_;
  std::int32_t slot_ = 0;
  std::wstring name_;
};

}  // namespace ard::engine

#endif  // ARD_ENGINE_LOGON_QUEUE_H_
