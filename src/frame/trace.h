// The trace: errors are swallowed by contract, so this is where they can be seen. When a sink is
// attached, every public call is recorded with its duration and whether its answer was neutral,
// every skipped step with its number and text, and what else decided something; with detail, the
// arguments and the answer, too. Each line has the number of the call that it belongs to. Off, it
// costs one test. Passwords never go in, and the values of fields only as the answer of a call.
#ifndef ARD_FRAME_TRACE_H_
#define ARD_FRAME_TRACE_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/name.h"
#include "frame/text_array.h"
#include "frame/value.h"

namespace ard {

// What a step did, put together only when there is something to tell: SalesRecord.Fields("NAME").
struct Step {
  Name object;
  Name operation;
  Name detail = L"";
};

struct Nothing;

// A value of a call as the trace sees it: an argument, an output or the answer. It refers to the
// value, which is looked at when the call has ended.
class Seen {
 public:
  Seen(const Nothing&) : kind_(Kind::kNone) {}
  Seen(const bool& value) : kind_(Kind::kBoolean), value_(&value) {}
  Seen(const std::int16_t& value) : kind_(Kind::kInteger), value_(&value) {}
  Seen(const std::int32_t& value) : kind_(Kind::kLong), value_(&value) {}
  Seen(const double& value) : kind_(Kind::kDouble), value_(&value) {}
  Seen(const Date& value) : kind_(Kind::kDate), value_(&value) {}
  Seen(const std::wstring& value) : kind_(Kind::kText), value_(&value) {}
  Seen(const std::wstring_view& value) : kind_(Kind::kTextView), value_(&value) {}
  Seen(const TextArray& value) : kind_(Kind::kTexts), value_(&value) {}
  template <class Enumeration>
  requires std::is_enum_v<Enumeration> Seen(const Enumeration& value)
      : kind_(Kind::kLong), value_(&value) {
    static_assert(sizeof value == sizeof(std::int32_t));
  }
  // Some object, or none.
  template <class Pointer>
  requires(!std::is_enum_v<Pointer>) Seen(const Pointer& object)
      : kind_(Kind::kObject), value_(object ? &object : nullptr) {}

  bool has_value() const { return kind_ != Kind::kNone; }
  bool is_output() const { return is_output_; }
  // Whether that is what a call answers in which nothing goes well.
  bool IsNeutral() const;
  // As a host would write it: "A ""B""", 1.5, True, 2026-11-21, {"A", "B"}, Object, Nothing.
  std::wstring ToText() const;

 private:
  friend Seen Output(const auto& value);
  enum class Kind : std::uint8_t {
    kNone,
    kBoolean,
    kInteger,
    kLong,
    kDouble,
    kDate,
    kText,
    kTextView,
    kTexts,
    kObject,
  };
  template <class T>
  const T& As() const {
    return *static_cast<const T*>(value_);
  }

  Kind kind_;
  bool is_output_ = false;
  const void* value_ = nullptr;
};

// A parameter that the call puts out.
Seen Output(const auto& value) {
  Seen seen(value);
  seen.is_output_ = true;
  return seen;
}

class Trace {
 public:
  // Takes one finished line of UTF-8, without its line break.
  using Sink = std::function<void(std::string_view line)>;

  Trace() = default;
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  // What a trace is told about where it runs.
  struct Origin {
    bool detail = false;                  // whether arguments and answers are written
    std::uint32_t process = 0;            // that writes it, by its number
    std::uint32_t (*thread)() = nullptr;  // the current one's; null where there is but one
    std::wstring_view about = {};         // what the first line tells of the process; "" for none
  };

  void Attach(Sink sink) { Attach(std::move(sink), Origin()); }
  void Attach(Sink sink, const Origin& origin);
  bool on() const { return on_; }

  // A public call while it runs. What is written meanwhile, by the same thread, belongs to it. It
  // is filled when it begins, so that one that is not traced costs nothing.
  struct Call {
    std::wstring_view object;
    std::wstring_view member;
    std::chrono::steady_clock::time_point start;
    std::uint32_t thread;
    std::uint32_t number;
    Call* outer;  // the one that was begun before, of whatever thread
  };
  void Begin(Call& call, std::wstring_view object, std::wstring_view member) noexcept;
  // Writes its line. Each call that has begun has to end.
  void End(Call& call, std::wstring_view result_type, const Seen& result,
           std::initializer_list<Seen> arguments) noexcept;

  // Notes that `step` was skipped because of the exception now being handled.
  // Call it only inside a catch block.
  void SkippedByException(const Step& step) noexcept;
  // Notes it, where that is no failure: some engines have it, some have not.
  void NotedByException(const Step& step) noexcept;
  void Skipped(const Step& step, std::int32_t number, std::wstring_view text) noexcept;

  // Notes what came of a step that has not failed.
  void Noted(const Step& step, Name text) noexcept;

  // Notes that the user has seen a message.
  void Shown(std::wstring_view title, std::wstring_view text) noexcept;

 private:
  // Writes a line: the time, the process, the number of the call, and these cells. The number is
  // that of `call`, or else of the current thread's innermost, behind those that it runs in.
  void Write(std::initializer_list<std::string_view> cells, const Call* call = nullptr);
  std::uint32_t Thread() const { return origin_.thread ? origin_.thread() : 0; }

  bool on_ = false;
  Sink sink_;
  Origin origin_;
  std::mutex mutex_;
  std::uint32_t calls_ = 0;
  Call* running_ = nullptr;  // the last one begun
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
