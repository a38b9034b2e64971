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

#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "frame/text.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using namespace std::string_view_literals;
using namespace testing;  // NOLINT(google-build-using-namespace): the host

// The interface of objects that call themselves safe for scripting.
const IID kObjectSafety = Id(L"{CB5BDC81-93C1-11CF-8F20-00805F2CD064}");

std::wstring TextOf(const ScopedVariant& variant) {
  return variant.vt == VT_BSTR ? std::wstring(View(variant.bstrVal)) : L"<no text>";
}

TEST(Classes, AreCreatable) {
  for (const ClassIdentity& identity : kClasses) {
    SCOPED_TRACE(ToUtf8(identity.name));
    const CLSID class_id = Id(identity.class_id);
    ComPtr<IUnknown> object;
    ASSERT_EQ(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, Id(identity.interface_id),
                               reinterpret_cast<void**>(object.Receive())),
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
    for (const IID& iid : {kObjectSafety, Id(other.interface_id)}) {
      void* none = &none;
      EXPECT_EQ(object->QueryInterface(iid, &none), E_NOINTERFACE);
      EXPECT_EQ(none, nullptr);
    }
    ComPtr<IUnknown> inner;
    EXPECT_EQ(CoCreateInstance(class_id, object.get(), CLSCTX_INPROC_SERVER, IID_IUnknown,
                               reinterpret_cast<void**>(inner.Receive())),
              CLASS_E_NOAGGREGATION);
  }
}

TEST(ContextProperties, HoldTheVeryObjects) {
  constexpr const wchar_t* kProperties[] = {L"ArdWorkspace", L"ArdEngine", L"oDBaseConn"};
  for (const ClassIdentity& identity : kClasses) {
    SCOPED_TRACE(ToUtf8(identity.name));
    ForeignObject given[std::size(kProperties)];
    {
      const LateBound object(CreateObject(ProgId(identity)));
      // Which class has which of them is the type library's business.
      const auto has = [&](std::size_t i) { return object.Ask(kProperties[i]).vt == VT_DISPATCH; };
      for (std::size_t i = 0; i < std::size(kProperties); ++i) {
        if (!has(i)) continue;
        EXPECT_EQ(object.Ask(kProperties[i]).pdispVal, nullptr);
        EXPECT_EQ(object.Put(kProperties[i], Variant(&given[i]), DISPATCH_PROPERTYPUTREF), S_OK);
      }
      for (std::size_t i = 0; i < std::size(kProperties); ++i) {
        if (!has(i)) continue;
        EXPECT_EQ(object.Ask(kProperties[i]).pdispVal, &given[i]);
        EXPECT_GT(given[i].references, 1u);
      }
    }
    for (const ForeignObject& object : given) EXPECT_EQ(object.references, 1u);
  }
}

TEST(ContextProperties, HoldAnyText) {
  const ComPtr<_Customers> customers =
      As<_Customers>(CreateObject(L"ArdObjects100.Customers").get());
  for (const std::wstring& text :
       {std::wstring(), std::wstring(L"  blanks  "), std::wstring(L"a\0b\0"sv),
        std::wstring(L"\U0001F9FE beyond the basic plane"), std::wstring(L"\xD800 half a pair"),
        std::wstring(1 << 20, L'x')}) {
    ASSERT_EQ(customers->put_AppName(Bstr(text).get()), S_OK);
    Bstr answer;
    ASSERT_EQ(customers->get_AppName(answer.Receive()), S_OK);
    EXPECT_TRUE(answer.view() == text) << text.size();
  }
  ASSERT_EQ(customers->put_AppName(nullptr), S_OK);
  Bstr answer;
  ASSERT_EQ(customers->get_AppName(answer.Receive()), S_OK);
  EXPECT_EQ(answer.view(), L"");
  EXPECT_EQ(customers->get_AppName(nullptr), E_POINTER);
  EXPECT_EQ(customers->get_ArdWorkspace(nullptr), E_POINTER);
}

class CustomersTest : public ::testing::Test {
 protected:
  // The answers of the three look-ups, the same early-bound and late-bound.
  void Expect(std::wstring_view acc_ref, bool valid, std::wstring_view name,
              std::wstring_view contact) {
    const Bstr ref(acc_ref);
    VARIANT_BOOL is_valid = 1;
    Bstr early_name;
    Bstr early_contact;
    EXPECT_EQ(customers_->IsValid(ref.get(), &is_valid), S_OK);
    EXPECT_EQ(customers_->GetName(ref.get(), early_name.Receive()), S_OK);
    EXPECT_EQ(customers_->GetContact(ref.get(), early_contact.Receive()), S_OK);
    EXPECT_EQ(is_valid, valid ? VARIANT_TRUE : VARIANT_FALSE);
    EXPECT_EQ(early_name.view(), name);
    EXPECT_EQ(early_contact.view(), contact);

    const ScopedVariant late_valid = late_.Ask(L"IsValid", acc_ref);
    EXPECT_EQ(late_valid.vt, VT_BOOL);
    EXPECT_EQ(late_valid.boolVal, is_valid);
    EXPECT_EQ(TextOf(late_.Ask(L"GetName", acc_ref)), name);
    EXPECT_EQ(TextOf(late_.Ask(L"GetContact", acc_ref)), contact);
  }
  void ExpectNothing(std::wstring_view acc_ref) { Expect(acc_ref, false, L"", L""); }

