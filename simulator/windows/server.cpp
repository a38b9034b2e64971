// The in-process server of ArdSimulator.Engine: class factory and registration.
#include <windows.h>
// After windows.h.
#include <olectl.h>

#include <new>
#include <string>

#include "simulator/windows/engine_object.h"

namespace ard::simulator {
namespace {

// {036E53C4-571B-43D2-9932-97D571BE23C1}
constexpr CLSID kClassId = {
    0x036E53C4, 0x571B, 0x43D2, {0x99, 0x32, 0x97, 0xD5, 0x71, 0xBE, 0x23, 0xC1}};

const std::wstring kDescription = L"Simulated accounts engine";
const std::wstring kClassIdText = L"{036E53C4-571B-43D2-9932-97D571BE23C1}";
const std::wstring kProgId = L"ArdSimulator.Engine";
const std::wstring kClassesKey = L"Software\\Classes\\";
const std::wstring kClassKey = kClassesKey + L"CLSID\\" + kClassIdText;
const std::wstring kProgIdKey = kClassesKey + kProgId;

// There is one factory, which is never deleted.
class Factory final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    const bool known = iid == IID_IClassFactory || iid == IID_IUnknown;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    ++module_references;
    return 2;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    --module_references;
    return 1;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    try {
      return CreateEngineObject()->QueryInterface(iid, object);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    module_references += lock ? 1 : -1;
    return S_OK;
  }
};

Factory factory;

std::wstring ModulePath() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&factory), &module);
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

// In the classes of the machine or of the user.
HRESULT Register(HKEY root) {
  const std::wstring server_key = kClassKey + L"\\InprocServer32";
  const bool done = SetText(root, kProgIdKey, nullptr, kDescription) &&
                    SetText(root, kProgIdKey + L"\\CLSID", nullptr, kClassIdText) &&
                    SetText(root, kClassKey, nullptr, kDescription) &&
                    SetText(root, kClassKey + L"\\ProgID", nullptr, kProgId) &&
                    SetText(root, server_key, nullptr, ModulePath()) &&
                    SetText(root, server_key, L"ThreadingModel", L"Apartment");
  return done ? S_OK : SELFREG_E_CLASS;
}

HRESULT Unregister(HKEY root) {
  for (const std::wstring& key : {kProgIdKey, kClassKey}) {
    const LSTATUS status = RegDeleteTreeW(root, key.c_str());
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) return SELFREG_E_CLASS;
  }
  return S_OK;
}

}  // namespace
}  // namespace ard::simulator

using namespace ard::simulator;  // NOLINT(google-build-using-namespace): the exports of the DLL

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (class_id == kClassId) return factory.QueryInterface(iid, object);
  if (object) *object = nullptr;
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
