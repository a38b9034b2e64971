// Late-bound calls: what IDispatch::Invoke does, made of tables. A table lists the members of an
// interface in their published order, each with its published signature:
//
//   Property<&_Customers::get_AppName, &_Customers::put_AppName, String>,
//   Method<&_Customers::GetName, String(String)>,
//
// A member's id is its place in the table, from 1. The arguments are converted to what the vtable
// takes. Script hosts pass their variables as references to variants, and that is good for every
// kind of parameter: a variable passed for an output, of whatever type, holds the output after the
// call.
#ifndef ARD_WINDOWS_SERVER_DISPATCH_H_
#define ARD_WINDOWS_SERVER_DISPATCH_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>

#include "frame/trace.h"
#include "windows/engine/com.h"
#include "windows/floating_point.h"
#include "windows/server/string_array.h"

namespace ard::windows {

// The types of the published interface, and where a variant holds them. Names alone tell some
// apart: to the compiler a Boolean is an Integer.
struct String {
  using Type = BSTR;
  static constexpr VARTYPE kVt = VT_BSTR;
  static Type& In(VARIANT& variant) { return variant.bstrVal; }
};
struct Boolean {
  using Type = VARIANT_BOOL;
  static constexpr VARTYPE kVt = VT_BOOL;
  static Type& In(VARIANT& variant) { return variant.boolVal; }
};
struct Integer {
  using Type = SHORT;
  static constexpr VARTYPE kVt = VT_I2;
  static Type& In(VARIANT& variant) { return variant.iVal; }
};
struct Long {
  using Type = LONG;
  static constexpr VARTYPE kVt = VT_I4;
  static Type& In(VARIANT& variant) { return variant.lVal; }
};
struct Double {
  using Type = DOUBLE;
  static constexpr VARTYPE kVt = VT_R8;
  static Type& In(VARIANT& variant) { return variant.dblVal; }
};
struct DateTime {
  using Type = DATE;
  static constexpr VARTYPE kVt = VT_DATE;
  static Type& In(VARIANT& variant) { return variant.date; }
};
struct ObjectReference {
  using Type = IDispatch*;
  static constexpr VARTYPE kVt = VT_DISPATCH;
  static Type& In(VARIANT& variant) { return variant.pdispVal; }
};
// A published enumeration: a Long that the vtable has another name for.
template <class E>
struct Enumeration : Long {};
// A parameter passed by reference: an output.
template <class T>
struct ByRef {};
// One passed by reference that the member only reads.
template <class T>
struct ReadByRef {};
// An array of strings by reference, dimensioned by the caller and filled by the member, which never
// resizes it. An array of variants does as well, and so does what JScript calls an array: an object
// with a `length` and elements `0`, `1` and so on.
struct StringArray {};
// A parameter that may be left out: it is `default_value` then.
template <class T, auto default_value>
struct Optional {};

inline constexpr UINT kMaxParameters = 8;

// The arguments of one call by parameter, from 0; null where one was left out.
struct Arguments {
  std::array<VARIANT*, kMaxParameters> values{};
  LCID locale = 0;
  bool* prepared = nullptr;                      // of Invoke
  std::array<HRESULT, kMaxParameters> stored{};  // whether an output is in its variable
};

// One way to use a member.
struct Procedure {
  // `failed` receives the parameter whose argument cannot be converted.
  using Call = HRESULT(IDispatch* object, Arguments& arguments, VARIANT& result, UINT& failed);

  WORD flags = 0;  // DISPATCH_...
  UINT parameters = 0;
  UINT required = 0;  // so many of them cannot be left out
  Call* call = nullptr;
};

// A method, or a property with its two procedures.
struct Member {
  Procedure get_or_call;
  Procedure put;
};

// What a class can be asked late-bound.
struct DispatchTable {
  const wchar_t* class_name;
  std::span<const Member> members;
  // What each of them and its parameters are called: L"GetName AccRef".
  std::span<const wchar_t* const> names;
};

// IDispatch::GetIDsOfNames. A parameter's id is its place, from 0.
HRESULT GetIDsOfNames(const DispatchTable& table, REFIID reserved, LPOLESTR* names, UINT count,
                      DISPID* ids);

// IDispatch::Invoke. The host's own mistakes (no such member, wrong number or type of arguments)
// are answered with the usual codes. An output that its variable cannot hold is noted in `trace`,
// and the variable stays as it was. `prepared` is true for the time of the member's call: what each
// procedure begins with has been done.
HRESULT Invoke(IDispatch* object, const DispatchTable& table, Trace& trace, bool& prepared,
               DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
               VARIANT* result, UINT* failed);

// What every procedure begins with, unless Invoke has.
class ProcedureEntry {
 public:
  ProcedureEntry(IUnknown* object, bool& prepared);
  ProcedureEntry(const ProcedureEntry&) = delete;
  ProcedureEntry& operator=(const ProcedureEntry&) = delete;
  ~ProcedureEntry();

