// Registration and unloading: what the DLL writes, what it leaves, and that it really goes.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "frame/text.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host

const HKEY kUser = HKEY_CURRENT_USER;
const HKEY kMachine = HKEY_LOCAL_MACHINE;
const std::wstring kLibraryId = Text(LIBID_ArdObjects100);
// A key below that of all classes. Names are in capitals here: nobody minds their case.
std::wstring Key(std::wstring name) {
  return L"SOFTWARE\\CLASSES\\" + (CharUpperW(name.data()), name);
}
const std::wstring kLibraryKey = Key(L"TypeLib\\" + kLibraryId + L"\\1.0\\0\\");
constexpr bool k64Bit = sizeof(void*) == 8;
constexpr REGSAM kOwnView = k64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
constexpr REGSAM kOtherView = k64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
const std::wstring kPlatform = k64Bit ? L"WIN64" : L"WIN32";
const std::wstring kOtherPlatform = k64Bit ? L"WIN32" : L"WIN64";

// Values by key and name; a key's own entry is there even when it has no value.
using Snapshot = std::map<std::wstring, std::wstring>;

// Only these are looked into; there are thousands of others.
bool HoldsOurKeys(const std::wstring& path) {
  static const std::vector<std::wstring> kOurs = [] {
    std::vector<std::wstring> ours = {L"ARDOBJECTS100", kLibraryId};
    for (const ClassIdentity& identity : kClasses) {
      for (const GUID& id : {identity.class_id, identity.interface_id}) ours.push_back(Text(id));
    }
    return ours;
  }();
  const std::wstring name = path.substr(path.rfind(L'\\') + 1);
  return name == L"CLASSES" || name == L"CLSID" || name == L"INTERFACE" || name == L"TYPELIB" ||
         name == L"APPID" || std::ranges::any_of(kOurs, [&](const std::wstring& text) {
           return path.find(text) != path.npos;
         });
}

Snapshot Classes(HKEY root, REGSAM view) {
  Snapshot snapshot;
  // The first is the system's own, though a new user may not have it yet.
  std::vector<std::wstring> keys = {L"SOFTWARE\\CLASSES"};
  for (std::size_t at = 0; at < keys.size(); ++at) {
    const std::wstring path = keys[at];
    snapshot[path];
    HKEY key = nullptr;
    if (!HoldsOurKeys(path)) continue;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS) continue;
    wchar_t name[256];
    for (DWORD i = 0, length = ARRAYSIZE(name);
         !RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr);
         ++i, length = ARRAYSIZE(name)) {
      keys.push_back(path + L"\\" + CharUpperW(name));
    }
    wchar_t text[1024] = {};
    for (DWORD i = 0, length = ARRAYSIZE(name), size = sizeof text, type = REG_NONE; !RegEnumValueW(
             key, i, name, &length, nullptr, &type, reinterpret_cast<BYTE*>(text), &size);
         ++i, length = ARRAYSIZE(name), size = sizeof text) {
      snapshot[path + L"@" + CharUpperW(name)] =
          type == REG_SZ ? text : text + (L" of type " + std::to_wstring(type));
    }
    RegCloseKey(key);
  }
  return snapshot;
}

// The keys and values that are in one of them only, or differ: those twice.
std::vector<std::pair<std::wstring, std::wstring>> Difference(const Snapshot& a,
                                                              const Snapshot& b) {
  std::vector<std::pair<std::wstring, std::wstring>> entries;
  std::ranges::set_symmetric_difference(a, b, std::back_inserter(entries));
  return entries;
}
const decltype(Difference({}, {})) kNone;

class Registration : public ::testing::Test {
 protected:
  HRESULT Install(HKEY root, bool install) {
    // As regsvr32 passes it, in whatever case, or nothing.
    const wchar_t* const scope = root == kUser ? L"User" : install ? nullptr : L"";
    return dll_.Call<BOOL, const wchar_t*>("DllInstall", install, scope);
  }
  void SetUp() override {
    Install(kMachine, true);  // what the other platform's copy shares is as this one leaves it
    TearDown();
  }
  void TearDown() override {
    for (const HKEY root : {kMachine, kUser}) {
      EXPECT_EQ(Install(root, false), S_OK);
    }
  }

  Dll dll_{LibraryPath()};
};

