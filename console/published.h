// What is published of the members: the types of parameters and results, for those who ask for
// help.
#ifndef ARD_CONSOLE_PUBLISHED_H_
#define ARD_CONSOLE_PUBLISHED_H_

#include <string>

#include "console/classes.h"

namespace ard::console {

// A member as one types it, with the types: `? Customers.GetName(AccRef As String) As String`,
// `Customers.AppName = String`. Parameters in brackets may be left out.
std::wstring Signature(const Member& member);

}  // namespace ard::console

#endif  // ARD_CONSOLE_PUBLISHED_H_
