// Calls to automation objects by dispatch id: arguments in, results and exceptions out.
#ifndef ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_
#define ARD_WINDOWS_ENGINE_DISPATCH_CALL_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "engine/seam.h"
#include "windows/engine/variant.h"
#include "windows/floating_point.h"

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

void Store(VARIANT& argument, const ScopedVariant& value);

// A name that an engine is asked for again and again, as an argument, and where its text is kept.
struct KnownName {
  std::wstring_view name;
  BSTR& kept;
};

// The texts of such names, as automation's, which are dear to make and to free. One that is passed
// is the call's own while it lasts; what the server has left of it is kept for the next.
class KnownNames {
 public:
  KnownNames() = default;
  KnownNames(const KnownNames&) = delete;
  KnownNames& operator=(const KnownNames&) = delete;
  ~KnownNames() {
    for (const BSTR text : texts_) SysFreeString(text);
  }

  KnownName Find(std::wstring_view name) { return {name, texts_[Place(name)]}; }

 private:
  // As many as let the names of one call mostly have places of their own.
  static constexpr int kPlaceBits = 7;

  // Every letter counts: T1_RATE, T2_RATE.
  static std::size_t Place(std::wstring_view name) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
    std::uint64_t place = 0;
    if (name.size() < kWord) {
      for (const wchar_t letter : name) place = place << 16 | letter;
    } else {
      const wchar_t* const last = name.data() + name.size() - kWord;
      for (const wchar_t* at = name.data(); at < last; at += kWord) {
        place = (place ^ WordAt(at)) * kSpread;
      }
      place ^= WordAt(last);
    }
    return static_cast<std::size_t>(place * kSpread >> (64 - kPlaceBits));
  }

  std::array<BSTR, 1 << kPlaceBits> texts_{};
};

inline void Store(VARIANT& argument, const KnownName& known) {
  BSTR text = std::exchange(known.kept, nullptr);
  if (!text || !IsSame(View(text), known.name)) {
    SysFreeString(text);
    text = NewBstr(known.name);
  }
  argument.bstrVal = text;
  argument.vt = VT_BSTR;
}

// What becomes of an argument after a call.
inline void TakeBack(VARIANT&, const auto&) {}
inline void TakeBack(VARIANT& argument, const KnownName& known) {
  if (argument.vt != VT_BSTR) return;
  SysFreeString(std::exchange(known.kept, std::exchange(argument.bstrVal, nullptr)));
}

// Arguments as a call takes them: on the stack, the last one first. Each owns its text, in memory
// of the system's: a server whose parameters are by reference may free it and put another there.
template <class... Arguments>
class ArgumentList : public DISPPARAMS {
 public:
  explicit ArgumentList(const Arguments&... arguments)
      : DISPPARAMS{nullptr, nullptr, sizeof...(Arguments), 0}, arguments_(arguments...) {
    rgvarg = list_.data();
    [[maybe_unused]] std::size_t next = list_.size();
    (Store(list_[--next], arguments), ...);
  }
  ArgumentList(const ArgumentList&) = delete;
  ArgumentList& operator=(const ArgumentList&) = delete;
  ~ArgumentList() {
    std::apply(
        [&](const Arguments&... arguments) {
          [[maybe_unused]] std::size_t next = list_.size();
          (TakeBack(list_[--next], arguments), ...);
        },
        arguments_);
  }

 private:
  std::array<ScopedVariant, sizeof...(Arguments)> list_;
  std::tuple<const Arguments&...> arguments_;
};

// Someone else's object. A call that fails throws Error with the number and the text that the
// object tells.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  LateBound(const LateBound&) = default;
  LateBound(LateBound&&) = default;
  LateBound& operator=(const LateBound&) = default;
  LateBound& operator=(LateBound&&) = default;
  ~LateBound() {
    if (!object_) return;
    object_ = {};
    FloatingPoint::Establish();
  }

  // Calls a member that has a result.
  template <class... Arguments>
  ScopedVariant Ask(DISPID id, const Arguments&... arguments) const {
    ArgumentList parameters(arguments...);
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
    ScopedVariant answer = Ask(id, arguments...);
    // Most steps of a call ask for one, so the usual answer is taken without two functions more.
    if (answer.vt != VT_DISPATCH || !answer.pdispVal) return ToDispatch(std::move(answer));
    answer.vt = VT_EMPTY;
    return ComPtr<IDispatch>::Adopt(answer.pdispVal);
  }

  // The object that a member gives; null when it gives none, or fails.
  ComPtr<IDispatch> AskForObject(DISPID id, const auto&... arguments) const {
    ArgumentList parameters(arguments...);
    ScopedVariant result;
    ExceptionInfo exception;
    const HRESULT outcome =
        TryToInvoke(id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, &result, exception);
    return SUCCEEDED(outcome) ? ObjectIn(std::move(result)) : ComPtr<IDispatch>();
  }

  // Calls a member that has none.
  template <class... Arguments>
  void Do(DISPID id, const Arguments&... arguments) const {
    ArgumentList parameters(arguments...);
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
      // Most calls tell nothing, and pay for no call of the system.
      if (!bstrSource && !bstrDescription && !bstrHelpFile) return;
      for (const BSTR text : {bstrSource, bstrDescription, bstrHelpFile}) SysFreeString(text);
    }
  };

  HRESULT TryToLookUp(const wchar_t* name, DISPID& id) const;
  HRESULT TryToInvoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                      ExceptionInfo& exception) const;
  [[noreturn, gnu::noinline]] static void ThrowFailure(HRESULT outcome, ExceptionInfo& info);
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