  void OpenDemoCompany() {
    const ScopedVariant opened = engine_.Ask(L"Open", company_folder.c_str());
    ASSERT_EQ(opened.vt, VT_BOOL) << "no company opened";
    SetWorkspace(engine_.Ask(L"Workspace").pdispVal);
  }
  void SetWorkspace(IDispatch* workspace) {
    ASSERT_TRUE(workspace);
    ASSERT_EQ(customers_->putref_ArdWorkspace(workspace), S_OK);
  }
  double Count(const wchar_t* counter) { return FromVariant(engine_.Ask(counter)).ToDouble(); }

  // Calls `pick`, and meanwhile presses that button of the window with that title.
  void WithUser(const wchar_t* title, WPARAM button, const std::function<void()>& pick) {
    std::thread user([&] {
      HWND dialog = nullptr;
      for (int i = 0; i < 500 && !IsWindowVisible(dialog); ++i) {
        Sleep(10);
        dialog = FindWindowW(L"#32770", title);
      }
      EXPECT_TRUE(dialog) << "no dialog";
      PostMessageW(dialog, WM_COMMAND, button, 0);
      while (IsWindow(dialog)) Sleep(10);
    });
    pick();
    user.join();
  }

  static void CALLBACK ReleaseOnce(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    std::exchange(to_release_, nullptr)->Release();
  }

  static inline _Customers* to_release_ = nullptr;

  ComPtr<IDispatch> object_ = CreateObject(L"ArdObjects100.Customers");
  ComPtr<_Customers> customers_ = As<_Customers>(object_.get());
  LateBound late_{object_};
  LateBound engine_{CreateObject(L"ArdSimulator.Engine")};
};

TEST_F(CustomersTest, AnswersFromTheCompany) {
  OpenDemoCompany();
  Expect(L"ACE001", true, L"Ace Shopfitting Ltd", L"Derek Coombes");
  Expect(L"SMI001", true, L"Smith & Barnes Instruments Ltd", L"Olivia Barnes");
  for (const std::wstring_view unknown :
       {L"ZZZ999"sv, L""sv, L"ACE001\0"sv, L"\U0001F9FE"sv, L"ACE*"sv}) {
    ExpectNothing(unknown);
  }
  ExpectNothing(std::wstring(1 << 20, L'A'));
  EXPECT_EQ(Count(L"OpenFiles"), 0);
  EXPECT_EQ(Count(L"LivingObjects"), 0);

  VARIANT_BOOL valid = VARIANT_TRUE;
  EXPECT_EQ(customers_->IsValid(nullptr, &valid), S_OK);
  EXPECT_EQ(valid, VARIANT_FALSE);
  EXPECT_EQ(customers_->IsValid(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(customers_->GetName(nullptr, nullptr), E_POINTER);
}

TEST_F(CustomersTest, WithoutAWorkspaceAnswersAreNeutral) {
  ExpectNothing(L"ACE001");
  ForeignObject foreign;
  for (const HRESULT status : {S_OK, DISP_E_MEMBERNOTFOUND, RPC_E_DISCONNECTED}) {
    foreign.status = status;
    SetWorkspace(&foreign);
    ExpectNothing(L"ACE001");
  }
  SetWorkspace(CreateObject(L"ArdObjects100.Suppliers").get());
  ExpectNothing(L"ACE001");
  // An engine in trouble is one that cannot be reached.
  OpenDemoCompany();
  engine_.Ask(L"FailFrom", 1L, -1L);
  ExpectNothing(L"ACE001");
  engine_.Ask(L"FailFrom", 0L, 0L);
  Expect(L"ACE001", true, L"Ace Shopfitting Ltd", L"Derek Coombes");
  ASSERT_EQ(customers_->putref_ArdWorkspace(nullptr), S_OK);
  ExpectNothing(L"ACE001");
  EXPECT_EQ(Count(L"LivingObjects"), 0);
  EXPECT_EQ(foreign.references, 1u);
}

// A script may let go of its object in the middle of a call.
TEST_F(CustomersTest, OutlivesItsReleaseWhileADialogIsShown) {
  OpenDemoCompany();
  _Customers* const customers = customers_.Detach();
  object_ = ComPtr<IDispatch>();
  late_ = LateBound(ComPtr<IDispatch>());
  // Released by a message that the dialog's own loop delivers.
  to_release_ = customers;
  SetTimer(nullptr, 0, 1, ReleaseOnce);
  Bstr choice;
  WithUser(L"Select Customer", IDOK,
           [&] { EXPECT_EQ(customers->FastList(choice.Receive()), S_OK); });
  EXPECT_EQ(choice.view(), L"ABC001");
  EXPECT_EQ(to_release_, nullptr);
}

class ComApartment : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(OleInitialize(nullptr), S_OK); }
  void TearDown() override { OleUninitialize(); }
};

}  // namespace
}  // namespace ard::windows

int wmain(int count, wchar_t** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  ard::windows::testing::company_folder = arguments[1];
  ::testing::AddGlobalTestEnvironment(new ard::windows::ComApartment);
  return RUN_ALL_TESTS();
}
