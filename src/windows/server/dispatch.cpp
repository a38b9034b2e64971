#include "windows/server/dispatch.h"

#include <dispex.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/text.h"

namespace ard::windows {
namespace {

const Procedure* FindProcedure(std::span<const Member> members, DISPID id, WORD flags) {
  if (id < 1 || static_cast<std::size_t>(id) > members.size()) return nullptr;
  const Member& member = members[static_cast<std::size_t>(id) - 1];
  if (member.get_or_call.flags & flags) return &member.get_or_call;
  if (member.put.flags & flags) return &member.put;
  return nullptr;
}

// A host may hand on an argument that it has not been given itself.
bool IsOmitted(VARIANT* argument) {
  if (!argument) return true;
  argument = internal::Referred(argument);
  if ((argument->vt & ~VT_BYREF) != VT_ERROR) return false;
  return (argument->vt & VT_BYREF ? *argument->pscode : argument->scode) == DISP_E_PARAMNOTFOUND;
}

// Gives each argument to its parameter. Arguments stand in reverse order, the named ones first.
HRESULT Bind(const Procedure& procedure, const DISPPARAMS& given, Arguments& arguments,
             UINT& failed) {
  if (given.cArgs > procedure.parameters) return DISP_E_BADPARAMCOUNT;
  for (UINT i = 0; i < given.cArgs; ++i) {
    UINT parameter = given.cArgs - 1 - i;
    if (i < given.cNamedArgs) {
      const DISPID name = given.rgdispidNamedArgs[i];
      parameter = name == DISPID_PROPERTYPUT ? procedure.parameters - 1 : static_cast<UINT>(name);
    }
    if (parameter >= procedure.parameters || arguments.values[parameter]) {
      failed = i;
      return DISP_E_PARAMNOTFOUND;
    }
    arguments.values[parameter] = &given.rgvarg[i];
  }
  for (UINT i = 0; i < procedure.parameters; ++i) {
    VARIANT*& argument = arguments.values[i];
    if (!IsOmitted(argument)) continue;
    argument = nullptr;
    if (i >= procedure.required) continue;
    return given.cArgs < procedure.required ? DISP_E_BADPARAMCOUNT : DISP_E_PARAMNOTOPTIONAL;
  }
  return S_OK;
}

// Takes the first word off `text`.
std::wstring_view TakeWord(std::wstring_view& text) {
  const std::wstring_view word = text.substr(0, text.find(L' '));
  text.remove_prefix(std::min(text.size(), word.size() + 1));
  return word;
}

void NoteUnstored(Trace& trace, const DispatchTable& table, DISPID id, UINT parameter,
                  HRESULT status) {
  std::wstring_view names = table.names[static_cast<std::size_t>(id) - 1];
  const std::wstring_view member = TakeWord(names);
  for (UINT i = 0; i < parameter; ++i) TakeWord(names);
  trace.Skipped({std::wstring_view(table.class_name), member, TakeWord(names)}, status,
                L"The variable cannot hold it.");
}

}  // namespace

HRESULT GetIDsOfNames(const DispatchTable& table, REFIID reserved, LPOLESTR* names, UINT count,
                      DISPID* ids) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids) return E_POINTER;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  for (std::size_t i = 0; count > 0 && i < table.names.size(); ++i) {
    std::wstring_view known = table.names[i];
    if (!EqualsIgnoreCase(TakeWord(known), names[0])) continue;
    ids[0] = static_cast<DISPID>(i + 1);
    for (DISPID parameter = 0; !known.empty(); ++parameter) {
      const std::wstring_view name = TakeWord(known);
      for (UINT n = 1; n < count; ++n) {
        if (EqualsIgnoreCase(name, names[n])) ids[n] = parameter;
      }
    }
    break;
  }
  return std::find(ids, ids + count, DISPID_UNKNOWN) == ids + count ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Invoke(IDispatch* object, const DispatchTable& table, Trace& trace, bool& prepared,
               DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
               VARIANT* result, UINT* failed) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_POINTER;
  const Procedure* const procedure = FindProcedure(table.members, id, flags);
  if (!procedure) return DISP_E_MEMBERNOTFOUND;

  const FloatingPoint floating_point;
  Arguments arguments;
  arguments.locale = locale;
  arguments.prepared = &prepared;
  UINT ignored = 0;
  UINT& argument = failed ? *failed : ignored;
  HRESULT status = Bind(*procedure, *parameters, arguments, argument);
  if (FAILED(status)) return status;

  UINT unfit = kMaxParameters;
  ScopedVariant answer;
  status = procedure->call(object, arguments, answer, unfit);
  if (unfit < procedure->parameters) {
    argument = static_cast<UINT>(arguments.values[unfit] - parameters->rgvarg);
  }
  for (UINT i = 0; i < procedure->parameters; ++i) {
    if (FAILED(arguments.stored[i])) NoteUnstored(trace, table, id, i, arguments.stored[i]);
  }
  if (SUCCEEDED(status) && result) *result = answer.Detach();
  return status;
}

