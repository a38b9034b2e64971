// The automation classes, as they are made of the interface definition (tools/published.py).
#include <windows.h>

#undef LogonUser  // a macro of the system's, in the way of the published name
// After it.
#include <ArdObjects100.h>

#include "published_classes.h"
#include "windows/server/context_properties.h"
// After what it is made of.
#include <ArdObjects100_classes.h>

namespace ard::windows {

std::span<const PublishedClass> PublishedClasses() {
#define ARD_PUBLISHED(name, help)                 \
  {{L"" #name, k##name##Members, k##name##Names}, \
   help,                                          \
   CLSID_##name,                                  \
   IID__##name,                                   \
   Create<name##Object>},
  static constexpr PublishedClass kClasses[] = {ARD_PUBLISHED_CLASSES(ARD_PUBLISHED)};
#undef ARD_PUBLISHED
  return kClasses;
}

}  // namespace ard::windows
