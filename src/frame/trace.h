// The trace: errors are swallowed by contract, so this is where they can be seen. When a sink is
// attached, every public call is recorded with its duration and result type, every skipped step
// with its number and text, and what else decided something. Off, it costs one test. Passwords and
// field values never go in.
#ifndef ARD_FRAME_TRACE_H_
#define ARD_FRAME_TRACE_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string_view>
#include <type_traits>

namespace ard {

// What a step did, put together only when there is something to tell: SalesRecord.Fields("NAME").
struct Step {
  std::wstring_view object;
  std::wstring_view operation;
  std::wstring_view detail = {};
};

class Trace {
 public:
  // Takes one finished line of UTF-8, without its line break.
  using Sink = std::function<void(std::string_view line)>;

  Trace() = default;
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  void Attach(Sink sink);
  bool on() const { return on_; }

  // Notes that `step` was skipped because of the exception now being handled.
  // Call it only inside a catch block.
  void SkippedByException(const Step& step) noexcept;
  void Skipped(const Step& step, std::int32_t number, std::wstring_view text) noexcept;

  // Notes what came of a step that has not failed.
  void Noted(const Step& step, std::wstring_view text) noexcept;

  void Called(std::wstring_view object, std::wstring_view member, std::wstring_view result_type,
              std::chrono::steady_clock::duration duration) noexcept;

  // Notes that the user has seen a message.
  void Shown(std::wstring_view title, std::wstring_view text) noexcept;

 private:
  void Write(std::string_view line);

  bool on_ = false;
  Sink sink_;
  std::mutex mutex_;
};

// Runs one step. A step that throws is skipped and noted; returns whether it went through.
// `describe` gives the Step, and is called only then. Inlined, a step that goes well costs nothing
// but itself.
template <class Describe, class Action>
requires std::is_invocable_r_v<Step, Describe>
[[gnu::always_inline]] inline bool Attempt(Trace& trace, Describe&& describe,
                                           Action&& action) noexcept {
  try {
    action();
    return true;
  } catch (...) {
    trace.SkippedByException(describe());
    return false;
  }
}
template <class Action>
bool Attempt(Trace& trace, const Step& step, Action&& action) noexcept {
  return Attempt(
      trace, [&] { return step; }, action);
}

}  // namespace ard

#endif  // ARD_FRAME_TRACE_H_
