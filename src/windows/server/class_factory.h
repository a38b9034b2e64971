// Class objects: how hosts create the published classes.
#ifndef ARD_WINDOWS_SERVER_CLASS_FACTORY_H_
#define ARD_WINDOWS_SERVER_CLASS_FACTORY_H_

#include "windows/server/published_class.h"

namespace ard::windows {

// A new class object for `published`, as DllGetClassObject hands it out. Aggregation is refused.
HRESULT CreateClassFactory(const PublishedClass& published, REFIID iid, void** object);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_CLASS_FACTORY_H_
