#include "tests/windows/host.h"

#include <algorithm>

namespace ard::windows::testing {

std::wstring company_folder;

std::wstring Text(REFGUID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, ARRAYSIZE(text));
  return text;
}

std::wstring ProgId(const ClassIdentity& identity) {
  return std::wstring(L"ArdObjects100.") + identity.name;
}

std::wstring LibraryPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  return program.substr(0, program.rfind(L'\\') + 1) + L"ArdObjects100.dll";
}

ComPtr<IDispatch> CreateObject(const std::wstring& prog_id) {
  CLSID class_id;
  ComPtr<IDispatch> object;
  if (SUCCEEDED(CLSIDFromProgID(prog_id.c_str(), &class_id))) {
    CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                     reinterpret_cast<void**>(object.Receive()));
  }
  return object;
}

HRESULT LateBound::Invoke(const wchar_t* member, WORD flags, std::vector<ScopedVariant> arguments,
                          VARIANT* result) const {
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = DISPID_UNKNOWN;
  const HRESULT status = object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id);
  if (FAILED(status)) return status;
  std::ranges::reverse(arguments);  // the last argument comes first
  DISPID value = DISPID_PROPERTYPUT;
  const bool puts = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  DISPPARAMS parameters = {arguments.data(), &value, static_cast<UINT>(arguments.size()), puts};
  return object_->Invoke(id, IID_NULL, LOCALE_NEUTRAL, flags, &parameters, result, nullptr,
                         nullptr);
}

ScopedVariant LateBound::Call(const wchar_t* member, std::vector<ScopedVariant> arguments) const {
  ScopedVariant result;
  const HRESULT status =
      Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments), &result);
  if (FAILED(status)) {
    result.vt = VT_ERROR;
    result.scode = status;
  }
  return result;
}

HRESULT LateBound::Put(const wchar_t* member, ScopedVariant value) const {
  const WORD flags = value.vt == VT_DISPATCH ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
  std::vector<ScopedVariant> arguments;
  arguments.push_back(std::move(value));
  return Invoke(member, flags, std::move(arguments), nullptr);
}

}  // namespace ard::windows::testing
