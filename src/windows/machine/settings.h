// The user's settings, in the place where Visual Basic hosts keep theirs, so that their own
// GetSetting and SaveSetting see the same:
//
//   HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>  <name> = "text"
//
// Application and section may be several keys deep, and either may be empty.
#ifndef ARD_WINDOWS_MACHINE_SETTINGS_H_
#define ARD_WINDOWS_MACHINE_SETTINGS_H_

#include <string>
#include <string_view>

namespace ard::windows {

// The text of a setting, or `otherwise` when there is none, or none that is text. Throws Error with
// the system's code and text when it cannot be read.
std::wstring GetUserSetting(std::wstring_view application, std::wstring_view section,
                            std::wstring_view name, std::wstring_view otherwise);

// Throws Error when it cannot be written.
void SaveUserSetting(std::wstring_view application, std::wstring_view section,
                     std::wstring_view name, std::wstring_view value);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_SETTINGS_H_
