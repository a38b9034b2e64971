// The library as its hosts use it, and hosts that do what none should: they come back in the middle
// of a call, and call from other apartments. The library is used by its assembly manifest here
// (host_test.manifest); nothing of it is registered.
//
//   host_test <folder of the demo company>
//
// The simulated engine has to be registered.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>
#include <ocidl.h>

#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "tests/windows/hasty_user.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host

// The interface of objects that call themselves safe for scripting.
constexpr IID kObjectSafety = {
    0xCB5BDC81, 0x93C1, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};

TEST(Classes, AreCreatableAndHoldTheVeryObjectsThatTheyAreGiven) {
  for (const ClassIdentity& identity : kClasses) {
    SCOPED_TRACE(ToUtf8(identity.name));
    ForeignObject given;
    {
      ComPtr<IUnknown> object;
      ASSERT_EQ(CoCreateInstance(identity.class_id, nullptr, CLSCTX_INPROC_SERVER,
                                 identity.interface_id, reinterpret_cast<void**>(object.Receive())),
                S_OK);
      const auto provider = As<IProvideClassInfo>(object.get());
      ASSERT_TRUE(provider);
      ComPtr<ITypeInfo> info;
      ASSERT_EQ(provider->GetClassInfo(info.Receive()), S_OK);
      Bstr class_name;
      info->GetDocumentation(MEMBERID_NIL, class_name.Receive(), nullptr, nullptr, nullptr);
      EXPECT_EQ(class_name.view(), identity.name);

      // One object behind each interface, and no other class's.
      EXPECT_EQ(As<IUnknown>(provider.get()).get(), As<IUnknown>(object.get()).get());
      const LateBound late(As<IDispatch>(provider.get()));
      EXPECT_EQ(late.get(), As<IDispatch>(object.get()).get());
      const ClassIdentity& other = kClasses[&identity == kClasses ? 1 : 0];
      for (const IID& iid : {kObjectSafety, other.interface_id}) {
        void* none = &none;
        EXPECT_EQ(object->QueryInterface(iid, &none), E_NOINTERFACE);
        EXPECT_EQ(none, nullptr);
      }
      ComPtr<IUnknown> inner;
      EXPECT_EQ(CoCreateInstance(identity.class_id, object.get(), CLSCTX_INPROC_SERVER,
                                 IID_IUnknown, reinterpret_cast<void**>(inner.Receive())),
                CLASS_E_NOAGGREGATION);
      for (const std::wstring& prog_id : {ProgId(identity), ProgId(identity) + L".1"}) {
        const ComPtr<IDispatch> by_name = CreateObject(prog_id);
        ASSERT_TRUE(by_name) << ToUtf8(prog_id);
        EXPECT_EQ(by_name->QueryInterface(identity.interface_id,
                                          reinterpret_cast<void**>(inner.Receive())),
                  S_OK);
      }

      for (const wchar_t* property : {L"ArdWorkspace", L"ArdEngine", L"oDBaseConn"}) {
        // Which class has which of them is the type library's business.
        if (late.Ask(property).vt != VT_DISPATCH) continue;
        EXPECT_EQ(late.Ask(property).pdispVal, nullptr);
        EXPECT_EQ(late.Put(property, Variant(&given)), S_OK);
        EXPECT_EQ(late.Ask(property).pdispVal, &given);
      }
    }
    EXPECT_EQ(given.references, 1u);
  }
}

TEST(Texts, AreTakenAndKeptWhateverTheyAre) {
  const auto customers = As<_Customers>(CreateObject(L"ArdObjects100.Customers").get());
  for (const std::wstring& text :
       {std::wstring(L"  blanks  "), std::wstring(L"ACE001\0", 7),
        std::wstring(L"\xD800 half a pair"), std::wstring(1 << 20, L'A'), std::wstring()}) {
    ASSERT_EQ(customers->put_AppName(text.empty() ? nullptr : Bstr(text).get()), S_OK);
    Bstr answer;
    ASSERT_EQ(customers->get_AppName(answer.Receive()), S_OK);
    EXPECT_TRUE(answer.view() == text) << text.size();
  }
  VARIANT_BOOL valid = VARIANT_TRUE;
  EXPECT_EQ(customers->IsValid(nullptr, &valid), S_OK) << "none is an empty one";
  EXPECT_EQ(valid, VARIANT_FALSE);
}

