#include "windows/server/dispatch.h"

#include "windows/floating_point.h"
#include "windows/server/string_array.h"

namespace ard::windows {
namespace {

const Procedure* FindProcedure(std::span<const Member> members, DISPID id, WORD flags) {
  if (id < 1 || static_cast<std::size_t>(id) > members.size()) return nullptr;
  const Member& member = members[static_cast<std::size_t>(id) - 1];
  if (member.get_or_call.flags & flags) return &member.get_or_call;
  if (member.put.flags & flags) return &member.put;
  return nullptr;
}

bool IsOmitted(const VARIANT* argument) {
  return !argument || (argument->vt == VT_ERROR && argument->scode == DISP_E_PARAMNOTFOUND);
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

}  // namespace

HRESULT Invoke(IDispatch* object, std::span<const Member> members, DISPID id, REFIID reserved,
               LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result, UINT* failed) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!parameters) return E_POINTER;
  const Procedure* const procedure = FindProcedure(members, id, flags);
  if (!procedure) return DISP_E_MEMBERNOTFOUND;

  const FloatingPoint floating_point;
  Arguments arguments;
  arguments.locale = locale;
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
  if (SUCCEEDED(status) && result) *result = answer.Detach();
  return status;
}

namespace internal {

VARIANT* Referred(VARIANT* argument) {
  while (argument->vt == (VT_BYREF | VT_VARIANT)) argument = argument->pvarVal;
  return argument;
}

HRESULT Convert(VARIANT*& argument, VARTYPE vt, LCID locale, VARIANT& converted) {
  argument = Referred(argument);
  if ((argument->vt & ~VT_BYREF) == vt) return S_OK;
  VARIANT& source = *std::exchange(argument, &converted);
  if (vt == VT_DISPATCH && (source.vt == VT_EMPTY || source.vt == VT_NULL)) {
    converted.vt = VT_DISPATCH;
    converted.pdispVal = nullptr;
    return S_OK;
  }
  return VariantChangeTypeEx(&converted, &source, locale, 0, vt);
}

namespace {

// Empty for what is no text.
Bstr TextOf(VARIANT& value, LCID locale) {
  ScopedVariant text;
  if (FAILED(VariantChangeTypeEx(&text, &value, locale, 0, VT_BSTR))) return {};
  return Bstr::Adopt(text.Detach().bstrVal);
}

}  // namespace

Parameter<StringArray>::~Parameter() {
  if (converted_) SafeArrayDestroy(converted_);
}

HRESULT Parameter<StringArray>::Load(VARIANT* argument, LCID locale) {
  argument = Referred(argument);
  const VARTYPE type = argument->vt & ~VT_BYREF;
  SAFEARRAY** const array = argument->vt & VT_BYREF ? argument->pparray : &argument->parray;
  if (type == (VT_ARRAY | VT_BSTR)) {
    strings_ = array;
    return S_OK;
  }
  if (type != (VT_ARRAY | VT_VARIANT)) return DISP_E_TYPEMISMATCH;
  locale_ = locale;
  variants_ = *array;
  if (!variants_ || variants_->cDims != 1) return S_OK;
  SAFEARRAYBOUND bounds = variants_->rgsabound[0];
  converted_ = SafeArrayCreate(VT_BSTR, 1, &bounds);
  if (!converted_) return E_OUTOFMEMORY;
  const ArrayElements<BSTR> strings(converted_);
  BSTR* string = strings.begin();
  for (VARIANT& variant : ArrayElements<VARIANT>(variants_)) {
    *string++ = TextOf(variant, locale_).Detach();
  }
  return S_OK;
}

void Parameter<StringArray>::Store() {
  if (!converted_) return;
  const ArrayElements<BSTR> strings(converted_);
  BSTR* string = strings.begin();
  for (VARIANT& variant : ArrayElements<VARIANT>(variants_)) {
    if (View(*string) != TextOf(variant, locale_).view()) {
      VariantClear(&variant);
      variant.vt = VT_BSTR;
      variant.bstrVal = std::exchange(*string, nullptr);
    }
    ++string;
  }
}

}  // namespace internal
}  // namespace ard::windows
