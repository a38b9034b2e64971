#include "windows/machine/trace_file.h"

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

#include "windows/machine/registry.h"

namespace ard::windows {
namespace {

constexpr wchar_t kName[] = L"ARDOBJECTS_TRACE";

std::wstring FromEnvironment() {
  // The first call counts the ending zero, the second does not.
  std::wstring value(GetEnvironmentVariableW(kName, nullptr, 0), L'\0');
  if (value.empty()) return value;
  value.resize(GetEnvironmentVariableW(kName, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::wstring FromRegistry(HKEY root) {
  std::wstring value;
  return ReadRegistryText(root, kLibraryKey, kName, value) == ERROR_SUCCESS ? value
                                                                            : std::wstring();
}

std::wstring TracePath() {
  std::wstring path = FromEnvironment();
  if (path.empty()) path = FromRegistry(HKEY_CURRENT_USER);
  if (path.empty()) path = FromRegistry(HKEY_LOCAL_MACHINE);
  return path;
}

}  // namespace

Trace::Sink OpenTraceFile() {
  const std::wstring path = TracePath();
  if (path.empty()) return nullptr;
  // Append access makes each write go to the end, whoever else writes.
  const HANDLE handle =
      CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  const std::shared_ptr<void> file(handle, CloseHandle);
  return [file](std::string_view line) {
    const std::string text = std::string(line) + "\r\n";
    DWORD written = 0;
    WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  };
}

}  // namespace ard::windows
