// The base of the portable side of every automation class: its context, and the frame in which
// each public method runs.
#ifndef ARD_FRAME_PUBLIC_CLASS_H_
#define ARD_FRAME_PUBLIC_CLASS_H_

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "frame/context.h"
#include "frame/name.h"
#include "frame/value.h"

namespace ard {

// The name of a result type as the published interface has it; none for a method without a result.
template <class Result>
inline constexpr std::wstring_view kTypeName;
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
  // it, nothing leaves this frame, and the result is what had been assigned by then. The arguments,
  // in the published order, are for the trace.
  template <class Result, class Body>
  Result Call(Name member, std::initializer_list<Seen> arguments, Body&& body) const noexcept {
    Trace& trace = context_.trace();
    const auto describe = [&] { return Step{name_, member}; };
    Result result{};
    Trace::Call call;
    const bool traced = trace.on();
    if (traced) trace.Begin(call, name_, member);
    context_.Enter();
    Attempt(trace, describe, [&] { body(result); });
    context_.Leave();
    if (traced) trace.End(call, kTypeName<Result>, result, arguments);
    return result;
  }
  template <class Result, class Body>
  Result Call(std::wstring_view member, Body&& body) const noexcept {
    return Call<Result>(member, {}, body);
  }

  // The same for a method without a result.
  template <class Body>
  void Run(Name member, std::initializer_list<Seen> arguments, Body&& body) const noexcept {
    Call<Nothing>(member, arguments, [&](Nothing&) { body(); });
  }

  // Tells the trace which branch of a member has decided, and why: a refusal, above all.
  void NoteDecision(Name member, Name why) const noexcept {
    context_.trace().Noted({name_, member}, why);
  }

 private:
  std::wstring_view name_;
  Context context_;
};

// A class with properties of its own, which are members of `Details`. It lists them by their
// published names in `kProperties`, a table of structures with a `name` and a `member`.
template <class Details>
class PropertyClass : public PublicClass {
 public:
  Details& details() { return details_; }
  const Details& details() const { return details_; }

  // As a host gets and sets them.
  template <class T>
  T Get(Name property, T Details::*member) const noexcept {
    return Call<T>(property, [&](T& value) { value = details_.*member; });
  }
  template <class T, class Value>
  void Put(Name property, T Details::*member, const Value& value) noexcept {
    Run(property, {value}, [&] { details_.*member = value; });
  }

 protected:
  using PublicClass::PublicClass;
  ~PropertyClass() = default;

 private:
  Details details_;
};

// A row of `kProperties`.
template <class Details>
struct Property {
  std::wstring_view name;
  std::variant<std::wstring Details::*, bool Details::*> member;
};

}  // namespace ard

#endif  // ARD_FRAME_PUBLIC_CLASS_H_
