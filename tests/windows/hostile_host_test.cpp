// Hosts that do what none should: they come back in the middle of a call, undo locks that they have
// not made, call from other apartments. The library is used by its assembly manifest here
// (hostile_host.manifest); nothing of it is registered.
//
//   hostile_host_test <folder of the demo company>
//
// The simulated engine has to be registered.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "tests/windows/hasty_user.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host

// The host's own object, which comes back to the host when it is called. The library must hold it
// for the time of the call, whatever the host does then.
class CallsBack final : public ForeignObject {
 public:
  std::function<void()> back;
  bool held = false;

  // Answers False, to whatever it is asked.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (back) {
      std::exchange(back, nullptr)();
      held = references > 1;
    }
    if (result) result->vt = VT_BOOL;
    return S_OK;
  }
};

TEST(Callbacks, MayPutAnotherObjectInPlaceOfTheOneThatIsCalled) {
  const struct {
    const char* what;
    const wchar_t* class_name;
    const wchar_t* property;
    std::vector<const wchar_t*> call;
  } cases[] = {
      {"creating a record", L"Customers", L"ArdWorkspace", {L"GetName", L"ACE001"}},
      {"creating an index", L"Products", L"ArdWorkspace", {L"GetDesc", L"LOCK-CAM"}},
      {"logging on", L"Messaging", L"ArdWorkspace", {L"LogonUser", L"x", L"y"}},
      {"logging off", L"Messaging", L"ArdWorkspace", {L"LogoffUser"}},
      {"the last error", L"Messaging", L"ArdEngine", {L"LogonUser", L"x", L"y"}},
  };
  const HastyUser user;  // a refused logon is told
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CallsBack workspace;
    CallsBack called;
    CallsBack other;
    {
      const LateBound object(CreateObject(std::wstring(L"ArdObjects100.") + c.class_name));
      object.Put(L"ArdWorkspace", Variant(&workspace), DISPATCH_PROPERTYPUTREF);
      ASSERT_EQ(object.Put(c.property, Variant(&called), DISPATCH_PROPERTYPUTREF), S_OK);
      called.back = [&] {
        EXPECT_EQ(object.Put(c.property, Variant(&other), DISPATCH_PROPERTYPUTREF), S_OK);
      };
      std::vector<ScopedVariant> arguments;
      for (std::size_t i = 1; i < c.call.size(); ++i) arguments.push_back(Variant(c.call[i]));
      EXPECT_NE(object.Call(c.call[0], std::move(arguments)).vt, VT_ERROR);
      EXPECT_FALSE(called.back) << "never called";
      EXPECT_TRUE(called.held);
      EXPECT_EQ(object.Ask(c.property).pdispVal, &other);
    }
    for (const CallsBack* object : {&workspace, &called, &other}) {
      EXPECT_EQ(object->references, 1u);
    }
  }
}

// What is released for a new one may set the property itself, and that one stays then.
TEST(Callbacks, MayComeFromTheRelease) {
  struct SetsAnother final : ForeignObject {
    std::function<void()> back;
    ULONG STDMETHODCALLTYPE Release() override {
      const ULONG left = ForeignObject::Release();
      if (left == 1 && back) std::exchange(back, nullptr)();
      return left;
    }
  } first;
  CallsBack second;
  CallsBack third;
  const LateBound customers(CreateObject(L"ArdObjects100.Customers"));
  customers.Put(L"ArdWorkspace", Variant(&first), DISPATCH_PROPERTYPUTREF);
  bool asked = false;
  third.back = [&] { asked = true; };
  first.back = [&] { customers.Put(L"ArdWorkspace", Variant(&third), DISPATCH_PROPERTYPUTREF); };
  customers.Put(L"ArdWorkspace", Variant(&second), DISPATCH_PROPERTYPUTREF);
  EXPECT_EQ(customers.Ask(L"ArdWorkspace").pdispVal, &third);
  customers.Ask(L"GetName", L"ACE001");
  EXPECT_TRUE(asked) << "another workspace answers than the one that is told";
  customers.Put(L"ArdWorkspace", Variant(static_cast<IDispatch*>(nullptr)));
}

// Has a module call `replacement` where it would call a function of the system's.
void Replace(HMODULE module, FARPROC function, void* replacement) {
  auto* const base = reinterpret_cast<BYTE*>(module);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const DWORD imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports);
       library->Name; ++library) {
    for (auto* place = reinterpret_cast<FARPROC*>(base + library->FirstThunk); *place; ++place) {
      if (*place != function) continue;
      DWORD protection = 0;
      VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection);
      *place = reinterpret_cast<FARPROC>(replacement);
      VirtualProtect(place, sizeof *place, protection, &protection);
    }
  }
}

int type_libraries_loaded = 0;
HRESULT WINAPI CountedLoad(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
  ++type_libraries_loaded;
  return LoadTypeLibEx(file, kind, library);
}