TEST(Answers, NeedAPlaceAndAreOfTheOneThatIsThere) {
  const auto customers = As<_Customers>(CreateObject(L"ArdObjects100.Customers").get());
  const auto general = As<_General>(CreateObject(L"ArdObjects100.General").get());
  const Dll dll(LibraryPath());
  const ComPtr<IClassFactory> factory = dll.Factory(CLSID_Customers);
  short users = 0;
  DISPID id = 0;
  wchar_t name[] = L"GetName";
  LPOLESTR names[] = {name};
  ITypeInfo* info = nullptr;
  const HRESULT no_place[] = {
      customers->GetName(nullptr, nullptr),
      customers->get_AppName(nullptr),
      customers->get_ArdWorkspace(nullptr),
      customers->QueryInterface(IID_IUnknown, nullptr),
      customers->GetTypeInfoCount(nullptr),
      customers->GetTypeInfo(0, 0, nullptr),
      customers->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id),
      customers->GetIDsOfNames(IID_NULL, names, 1, 0, nullptr),
      customers->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
      As<IProvideClassInfo>(customers.get())->GetClassInfo(nullptr),
      general->GetNumActiveUsersInclDet(nullptr, nullptr, &users),
      general->GetCategories(nullptr),
      factory->CreateInstance(nullptr, IID_IUnknown, nullptr),
      dll.Call<REFCLSID, REFIID, void**>("DllGetClassObject", CLSID_Customers, IID_IUnknown,
                                         nullptr)};
  for (const HRESULT& status : no_place) EXPECT_EQ(status, E_POINTER) << &status - no_place;

  DISPPARAMS none = {};
  EXPECT_EQ(customers->GetIDsOfNames(IID_IUnknown, names, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(
      customers->Invoke(1, IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
      DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(customers->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
  ASSERT_EQ(customers->GetTypeInfo(0, 0, &info), S_OK);
  const ComPtr<ITypeInfo> owned = ComPtr<ITypeInfo>::Adopt(info);
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(owned->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, IID__Customers);
  owned->ReleaseTypeAttr(attributes);
}

// The host's own object, which comes back to the host when it is called, or released. The library
// must hold it for the time of the call, whatever the host does then.
class CallsBack final : public ForeignObject {
 public:
  std::function<void()> back;
  std::function<void()> gone;  // when the library has released it for the last time
  bool held = false;

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = ForeignObject::Release();
    if (left == 1 && gone) std::exchange(gone, nullptr)();
    return left;
  }
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
      object.Put(L"ArdWorkspace", Variant(&workspace));
      ASSERT_EQ(object.Put(c.property, Variant(&called)), S_OK);
      called.back = [&] { EXPECT_EQ(object.Put(c.property, Variant(&other)), S_OK); };
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

// What is released for a new one may set the property itself, and that one stays then. The
// library's own object may be released, too: it holds itself until the call has ended.
TEST(Callbacks, MayComeFromTheReleaseAndReleaseTheObjectThatIsCalled) {
  CallsBack first, second, third;
  const auto customers = As<_Customers>(CreateObject(L"ArdObjects100.Customers").get());
  customers->putref_ArdWorkspace(&first);
  first.gone = [&] { customers->putref_ArdWorkspace(&third); };
  customers->putref_ArdWorkspace(&second);
  ComPtr<IDispatch> told;
  customers->get_ArdWorkspace(told.Receive());
  EXPECT_EQ(told.get(), &third);

  ULONG references = 0;
  const auto count = [&] {
    customers->AddRef();
    references = customers->Release();
  };
  third.back = count;
  Bstr name;
  customers->GetName(Bstr(L"A").get(), name.Receive());
  EXPECT_EQ(references, 2u);
  third.back = count;
  LateBound(As<IDispatch>(customers.get())).Ask(L"GetName", L"A");  // has one itself
  EXPECT_EQ(references, 3u);
  customers->putref_ArdWorkspace(nullptr);
}

// Of all that the object has: it may be called even then, and has nothing any more.
TEST(Callbacks, MayComeFromTheLastRelease) {
  constexpr const wchar_t* kProperties[] = {L"ArdWorkspace", L"ArdEngine", L"oDBaseConn"};
  CallsBack given[3], late;
  IDispatch* const messaging = CreateObject(L"ArdObjects100.Messaging").Detach();
  int gone = 0;
  ComPtr<IDispatch> kept;
  for (CallsBack& object : given) {
    const wchar_t* const property = kProperties[&object - given];
    LateBound(ComPtr(messaging)).Put(property, Variant(&object));
    object.gone = [&, property] {
      const LateBound dying{ComPtr(messaging)};
      EXPECT_EQ(dying.Put(property, Variant(&late)), S_OK);
      EXPECT_EQ(dying.Ask(property).pdispVal, nullptr);
      EXPECT_EQ(dying.Ask(L"LogoffUser").boolVal, VARIANT_TRUE);
      if (++gone == 3) kept = ComPtr(messaging);
    };
  }
  EXPECT_EQ(messaging->Release(), 0u);
  EXPECT_EQ(gone, 3);
  EXPECT_EQ(late.references, 1u);
  EXPECT_EQ(LateBound(kept).Ask(L"GetPassword").vt, VT_BSTR) << "kept after all";
}

// What a thread in the other kind of apartment is told by the object.
void UseFromAnyThread(const ComPtr<_Customers>& customers) {
  ASSERT_TRUE(customers);
  const LateBound engine(CreateObject(L"ArdSimulator.Engine"));
  ASSERT_EQ(engine.Ask(L"Open", company_folder.c_str()).vt, VT_BOOL);
  EXPECT_EQ(customers->putref_ArdWorkspace(engine.Ask(L"Workspace").pdispVal), S_OK);
  for (const wchar_t* expected : {L"Ace Shopfitting Ltd", L""}) {
    Bstr name;
    EXPECT_EQ(customers->GetName(Bstr(L"ACE001").get(), name.Receive()), S_OK);
    EXPECT_EQ(name.view(), expected);
    EXPECT_EQ(View(LateBound(As<IDispatch>(customers.get())).Ask(L"GetName", L"ACE001").bstrVal),
              expected);
    EXPECT_EQ(customers->putref_ArdWorkspace(nullptr), S_OK);
  }
}

TEST(Apartments, MayBeAny) {
  // In the multithreaded apartment COM makes the object on a thread of its own.
  std::thread([] {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    UseFromAnyThread(As<_Customers>(CreateObject(L"ArdObjects100.Customers").get()));
    CoUninitialize();
  }).join();

  // An object of this thread's, used by another while this one answers its messages.
  const ComPtr<IDispatch> object = CreateObject(L"ArdObjects100.Customers");
  UseFromAnyThread(As<_Customers>(object.get()));
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
  // The last of all: it makes some systems register what they load.
  ComPtr<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_ArdObjects100, 1, 0, 0, library.Receive()), S_OK);
}

class Unregistered : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(Dll(LibraryPath()).Call("DllUnregisterServer"), S_OK); }
  void TearDown() override { EXPECT_EQ(Dll(LibraryPath()).Call("DllRegisterServer"), S_OK); }
};
[[maybe_unused]] const auto* const kUnregistered =
    ::testing::AddGlobalTestEnvironment(new Unregistered);

}  // namespace
}  // namespace ard::windows
