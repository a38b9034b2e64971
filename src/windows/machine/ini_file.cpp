#include "windows/machine/ini_file.h"

#include <windows.h>

#include <iterator>

#include "frame/environment.h"
#include "frame/text.h"
#include "windows/machine/ansi.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

// The system would refuse to write such a file, but for an administrator on some systems: then an
// entry would get into a file that has been closed to entries.
bool IsReadOnly(std::wstring_view file) {
  std::wstring path(file);
  if (file.find_first_of(L"\\/") == std::wstring_view::npos) {
    wchar_t folder[MAX_PATH];
    path = std::wstring(folder, GetWindowsDirectoryW(folder, MAX_PATH)) + L"\\" + path;
  }
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY);
}

}  // namespace

std::wstring ReadIniFile(std::wstring_view file, std::wstring_view section, std::wstring_view key) {
  char value[Environment::kIniValueLength + 1];
  const DWORD length =
      GetPrivateProfileStringA(ToAnsi(section).c_str(), ToAnsi(key).c_str(), "", value,
                               static_cast<DWORD>(std::size(value)), ToAnsi(file).c_str());
  std::wstring text = FromAnsi({value, length});
  Trim(text);
  return text;
}

void WriteIniFile(std::wstring_view file, std::wstring_view section, std::wstring_view key,
                  std::wstring_view value) {
  if (IsReadOnly(file)) throw SystemError(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  if (!WritePrivateProfileStringA(ToAnsi(section).c_str(), ToAnsi(key).c_str(),
                                  ToAnsi(value).c_str(), ToAnsi(file).c_str())) {
    throw SystemError(HRESULT_FROM_WIN32(GetLastError()));
  }
}

}  // namespace ard::windows
