#include "windows/server/registration.h"

#include <ArdObjects100.h>

#include <initializer_list>
#include <map>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "frame/text.h"
#include "windows/server/module.h"
#include "windows/server/published_class.h"

namespace ard::windows {
namespace {

constexpr wchar_t kClasses[] = L"Software\\Classes\\";
constexpr wchar_t kVersion[] = L"1.0";
constexpr wchar_t kName[] = L"Core Accounts Integration";
constexpr wchar_t kServer[] = L"\\InprocServer32";

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

// The library's own identifier serves as that of its application, too.
std::wstring LibraryId() { return Text(LIBID_ArdObjects100); }

std::wstring ClassKey(const PublishedClass& published) {
  return std::wstring(kClasses) + L"CLSID\\" + Text(published.class_id);
}
std::wstring InterfaceKey(const PublishedClass& published) {
  return std::wstring(kClasses) + L"Interface\\" + Text(published.interface_id);
}
std::wstring ProgId(const PublishedClass& published) {
  return std::wstring(L"ArdObjects100.") + published.table.class_name;
}
// The one with a version says which class the one without it means now.
std::wstring VersionedProgId(const PublishedClass& published) { return ProgId(published) + L".1"; }
std::wstring LibraryKey() { return std::wstring(kClasses) + L"TypeLib\\" + LibraryId(); }
std::wstring PlatformKey() { return LibraryKey() + L"\\" + kVersion + L"\\0\\" + kPlatform; }
std::wstring ApplicationKey() { return std::wstring(kClasses) + L"AppID\\" + LibraryId(); }
std::wstring ApplicationFileKey() { return std::wstring(kClasses) + L"AppID\\ArdObjects100.dll"; }

struct Entry {
  std::wstring key;
  const wchar_t* name;  // null for the key's own value
  std::wstring value;
};

std::vector<Entry> Entries() {
  std::vector<Entry> entries;
  struct Row {
    const wchar_t* key;  // below that of all of them
    const wchar_t* name;
    std::wstring_view value;
  };
  const auto add = [&](const std::wstring& key, std::initializer_list<Row> rows) {
    for (const Row& row : rows)
      entries.push_back({key + row.key, row.name, std::wstring(row.value)});
  };
  const std::wstring dll = ModulePath();
  const std::wstring library = LibraryId();
  add(LibraryKey() + L"\\" + kVersion,
      {{L"", nullptr, kName},
       {L"\\FLAGS", nullptr, L"0"},
       {L"\\HELPDIR", nullptr, std::wstring_view(dll).substr(0, dll.rfind(L'\\'))}});
  add(PlatformKey(), {{L"", nullptr, dll}});
  add(ApplicationKey(), {{L"", nullptr, kName}});
  add(ApplicationFileKey(), {{L"", L"AppID", library}});
  for (const PublishedClass& published : PublishedClasses()) {
    const std::wstring id = Text(published.class_id);
    const std::wstring prog_id = ProgId(published);
    const std::wstring versioned = VersionedProgId(published);
    add(ClassKey(published), {{L"", nullptr, published.help},
                              {L"", L"AppID", library},
                              {kServer, nullptr, dll},
                              {kServer, L"ThreadingModel", L"Apartment"},
                              {L"\\ProgID", nullptr, prog_id},
                              {L"\\VersionIndependentProgID", nullptr, prog_id},
                              {L"\\Programmable", nullptr, L""},
                              {L"\\TypeLib", nullptr, library},
                              {L"\\Version", nullptr, kVersion}});
    add(InterfaceKey(published), {{L"", nullptr, L"_" + std::wstring(published.table.class_name)},
                                  {L"\\ProxyStubClsid32", nullptr, kMarshaler},
                                  {L"\\TypeLib", nullptr, library},
                                  {L"\\TypeLib", L"Version", kVersion}});
    add(kClasses + prog_id, {{L"", nullptr, published.help},
                             {L"\\CLSID", nullptr, id},
                             {L"\\CurVer", nullptr, versioned}});
    add(kClasses + versioned, {{L"", nullptr, published.help}, {L"\\CLSID", nullptr, id}});
  }
  return entries;
}

bool Exists(HKEY root, const std::wstring& key, REGSAM view = 0) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ | view, &handle) != ERROR_SUCCESS) return false;
  RegCloseKey(handle);
  return true;
}

// A value as it is, of whatever type.
struct Value {
  LSTATUS status = ERROR_FILE_NOT_FOUND;
  DWORD type = REG_NONE;
  std::vector<BYTE> data;
};

Value Read(HKEY root, const std::wstring& key, const wchar_t* name) {
  constexpr DWORD kFlags = RRF_RT_ANY | RRF_NOEXPAND;
  Value value;
  DWORD size = 0;
  if (RegGetValueW(root, key.c_str(), name, kFlags, nullptr, nullptr, &size)) return value;
  value.data.resize(size + sizeof(wchar_t));  // a text that lacks its end gets one
  size = static_cast<DWORD>(value.data.size());
  value.status =
      RegGetValueW(root, key.c_str(), name, kFlags, &value.type, value.data.data(), &size);
  value.data.resize(size);
  return value;
}

