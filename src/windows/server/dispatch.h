// Late-bound calls: what IDispatch::Invoke does, made of tables. A table lists the members of an
// interface in their published order, each with its published signature:
//
//   Property<&_Customers::get_AppName, &_Customers::put_AppName, String>,
//   Method<&_Customers::GetName, String(String)>,
//
// A member's id is its place in the table, from 1. The arguments are converted to what the vtable
// takes. Script hosts pass their variables as references to variants, and that is good for every
// kind of parameter: a variable passed for an output holds the output after the call.
#ifndef ARD_WINDOWS_SERVER_DISPATCH_H_
#define ARD_WINDOWS_SERVER_DISPATCH_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <array>
#include <span>
#include <tuple>

#include "windows/engine/com.h"

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
// A parameter passed by reference: an output.
template <class T>
struct ByRef {};
// An array of strings by reference, dimensioned by the caller and filled by the member, which never
// resizes it. An array of variants, such as script hosts have, does as well.
struct StringArray {};
// A parameter that may be left out: it is `default_value` then.
template <class T, auto default_value>
struct Optional {};

inline constexpr UINT kMaxParameters = 8;

// The arguments of one call by parameter, from 0; null where one was left out.
struct Arguments {
  std::array<VARIANT*, kMaxParameters> values{};
  LCID locale = 0;
};

// One way to use a member.
struct Procedure {
  // `failed` receives the parameter whose argument cannot be converted.
  using Call = HRESULT(IDispatch* object, const Arguments& arguments, VARIANT& result,
                       UINT& failed);

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

// IDispatch::Invoke for an object with these members. The host's own mistakes (no such member,
// wrong number or type of arguments) are answered with the usual codes.
HRESULT Invoke(IDispatch* object, std::span<const Member> members, DISPID id, REFIID reserved,
               LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result, UINT* failed);

namespace internal {

// The variant that `argument` refers to; `argument` itself when it is none of a reference.
VARIANT* Referred(VARIANT* argument);

// Makes `argument` a variant of type `vt`, or of a reference to one: what it refers to when that
// is one, or else `converted`. No object at all is Nothing.
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
  void Store() {}

 private:
  VARIANT* value_ = nullptr;
  ScopedVariant converted_;
};

// An argument of exactly this type by reference is passed on. Any other is converted before the
// call; when it is a variable of the caller's, that is replaced after it.
template <class T>
class Parameter<ByRef<T>> {
 public:
  static constexpr bool kRequired = true;

  HRESULT Load(VARIANT* argument, LCID locale) {
    VARIANT* const source = Referred(argument);
    if (source->vt == (VT_BYREF | T::kVt)) {
      output_ = static_cast<typename T::Type*>(source->byref);
      return S_OK;
    }
    if (source->vt & VT_BYREF) return DISP_E_TYPEMISMATCH;
    if (source != argument) variable_ = source;
    output_ = &T::In(converted_);
    return VariantChangeTypeEx(&converted_, source, locale, 0, T::kVt);
  }
  typename T::Type* Get() { return output_; }
  void Store() {
    if (!variable_) return;
    VariantClear(variable_);
    *variable_ = converted_.Detach();
  }

 private:
  typename T::Type* output_ = nullptr;
  VARIANT* variable_ = nullptr;
  ScopedVariant converted_;
};

// An array of variants becomes one of strings during the call; those that it has changed are put
// back.
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
  void Store();

 private:
  LCID locale_ = 0;
  SAFEARRAY** strings_ = &converted_;
  SAFEARRAY* variants_ = nullptr;  // what `converted_` has been made of
  SAFEARRAY* converted_ = nullptr;
};

template <class T>
struct TypeOf : T {};
template <class T>
struct TypeOf<ByRef<T>> : T {};

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
HRESULT CallMember(IDispatch* object, const Arguments& arguments, UINT& failed, More... more) {
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
        status = (static_cast<Interface>(object)->*member)(parameter.Get()..., more...);
        (parameter.Store(), ...);
        return status;
      },
      parameters);
}

template <auto member, class Signature>
struct Call;
template <auto member, class... Kinds>
struct Call<member, void(Kinds...)> {
  static HRESULT Run(IDispatch* object, const Arguments& arguments, VARIANT&, UINT& failed) {
    return CallMember<member, Kinds...>(object, arguments, failed);
  }
};
template <auto member, class Result, class... Kinds>
struct Call<member, Result(Kinds...)> {
  static HRESULT Run(IDispatch* object, const Arguments& arguments, VARIANT& result, UINT& failed) {
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
