// Files and folders, as Environment asks for them. What the system refuses throws Error with its
// code and text.
#ifndef ARD_WINDOWS_MACHINE_FILES_H_
#define ARD_WINDOWS_MACHINE_FILES_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/environment.h"

namespace ard::windows {

// Throws when there is no such file or folder, or the short path has 255 characters or more.
std::wstring ShortPathOf(std::wstring_view path);

// The folder of program files that all programs share.
std::wstring CommonFilesFolderFor(std::int32_t owner);

// Writes the shortcut; one that is there already is replaced. COM has to be initialized.
void WriteShortcut(const Shortcut& shortcut);

// Opens the file for reading, sharing it with whoever else does.
void TryToReadFile(std::wstring_view file);

// Opens a file with the program that is registered for it.
void OpenWithItsProgram(std::wstring_view file);

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_FILES_H_
