// Registration and unloading: what the DLL writes, what it leaves, and that it really goes.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "frame/text.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host

const std::wstring kClassesKey = L"Software\\Classes\\";
const std::wstring kLibraryKey = kClassesKey + L"TypeLib\\" + kLibraryId;
constexpr bool k64Bit = sizeof(void*) == 8;
constexpr REGSAM kOwnView = k64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
constexpr REGSAM kOtherView = k64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
const std::wstring kPlatform = k64Bit ? L"win64" : L"win32";
const std::wstring kOtherPlatform = k64Bit ? L"win32" : L"win64";

struct IgnoreCase {
  bool operator()(const std::wstring& a, const std::wstring& b) const {
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
  }
};

// Values by key and name; a key's own entry is there even when it has no value.
using Snapshot = std::map<std::wstring, std::wstring, IgnoreCase>;

// Only these are looked into; there are thousands of others.
bool HoldsOurKeys(const std::wstring& path) {
  static const std::set<std::wstring, IgnoreCase> kParents = {
      kClassesKey + L"CLSID", kClassesKey + L"Interface", kClassesKey + L"TypeLib",
      kClassesKey + L"AppID"};
  if (kParents.contains(path)) return true;
  const auto mentions = [&](const std::wstring& text) {
    return FindStringOrdinal(FIND_FROMSTART, path.c_str(), -1, text.c_str(), -1, TRUE) >= 0;
  };
  return mentions(L"ArdObjects100") || mentions(kLibraryId) ||
         std::ranges::any_of(kClasses, [&](const ClassIdentity& identity) {
           return mentions(Text(identity.class_id)) || mentions(Text(identity.interface_id));
         });
}

void Take(HKEY parent, const std::wstring& path, REGSAM view, Snapshot& snapshot) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS) return;
  snapshot[path];
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    BYTE data[2048] = {};
    DWORD length = ARRAYSIZE(name);
    DWORD size = sizeof data - sizeof(wchar_t);
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(key, i, name, &length, nullptr, &type, data, &size);
    if (status == ERROR_NO_MORE_ITEMS) break;
    if (status != ERROR_SUCCESS) continue;  // too large to be ours
    snapshot[path + L"@" + name] = type == REG_SZ ? reinterpret_cast<wchar_t*>(data) : L"";
  }
  std::set<std::wstring> children;
  for (DWORD i = 0;; ++i) {
    DWORD length = ARRAYSIZE(name);
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr)) break;
    children.insert(name);
  }
  RegCloseKey(key);
  for (const std::wstring& child : children) {
    const std::wstring child_path = path + L"\\" + child;
    snapshot[child_path];
    if (HoldsOurKeys(child_path)) Take(parent, child_path, view, snapshot);
  }
}

Snapshot Classes(HKEY root, REGSAM view) {
  Snapshot snapshot;
  // The root is the system's own, though a new user may not have it yet.
  snapshot[L"Software\\Classes"];
  Take(root, L"Software\\Classes", view, snapshot);
  return snapshot;
}

// The keys and values that are in one of them only, or differ.
std::set<std::wstring> Difference(const Snapshot& a, const Snapshot& b) {
  std::set<std::wstring> keys;
  for (const auto& [one, other] : {std::pair(&a, &b), std::pair(&b, &a)}) {
    for (const auto& [key, value] : *one) {
      const auto found = other->find(key);
      if (found == other->end() || found->second != value) keys.insert(key);
    }
  }
  return keys;
}

struct Scope {
  const char* name;
  HKEY root;
  const wchar_t* argument;
};
const Scope kScopes[] = {{"machine", HKEY_LOCAL_MACHINE, nullptr},
                         {"user", HKEY_CURRENT_USER, L"user"}};

class Registration : public ::testing::Test {
 protected:
  HRESULT Install(const Scope& scope, bool install) {
    return dll_.Call<BOOL, const wchar_t*>("DllInstall", install, scope.argument);
  }
  void TearDown() override {
    Install(kScopes[1], false);
    EXPECT_EQ(Install(kScopes[0], true), S_OK);
  }

  Dll dll_{LibraryPath()};
};

void Write(HKEY root, const std::wstring& path, REGSAM view, const wchar_t* value,
           DWORD options = 0) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(root, path.c_str(), 0, nullptr, options, KEY_WRITE | view, nullptr,
                            &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                 static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
}

