// The class that ArdSimulator.dll serves.
#include "simulator/windows/automation_server.h"
#include "simulator/windows/engine_object.h"

namespace ard::simulator {

std::span<const ServedClass> ServedClasses() {
  static constexpr ServedClass kClasses[] = {
      {{0x036E53C4, 0x571B, 0x43D2, {0x99, 0x32, 0x97, 0xD5, 0x71, 0xBE, 0x23, 0xC1}},
       L"ArdSimulator.Engine",
       L"Simulated accounts engine",
       CreateEngineObject}};
  return kClasses;
}

bool MayBeRegistered() { return true; }

}  // namespace ard::simulator
