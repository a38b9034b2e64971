// Calls to automation objects by dispatch id: arguments in, results and exceptions out.
#ifndef ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_
#define ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "engine/seam.h"
#include "windows/engine/variant.h"

namespace ard::windows {

// What one argument refers to, for as long as a call takes. Servers only read their arguments, so a
// short text needs no memory of the system's: it is an automation string on the stack.
class ArgumentContent {
 public:
  ArgumentContent() {}  // the short text stays as it is
  ArgumentContent(const ArgumentContent&) = delete;
  ArgumentContent& operator=(const ArgumentContent&) = delete;

  BSTR Keep(std::wstring_view text) {
    if (text.size() > kShortSize) return Keep(ToVariant(text)).bstrVal;
    short_text_.bytes = static_cast<std::uint32_t>(text.size() * sizeof(wchar_t));
    text.copy(short_text_.characters, text.size());
    short_text_.characters[text.size()] = L'\0';
    return short_text_.characters;
  }
  const VARIANT& Keep(ScopedVariant content) { return owned_ = std::move(content); }

 private:
  static constexpr std::size_t kShortSize = 63;

  // The length stands before the characters, which are aligned like the system's.
  struct alignas(16) ShortText {
    std::uint32_t unused[3];
    std::uint32_t bytes;
    wchar_t characters[kShortSize + 1];
  };

  ScopedVariant owned_;
  ShortText short_text_;
};

// Each kind of argument, stored in a variant that is empty at first and owns nothing.
inline void Store(VARIANT& argument, ArgumentContent& content, std::wstring_view text) {
  argument.bstrVal = content.Keep(text);
  argument.vt = VT_BSTR;
}

inline void Store(VARIANT& argument, ArgumentContent&, std::int32_t number) {
  argument.vt = VT_I4;
  argument.lVal = number;
}

inline void Store(VARIANT& argument, ArgumentContent&, LONG* number) {
  argument.vt = VT_BYREF | VT_I4;
  argument.plVal = number;
}

inline void Store(VARIANT& argument, ArgumentContent&, engine::Mode mode) {
  argument.vt = VT_I4;
  argument.lVal = static_cast<std::int32_t>(mode);
}

inline void Store(VARIANT& argument, ArgumentContent&, engine::Match match) {
  argument.vt = VT_BOOL;
  argument.boolVal = match == engine::Match::kPartial ? VARIANT_TRUE : VARIANT_FALSE;
}

inline void Store(VARIANT& argument, ArgumentContent&, const ComPtr<IDispatch>& object) {
  argument.vt = VT_DISPATCH;
  argument.pdispVal = object.get();
}

inline void Store(VARIANT& argument, ArgumentContent& content, const Value& value) {
  if (const auto* text = std::get_if<std::wstring>(&value.storage())) {
    Store(argument, content, std::wstring_view(*text));
  } else {
    argument = content.Keep(ToVariant(value));
  }
}

// Arguments as a call takes them: the last one first.
template <std::size_t n>
class ArgumentList {
 public:
  template <class... Arguments>
  explicit ArgumentList(const Arguments&... arguments) {
    [[maybe_unused]] std::size_t next = n;
    ((--next, Store(variants_[next], contents_[next], arguments)), ...);
  }

  VARIANT* data() { return variants_.data(); }
  UINT size() const { return static_cast<UINT>(n); }

 private:
  std::array<VARIANT, n> variants_{};
  std::array<ArgumentContent, n> contents_;
};
// Someone else's object. A call that fails throws Error with the number and the text that the
// object tells.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  // Calls a member that has a result.
  template <class... Arguments>
  ScopedVariant Ask(DISPID id, const Arguments&... arguments) const {
    ArgumentList<sizeof...(Arguments)> list(arguments...);
    DISPPARAMS parameters = {list.data(), nullptr, list.size(), 0};
    ScopedVariant result;
    Invoke(id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, &result);
    return result;
  }

  bool AskBoolean(DISPID id, const auto&... arguments) const {
    const ScopedVariant answer = Ask(id, arguments...);
    return answer.vt == VT_BOOL ? answer.boolVal != VARIANT_FALSE : FromVariant(answer).ToBoolean();
  }
  std::int32_t AskLong(DISPID id) const { return FromVariant(Ask(id)).ToLong(); }
  double AskDouble(DISPID id, const auto&... arguments) const {
    return FromVariant(Ask(id, arguments...)).ToDouble();
  }
  std::wstring AskText(DISPID id) const { return FromVariant(Ask(id)).ToText(); }
  ComPtr<IDispatch> AskObject(DISPID id, const auto&... arguments) const {
    return ToDispatch(Ask(id, arguments...));
  }

  // Calls a member that has none.
  template <class... Arguments>
  void Do(DISPID id, const Arguments&... arguments) const {
    ArgumentList<sizeof...(Arguments)> list(arguments...);
    DISPPARAMS parameters = {list.data(), nullptr, list.size(), 0};
    Invoke(id, DISPATCH_METHOD, parameters, nullptr);
  }

  template <class Argument>
  void Put(DISPID id, const Argument& argument) const {
    ArgumentList<1> list(argument);
    DISPID what = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {list.data(), &what, list.size(), 1};
    Invoke(id, DISPATCH_PROPERTYPUT, parameters, nullptr);
  }

  // Throws Error when the object has no member of that name.
  DISPID LookUp(const wchar_t* name) const;

 private:
  void Invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result) const;

  ComPtr<IDispatch> object_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_