TEST_F(Registration, IsCompleteAndLeavesNothing) {
  for (const Scope& scope : kScopes) {
    SCOPED_TRACE(scope.name);
    ASSERT_EQ(Install(scope, false), S_OK);
    const Snapshot before = Classes(scope.root, kOwnView);
    const Snapshot other_before = Classes(scope.root, kOtherView);
    ASSERT_EQ(Install(scope, true), S_OK);
    Snapshot after = Classes(scope.root, kOwnView);

    for (const ClassIdentity& identity : kClasses) {
      const std::wstring class_id = Text(identity.class_id);
      const std::wstring class_key = kClassesKey + L"CLSID\\" + class_id;
      const std::wstring interface_key = kClassesKey + L"Interface\\" + Text(identity.interface_id);
      const std::wstring prog_id = ProgId(identity);
      const std::wstring about = after[class_key + L"@"];
      EXPECT_TRUE(about.starts_with(L"Core Accounts: ")) << ToUtf8(about);
      const std::pair<std::wstring, std::wstring> values[] = {
          {kClassesKey + prog_id + L"@", about},
          {kClassesKey + prog_id + L"\\CLSID@", class_id},
          {kClassesKey + prog_id + L"\\CurVer@", prog_id + L".1"},
          {kClassesKey + prog_id + L".1@", about},
          {kClassesKey + prog_id + L".1\\CLSID@", class_id},
          {class_key + L"@AppID", kLibraryId},
          {class_key + L"\\InprocServer32@", LibraryPath()},
          {class_key + L"\\InprocServer32@ThreadingModel", L"Apartment"},
          {class_key + L"\\ProgID@", prog_id},
          {class_key + L"\\VersionIndependentProgID@", prog_id},
          {class_key + L"\\TypeLib@", kLibraryId},
          {interface_key + L"@", std::wstring(L"_") + identity.name},
          {interface_key + L"\\ProxyStubClsid32@", L"{00020424-0000-0000-C000-000000000046}"},
          {interface_key + L"\\TypeLib@", kLibraryId},
          {interface_key + L"\\TypeLib@Version", L"1.0"}};
      for (const auto& [name, value] : values) EXPECT_EQ(after[name], value) << ToUtf8(name);
      EXPECT_TRUE(after.contains(class_key + L"\\Programmable"));
      EXPECT_FALSE(after.contains(class_key + L"\\Implemented Categories"));
    }
    const std::wstring applications = kClassesKey + L"AppID\\";
    EXPECT_EQ(after[applications + kLibraryId + L"@"], L"Core Accounts Integration");
    EXPECT_EQ(after[applications + L"ArdObjects100.dll@AppID"], kLibraryId);
    EXPECT_EQ(after[kLibraryKey + L"\\1.0\\0\\" + kPlatform + L"@"], LibraryPath());
    EXPECT_EQ(after[kLibraryKey + L"\\1.0\\HELPDIR@"] + L"\\ArdObjects100.dll", LibraryPath());

    ASSERT_EQ(Install(scope, true), S_OK) << "once more";
    ASSERT_EQ(Install(scope, false), S_OK);
    EXPECT_EQ(Difference(Classes(scope.root, kOwnView), before), std::set<std::wstring>());
    EXPECT_EQ(Difference(Classes(scope.root, kOtherView), other_before), std::set<std::wstring>());
    ASSERT_EQ(Install(scope, false), S_OK) << "once more";
  }
}

// What the library's copy for the other platform has registered, and what both share.
TEST_F(Registration, LeavesTheOtherPlatformAlone) {
  const Scope& machine = kScopes[0];
  const std::wstring class_key = kClassesKey + L"CLSID\\" + Text(kClasses[0].class_id);
  const std::wstring platform_key = kLibraryKey + L"\\1.0\\0\\" + kOtherPlatform;
  const std::wstring prog_id_key = kClassesKey + ProgId(kClasses[0]);
  // That copy may be registered indeed.
  const bool added = !Classes(machine.root, kOtherView).contains(class_key);
  ASSERT_EQ(Install(machine, true), S_OK);
  if (added) {
    Write(machine.root, class_key, kOtherView, L"other");
    Write(machine.root, platform_key, kOwnView, L"other.dll");
  }

  ASSERT_EQ(Install(machine, false), S_OK);
  Snapshot left = Classes(machine.root, kOwnView);
  EXPECT_FALSE(left.contains(class_key));
  EXPECT_TRUE(left.contains(prog_id_key + L"\\CLSID"));
  EXPECT_TRUE(left.contains(platform_key));
  EXPECT_FALSE(left.contains(kLibraryKey + L"\\1.0\\0\\" + kPlatform));
  EXPECT_TRUE(Classes(machine.root, kOtherView).contains(class_key));
  if (!added) return;

  EXPECT_FALSE(left.contains(kClassesKey + ProgId(kClasses[1])));
  RegDeleteKeyExW(machine.root, class_key.c_str(), kOtherView, 0);
  RegDeleteTreeW(machine.root, platform_key.c_str());
  ASSERT_EQ(Install(machine, false), S_OK);
  left = Classes(machine.root, kOwnView);
  EXPECT_FALSE(left.contains(prog_id_key));
  EXPECT_FALSE(left.contains(kLibraryKey));
}

// A copy of the library somewhere else.
struct Copy {
  Copy() { CopyFileW(LibraryPath().c_str(), path.c_str(), FALSE); }
  ~Copy() { DeleteFileW(path.c_str()); }
  HRESULT Install(bool install) const {
    return Dll(path).Call<BOOL, const wchar_t*>("DllInstall", install, L"user");
  }
  const std::wstring path = LibraryPath() + L".copy.dll";
};

