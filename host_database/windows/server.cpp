// The classes that ArdDatabase.dll serves.
#include "host_database/windows/ado_objects.h"
#include "simulator/windows/automation_server.h"

namespace ard::simulator {

std::span<const ServedClass> ServedClasses() {
  static constexpr ServedClass kClasses[] = {
      {{0x5B0C3D9E, 0x2F64, 0x4A1B, {0x8E, 0x77, 0x1D, 0x90, 0xC5, 0x3A, 0x66, 0xF1}},
       L"ADODB.Connection",
       L"Stand-in for an ADO connection",
       host_database::CreateConnectionObject},
      {{0xA47E1F28, 0x93D5, 0x4C0E, {0xB1, 0x6A, 0x52, 0xEE, 0x07, 0xD9, 0x3C, 0x84}},
       L"ADODB.Recordset",
       L"Stand-in for an ADO recordset",
       host_database::CreateRecordsetObject}};
  return kClasses;
}

// Only Wine's has this export.
bool MayBeRegistered() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace ard::simulator
