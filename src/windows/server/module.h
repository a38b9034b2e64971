// The library as a loaded module: what keeps it loaded, and what its objects share.
#ifndef ARD_WINDOWS_SERVER_MODULE_H_
#define ARD_WINDOWS_SERVER_MODULE_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <memory>
#include <string>

#include "windows/engine/com.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows {

HINSTANCE ModuleInstance();
// The full path of the DLL, of any length.
std::wstring ModulePath();

// The module stays loaded until every lock has been undone.
void LockModule();
void UnlockModule();
bool CanUnloadModule();

// A lock for as long as it lives: every object has one.
class ModuleLock {
 public:
  ModuleLock() { LockModule(); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
  ~ModuleLock() { UnlockModule(); }
};

// What the objects of the module share while any of them lives. It is made for the first one and
// goes with the last, so that an idle module holds nothing.
class Runtime {
 public:
  static std::shared_ptr<Runtime> Get();

  Environment& environment() { return environment_; }

 private:
  WindowsEnvironment environment_{ModuleInstance()};
};

// The description of an interface or class in the module's own type library; null when it cannot be
// loaded. Loading takes long, so the library stays until the module goes.
ComPtr<ITypeInfo> FindTypeInfo(REFGUID id);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_MODULE_H_
