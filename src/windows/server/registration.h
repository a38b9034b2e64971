// Registration: the registry keys by which hosts find the classes, their interfaces and the type
// library.
#ifndef ARD_WINDOWS_SERVER_REGISTRATION_H_
#define ARD_WINDOWS_SERVER_REGISTRATION_H_

#include <windows.h>

namespace ard::windows {

// Under Software\Classes of `root`: the machine (HKEY_LOCAL_MACHINE) or the current user
// (HKEY_CURRENT_USER). When a key cannot be written, none is left and the error is returned.
HRESULT Register(HKEY root);

// Removes what Register has written, except for what the other platform's copy of the library
// (64-bit or 32-bit) shares with it and still needs.
HRESULT Unregister(HKEY root);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_REGISTRATION_H_
