#include <ArdObjects100.h>

#include "settings/general.h"
#include "windows/server/context_properties.h"
#include "windows/server/string_array.h"

namespace ard::windows {
namespace {

using Portable = settings::General;
using Base = WithAppName<WithArdWorkspace<
    WithArdEngine<WithDBaseConn<WithRegistryPath<AutomationObject<_General, Portable>>>>>>;

class GeneralObject final : public Base {
 public:
  using Base::Base;

  // The accounts program.
  HRESULT STDMETHODCALLTYPE AddEntryToIniFile(SAFEARRAY** check_items, BSTR long_path,
                                              BSTR narrative, BSTR bitmap, BSTR exe_name,
                                              VARIANT_BOOL* result) override {
    if (!check_items) return E_POINTER;
    StringArrayArgument items(*check_items);
    return Call(result, &Portable::AddEntryToIniFile, items.value(), View(long_path),
                View(narrative), View(bitmap), View(exe_name));
  }
  HRESULT STDMETHODCALLTYPE IsF12Hide(VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsF12Hide);
  }
  HRESULT STDMETHODCALLTYPE GetF11Program(BSTR* result) override {
    return Call(result, &Portable::GetF11Program);
  }
  HRESULT STDMETHODCALLTYPE IsArdExclusive(BSTR path, VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsArdExclusive, View(path));
  }
  HRESULT STDMETHODCALLTYPE CreateAccountsShortcut(LONG owner, BSTR accts_prog_path,
                                                   BSTR manuf_prog_path, short accounts_version,
                                                   BSTR* result) override {
    return Call(result, &Portable::CreateAccountsShortcut, static_cast<std::int32_t>(owner),
                View(accts_prog_path), View(manuf_prog_path), accounts_version);
  }

  // Current users.
  HRESULT STDMETHODCALLTYPE GetNumActiveUsers(short* result) override {
    return Call(result, &Portable::GetNumActiveUsers);
  }
  HRESULT STDMETHODCALLTYPE GetNumActiveUsersInclDet(BSTR* user_name, BSTR* mach_name,
                                                     short* result) override {
    if (!user_name || !mach_name) return E_POINTER;
    TextOutput user(user_name);
    TextOutput machine(mach_name);
    return Call(result, [&](Portable& portable) {
      return portable.GetNumActiveUsersInclDet(user.value(), machine.value());
    });
  }
  HRESULT STDMETHODCALLTYPE ShowUserList(VARIANT_BOOL manager) override {
    return Perform([&](Portable& portable) { portable.ShowUserList(manager != VARIANT_FALSE); });
  }
};

constexpr Member kMembers[] = {
    kAppName<_General>,
    kArdWorkspace<_General>,
    kArdEngine<_General>,
    kDBaseConn<_General>,
    kRegistryPath<_General>,
    Method<&_General::AddEntryToIniFile, Boolean(StringArray, String, String, String, String)>,
    Method<&_General::IsF12Hide, Boolean()>,
    Method<&_General::GetF11Program, String()>,
    Method<&_General::IsArdExclusive, Boolean(String)>,
    Method<&_General::CreateAccountsShortcut,
           String(Long, String, String, Optional<Integer, SHORT{12}>)>,
    Method<&_General::GetNumActiveUsers, Integer()>,
    Method<&_General::GetNumActiveUsersInclDet, Integer(ByRef<String>, ByRef<String>)>,
    Method<&_General::ShowUserList, void(Boolean)>,
};

}  // namespace

const PublishedClass kGeneral = {L"General", CLSID_General, IID__General, kMembers,
                                 Create<GeneralObject>};

}  // namespace ard::windows
