// Texts in the machine's ANSI code page.
#ifndef ARD_WINDOWS_MACHINE_ANSI_H_
#define ARD_WINDOWS_MACHINE_ANSI_H_

#include <windows.h>

#include <string>
#include <string_view>

namespace ard::windows {

inline std::string ToAnsi(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  std::string ansi(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text.data(), length,
                                                                nullptr, 0, nullptr, nullptr)),
                   '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), length, ansi.data(), static_cast<int>(ansi.size()),
                      nullptr, nullptr);
  return ansi;
}

inline std::wstring FromAnsi(std::string_view ansi) {
  const int length = static_cast<int>(ansi.size());
  std::wstring text(
      static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, ansi.data(), length, nullptr, 0)),
      L'\0');
  MultiByteToWideChar(CP_ACP, 0, ansi.data(), length, text.data(), static_cast<int>(text.size()));
  return text;
}

}  // namespace ard::windows

#endif  // ARD_WINDOWS_MACHINE_ANSI_H_
