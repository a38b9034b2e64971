// Texts in the registry.
#ifndef ARD_WINDOWS_MACHINE_REGISTRY_H_
#define ARD_WINDOWS_MACHINE_REGISTRY_H_

#include <windows.h>

#include <string>

namespace ard::windows {

// The library's own settings, of the user and of the machine.
inline constexpr wchar_t kLibraryKey[] = L"Software\\ArdObjects100";

// Reads a text value (REG_SZ, or REG_EXPAND_SZ with its variables replaced) into `text`. A system
// error code otherwise: ERROR_FILE_NOT_FOUND for an absent key or value, ERROR_UNSUPPORTED_TYPE for
// one that is no text; `text` then is unspecified.
LSTATUS ReadRegistryText(HKEY root, const wchar_t* key, const wchar_t* name, std::wstring& text);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_REGISTRY_H_