ProcedureEntry::ProcedureEntry(IUnknown* object, bool& prepared) {
  if (std::exchange(prepared, false)) return;
  floating_point_.emplace();
  self_ = ComPtr<IUnknown>(object);
}

ProcedureEntry::~ProcedureEntry() = default;

namespace internal {

VARIANT* Referred(VARIANT* argument) {
  while (argument->vt == (VT_BYREF | VT_VARIANT)) argument = argument->pvarVal;
  return argument;
}

namespace {

// An object of the host's is asked for its value here: the system would convert with the units as
// it leaves them. It may be let go of, too.
HRESULT ChangeType(VARIANT& result, VARIANT& value, LCID locale, VARTYPE vt) {
  ScopedVariant told;
  VARIANT* source = &value;
  if ((value.vt & ~VT_BYREF) == VT_DISPATCH && vt != VT_DISPATCH) {
    IDispatch* const object = value.vt & VT_BYREF ? *value.ppdispVal : value.pdispVal;
    if (!object) return DISP_E_TYPEMISMATCH;
    DISPPARAMS none = {};
    const HRESULT status = object->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_PROPERTYGET,
                                          &none, &told, nullptr, nullptr);
    FloatingPoint::Establish();
    if (FAILED(status)) return DISP_E_TYPEMISMATCH;
    source = &told;
  }
  const HRESULT status = VariantChangeTypeEx(&result, source, locale, 0, vt);
  FloatingPoint::Establish();
  return status;
}

}  // namespace

HRESULT Convert(VARIANT*& argument, VARTYPE vt, LCID locale, VARIANT& converted) {
  const VARIANT* const given = argument;
  argument = Referred(argument);
  // A text that the host may put another in place of, in the middle of the call, is copied.
  const bool is_variable = argument != given || argument->vt & VT_BYREF;
  if ((argument->vt & ~VT_BYREF) == vt && !(vt == VT_BSTR && is_variable)) return S_OK;
  VARIANT& source = *std::exchange(argument, &converted);
  if (vt == VT_DISPATCH && (source.vt == VT_EMPTY || source.vt == VT_NULL)) {
    converted.vt = VT_DISPATCH;
    converted.pdispVal = nullptr;
    return S_OK;
  }
  return ChangeType(converted, source, locale, vt);
}

namespace {

// What a variable of that type takes in memory; 0 for types that are not known.
std::size_t SizeOf(int vt) {
  switch (vt) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
      return sizeof(BSTR);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    default:
      return 0;
  }
}

// The text of a value, empty for what is none; of `made`, where it has to be made, which may be the
// value itself.
std::wstring_view TextOf(VARIANT& value, VARIANT& made, LCID locale) {
  if (value.vt == VT_EMPTY) return {};
  if (value.vt == VT_BSTR) return View(value.bstrVal);
  const HRESULT status = ChangeType(made, value, locale, VT_BSTR);
  return SUCCEEDED(status) ? View(made.bstrVal) : std::wstring_view();
}

// The object as one that a script can add properties to; null when it is none.
ComPtr<IDispatchEx> Expandable(IDispatch* object) {
  ComPtr<IDispatchEx> expandable;
  object->QueryInterface(__uuidof(IDispatchEx), reinterpret_cast<void**>(expandable.Receive()));
  FloatingPoint::Establish();
  return expandable;
}

// A property of an object of the host's. With a value, it is put; one that is not there yet is made
// then, as far as the object can.
HRESULT AccessProperty(IDispatch* object, const wchar_t* name, LCID locale, VARIANT* value,
                       VARIANT* result) {
  auto* text = const_cast<LPOLESTR>(name);
  DISPID id = DISPID_UNKNOWN;
  HRESULT status = object->GetIDsOfNames(IID_NULL, &text, 1, locale, &id);
  FloatingPoint::Establish();
  if (FAILED(status) && value) {
    if (const ComPtr<IDispatchEx> expandable = Expandable(object)) {
      const Bstr wanted = Bstr::Adopt(SysAllocString(name));
      status = expandable->GetDispID(wanted.get(), fdexNameEnsure | fdexNameCaseSensitive, &id);
    }
  }
  if (SUCCEEDED(status)) {
    FloatingPoint::Establish();
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {value, value ? &put : nullptr, value ? 1u : 0u, value ? 1u : 0u};
    const WORD how = value ? DISPATCH_PROPERTYPUT : DISPATCH_PROPERTYGET;
    status = object->Invoke(id, IID_NULL, locale, how, &parameters, result, nullptr, nullptr);
  }
  FloatingPoint::Establish();
  return status;
}

// Where an object that a script can add properties to holds an output. Others, such as fields of a
// recordset, are values: what they hold is not the call's business.
constexpr wchar_t kHeld[] = L"value";

// The length of an array of JScript's, as far as elements are filled; none for another object.
std::optional<ULONG> LengthOf(IDispatch* object, LCID locale) {
  constexpr LONG kReachable = 0x8000;  // by a 16-bit index
  ScopedVariant length;
  if (!object || FAILED(AccessProperty(object, L"length", locale, nullptr, &length)) ||
      FAILED(ChangeType(length, length, locale, VT_I4)) || length.lVal < 0) {
    return {};
  }
  return static_cast<ULONG>(std::min(length.lVal, kReachable));
}

