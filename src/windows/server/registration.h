// Registration: the registry keys by which hosts find the classes, their interfaces and the type
// library.
#ifndef ARD_WINDOWS_SERVER_REGISTRATION_H_
#define ARD_WINDOWS_SERVER_REGISTRATION_H_

#include <windows.h>

namespace ard::windows {

// Under Software\Classes of `root`: the machine (HKEY_LOCAL_MACHINE) or the current user
// (HKEY_CURRENT_USER). Where another copy of the library is registered, this one takes its place.
// When a key cannot be written, what was there is put back and the error is returned.
HRESULT Register(HKEY root);

// Removes what Register has written, except for what names another copy of the library, or what the
// other platform's copy (64-bit or 32-bit) shares with it and still needs.
HRESULT Unregister(HKEY root);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_REGISTRATION_H_