// All that a type library knows of names, an object knows without it.
void ExpectTheSameIds(IDispatch* object, ITypeInfo* described) {
  TYPEATTR* attributes = nullptr;
  described->GetTypeAttr(&attributes);
  for (UINT i = 7; i < attributes->cFuncs; ++i) {  // after those of IDispatch itself
    FUNCDESC* function = nullptr;
    described->GetFuncDesc(i, &function);
    BSTR names[8] = {};
    UINT count = 0;
    described->GetNames(function->memid, names, ARRAYSIZE(names), &count);
    if (function->invkind != INVOKE_FUNC) count = 1;
    DISPID ids[ARRAYSIZE(names)] = {};
    DISPID expected[ARRAYSIZE(names)] = {};
    described->GetIDsOfNames(names, count, expected);
    for (UINT n = 0; n < count; ++n) CharUpperW(names[n]);
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, count, 0, ids), S_OK) << ToUtf8(names[0]);
    EXPECT_TRUE(std::equal(ids, ids + count, expected)) << ToUtf8(names[0]);
    wchar_t unknown[] = L"Unknown";
    wchar_t* with_unknown[] = {names[0], unknown};
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, with_unknown, 2, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], expected[0]);
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);
    for (const BSTR name : names) SysFreeString(name);
    described->ReleaseFuncDesc(function);
  }
  described->ReleaseTypeAttr(attributes);
}

TEST(LateBinding, NeedsNoTypeLibrary) {
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library.Receive()), S_OK);
  const Dll dll(LibraryPath());
  Replace(GetModuleHandleW(L"ArdObjects100.dll"),
          GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "LoadTypeLibEx"),
          reinterpret_cast<void*>(&CountedLoad));
  for (const int round : {1, 2}) {
    for (const ClassIdentity& identity : kClasses) {
      SCOPED_TRACE(ToUtf8(identity.name));
      const LateBound object(CreateObject(ProgId(identity)));
      ComPtr<ITypeInfo> described;
      library->GetTypeInfoOfGuid(identity.interface_id, described.Receive());
      ExpectTheSameIds(object.get(), described.get());
      EXPECT_EQ(object.Ask(L"ArdWorkspace").vt, VT_DISPATCH);
      EXPECT_EQ(type_libraries_loaded, round - 1);
    }
    // Once it has been asked for, it stays, though no object does.
    ComPtr<ITypeInfo> info;
    CreateObject(L"ArdObjects100.Bank")->GetTypeInfo(0, 0, info.Receive());
    EXPECT_TRUE(info);
  }
  EXPECT_EQ(type_libraries_loaded, 1);
}

// What a thread in the other kind of apartment is told by the object.
void UseFromAnyThread(const ComPtr<_Customers>& customers) {
  ASSERT_TRUE(customers);
  const LateBound engine(CreateObject(L"ArdSimulator.Engine"));
  ASSERT_EQ(engine.Ask(L"Open", company_folder.c_str()).vt, VT_BOOL);
  EXPECT_EQ(customers->putref_ArdWorkspace(engine.Ask(L"Workspace").pdispVal), S_OK);
  Bstr name;
  EXPECT_EQ(customers->GetName(Bstr(L"ACE001").get(), name.Receive()), S_OK);
  EXPECT_EQ(name.view(), L"Ace Shopfitting Ltd");
  EXPECT_EQ(View(LateBound(As<IDispatch>(customers.get())).Ask(L"GetName", L"ACE001").bstrVal),
            L"Ace Shopfitting Ltd");
  EXPECT_EQ(customers->putref_ArdWorkspace(nullptr), S_OK);
}

TEST(Manifest, IsAllThatAHostNeeds) {
  for (const ClassIdentity& identity : kClasses) {
    SCOPED_TRACE(ToUtf8(identity.name));
    ComPtr<IUnknown> object;
    for (const std::wstring& prog_id : {ProgId(identity), ProgId(identity) + L".1"}) {
      const ComPtr<IDispatch> by_name = CreateObject(prog_id);
      ASSERT_TRUE(by_name) << ToUtf8(prog_id);
      EXPECT_EQ(by_name->QueryInterface(identity.interface_id,
                                        reinterpret_cast<void**>(object.Receive())),
                S_OK);
    }
    EXPECT_EQ(CoCreateInstance(identity.class_id, nullptr, CLSCTX_INPROC_SERVER,
                               identity.interface_id, reinterpret_cast<void**>(object.Receive())),
              S_OK);
  }
  ComPtr<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_ArdObjects100, 1, 0, 0, library.Receive()), S_OK);
  UseFromAnyThread(As<_Customers>(CreateObject(L"ArdObjects100.Customers").get()));
}

TEST(Manifest, ServesOtherApartments) {
  // In the multithreaded apartment COM makes the object on a thread of its own.
  std::thread([] {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    UseFromAnyThread(As<_Customers>(CreateObject(L"ArdObjects100.Customers").get()));
    CoUninitialize();
  }).join();

  // An object of this thread's, used by another while this one answers its messages.
  const ComPtr<IDispatch> object = CreateObject(L"ArdObjects100.Customers");
  ComPtr<IStream> stream;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__Customers, object.get(), stream.Receive()),
            S_OK);
  const DWORD this_thread = GetCurrentThreadId();
  std::thread other([&] {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    {
      ComPtr<_Customers> customers;
      EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream.Detach(), IID__Customers,
                                               reinterpret_cast<void**>(customers.Receive())),
                S_OK);
      EXPECT_NE(static_cast<void*>(customers.get()), static_cast<void*>(object.get()));
      UseFromAnyThread(customers);
    }
    CoUninitialize();
    PostThreadMessageW(this_thread, WM_QUIT, 0, 0);
  });
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
  other.join();
}

class Unregistered : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(Dll(LibraryPath()).Call("DllUnregisterServer"), S_OK); }
  void TearDown() override { EXPECT_EQ(Dll(LibraryPath()).Call("DllRegisterServer"), S_OK); }
};
[[maybe_unused]] const auto* const kUnregistered =
    ::testing::AddGlobalTestEnvironment(new Unregistered);

}  // namespace
}  // namespace ard::windows