// Puts a value into a variable of the caller's: a variant, or one of the type that it refers to.
HRESULT Assign(VARIANT& variable, VARIANT& value, LCID locale) {
  if (!(variable.vt & VT_BYREF)) {
    std::swap(variable, value);
    return S_OK;
  }
  const auto vt = static_cast<VARTYPE>(variable.vt & ~VT_BYREF);
  const HRESULT status = ChangeType(value, value, locale, vt);
  if (FAILED(status)) return status;
  if (vt == VT_BSTR) {
    std::swap(*variable.pbstrVal, value.bstrVal);
  } else if (vt == VT_DECIMAL) {
    *variable.pdecVal = value.decVal;
    variable.pdecVal->wReserved = 0;  // where a variant has its type
  } else {
    std::memcpy(variable.byref, &value.byref, SizeOf(vt));
  }
  return S_OK;
}

}  // namespace

HRESULT OutputParameter::Load(VARIANT* argument, VARTYPE vt, LCID locale) {
  locale_ = locale;
  VARIANT* source = Referred(argument);
  const bool reference = source->vt & VT_BYREF;
  if (source->vt == (VT_BYREF | vt)) {
    output_ = source->byref;
    return S_OK;
  }
  if (source->vt & VT_ARRAY) return DISP_E_TYPEMISMATCH;
  if (reference && SizeOf(source->vt & ~VT_BYREF) == 0) return DISP_E_TYPEMISMATCH;
  ScopedVariant held;
  if (reference || source != argument) {
    variable_ = source;
  } else if (source->vt == VT_DISPATCH && source->pdispVal) {
    holder_ = ComPtr<IDispatch>::Adopt(Expandable(source->pdispVal).Detach());
    if (holder_ && SUCCEEDED(AccessProperty(holder_.get(), kHeld, locale, nullptr, &held))) {
      source = &held;
    }
  }
  if (FAILED(ChangeType(converted_, *source, locale, vt))) converted_.vt = vt;
  return S_OK;
}

HRESULT OutputParameter::Store() {
  if (holder_) return AccessProperty(holder_.get(), kHeld, locale_, &converted_, nullptr);
  return variable_ ? Assign(*variable_, converted_, locale_) : S_OK;
}

Parameter<StringArray>::~Parameter() {
  if (converted_) SafeArrayDestroy(converted_);
}

HRESULT Parameter<StringArray>::Load(VARIANT* argument, LCID locale) {
  argument = Referred(argument);
  locale_ = locale;
  const bool reference = argument->vt & VT_BYREF;
  SAFEARRAYBOUND bounds = {};
  switch (argument->vt & ~VT_BYREF) {
    case VT_ARRAY | VT_BSTR:
      strings_ = reference ? argument->pparray : &argument->parray;
      return S_OK;
    case VT_ARRAY | VT_VARIANT:
      variants_.emplace(reference ? *argument->pparray : argument->parray);
      bounds = {static_cast<ULONG>(variants_->size()), variants_->lower_bound()};
      break;
    case VT_DISPATCH: {
      object_ = ComPtr(reference ? *argument->ppdispVal : argument->pdispVal);
      const std::optional<ULONG> length = LengthOf(object_.get(), locale);
      if (!length) return DISP_E_TYPEMISMATCH;
      bounds.cElements = *length;
      break;
    }
    default:
      return DISP_E_TYPEMISMATCH;
  }
  converted_ = SafeArrayCreate(VT_BSTR, 1, &bounds);
  if (!converted_) return E_OUTOFMEMORY;
  ULONG index = 0;
  for (BSTR& string : ArrayElements<BSTR>(converted_)) {
    ScopedVariant made;
    const std::wstring_view text = Element(index++, made);
    if (!text.empty()) string = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  return S_OK;
}

std::wstring_view Parameter<StringArray>::Element(ULONG index, VARIANT& made) {
  if (!object_) return TextOf(*Referred(&variants_->begin()[index]), made, locale_);
  AccessProperty(object_.get(), std::to_wstring(index).c_str(), locale_, nullptr, &made);
  return TextOf(made, made, locale_);
}

HRESULT Parameter<StringArray>::Store() {
  if (!converted_) return S_OK;
  HRESULT status = S_OK;
  ULONG index = 0;
  for (BSTR& string : ArrayElements<BSTR>(converted_)) {
    const ULONG at = index++;
    ScopedVariant text;
    if (View(string) == Element(at, text)) continue;
    text = ScopedVariant();
    text.vt = VT_BSTR;
    text.bstrVal = std::exchange(string, nullptr);
    const HRESULT stored = object_ ? AccessProperty(object_.get(), std::to_wstring(at).c_str(),
                                                    locale_, &text, nullptr)
                                   : Assign(*Referred(&variants_->begin()[at]), text, locale_);
    if (FAILED(stored)) status = stored;
  }
  return status;
}

}  // namespace internal
}  // namespace ard::windows
