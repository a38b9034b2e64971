#include "windows/other_bits.h"

#include <windows.h>

#include <iterator>

#include "frame/text.h"

namespace ard::windows {
namespace {

#ifdef _WIN64
constexpr REGSAM kOtherBits = KEY_WOW64_32KEY;
constexpr wchar_t kOnly[] = L"It is registered for programs of 32 bits only, and this one has 64.";
#else
constexpr REGSAM kOtherBits = KEY_WOW64_64KEY;
constexpr wchar_t kOnly[] = L"It is registered for programs of 64 bits only, and this one has 32.";
#endif

bool IsRegistered(const std::wstring& server, REGSAM view) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, server.c_str(), 0, KEY_READ | view, &key)) return false;
  RegCloseKey(key);
  return true;
}

}  // namespace

std::wstring OtherBitsOnly(const std::wstring& prog_id) {
  // What programs are told of a class is the same for both; the class itself is not.
  wchar_t id[64];
  DWORD size = sizeof id;
  if (RegGetValueW(HKEY_CLASSES_ROOT, (prog_id + L"\\CLSID").c_str(), nullptr, RRF_RT_REG_SZ,
                   nullptr, id, &size)) {
    return {};
  }
  const std::wstring key = std::wstring(L"CLSID\\") + id;
  // A server that is a process of its own has clients of either.
  const bool only = IsRegistered(key + L"\\InprocServer32", kOtherBits) &&
                    !IsRegistered(key + L"\\LocalServer32", kOtherBits) && !IsRegistered(key, 0);
  return only ? kOnly : L"";
}

std::wstring FirstOfOtherBits(std::wstring_view beginning) {
  for (DWORD i = 0;; ++i) {
    wchar_t name[256];  // as long as a key's name can be
    DWORD length = std::size(name);
    if (RegEnumKeyExW(HKEY_CLASSES_ROOT, i, name, &length, nullptr, nullptr, nullptr, nullptr)) {
      return {};
    }
    const std::wstring prog_id(name, length);
    if (EqualsIgnoreCase(prog_id.substr(0, beginning.size()), beginning) &&
        !OtherBitsOnly(prog_id).empty()) {
      return prog_id;
    }
  }
}

}  // namespace ard::windows