 private:
  std::optional<FloatingPoint> floating_point_;
  ComPtr<IUnknown> self_;  // the host may let go of it in the middle
};

namespace internal {

// The variant that `argument` refers to; `argument` itself when it is none of a reference.
VARIANT* Referred(VARIANT* argument);

// Makes `argument` a variant of type `vt`, or of a reference to one: what it refers to when that
// is one, and no text, or else `converted`. No object at all is Nothing.
HRESULT Convert(VARIANT*& argument, VARTYPE vt, LCID locale, VARIANT& converted);

// A parameter of the kind `T` during a call: Load takes the argument, Get is what the member is
// passed, Store hands back what the member has put out.
template <class T>
class Parameter {
 public:
  static constexpr bool kRequired = true;

  HRESULT Load(VARIANT* argument, LCID locale) {
    value_ = argument;
    return Convert(value_, T::kVt, locale, converted_);
  }
  typename T::Type Get() {
    return value_->vt & VT_BYREF ? *static_cast<typename T::Type*>(value_->byref) : T::In(*value_);
  }
  HRESULT Store() { return S_OK; }

 protected:
  VARIANT* value_ = nullptr;
  ScopedVariant converted_;
};

template <class T>
class Parameter<ReadByRef<T>> : public Parameter<T> {
 public:
  typename T::Type* Get() {
    VARIANT& value = *this->value_;
    return value.vt & VT_BYREF ? static_cast<typename T::Type*>(value.byref) : &T::In(value);
  }
};

template <class E>
class Parameter<Enumeration<E>> : public Parameter<Long> {
 public:
  E Get() { return static_cast<E>(Parameter<Long>::Get()); }
};
template <class E>
class Parameter<ReadByRef<Enumeration<E>>> : public Parameter<ReadByRef<Long>> {
 public:
  E* Get() { return reinterpret_cast<E*>(Parameter<ReadByRef<Long>>::Get()); }
};

// What an output of type `vt` goes to. A variable of exactly this type is passed on. Any other is
// converted before the call, and starts neutral when it cannot be: what it has been used for before
// is no reason to refuse it. The output is put there after the call. JScript, which passes no
// variables, passes an object: its property `value` is the variable.
class OutputParameter {
 protected:
  HRESULT Load(VARIANT* argument, VARTYPE vt, LCID locale);
  HRESULT Store();

  void* output_ = nullptr;  // null for `converted_`
  ScopedVariant converted_;

 private:
  LCID locale_ = 0;
  VARIANT* variable_ = nullptr;
  ComPtr<IDispatch> holder_;
};

template <class T>
class Parameter<ByRef<T>> : private OutputParameter {
 public:
  static constexpr bool kRequired = true;

  HRESULT Load(VARIANT* argument, LCID locale) {
    return OutputParameter::Load(argument, T::kVt, locale);
  }
  typename T::Type* Get() {
    return output_ ? static_cast<typename T::Type*>(output_) : &T::In(converted_);
  }
  using OutputParameter::Store;
};

// Anything but an array of strings becomes one during the call; the elements that it has changed
// are put back.
template <>
class Parameter<StringArray> {
 public:
  static constexpr bool kRequired = true;

  Parameter() = default;
  Parameter(const Parameter&) = delete;
  Parameter& operator=(const Parameter&) = delete;
  ~Parameter();

  HRESULT Load(VARIANT* argument, LCID locale);
  SAFEARRAY** Get() { return strings_; }
  HRESULT Store();

 private:
  // The text of an element of the caller's, empty for what is none; of `made`, where it has to be
  // made.
  std::wstring_view Element(ULONG index, VARIANT& made);