// A key's own value as text; empty when it is none.
std::wstring TextOf(HKEY root, const std::wstring& key) {
  const Value value = Read(root, key, nullptr);
  if (value.status != ERROR_SUCCESS || value.type != REG_SZ) return {};
  return reinterpret_cast<const wchar_t*>(value.data.data());
}

// The file's place on its volume; all zero when it cannot be told.
BY_HANDLE_FILE_INFORMATION IdentityOf(const std::wstring& path) {
  BY_HANDLE_FILE_INFORMATION identity = {};
  const HANDLE file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return identity;
  GetFileInformationByHandle(file, &identity);
  CloseHandle(file);
  return identity;
}

// Whether both name the same file, be it in other words (a short name, another drive).
bool IsSameFile(const std::wstring& a, const std::wstring& b) {
  if (a.empty() || EqualsIgnoreCase(a, b)) return !a.empty();
  const BY_HANDLE_FILE_INFORMATION one = IdentityOf(a);
  const BY_HANDLE_FILE_INFORMATION other = IdentityOf(b);
  return one.nFileIndexLow != 0 && one.nFileIndexLow == other.nFileIndexLow &&
         one.nFileIndexHigh == other.nFileIndexHigh &&
         one.dwVolumeSerialNumber == other.dwVolumeSerialNumber;
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

// Another copy of the library may have been registered since: what names it stays. The programmatic
// identifiers, the application and the type library are shared between the two platforms.
LSTATUS DeleteAll(HKEY root) {
  const std::wstring dll = ModulePath();
  Deletion deletion(root);
  bool used = false;
  for (const PublishedClass& published : PublishedClasses()) {
    const std::wstring key = ClassKey(published);
    if (IsSameFile(TextOf(root, key + kServer), dll)) deletion.Tree(key);
    if (Exists(root, key) || Exists(root, key, kOtherView)) {
      used = true;
      continue;
    }
    for (const std::wstring& id : {ProgId(published), VersionedProgId(published)}) {
      const std::wstring id_key = kClasses + id;
      if (TextOf(root, id_key + L"\\CLSID") == Text(published.class_id)) deletion.Tree(id_key);
    }
  }
  if (!used) {
    deletion.Tree(ApplicationKey());
    deletion.Tree(ApplicationFileKey());
  }
  if (IsSameFile(TextOf(root, PlatformKey()), dll)) {
    deletion.Tree(PlatformKey());
    for (const PublishedClass& published : PublishedClasses()) {
      deletion.Tree(InterfaceKey(published));
    }
  }
  const std::wstring version_key = LibraryKey() + L"\\" + kVersion;
  deletion.IfEmpty(version_key + L"\\0");
  if (!Exists(root, version_key + L"\\0")) deletion.Tree(version_key);
  deletion.IfEmpty(LibraryKey());
  // A user's registry may have had none of these before.
  for (const wchar_t* parent : {L"CLSID", L"Interface", L"TypeLib", L"AppID"}) {
    deletion.IfEmpty(std::wstring(kClasses) + parent);
  }
  return deletion.status();
}

LSTATUS WriteAll(HKEY root) {
  // What there is, and what there is not: parents first.
  const std::vector<Entry> entries = Entries();
  std::vector<Value> values;
  std::map<std::wstring, bool> keys;
  for (const Entry& entry : entries) {
    values.push_back(Read(root, entry.key, entry.name));
    for (std::size_t end = 0; end != std::wstring::npos;) {
      end = entry.key.find(L'\\', end + 1);
      const auto [key, is_new] = keys.try_emplace(entry.key.substr(0, end));
      if (is_new) key->second = Exists(root, key->first);
    }
  }

  LSTATUS status = ERROR_SUCCESS;
  std::size_t written = 0;
  while (status == ERROR_SUCCESS && written < entries.size()) {
    const Entry& entry = entries[written++];
    status = RegSetKeyValueW(root, entry.key.c_str(), entry.name, REG_SZ, entry.value.c_str(),
                             static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t)));
  }
  if (status == ERROR_SUCCESS) return status;

  while (written-- > 0) {
    const Entry& entry = entries[written];
    const Value& value = values[written];
    if (value.status == ERROR_SUCCESS) {
      RegSetKeyValueW(root, entry.key.c_str(), entry.name, value.type, value.data.data(),
                      static_cast<DWORD>(value.data.size()));
    } else {
      RegDeleteKeyValueW(root, entry.key.c_str(), entry.name);
    }
  }
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
    if (!key->second) RegDeleteKeyW(root, key->first.c_str());
  }
  return status;
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
