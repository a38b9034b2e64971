#include "windows/engine/dispatch_call.h"

#include "windows/floating_point.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

constexpr LCID kLocale = LOCALE_USER_DEFAULT;

}  // namespace

void Store(VARIANT& argument, const ScopedVariant& value) {
  const HRESULT result = VariantCopy(&argument, const_cast<ScopedVariant*>(&value));
  if (FAILED(result)) throw SystemError(result);
}

HRESULT LateBound::TryToLookUp(const wchar_t* name, DISPID& id) const {
  auto* text = const_cast<LPOLESTR>(name);
  const HRESULT outcome = object_->GetIDsOfNames(IID_NULL, &text, 1, kLocale, &id);
  FloatingPoint::Establish();
  return outcome;
}

DISPID LateBound::LookUp(const wchar_t* name) const {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = TryToLookUp(name, id);
  if (FAILED(result)) throw Error(result, L"There is no member " + std::wstring(name) + L".");
  return id;
}

bool LateBound::Has(const wchar_t* name) const {
  DISPID id = DISPID_UNKNOWN;
  return SUCCEEDED(TryToLookUp(name, id));
}

HRESULT LateBound::TryToInvoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                               ExceptionInfo& exception) const {
  UINT wrong_argument = 0;
  const HRESULT outcome = object_->Invoke(id, IID_NULL, kLocale, flags, &parameters, result,
                                          &exception, &wrong_argument);
  FloatingPoint::Establish();
  return outcome;
}

// In its own words, or else in the system's.
void LateBound::ThrowFailure(HRESULT outcome, ExceptionInfo& info) {
  if (outcome != DISP_E_EXCEPTION) throw SystemError(outcome);
  if (info.pfnDeferredFillIn) {
    info.pfnDeferredFillIn(&info);
    FloatingPoint::Establish();
  }
  if (info.scode == 0 && info.wCode == 0) info.scode = outcome;  // it tells no number
  const std::int32_t code = info.scode != 0 ? static_cast<std::int32_t>(info.scode) : info.wCode;
  const UINT length = info.bstrDescription ? SysStringLen(info.bstrDescription) : 0;
  if (length == 0 && info.scode != 0) throw SystemError(code);
  throw Error(code, std::wstring(length ? info.bstrDescription : L"", length));
}

__attribute__((flatten)) void LateBound::Invoke(DISPID id, WORD flags, DISPPARAMS& parameters,
                                                VARIANT* result) const {
  ExceptionInfo info;
  const HRESULT outcome = TryToInvoke(id, flags, parameters, result, info);
  if (FAILED(outcome)) ThrowFailure(outcome, info);
}

}  // namespace ard::windows
