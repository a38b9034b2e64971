// clang-format off
#include <windows.h>
#undef LogonUser  // a macro of the system's, in the way of the published name
#include <ArdObjects100.h>
#include <ArdObjects100_names.h>
// clang-format on

#include "users/messaging.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

using Portable = users::Messaging;
using users::Session;
using Base = WithAppName<WithArdWorkspace<
    WithArdEngine<WithDBaseConn<WithRegistryPath<AutomationObject<_Messaging, Portable>>>>>>;

class MessagingObject final : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE put_ArdDataPath(BSTR value) override {
    return Put(L"ArdDataPath", &Session::ard_data_path, value);
  }
  HRESULT STDMETHODCALLTYPE get_ArdDataPath(BSTR* value) override {
    return Get(L"ArdDataPath", &Session::ard_data_path, value);
  }
  HRESULT STDMETHODCALLTYPE put_UserLogged(BSTR value) override {
    return Put(L"UserLogged", &Session::user_logged, value);
  }
  HRESULT STDMETHODCALLTYPE get_UserLogged(BSTR* value) override {
    return Get(L"UserLogged", &Session::user_logged, value);
  }
  HRESULT STDMETHODCALLTYPE put_PassLogged(BSTR value) override {
    return Put(L"PassLogged", &Session::pass_logged, value);
  }
  HRESULT STDMETHODCALLTYPE get_PassLogged(BSTR* value) override {
    return Get(L"PassLogged", &Session::pass_logged, value);
  }
  HRESULT STDMETHODCALLTYPE put_UniqueID(BSTR value) override {
    return Put(L"UniqueID", &Session::unique_id, value);
  }
  HRESULT STDMETHODCALLTYPE get_UniqueID(BSTR* value) override {
    return Get(L"UniqueID", &Session::unique_id, value);
  }
  HRESULT STDMETHODCALLTYPE put_UseAccRights(VARIANT_BOOL value) override {
    return Perform([&](Portable& portable) { portable.SetUseAccRights(value != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE get_UseAccRights(VARIANT_BOOL* value) override {
    return Call(value, &Portable::UseAccRights);
  }
  HRESULT STDMETHODCALLTYPE put_ProgPath(BSTR value) override {
    return Put(L"ProgPath", &Session::prog_path, value);
  }
  HRESULT STDMETHODCALLTYPE get_ProgPath(BSTR* value) override {
    return Get(L"ProgPath", &Session::prog_path, value);
  }
  HRESULT STDMETHODCALLTYPE put_CompanyName(BSTR value) override {
    return Put(L"CompanyName", &Session::company_name, value);
  }
  HRESULT STDMETHODCALLTYPE get_CompanyName(BSTR* value) override {
    return Get(L"CompanyName", &Session::company_name, value);
  }

  HRESULT STDMETHODCALLTYPE CheckForLogon(VARIANT_BOOL check_nt_account,
                                          VARIANT_BOOL* result) override {
    return Call(result, &Portable::CheckForLogon, check_nt_account != VARIANT_FALSE);
  }
  HRESULT STDMETHODCALLTYPE LogonUser(BSTR user_name, BSTR password,
                                      VARIANT_BOOL* result) override {
    return Call(result, &Portable::LogonUser, View(user_name), View(password));
  }
  HRESULT STDMETHODCALLTYPE LogoffUser(VARIANT_BOOL* result) override {
    return Call(result, &Portable::LogoffUser);
  }
  HRESULT STDMETHODCALLTYPE CheckUserAccess(VARIANT_BOOL* result) override {
    return Call(result, &Portable::CheckUserAccess);
  }
  HRESULT STDMETHODCALLTYPE GetPassword(BSTR* result) override {
    return Call(result, &Portable::GetPassword);
  }
  HRESULT STDMETHODCALLTYPE PoAccess(BSTR user_name, VARIANT_BOOL* result) override {
    return Call(result, &Portable::PoAccess, View(user_name));
  }

 private:
  HRESULT Put(std::wstring_view name, std::wstring Session::*property, BSTR value) {
    return PutText(name, portable().session(), property, value);
  }
  HRESULT Get(std::wstring_view name, std::wstring Session::*property, BSTR* value) {
    return GetText(name, portable().session(), property, value);
  }
};

constexpr Member kMembers[] = {
    kAppName<_Messaging>,
    kArdWorkspace<_Messaging>,
    kArdEngine<_Messaging>,
    Property<&_Messaging::get_ArdDataPath, &_Messaging::put_ArdDataPath, String>,
    Property<&_Messaging::get_UserLogged, &_Messaging::put_UserLogged, String>,
    Property<&_Messaging::get_PassLogged, &_Messaging::put_PassLogged, String>,
    Property<&_Messaging::get_UniqueID, &_Messaging::put_UniqueID, String>,
    Property<&_Messaging::get_UseAccRights, &_Messaging::put_UseAccRights, Boolean>,
    Property<&_Messaging::get_ProgPath, &_Messaging::put_ProgPath, String>,
    kDBaseConn<_Messaging>,
    kRegistryPath<_Messaging>,
    Property<&_Messaging::get_CompanyName, &_Messaging::put_CompanyName, String>,
    Method<&_Messaging::CheckForLogon, Boolean(Optional<Boolean, VARIANT_FALSE>)>,
    Method<&_Messaging::LogonUser, Boolean(String, String)>,
    Method<&_Messaging::LogoffUser, Boolean()>,
    Method<&_Messaging::CheckUserAccess, Boolean()>,
    Method<&_Messaging::GetPassword, String()>,
    Method<&_Messaging::PoAccess, Boolean(String)>,
};

}  // namespace

const PublishedClass kMessaging = {{L"Messaging", kMembers, kMessagingNames},
                                   kMessagingHelp,
                                   CLSID_Messaging,
                                   IID__Messaging,
                                   Create<MessagingObject>};

}  // namespace ard::windows
