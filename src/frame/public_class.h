// The base of the portable side of every automation class: its context, and the frame in which
// each public method runs.
#ifndef ARD_FRAME_PUBLIC_CLASS_H_
#define ARD_FRAME_PUBLIC_CLASS_H_

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "frame/context.h"
#include "frame/name.h"
#include "frame/value.h"

namespace ard {

// The name of a result type as the published interface has it.
template <class Result>
inline constexpr std::wstring_view kTypeName = L"Object";
template <>
inline constexpr std::wstring_view kTypeName<bool> = L"Boolean";
template <>
inline constexpr std::wstring_view kTypeName<std::int16_t> = L"Integer";
template <>
inline constexpr std::wstring_view kTypeName<std::int32_t> = L"Long";
template <>
inline constexpr std::wstring_view kTypeName<double> = L"Double";
template <>
inline constexpr std::wstring_view kTypeName<Date> = L"Date";
template <>
inline constexpr std::wstring_view kTypeName<std::wstring> = L"String";

// The result of a method that has none.
struct Nothing {};
template <>
inline constexpr std::wstring_view kTypeName<Nothing> = L"";

class PublicClass {
 public:
  PublicClass(const PublicClass&) = delete;
  PublicClass& operator=(const PublicClass&) = delete;

  // The published class name, such as "Customers".
  std::wstring_view name() const { return name_; }
  Context& context() { return context_; }
  const Context& context() const { return context_; }

 protected:
  PublicClass(std::wstring_view name, Environment& environment)
      : name_(name), context_(environment) {}
  ~PublicClass() = default;

  // Runs a public method: `body` fills its result, which starts neutral. Whatever goes wrong in
  // it, nothing leaves this frame, and the result is what had been assigned by then.
  template <class Result, class Body>
  Result Call(Name member, Body&& body) const noexcept {
    Trace& trace = context_.trace();
    const auto describe = [&] { return Step{name_, member}; };
    Result result{};
    if (!trace.on()) {
      Attempt(trace, describe, [&] { body(result); });
      return result;
    }
    const auto start = std::chrono::steady_clock::now();
    Attempt(trace, describe, [&] { body(result); });
    trace.Called(name_, member, kTypeName<Result>, std::chrono::steady_clock::now() - start);
    return result;
  }

  // The same for a method without a result.
  template <class Body>
  void Run(Name member, Body&& body) const noexcept {
    Call<Nothing>(member, [&](Nothing&) { body(); });
  }

 private:
  std::wstring_view name_;
  Context context_;
};

}  // namespace ard

#endif  // ARD_FRAME_PUBLIC_CLASS_H_