void Write(HKEY root, const std::wstring& path, REGSAM view, const wchar_t* value,
           DWORD options = 0, DWORD type = REG_SZ) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(root, path.c_str(), 0, nullptr, options, KEY_WRITE | view, nullptr,
                            &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExW(key, nullptr, 0, type, reinterpret_cast<const BYTE*>(value),
                 static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
}

TEST_F(Registration, IsCompleteAndLeavesNothing) {
  for (const HKEY root : {kMachine, kUser}) {
    SCOPED_TRACE(root == kUser);
    const Snapshot before = Classes(root, kOwnView);
    const Snapshot other_before = Classes(root, kOtherView);
    ASSERT_EQ(Install(root, true), S_OK);
    Snapshot after = Classes(root, kOwnView);

    for (const ClassIdentity& identity : kClasses) {
      const std::wstring class_id = Text(identity.class_id);
      const std::wstring class_key = L"CLSID\\" + class_id;
      const std::wstring interface_key = L"Interface\\" + Text(identity.interface_id);
      const std::wstring prog_id = ProgId(identity);
      const std::wstring about = after[Key(class_key) + L"@"];
      EXPECT_TRUE(about.starts_with(L"Core Accounts: ")) << ToUtf8(about);
      const std::pair<std::wstring, std::wstring> values[] = {
          {prog_id + L"@", about},
          {prog_id + L"\\CLSID@", class_id},
          {prog_id + L"\\CurVer@", prog_id + L".1"},
          {prog_id + L".1@", about},
          {prog_id + L".1\\CLSID@", class_id},
          {class_key + L"@AppID", kLibraryId},
          {class_key + L"\\InprocServer32@", LibraryPath()},
          {class_key + L"\\InprocServer32@ThreadingModel", L"Apartment"},
          {class_key + L"\\ProgID@", prog_id},
          {class_key + L"\\VersionIndependentProgID@", prog_id},
          {class_key + L"\\TypeLib@", kLibraryId},
          {class_key + L"\\Version@", L"1.0"},
          {interface_key + L"@", std::wstring(L"_") + identity.name},
          {interface_key + L"\\ProxyStubClsid32@", L"{00020424-0000-0000-C000-000000000046}"},
          {interface_key + L"\\TypeLib@", kLibraryId},
          {interface_key + L"\\TypeLib@Version", L"1.0"}};
      for (const auto& [name, value] : values) EXPECT_EQ(after[Key(name)], value) << ToUtf8(name);
      EXPECT_TRUE(after.contains(Key(class_key + L"\\Programmable")));
      EXPECT_FALSE(after.contains(Key(class_key + L"\\Implemented Categories")));
    }
    EXPECT_EQ(after[Key(L"AppID\\" + kLibraryId + L"@")], L"Core Accounts Integration");
    EXPECT_EQ(after[Key(L"AppID\\ArdObjects100.dll@AppID")], kLibraryId);
    EXPECT_EQ(after[kLibraryKey + kPlatform + L"@"], LibraryPath());
    EXPECT_EQ(after[Key(L"TypeLib\\" + kLibraryId + L"\\1.0@")], L"Core Accounts Integration");
    EXPECT_EQ(after[Key(L"TypeLib\\" + kLibraryId + L"\\1.0\\FLAGS@")], L"0");
    EXPECT_EQ(after[Key(L"TypeLib\\" + kLibraryId + L"\\1.0\\HELPDIR@")] + L"\\ArdObjects100.dll",
              LibraryPath());

    for (const bool install : {true, false, false}) ASSERT_EQ(Install(root, install), S_OK);
    EXPECT_EQ(Difference(Classes(root, kOwnView), before), kNone);
    EXPECT_EQ(Difference(Classes(root, kOtherView), other_before), kNone);
  }
  EXPECT_EQ((dll_.Call<BOOL, const wchar_t*>("DllInstall", true, L"everybody")), E_INVALIDARG);
}

// What the library's copy for the other platform has registered, and what both share.
TEST_F(Registration, LeavesTheOtherPlatformAlone) {
  const std::wstring class_key = Key(L"CLSID\\" + Text(kClasses[0].class_id));
  const std::wstring prog_id_key = Key(ProgId(kClasses[0]));
  const std::wstring platform_key = kLibraryKey + kOtherPlatform;
  // That copy may be registered indeed.
  const bool added = !Classes(kMachine, kOtherView).contains(class_key);
  const Snapshot before = Classes(kMachine, kOwnView);
  ASSERT_EQ(Install(kMachine, true), S_OK);
  if (added) {
    Write(kMachine, class_key, kOtherView, L"other");
    Write(kMachine, platform_key, kOwnView, L"other.dll");
  }

  ASSERT_EQ(Install(kMachine, false), S_OK);
  const Snapshot left = Classes(kMachine, kOwnView);
  EXPECT_FALSE(left.contains(class_key));
  EXPECT_TRUE(Classes(kMachine, kOtherView).contains(class_key));
  EXPECT_TRUE(left.contains(prog_id_key + L"\\CLSID"));
  EXPECT_TRUE(left.contains(platform_key));
  EXPECT_FALSE(left.contains(kLibraryKey + kPlatform));
  EXPECT_NE(left.contains(Key(ProgId(kClasses[1]))), added);
  if (added) {
    RegDeleteKeyExW(kMachine, class_key.c_str(), kOtherView, 0);
    RegDeleteTreeW(kMachine, platform_key.c_str());
    ASSERT_EQ(Install(kMachine, false), S_OK);
    EXPECT_EQ(Difference(Classes(kMachine, kOwnView), before), kNone);
  }
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
  const std::wstring obstacle = Key(L"CLSID\\" + Text(kClasses[6].class_id));
  const Copy copy;
  for (const bool registered : {false, true}) {
    SCOPED_TRACE(registered);
    ASSERT_EQ(copy.Install(registered), S_OK);
    // A lasting key cannot be made below one that lasts only until the next start of the system.
    RegDeleteTreeW(kUser, obstacle.c_str());
    Write(kUser, obstacle, kOwnView, L"in the way", REG_OPTION_VOLATILE);
    Write(kUser, Key(L"AppID\\" + kLibraryId), kOwnView, L"%OS%", 0, REG_EXPAND_SZ);
    const Snapshot before = Classes(kUser, kOwnView);
    EXPECT_EQ(Install(kUser, true), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_EQ(Difference(Classes(kUser, kOwnView), before), kNone);
    RegDeleteTreeW(kUser, obstacle.c_str());
    copy.Install(false);
  }
}

TEST_F(Registration, BelongsToTheCopyThatCameLast) {
  const Snapshot before = Classes(kUser, kOwnView);
  const Copy copy;
  ASSERT_EQ(copy.Install(true), S_OK);
  const Snapshot of_copy = Classes(kUser, kOwnView);
  ASSERT_EQ(Install(kUser, true), S_OK) << "over the other";
  const Snapshot registered = Classes(kUser, kOwnView);
  EXPECT_EQ(Difference(of_copy, registered).size(), 2 * (std::size(kClasses) + 1))
      << "all paths but no more";
  ASSERT_EQ(copy.Install(false), S_OK) << "nothing names it";
  EXPECT_EQ(Difference(Classes(kUser, kOwnView), registered), kNone);
  // However the path is spelt.
  wchar_t path[MAX_PATH] = {};
  GetShortPathNameW(LibraryPath().c_str(), path, MAX_PATH);
  ASSERT_NE(path, LibraryPath());
  for (const auto& [key, value] : registered) {
    if (value != LibraryPath()) continue;
    Write(kUser, key.substr(0, key.find(L'@')), kOwnView, path);
  }
  // A name that means another class by now, and what others keep in a shared key, stay.
  const std::wstring taken = Key(ProgId(kClasses[0])), shared = Key(L"TypeLib");
  Write(kUser, taken + L"\\CLSID", kOwnView, Text(IID_IUnknown).c_str());
  Write(kUser, shared, kOwnView, L"another's");
  ASSERT_EQ(Install(kUser, false), S_OK);
  const Snapshot left = Classes(kUser, kOwnView);
  EXPECT_TRUE(left.contains(taken + L"\\CLSID"));
  EXPECT_TRUE(left.contains(shared + L"@"));
  RegDeleteTreeW(kUser, taken.c_str());
  RegDeleteKeyValueW(kUser, shared.c_str(), nullptr);
  ASSERT_EQ(Install(kUser, false), S_OK);
  EXPECT_EQ(Difference(Classes(kUser, kOwnView), before), kNone);
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
    // Nothing of that takes the type library. Once it has been asked for, it stays.
    const auto library_users = [&] {
      ComPtr<ITypeLib> library;
      LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Receive());
      return library.Detach()->Release();
    };
    EXPECT_EQ(LateBound(object).Ask(L"GetName", L"A").vt, VT_BSTR);
    EXPECT_EQ(library_users(), 0u);
    ComPtr<ITypeInfo> info;
    object->GetTypeInfo(0, 0, info.Receive());
    info = ComPtr<ITypeInfo>();
    object = ComPtr<IDispatch>();
    EXPECT_EQ(library_users(), 1u);
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
