// The published classes: what hosts create, in one table for class objects and registration.
#ifndef ARD_WINDOWS_SERVER_PUBLISHED_CLASS_H_
#define ARD_WINDOWS_SERVER_PUBLISHED_CLASS_H_

#include <span>

#include "windows/server/dispatch.h"

namespace ard::windows {

struct PublishedClass {
  DispatchTable table;
  const wchar_t* help;  // what the class is, for people
  const CLSID& class_id;
  const IID& interface_id;
  // A new object with one reference. Throws when there is no memory for it.
  IDispatch* (*create)(const PublishedClass& published);
};

// All thirteen.
std::span<const PublishedClass> PublishedClasses();

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_PUBLISHED_CLASS_H_
