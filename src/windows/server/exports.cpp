// The functions that the DLL exports.
#include <windows.h>
// After windows.h.
#include <olectl.h>

#include "windows/server/class_factory.h"
#include "windows/server/module.h"
#include "windows/server/registration.h"

using namespace ard::windows;  // NOLINT(google-build-using-namespace): the exports of the DLL

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  for (const PublishedClass& published : PublishedClasses()) {
    if (published.class_id == class_id) return CreateClassFactory(published, iid, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return CanUnloadModule() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return Register(HKEY_LOCAL_MACHINE); }

STDAPI DllUnregisterServer() { return Unregister(HKEY_LOCAL_MACHINE); }

// What regsvr32 /i calls: with "user" as its argument for the current user only.
STDAPI DllInstall(BOOL install, PCWSTR argument) {
  const bool machine = !argument || !*argument;
  if (!machine && lstrcmpiW(argument, L"user") != 0) return E_INVALIDARG;
  const HKEY root = machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  return install ? Register(root) : Unregister(root);
}
