// Private profiles ("ini files"), in the machine's ANSI code page. A name without a folder is one
// in the Windows folder.
#ifndef ARD_WINDOWS_MACHINE_INI_FILE_H_
#define ARD_WINDOWS_MACHINE_INI_FILE_H_

#include <string>
#include <string_view>

namespace ard::windows {

// The value without the blanks around it, as far as a buffer of 255 characters holds it; "" when
// there is none.
std::wstring ReadIniFile(std::wstring_view file, std::wstring_view section, std::wstring_view key);

// Throws Error with the system's code and text when it cannot be written.
void WriteIniFile(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                  std::wstring_view value);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_INI_FILE_H_
