#include "windows/server/registration.h"

#include <ArdObjects100.h>

#include <new>
#include <string>
#include <vector>

#include "windows/server/module.h"
#include "windows/server/published_class.h"

namespace ard::windows {
namespace {

constexpr wchar_t kClasses[] = L"Software\\Classes\\";
constexpr wchar_t kVersion[] = L"1.0";

#ifdef _WIN64
constexpr wchar_t kPlatform[] = L"win64";
constexpr REGSAM kOtherView = KEY_WOW64_32KEY;
#else
constexpr wchar_t kPlatform[] = L"win32";
constexpr REGSAM kOtherView = KEY_WOW64_64KEY;
#endif

// The system's marshaler for interfaces that a type library describes.
constexpr wchar_t kMarshaler[] = L"{00020424-0000-0000-C000-000000000046}";

std::wstring Text(REFGUID id) {
  wchar_t text[39];
  StringFromGUID2(id, text, ARRAYSIZE(text));
  return text;
}

std::wstring ClassKey(const PublishedClass& published) {
  return std::wstring(kClasses) + L"CLSID\\" + Text(published.class_id);
}
std::wstring InterfaceKey(const PublishedClass& published) {
  return std::wstring(kClasses) + L"Interface\\" + Text(published.interface_id);
}
std::wstring ProgId(const PublishedClass& published) {
  return std::wstring(L"ArdObjects100.") + published.table.class_name;
}
std::wstring LibraryKey() {
  return std::wstring(kClasses) + L"TypeLib\\" + Text(LIBID_ArdObjects100);
}

struct Entry {
  std::wstring key;
  const wchar_t* name;  // null for the key's own value
  std::wstring value;
};

void AddClass(const PublishedClass& published, const std::wstring& dll,
              std::vector<Entry>& entries) {
  const std::wstring prog_id = ProgId(published);
  const std::wstring prog_id_key = kClasses + prog_id;
  const std::wstring key = ClassKey(published);
  const std::wstring interface_key = InterfaceKey(published);
  const std::wstring library = Text(LIBID_ArdObjects100);
  const Entry class_entries[] = {
      {prog_id_key, nullptr, prog_id},
      {prog_id_key + L"\\CLSID", nullptr, Text(published.class_id)},
      {key, nullptr, prog_id},
      {key + L"\\InprocServer32", nullptr, dll},
      {key + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {key + L"\\ProgID", nullptr, prog_id},
      {key + L"\\TypeLib", nullptr, library},
      {key + L"\\Version", nullptr, kVersion},
      {interface_key, nullptr, std::wstring(L"_") + published.table.class_name},
      {interface_key + L"\\ProxyStubClsid32", nullptr, kMarshaler},
      {interface_key + L"\\TypeLib", nullptr, library},
      {interface_key + L"\\TypeLib", L"Version", kVersion},
  };
  entries.insert(entries.end(), std::begin(class_entries), std::end(class_entries));
}

std::vector<Entry> Entries() {
  const std::wstring dll = ModulePath();
  const std::wstring library = LibraryKey() + L"\\" + kVersion;
  std::vector<Entry> entries = {
      {library, nullptr, L"Core Accounts Integration"},
      {library + L"\\0\\" + kPlatform, nullptr, dll},
      {library + L"\\FLAGS", nullptr, L"0"},
  };
  for (const PublishedClass* published : PublishedClasses()) AddClass(*published, dll, entries);
  return entries;
}

LSTATUS Write(HKEY root, const Entry& entry) {
  const auto size = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  return RegSetKeyValueW(root, entry.key.c_str(), entry.name, REG_SZ, entry.value.c_str(), size);
}

bool Exists(HKEY root, const std::wstring& key, REGSAM view) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) return false;
  RegCloseKey(handle);
  return true;
}

// Deletes keys and remembers the first error. A key that does not exist is none.
class Deletion {
 public:
  explicit Deletion(HKEY root) : root_(root) {}

  void Tree(const std::wstring& key) { Note(RegDeleteTreeW(root_, key.c_str())); }

  void IfEmpty(const std::wstring& key) {
    DWORD keys = 0;
    DWORD values = 0;
    HKEY handle = nullptr;
    if (RegOpenKeyExW(root_, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) return;
    const LSTATUS status = RegQueryInfoKeyW(handle, nullptr, nullptr, nullptr, &keys, nullptr,
                                            nullptr, &values, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(handle);
    if (status == ERROR_SUCCESS && keys == 0 && values == 0) Tree(key);
  }

  LSTATUS status() const { return status_; }

 private:
  void Note(LSTATUS status) {
    if (status != ERROR_FILE_NOT_FOUND && status_ == ERROR_SUCCESS) status_ = status;
  }

  HKEY root_;
  LSTATUS status_ = ERROR_SUCCESS;
};

// The programmatic identifiers and the type library are shared between the two platforms.
void DeleteClass(HKEY root, const PublishedClass& published, Deletion& deletion) {
  const std::wstring key = ClassKey(published);
  deletion.Tree(key);
  deletion.Tree(InterfaceKey(published));
  if (!Exists(root, key, kOtherView)) deletion.Tree(kClasses + ProgId(published));
}

void DeleteLibrary(HKEY root, Deletion& deletion) {
  const std::wstring version_key = LibraryKey() + L"\\" + kVersion;
  const std::wstring platforms_key = version_key + L"\\0";
  deletion.Tree(platforms_key + L"\\" + kPlatform);
  deletion.IfEmpty(platforms_key);
  if (!Exists(root, platforms_key, 0)) deletion.Tree(version_key);
  deletion.IfEmpty(LibraryKey());
}

LSTATUS DeleteAll(HKEY root) {
  Deletion deletion(root);
  for (const PublishedClass* published : PublishedClasses()) {
    DeleteClass(root, *published, deletion);
  }
  DeleteLibrary(root, deletion);
  // A user's registry may have had none of these before.
  for (const wchar_t* parent : {L"CLSID", L"Interface", L"TypeLib"}) {
    deletion.IfEmpty(std::wstring(kClasses) + parent);
  }
  return deletion.status();
}

LSTATUS WriteAll(HKEY root) {
  for (const Entry& entry : Entries()) {
    const LSTATUS status = Write(root, entry);
    if (status == ERROR_SUCCESS) continue;
    DeleteAll(root);
    return status;
  }
  return ERROR_SUCCESS;
}

HRESULT Run(LSTATUS (*change)(HKEY), HKEY root) {
  try {
    const LSTATUS status = change(root);  // the macro evaluates its argument twice
    return HRESULT_FROM_WIN32(status);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

HRESULT Register(HKEY root) { return Run(WriteAll, root); }
HRESULT Unregister(HKEY root) { return Run(DeleteAll, root); }

}  // namespace ard::windows
