#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include "addresses/delivery_address.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

// The published enumeration: a Long that the vtable calls tbDelAddType.
struct AddressType : Long {};

}  // namespace

namespace internal {

template <>
class Parameter<ReadByRef<AddressType>> : public Parameter<ReadByRef<Long>> {
 public:
  tbDelAddType* Get() { return reinterpret_cast<tbDelAddType*>(Parameter<ReadByRef<Long>>::Get()); }
};

}  // namespace internal

namespace {

using Portable = addresses::DeliveryAddress;
using dialogs::Address;
using Base =
    WithAppName<WithRegistryPath<WithArdWorkspace<AutomationObject<_cDeliveryAddress, Portable>>>>;

class DeliveryAddressObject final : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE get_Telephone(BSTR* value) override {
    return Get(L"Telephone", &Address::telephone, value);
  }
  HRESULT STDMETHODCALLTYPE get_Reference(BSTR* value) override {
    return Get(L"Reference", &Address::reference, value);
  }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override {
    return Get(L"Name", &Address::name, value);
  }
  HRESULT STDMETHODCALLTYPE get_Fax(BSTR* value) override {
    return Get(L"Fax", &Address::fax, value);
  }
  HRESULT STDMETHODCALLTYPE get_EMail(BSTR* value) override {
    return Get(L"EMail", &Address::email, value);
  }
  HRESULT STDMETHODCALLTYPE get_Description(BSTR* value) override {
    return Get(L"Description", &Address::description, value);
  }
  HRESULT STDMETHODCALLTYPE get_DefaultRef(BSTR* value) override {
    return Get(L"DefaultRef", &Address::default_ref, value);
  }
  HRESULT STDMETHODCALLTYPE get_ContactName(BSTR* value) override {
    return Get(L"ContactName", &Address::contact_name, value);
  }
  HRESULT STDMETHODCALLTYPE get_AddressRef(BSTR* value) override {
    return Get(L"AddressRef", &Address::address_ref, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address5(BSTR* value) override {
    return Get(L"Address5", &Address::address_5, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address4(BSTR* value) override {
    return Get(L"Address4", &Address::address_4, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address3(BSTR* value) override {
    return Get(L"Address3", &Address::address_3, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address2(BSTR* value) override {
    return Get(L"Address2", &Address::address_2, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address1(BSTR* value) override {
    return Get(L"Address1", &Address::address_1, value);
  }
  HRESULT STDMETHODCALLTYPE get_AccountRef(BSTR* value) override {
    return Get(L"AccountRef", &Address::account_ref, value);
  }
  // The parameters by reference are only read.
  HRESULT STDMETHODCALLTYPE GetAddress(BSTR* acc_ref, BSTR* acc_name, tbDelAddType* type,
                                       VARIANT_BOOL* result) override {
    const auto kind =
        type ? static_cast<addresses::DelAddType>(*type) : addresses::DelAddType::kCompany;
    return Call(result, &Portable::GetAddress, View(acc_ref ? *acc_ref : nullptr),
                View(acc_name ? *acc_name : nullptr), kind);
  }

 private:
  HRESULT Get(std::wstring_view name, std::wstring Address::*member, BSTR* value) {
    return Call(value, &Portable::Get, name, member);
  }
};

constexpr Member kMembers[] = {
    kAppName<_cDeliveryAddress>,
    kRegistryPath<_cDeliveryAddress>,
    kArdWorkspace<_cDeliveryAddress>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Telephone, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Reference, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Name, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Fax, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_EMail, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Description, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_DefaultRef, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_ContactName, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_AddressRef, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Address5, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Address4, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Address3, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Address2, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_Address1, String>,
    ReadOnlyProperty<&_cDeliveryAddress::get_AccountRef, String>,
    Method<&_cDeliveryAddress::GetAddress,
           Boolean(Optional<ReadByRef<String>, nullptr>, Optional<ReadByRef<String>, nullptr>,
                   Optional<ReadByRef<AddressType>, LONG{tbDelAddCompany}>)>,
};

}  // namespace

const PublishedClass kcDeliveryAddress = {{L"cDeliveryAddress", kMembers, kcDeliveryAddressNames},
                                          kcDeliveryAddressHelp,
                                          CLSID_cDeliveryAddress,
                                          IID__cDeliveryAddress,
                                          Create<DeliveryAddressObject>};

}  // namespace ard::windows
