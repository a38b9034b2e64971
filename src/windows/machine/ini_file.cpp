#include "windows/machine/ini_file.h"

#include <windows.h>

#include <iterator>

#include "frame/environment.h"
#include "frame/text.h"
#include "windows/machine/ansi.h"
#include "windows/system_error.h"

namespace ard::windows {

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
  if (!WritePrivateProfileStringA(ToAnsi(section).c_str(), ToAnsi(key).c_str(),
                                  ToAnsi(value).c_str(), ToAnsi(file).c_str())) {
    throw SystemError(HRESULT_FROM_WIN32(GetLastError()));
  }
}

}  // namespace ard::windows
