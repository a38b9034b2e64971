// An in-process server of automation classes: the exports of its DLL, class factories,
// registration. A DLL compiles automation_server.cpp along, and defines the two functions below.
#ifndef ARD_SIMULATOR_WINDOWS_AUTOMATION_SERVER_H_
#define ARD_SIMULATOR_WINDOWS_AUTOMATION_SERVER_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <span>

#include "windows/engine/com.h"

namespace ard::simulator {

struct ServedClass {
  CLSID class_id;
  const wchar_t* prog_id;
  const wchar_t* description;
  windows::ComPtr<IDispatch> (*create)();
};

// What the DLL serves.
std::span<const ServedClass> ServedClasses();

// Whether it may be registered on this machine.
bool MayBeRegistered();

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_WINDOWS_AUTOMATION_SERVER_H_
