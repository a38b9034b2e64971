// The system's own codes as the library's errors.
#ifndef ARD_WINDOWS_SYSTEM_ERROR_H_
#define ARD_WINDOWS_SYSTEM_ERROR_H_

#include <windows.h>

#include <iterator>
#include <string>

#include "frame/error.h"

namespace ard::windows {

// The code with the system's description of it.
inline Error SystemError(HRESULT code) {
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(code), 0, text, std::size(text), nullptr);
  while (length > 0 && text[length - 1] <= L' ') --length;
  return {code, length > 0 ? std::wstring(text, length) : L"The call failed."};
}

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SYSTEM_ERROR_H_