  LCID locale_ = 0;
  SAFEARRAY** strings_ = &converted_;
  SAFEARRAY* converted_ = nullptr;
  // What `converted_` has been made of: locked for the time of the call, or held.
  std::optional<ArrayElements<VARIANT>> variants_;
  ComPtr<IDispatch> object_;
};

template <class T>
struct TypeOf : T {};
template <class T>
struct TypeOf<ByRef<T>> : T {};
template <class T>
struct TypeOf<ReadByRef<T>> : T {};

template <class T, auto default_value>
class Parameter<Optional<T, default_value>> : public Parameter<T> {
 public:
  static constexpr bool kRequired = false;

  HRESULT Load(VARIANT* argument, LCID locale) {
    if (argument) return Parameter<T>::Load(argument, locale);
    default_.vt = TypeOf<T>::kVt;
    TypeOf<T>::In(default_) = default_value;
    return Parameter<T>::Load(&default_, locale);
  }

 private:
  ScopedVariant default_;
};

template <class Class, class... Types>
Class* ClassOf(HRESULT (STDMETHODCALLTYPE Class::*)(Types...));

// Calls `member` with arguments of the kinds `Kinds`, and with more (where its result goes).
template <auto member, class... Kinds, class... More>
HRESULT CallMember(IDispatch* object, Arguments& arguments, UINT& failed, More... more) {
  using Interface = decltype(ClassOf(member));
  std::tuple<Parameter<Kinds>...> parameters;
  return std::apply(
      [&](auto&... parameter) {
        HRESULT status = S_OK;
        UINT loaded = 0;
        const bool all = ((status = parameter.Load(arguments.values[loaded], arguments.locale),
                           SUCCEEDED(status) && ++loaded) &&
                          ...);
        if (!all) {
          failed = loaded;
          return status;
        }
        *arguments.prepared = true;
        status = (static_cast<Interface>(object)->*member)(parameter.Get()..., more...);
        *arguments.prepared = false;
        HRESULT* stored = arguments.stored.data();
        ((*stored++ = parameter.Store()), ...);
        return status;
      },
      parameters);
}

template <auto member, class Signature>
struct Call;
template <auto member, class... Kinds>
struct Call<member, void(Kinds...)> {
  static HRESULT Run(IDispatch* object, Arguments& arguments, VARIANT&, UINT& failed) {
    return CallMember<member, Kinds...>(object, arguments, failed);
  }
};
template <auto member, class Result, class... Kinds>
struct Call<member, Result(Kinds...)> {
  static HRESULT Run(IDispatch* object, Arguments& arguments, VARIANT& result, UINT& failed) {
    auto& content = Result::In(result);
    content = {};
    const HRESULT status = CallMember<member, Kinds...>(object, arguments, failed, &content);
    if (SUCCEEDED(status)) result.vt = Result::kVt;
    return status;
  }
};

template <auto member, class Result, class... Kinds>
constexpr Procedure MakeProcedure(WORD flags, Result (*)(Kinds...)) {
  static_assert(sizeof...(Kinds) <= kMaxParameters);
  return {flags, sizeof...(Kinds), (0 + ... + (Parameter<Kinds>::kRequired ? 1 : 0)),
          &Call<member, Result(Kinds...)>::Run};
}
template <auto member, class Signature>
constexpr Procedure MakeProcedure(int flags) {
  return MakeProcedure<member>(static_cast<WORD>(flags), static_cast<Signature*>(nullptr));
}

}  // namespace internal

template <auto method, class Signature>
inline constexpr Member Method = {internal::MakeProcedure<method, Signature>(DISPATCH_METHOD), {}};

template <auto get, auto put, class T>
inline constexpr Member Property = {internal::MakeProcedure<get, T()>(DISPATCH_PROPERTYGET),
                                    internal::MakeProcedure<put, void(T)>(DISPATCH_PROPERTYPUT)};

template <auto get, class T>
inline constexpr Member ReadOnlyProperty = {internal::MakeProcedure<get, T()>(DISPATCH_PROPERTYGET),
                                            {}};

// Set by reference; a plain assignment is taken for the same.
template <auto get, auto putref>
inline constexpr Member ObjectProperty = {
    internal::MakeProcedure<get, ObjectReference()>(DISPATCH_PROPERTYGET),
    internal::MakeProcedure<putref, void(ObjectReference)>(DISPATCH_PROPERTYPUT |
                                                           DISPATCH_PROPERTYPUTREF)};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_DISPATCH_H_
