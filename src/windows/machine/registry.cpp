#include "windows/machine/registry.h"

namespace ard::windows {

LSTATUS ReadRegistryText(HKEY root, const wchar_t* key, const wchar_t* name, std::wstring& text) {
  LSTATUS status = ERROR_MORE_DATA;
  // Another program may lengthen the value between the two calls.
  while (status == ERROR_MORE_DATA) {
    DWORD bytes = 0;
    status = RegGetValueW(root, key, name, RRF_RT_REG_SZ, nullptr, nullptr, &bytes);
    if (status != ERROR_SUCCESS) return status;
    text.assign(bytes / sizeof(wchar_t) + 1, L'\0');
    status = RegGetValueW(root, key, name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
  }
  text.resize(text.find(L'\0'));
  return status;
}

}  // namespace ard::windows