TEST_F(Registration, ThatFailsPutsBackWhatWasThere) {
  const Scope& user = kScopes[1];
  const std::wstring obstacle = kClassesKey + L"CLSID\\" + Text(kClasses[6].class_id);
  const Copy copy;
  for (const bool registered : {false, true}) {
    SCOPED_TRACE(registered);
    ASSERT_EQ(copy.Install(registered), S_OK);
    // A lasting key cannot be made below one that lasts only until the next start of the system.
    RegDeleteTreeW(user.root, obstacle.c_str());
    Write(user.root, obstacle, kOwnView, L"in the way", REG_OPTION_VOLATILE);
    const Snapshot before = Classes(user.root, kOwnView);
    EXPECT_EQ(Install(user, true), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(Difference(Classes(user.root, kOwnView), before), std::set<std::wstring>());
    RegDeleteTreeW(user.root, obstacle.c_str());
    copy.Install(false);
  }
}

TEST_F(Registration, BelongsToTheCopyThatCameLast) {
  const Scope& user = kScopes[1];
  const Snapshot before = Classes(user.root, kOwnView);
  const Copy copy;
  ASSERT_EQ(copy.Install(true), S_OK);
  const Snapshot of_copy = Classes(user.root, kOwnView);
  ASSERT_EQ(Install(user, true), S_OK) << "over the other";
  const Snapshot registered = Classes(user.root, kOwnView);
  EXPECT_EQ(Difference(of_copy, registered).size(), std::size(kClasses) + 1)
      << "all paths but no more";
  ASSERT_EQ(copy.Install(false), S_OK) << "nothing names it";
  EXPECT_EQ(Difference(Classes(user.root, kOwnView), registered), std::set<std::wstring>());
  // However the path is spelt.
  wchar_t path[MAX_PATH] = {};
  GetShortPathNameW(LibraryPath().c_str(), path, MAX_PATH);
  ASSERT_NE(path, LibraryPath());
  for (const auto& [key, value] : registered) {
    if (value != LibraryPath()) continue;
    Write(user.root, key.substr(0, key.find(L'@')), kOwnView, path);
  }
  ASSERT_EQ(Install(user, false), S_OK);
  EXPECT_EQ(Difference(Classes(user.root, kOwnView), before), std::set<std::wstring>());
}

TEST_F(Registration, RefusesOtherArguments) {
  EXPECT_EQ(Install({"", nullptr, L"everybody"}, true), E_INVALIDARG);
}

// In a folder with a long name beyond ASCII, so that the whole path is longer than most.
TEST(Unloading, HappensOnceNothingIsInUse) {
  wchar_t temporary[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, temporary);
  const std::wstring folder = temporary + std::wstring(L"\x17E\x6771 ") + std::wstring(100, L'x');
  const std::wstring path = folder + L"\\Ard\x4EAC.dll";
  CreateDirectoryW(folder.c_str(), nullptr);
  ASSERT_TRUE(CopyFileW(LibraryPath().c_str(), path.c_str(), FALSE));
  {
    const Dll dll(path);
    ASSERT_TRUE(dll);
    const auto can_unload = [&] { return dll.Call("DllCanUnloadNow"); };
    void* none = &none;
    const auto get_no_class = [&](REFCLSID class_id, REFIID iid) {
      return dll.Call<REFCLSID, REFIID, void**>("DllGetClassObject", class_id, iid, &none);
    };
    EXPECT_EQ(get_no_class(IID_IUnknown, IID_IClassFactory), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(get_no_class(CLSID_Customers, IID_IDispatch), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(can_unload(), S_OK);

    ComPtr<IClassFactory> factory = dll.Factory(CLSID_Customers);
    ASSERT_TRUE(factory);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &none), E_NOINTERFACE);
    factory->LockServer(FALSE);  // a lock that nobody has made
    EXPECT_EQ(can_unload(), S_FALSE) << "a class object is in use";
    ComPtr<IDispatch> object;
    ASSERT_EQ(
        factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.Receive())),
        S_OK);
    factory = ComPtr<IClassFactory>();
    EXPECT_EQ(can_unload(), S_FALSE) << "an object is";
    // By name: with the type library of this copy.
    EXPECT_EQ(LateBound(object).Ask(L"GetName", L"A").vt, VT_BSTR);
    object = ComPtr<IDispatch>();
    EXPECT_EQ(can_unload(), S_OK);
    for (const bool locked : {true, true, false}) dll.Factory(CLSID_Customers)->LockServer(locked);
    EXPECT_EQ(can_unload(), S_FALSE) << "one lock is left";
    for (int i = 0; i < 2; ++i) dll.Factory(CLSID_Customers)->LockServer(FALSE);
    EXPECT_EQ(can_unload(), S_OK);
  }
  EXPECT_EQ(GetModuleHandleW(path.c_str()), nullptr);
  EXPECT_TRUE(DeleteFileW(path.c_str()));
  RemoveDirectoryW(folder.c_str());
}

}  // namespace
}  // namespace ard::windows
