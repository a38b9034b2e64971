#include "windows/machine/settings.h"

#include <windows.h>

#include <algorithm>

#include "windows/machine/registry.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

constexpr wchar_t kRoot[] = L"Software\\VB and VBA Program Settings";

// Appends the keys of `path`; those without a name (a leading or trailing backslash) do not count.
void AppendPath(std::wstring_view path, std::wstring& key) {
  while (!path.empty()) {
    const std::wstring_view segment = path.substr(0, path.find(L'\\'));
    if (!segment.empty()) key.append(L"\\").append(segment);
    path.remove_prefix(std::min(segment.size() + 1, path.size()));
  }
}

std::wstring KeyOf(std::wstring_view application, std::wstring_view section) {
  std::wstring key = kRoot;
  AppendPath(application, key);
  AppendPath(section, key);
  return key;
}

void CheckRegistry(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw SystemError(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

}  // namespace

std::wstring GetUserSetting(std::wstring_view application, std::wstring_view section,
                            std::wstring_view name, std::wstring_view otherwise) {
  std::wstring text;
  const LSTATUS status = ReadRegistryText(HKEY_CURRENT_USER, KeyOf(application, section).c_str(),
                                          std::wstring(name).c_str(), text);
  if (status == ERROR_FILE_NOT_FOUND || status == ERROR_UNSUPPORTED_TYPE) {
    return std::wstring(otherwise);
  }
  CheckRegistry(status);
  return text;
}

void SaveUserSetting(std::wstring_view application, std::wstring_view section,
                     std::wstring_view name, std::wstring_view value) {
  const std::wstring text(value);
  CheckRegistry(RegSetKeyValueW(HKEY_CURRENT_USER, KeyOf(application, section).c_str(),
                                std::wstring(name).c_str(), REG_SZ, text.c_str(),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
}

}  // namespace ard::windows
