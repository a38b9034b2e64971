// The library as its hosts use it: created, given its context, called early-bound and late-bound,
// released and unloaded.
//
//   host_test <folder of the demo company>
//
// Both the library and the simulated engine have to be registered.
#include "tests/windows/host.h"

// After windows.h.
#include <gtest/gtest.h>
#include <ocidl.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "frame/text.h"
#include "tests/windows/hasty_user.h"

namespace ard::windows {
namespace {

using namespace std::string_view_literals;
using namespace testing;  // NOLINT(google-build-using-namespace): the host

// The interface of objects that call themselves safe for scripting.
constexpr IID kObjectSafety = {
    0xCB5BDC81, 0x93C1, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};

TEST(Classes, AreCreatable) {
  for (const ClassIdentity& identity : kClasses) {
    SCOPED_TRACE(ToUtf8(identity.name));
    ComPtr<IUnknown> object;
    ASSERT_EQ(CoCreateInstance(identity.class_id, nullptr, CLSCTX_INPROC_SERVER,
                               identity.interface_id, reinterpret_cast<void**>(object.Receive())),
              S_OK);
    const ComPtr<IProvideClassInfo> provider = As<IProvideClassInfo>(object.get());
    ASSERT_TRUE(provider);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.Receive()), S_OK);
    Bstr class_name;
    info->GetDocumentation(MEMBERID_NIL, class_name.Receive(), nullptr, nullptr, nullptr);
    EXPECT_EQ(class_name.view(), identity.name);

    // One object behind each interface, and no other class's.
    EXPECT_EQ(As<IUnknown>(provider.get()).get(), As<IUnknown>(object.get()).get());
    EXPECT_TRUE(As<IDispatch>(provider.get()));
    EXPECT_EQ(As<IDispatch>(provider.get()).get(), As<IDispatch>(object.get()).get());
    const ClassIdentity& other = kClasses[&identity == kClasses ? 1 : 0];
    for (const IID& iid : {kObjectSafety, other.interface_id}) {
      void* none = &none;
      EXPECT_EQ(object->QueryInterface(iid, &none), E_NOINTERFACE);
      EXPECT_EQ(none, nullptr);
    }
    ComPtr<IUnknown> inner;
    EXPECT_EQ(CoCreateInstance(identity.class_id, object.get(), CLSCTX_INPROC_SERVER, IID_IUnknown,
                               reinterpret_cast<void**>(inner.Receive())),
              CLASS_E_NOAGGREGATION);
  }
}

TEST(ContextProperties, HoldTheVeryObjects) {
  for (const ClassIdentity& identity : kClasses) {
    for (const wchar_t* property : {L"ArdWorkspace", L"ArdEngine", L"oDBaseConn"}) {
      SCOPED_TRACE(ToUtf8(identity.name) + ToUtf8(property));
      ForeignObject given;
      {
        const LateBound object(CreateObject(ProgId(identity)));
        // Which class has which of them is the type library's business.
        if (object.Ask(property).vt != VT_DISPATCH) continue;
        EXPECT_EQ(object.Ask(property).pdispVal, nullptr);
        EXPECT_EQ(object.Put(property, Variant(&given), DISPATCH_PROPERTYPUTREF), S_OK);
        EXPECT_EQ(object.Ask(property).pdispVal, &given);
      }
      EXPECT_EQ(given.references, 1u);
    }
  }
}

class CustomersTest : public ::testing::Test {
 protected:
  // Early-bound.
  std::wstring Name(std::wstring_view acc_ref) {
    Bstr name;
    EXPECT_EQ(customers_->GetName(Bstr(acc_ref).get(), name.Receive()), S_OK);
    return std::wstring(name.view());
  }
  void OpenDemoCompany() {
    ASSERT_EQ(engine_.Ask(L"Open", company_folder.c_str()).vt, VT_BOOL) << "no company opened";
    EXPECT_EQ(customers_->putref_ArdWorkspace(engine_.Ask(L"Workspace").pdispVal), S_OK);
  }

  static void CALLBACK ReleaseOnce(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    std::exchange(to_release_, nullptr)->Release();
    user_.emplace();
  }

  static inline _Customers* to_release_ = nullptr;
  static inline std::optional<HastyUser> user_;

  ComPtr<_Customers> customers_ = As<_Customers>(CreateObject(L"ArdObjects100.Customers").get());
  const LateBound engine_{CreateObject(L"ArdSimulator.Engine")};
};

TEST_F(CustomersTest, AnyTextIsTakenAndKept) {
  OpenDemoCompany();
  for (const std::wstring& text :
       {std::wstring(), std::wstring(L"  blanks  "), std::wstring(L"ACE001\0"sv),
        std::wstring(L"ACE*"), std::wstring(L"\U0001F9FE beyond the basic plane"),
        std::wstring(L"\xD800 half a pair"), std::wstring(1 << 20, L'A')}) {
    ASSERT_EQ(customers_->put_AppName(Bstr(text).get()), S_OK);
    Bstr answer;
    ASSERT_EQ(customers_->get_AppName(answer.Receive()), S_OK);
    EXPECT_TRUE(answer.view() == text) << text.size();
    EXPECT_EQ(Name(text), L"");
  }
  // None is an empty one, and there has to be a place for the answer.
  ASSERT_EQ(customers_->put_AppName(nullptr), S_OK);
  VARIANT_BOOL valid = VARIANT_TRUE;
  EXPECT_EQ(customers_->IsValid(nullptr, &valid), S_OK);
  EXPECT_EQ(valid, VARIANT_FALSE);
  EXPECT_EQ(customers_->IsValid(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(customers_->GetName(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(customers_->get_AppName(nullptr), E_POINTER);
  EXPECT_EQ(customers_->get_ArdWorkspace(nullptr), E_POINTER);
}

TEST_F(CustomersTest, WithoutAWorkspaceAnswersAreNeutral) {
  EXPECT_EQ(Name(L"ACE001"), L"");
  ForeignObject foreign;
  for (const HRESULT status : {S_OK, DISP_E_MEMBERNOTFOUND, RPC_E_DISCONNECTED}) {
    foreign.status = status;
    ASSERT_EQ(customers_->putref_ArdWorkspace(&foreign), S_OK);
    EXPECT_EQ(Name(L"ACE001"), L"");
  }
  customers_->putref_ArdWorkspace(CreateObject(L"ArdObjects100.Suppliers").get());
  EXPECT_EQ(Name(L"ACE001"), L"");
  OpenDemoCompany();
  EXPECT_EQ(Name(L"ACE001"), L"Ace Shopfitting Ltd");
  ASSERT_EQ(customers_->putref_ArdWorkspace(nullptr), S_OK);
  EXPECT_EQ(Name(L"ACE001"), L"");
  EXPECT_EQ(foreign.references, 1u);
}

// A script may let go of its object in the middle of a call: by a message that the dialog's own
// loop delivers.
TEST_F(CustomersTest, OutlivesItsReleaseWhileADialogIsShown) {
  OpenDemoCompany();
  _Customers* const customers = to_release_ = customers_.Detach();
  SetTimer(nullptr, 0, 1, ReleaseOnce);
  Bstr choice;
  EXPECT_EQ(customers->FastList(choice.Receive()), S_OK);
  user_.reset();
  EXPECT_EQ(choice.view(), L"ABC001");
  EXPECT_EQ(to_release_, nullptr);
}

}  // namespace
}  // namespace ard::windows
