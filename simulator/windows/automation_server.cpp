#include "simulator/windows/automation_server.h"

#include <olectl.h>

#include <iterator>
#include <new>
#include <string>
#include <string_view>

#include "simulator/windows/automation.h"

namespace ard::simulator {
namespace {

const std::wstring kClassesKey = L"Software\\Classes\\";

class Factory final : public windows::ComObject<IClassFactory> {
 public:
  explicit Factory(const ServedClass& served) : served_(served) { ++module_references; }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
      return served_.create()->QueryInterface(iid, object);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    module_references += lock ? 1 : -1;
    return S_OK;
  }

 private:
  ~Factory() override { --module_references; }

  const ServedClass& served_;
};

std::wstring ModulePath() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&module_references), &module);
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return path.substr(0, length);
    path.resize(2 * path.size());
  }
}

bool SetText(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return RegSetKeyValueW(root, key.c_str(), name, REG_SZ, text.c_str(), size) == ERROR_SUCCESS;
}

std::wstring ClassIdText(const ServedClass& served) {
  wchar_t text[39];
  StringFromGUID2(served.class_id, text, static_cast<int>(std::size(text)));
  return text;
}
std::wstring ClassKey(const ServedClass& served) {
  return kClassesKey + L"CLSID\\" + ClassIdText(served);
}
std::wstring ProgIdKey(const ServedClass& served) { return kClassesKey + served.prog_id; }

// In the classes of the machine or of the user.
HRESULT Register(HKEY root) {
  if (!MayBeRegistered()) return E_ACCESSDENIED;
  for (const ServedClass& served : ServedClasses()) {
    const std::wstring server_key = ClassKey(served) + L"\\InprocServer32";
    const bool done = SetText(root, ProgIdKey(served), nullptr, served.description) &&
                      SetText(root, ProgIdKey(served) + L"\\CLSID", nullptr, ClassIdText(served)) &&
                      SetText(root, ClassKey(served), nullptr, served.description) &&
                      SetText(root, ClassKey(served) + L"\\ProgID", nullptr, served.prog_id) &&
                      SetText(root, server_key, nullptr, ModulePath()) &&
                      SetText(root, server_key, L"ThreadingModel", L"Apartment");
    if (!done) return SELFREG_E_CLASS;
  }
  return S_OK;
}

HRESULT Unregister(HKEY root) {
  if (!MayBeRegistered()) return E_ACCESSDENIED;
  for (const ServedClass& served : ServedClasses()) {
    for (const std::wstring& key : {ProgIdKey(served), ClassKey(served)}) {
      const LSTATUS status = RegDeleteTreeW(root, key.c_str());
      if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) return SELFREG_E_CLASS;
    }
  }
  return S_OK;
}

}  // namespace
}  // namespace ard::simulator

using namespace ard::simulator;  // NOLINT(google-build-using-namespace): the exports of the DLL

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  for (const ServedClass& served : ServedClasses()) {
    if (served.class_id != class_id) continue;
    const auto factory = ComPtr<IClassFactory>::Adopt(new (std::nothrow) Factory(served));
    return factory ? factory->QueryInterface(iid, object) : E_OUTOFMEMORY;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return module_references == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return Register(HKEY_LOCAL_MACHINE); }

STDAPI DllUnregisterServer() { return Unregister(HKEY_LOCAL_MACHINE); }

// "user" registers for the current user alone.
STDAPI DllInstall(BOOL install, const wchar_t* command) {
  const bool user = command && std::wstring_view(command) == L"user";
  const HKEY root = user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  return install ? Register(root) : Unregister(root);
}
