#include "tests/windows/host.h"

#include <algorithm>

namespace ard::windows::testing {

std::wstring company_folder;

GUID Id(const wchar_t* text) {
  GUID id = {};
  CLSIDFromString(text, &id);
  return id;
}

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

ScopedVariant Variant(std::wstring_view text) {
  ScopedVariant variant;
  variant.vt = VT_BSTR;
  variant.bstrVal = NewBstr(text);
  return variant;
}
ScopedVariant Variant(const wchar_t* text) { return Variant(std::wstring_view(text)); }
ScopedVariant Variant(long value) {
  ScopedVariant variant;
  variant.vt = VT_I4;
  variant.lVal = value;
  return variant;
}
ScopedVariant Variant(IDispatch* object) {
  ScopedVariant variant;
  variant.vt = VT_DISPATCH;
  variant.pdispVal = ComPtr(object).Detach();
  return variant;
}

ScopedVariant LeftOut() {
  ScopedVariant variant;
  variant.vt = VT_ERROR;
  variant.scode = DISP_E_PARAMNOTFOUND;
  return variant;
}

HRESULT LateBound::Invoke(const wchar_t* member, WORD flags, std::vector<ScopedVariant> arguments,
                          VARIANT* result, const std::vector<const wchar_t*>& names) const {
  std::vector<wchar_t*> all = {const_cast<wchar_t*>(member)};
  for (const wchar_t* name : names) all.push_back(const_cast<wchar_t*>(name));
  std::vector<DISPID> ids(all.size());
  const HRESULT status = object_->GetIDsOfNames(IID_NULL, all.data(), static_cast<UINT>(all.size()),
                                                LOCALE_NEUTRAL, ids.data());
  if (FAILED(status)) return status;
  // The last argument comes first, and so does its name.
  std::reverse(arguments.begin(), arguments.end());
  std::vector<DISPID> named(ids.rbegin(), ids.rend() - 1);
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) named = {DISPID_PROPERTYPUT};
  DISPPARAMS parameters = {arguments.data(), named.data(), static_cast<UINT>(arguments.size()),
                           static_cast<UINT>(named.size())};
  return object_->Invoke(ids[0], IID_NULL, LOCALE_NEUTRAL, flags, &parameters, result, nullptr,
                         nullptr);
}

ScopedVariant LateBound::Call(const wchar_t* member, std::vector<ScopedVariant> arguments,
                              const std::vector<const wchar_t*>& names) const {
  ScopedVariant result;
  const HRESULT status =
      Invoke(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments), &result, names);
  if (FAILED(status)) {
    result.vt = VT_ERROR;
    result.scode = status;
  }
  return result;
}

HRESULT LateBound::Put(const wchar_t* member, ScopedVariant value, WORD flags) const {
  std::vector<ScopedVariant> arguments;
  arguments.push_back(std::move(value));
  return Invoke(member, flags, std::move(arguments), nullptr);
}

}  // namespace ard::windows::testing
