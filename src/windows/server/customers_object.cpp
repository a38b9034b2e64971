#include <ArdObjects100.h>

#include "accounts/customers.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

using Portable = accounts::Customers;
using Base =
    WithAppName<WithArdWorkspace<WithRegistryPath<AutomationObject<_Customers, Portable>>>>;

class CustomersObject final : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE IsValid(BSTR acc_ref, VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsValid, View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE GetName(BSTR acc_ref, BSTR* result) override {
    return Call(result, &Portable::GetName, View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE GetContact(BSTR acc_ref, BSTR* result) override {
    return Call(result, &Portable::GetContact, View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE FastList(BSTR* result) override {
    return Call(result, &Portable::FastList);
  }
  HRESULT STDMETHODCALLTYPE List(BSTR search_criteria, BSTR* result) override {
    return Call(result, &Portable::List, View(search_criteria));
  }
};

constexpr Member kMembers[] = {
    kAppName<_Customers>,
    kArdWorkspace<_Customers>,
    kRegistryPath<_Customers>,
    Method<&_Customers::IsValid, Boolean(String)>,
    Method<&_Customers::GetName, String(String)>,
    Method<&_Customers::GetContact, String(String)>,
    Method<&_Customers::FastList, String()>,
    Method<&_Customers::List, String(String)>,
};

}  // namespace

const PublishedClass kCustomers = {L"Customers", CLSID_Customers, IID__Customers, kMembers,
                                   Create<CustomersObject>};

}  // namespace ard::windows
