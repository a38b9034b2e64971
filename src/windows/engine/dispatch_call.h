// Calls to automation objects by dispatch id: arguments in, results and exceptions out.
#ifndef ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_
#define ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "engine/seam.h"
#include "windows/engine/variant.h"

namespace ard::windows {

// Each kind of argument, stored in a variant that is empty at first.
inline void Store(VARIANT& argument, std::wstring_view text) {
  argument.bstrVal = NewBstr(text);
  argument.vt = VT_BSTR;
}

inline void Store(VARIANT& argument, std::int32_t number) {
  argument.vt = VT_I4;
  argument.lVal = number;
}

inline void Store(VARIANT& argument, LONG* number) {
  argument.vt = VT_BYREF | VT_I4;
  argument.plVal = number;
}

inline void Store(VARIANT& argument, engine::Mode mode) {
  Store(argument, static_cast<std::int32_t>(mode));
}

inline void Store(VARIANT& argument, engine::Match match) {
  argument.vt = VT_BOOL;
  argument.boolVal = match == engine::Match::kPartial ? VARIANT_TRUE : VARIANT_FALSE;
}

inline void Store(VARIANT& argument, ComPtr<IDispatch> object) {
  argument.vt = VT_DISPATCH;
  argument.pdispVal = object.Detach();
}

inline void Store(VARIANT& argument, const Value& value) { argument = ToVariant(value).Detach(); }

// Arguments as a call takes them: on the stack, the last one first. Each owns its text, in memory
// of the system's: a server whose parameters are by reference may free it and put another there.
template <class... Arguments>
std::array<ScopedVariant, sizeof...(Arguments)> Reversed(const Arguments&... arguments) {
  std::array<ScopedVariant, sizeof...(Arguments)> list;
  [[maybe_unused]] std::size_t next = list.size();
  (Store(list[--next], arguments), ...);
  return list;
}

// Someone else's object. A call that fails throws Error with the number and the text that the
// object tells.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  // Calls a member that has a result.
  template <class... Arguments>
  ScopedVariant Ask(DISPID id, const Arguments&... arguments) const {
    auto list = Reversed(arguments...);
    DISPPARAMS parameters = {list.data(), nullptr, static_cast<UINT>(list.size()), 0};
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

  // The object that a member gives; null when it gives none, or fails.
  ComPtr<IDispatch> AskForObject(DISPID id, const auto&... arguments) const {
    auto list = Reversed(arguments...);
    DISPPARAMS parameters = {list.data(), nullptr, static_cast<UINT>(list.size()), 0};
    ScopedVariant result;
    ExceptionInfo exception;
    const HRESULT outcome =
        TryToInvoke(id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, &result, exception);
    const bool is_object = result.vt == VT_DISPATCH || result.vt == VT_UNKNOWN;
    if (FAILED(outcome) || !is_object || !result.punkVal) return {};
    return ToDispatch(std::move(result));
  }

  // Calls a member that has none.
  template <class... Arguments>
  void Do(DISPID id, const Arguments&... arguments) const {
    auto list = Reversed(arguments...);
    DISPPARAMS parameters = {list.data(), nullptr, static_cast<UINT>(list.size()), 0};
    Invoke(id, DISPATCH_METHOD, parameters, nullptr);
  }

  template <class Argument>
  void Put(DISPID id, const Argument& argument) const {
    ScopedVariant value;
    Store(value, argument);
    DISPID what = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {&value, &what, 1, 1};
    Invoke(id, DISPATCH_PROPERTYPUT, parameters, nullptr);
  }

  // Throws Error when the object has no member of that name.
  DISPID LookUp(const wchar_t* name) const;
  bool Has(const wchar_t* name) const;

 private:
  // What a server says about a failing call of its own.
  struct ExceptionInfo : EXCEPINFO {
    ExceptionInfo() : EXCEPINFO{} {}
    ~ExceptionInfo() {
      for (const BSTR text : {bstrSource, bstrDescription, bstrHelpFile}) {
        if (text)
          SysFreeString(text);  // most calls tell nothing, and pay for no call of the system
      }
    }
  };

  HRESULT TryToLookUp(const wchar_t* name, DISPID& id) const;
  HRESULT TryToInvoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                      ExceptionInfo& exception) const;
  void Invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result) const;

  ComPtr<IDispatch> object_;
};

// The ids of the members of one type of object that are looked up by name: each when it is first
// asked for. `kNames` is the array of their names.
template <const auto& kNames>
class NamedIds {
 public:
  NamedIds() { ids_.fill(DISPID_UNKNOWN); }

  DISPID Get(const LateBound& object, std::size_t member) {
    DISPID& id = ids_[member];
    if (id == DISPID_UNKNOWN) id = object.LookUp(kNames[member]);
    return id;
  }

 private:
  std::array<DISPID, std::size(kNames)> ids_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_
