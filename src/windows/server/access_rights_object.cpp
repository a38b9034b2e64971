#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include "users/access_rights.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

using Portable = users::AccessRights;
using Base = WithAppName<WithArdWorkspace<AutomationObject<_cAccessRights, Portable>>>;

// A parameter of the published enumeration.
struct AccessArea {
  using Type = vxAccess;
  static constexpr VARTYPE kVt = VT_I4;
  static Type In(const VARIANT& variant) { return static_cast<vxAccess>(variant.lVal); }
};

class AccessRightsObject final : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE IsUserAllowedAccess(BSTR user_name, vxAccess option,
                                                VARIANT_BOOL* display_message,
                                                VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsUserAllowedAccess, View(user_name),
                static_cast<users::Access>(option),
                display_message && *display_message != VARIANT_FALSE);
  }
  HRESULT STDMETHODCALLTYPE AddUser(BSTR user_name, VARIANT_BOOL* result) override {
    return Call(result, &Portable::AddUser, View(user_name));
  }
  HRESULT STDMETHODCALLTYPE IsValid(BSTR user_name, VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsValid, View(user_name));
  }
  HRESULT STDMETHODCALLTYPE List(BSTR* result) override { return Call(result, &Portable::List); }
};

constexpr Member kMembers[] = {
    kAppName<_cAccessRights>,
    kArdWorkspace<_cAccessRights>,
    Method<&_cAccessRights::IsUserAllowedAccess,
           Boolean(String, AccessArea, Optional<ReadByRef<Boolean>, VARIANT_FALSE>)>,
    Method<&_cAccessRights::AddUser, Boolean(String)>,
    Method<&_cAccessRights::IsValid, Boolean(String)>,
    Method<&_cAccessRights::List, String()>,
};

}  // namespace

const PublishedClass kcAccessRights = {{L"cAccessRights", kMembers, kcAccessRightsNames},
                                       kcAccessRightsHelp,
                                       CLSID_cAccessRights,
                                       IID__cAccessRights,
                                       Create<AccessRightsObject>};

}  // namespace ard::windows
