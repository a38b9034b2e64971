#include "windows/engine/dispatch_call.h"

#include "windows/floating_point.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

constexpr LCID kLocale = LOCALE_USER_DEFAULT;

// Throws what a server says about a failing call of its own.
[[noreturn]] void ThrowException(EXCEPINFO& info) {
  if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
  const Bstr source = Bstr::Adopt(info.bstrSource);
  const Bstr description = Bstr::Adopt(info.bstrDescription);
  const Bstr help_file = Bstr::Adopt(info.bstrHelpFile);
  const std::int32_t code = info.scode != 0 ? static_cast<std::int32_t>(info.scode) : info.wCode;
  throw Error(code, std::wstring(description.view()));
}

}  // namespace

DISPID LateBound::LookUp(const wchar_t* name) const {
  auto* text = const_cast<LPOLESTR>(name);
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = object_->GetIDsOfNames(IID_NULL, &text, 1, kLocale, &id);
  if (FAILED(result)) throw SystemError(result);
  return id;
}

void LateBound::Invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result) const {
  EXCEPINFO exception{};
  UINT wrong_argument = 0;
  const HRESULT outcome = object_->Invoke(id, IID_NULL, kLocale, flags, &parameters, result,
                                          &exception, &wrong_argument);
  FloatingPoint::Establish();
  if (SUCCEEDED(outcome)) return;
  if (outcome == DISP_E_EXCEPTION) ThrowException(exception);
  throw SystemError(outcome);
}

}  // namespace ard::windows
