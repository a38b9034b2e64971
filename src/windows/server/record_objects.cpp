// CustomerRecord and SupplierRecord.
#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include "accounts/account_records.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

using accounts::CustomerDetails;
using accounts::SupplierDetails;

// What both have in common.
template <class Interface, class Portable>
class AccountRecord : public WithArdWorkspace<AutomationObject<Interface, Portable>> {
 public:
  using WithArdWorkspace<AutomationObject<Interface, Portable>>::WithArdWorkspace;

  HRESULT STDMETHODCALLTYPE Read(BSTR acc_ref, VARIANT_BOOL* result) override {
    return this->Call(result, &Portable::Read, View(acc_ref));
  }

 protected:
  template <class Details, class T, class Out>
  HRESULT Get(std::wstring_view name, T Details::*member, Out* value) {
    return this->Call(value, [&](Portable& portable) { return portable.Get(name, member); });
  }
  template <class Details, class T>
  HRESULT Put(std::wstring_view name, T Details::*member, T value) {
    return this->Perform([&](Portable& portable) { portable.Put(name, member, value); });
  }
  // A text that there is no memory for is not put.
  template <class Details>
  HRESULT Put(std::wstring_view name, std::wstring Details::*member, BSTR value) {
    return this->Perform([&](Portable& portable) {
      Attempt(portable.context().trace(), {portable.name(), name},
              [&] { portable.Put(name, member, std::wstring(View(value))); });
    });
  }
};

class CustomerRecordObject final : public AccountRecord<_CustomerRecord, accounts::CustomerRecord> {
 public:
  using AccountRecord::AccountRecord;

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override {
    return Get(L"Name", &CustomerDetails::name, value);
  }
  HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
    return Put(L"Name", &CustomerDetails::name, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address1(BSTR* value) override {
    return Get(L"Address1", &CustomerDetails::address_1, value);
  }
  HRESULT STDMETHODCALLTYPE put_Address1(BSTR value) override {
    return Put(L"Address1", &CustomerDetails::address_1, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address2(BSTR* value) override {
    return Get(L"Address2", &CustomerDetails::address_2, value);
  }
  HRESULT STDMETHODCALLTYPE put_Address2(BSTR value) override {
    return Put(L"Address2", &CustomerDetails::address_2, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address3(BSTR* value) override {
    return Get(L"Address3", &CustomerDetails::address_3, value);
  }
  HRESULT STDMETHODCALLTYPE put_Address3(BSTR value) override {
    return Put(L"Address3", &CustomerDetails::address_3, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address4(BSTR* value) override {
    return Get(L"Address4", &CustomerDetails::address_4, value);
  }
  HRESULT STDMETHODCALLTYPE put_Address4(BSTR value) override {
    return Put(L"Address4", &CustomerDetails::address_4, value);
  }
  HRESULT STDMETHODCALLTYPE get_Address5(BSTR* value) override {
    return Get(L"Address5", &CustomerDetails::address_5, value);
  }
  HRESULT STDMETHODCALLTYPE put_Address5(BSTR value) override {
    return Put(L"Address5", &CustomerDetails::address_5, value);
  }
  HRESULT STDMETHODCALLTYPE get_DelAddress1(BSTR* value) override {
    return Get(L"DelAddress1", &CustomerDetails::del_address_1, value);
  }
  HRESULT STDMETHODCALLTYPE put_DelAddress1(BSTR value) override {
    return Put(L"DelAddress1", &CustomerDetails::del_address_1, value);
  }
  HRESULT STDMETHODCALLTYPE get_DelAddress2(BSTR* value) override {
    return Get(L"DelAddress2", &CustomerDetails::del_address_2, value);
  }
  HRESULT STDMETHODCALLTYPE put_DelAddress2(BSTR value) override {
    return Put(L"DelAddress2", &CustomerDetails::del_address_2, value);
  }
  HRESULT STDMETHODCALLTYPE get_DelAddress3(BSTR* value) override {
    return Get(L"DelAddress3", &CustomerDetails::del_address_3, value);
  }
  HRESULT STDMETHODCALLTYPE put_DelAddress3(BSTR value) override {
    return Put(L"DelAddress3", &CustomerDetails::del_address_3, value);
  }
  HRESULT STDMETHODCALLTYPE get_DelAddress4(BSTR* value) override {
    return Get(L"DelAddress4", &CustomerDetails::del_address_4, value);
  }
  HRESULT STDMETHODCALLTYPE put_DelAddress4(BSTR value) override {
    return Put(L"DelAddress4", &CustomerDetails::del_address_4, value);
  }
  HRESULT STDMETHODCALLTYPE get_DelAddress5(BSTR* value) override {
    return Get(L"DelAddress5", &CustomerDetails::del_address_5, value);
  }
  HRESULT STDMETHODCALLTYPE put_DelAddress5(BSTR value) override {
    return Put(L"DelAddress5", &CustomerDetails::del_address_5, value);
  }
  HRESULT STDMETHODCALLTYPE get_TelNumber(BSTR* value) override {
    return Get(L"TelNumber", &CustomerDetails::tel_number, value);
  }
  HRESULT STDMETHODCALLTYPE put_TelNumber(BSTR value) override {
    return Put(L"TelNumber", &CustomerDetails::tel_number, value);
  }
  HRESULT STDMETHODCALLTYPE get_ContactName(BSTR* value) override {
    return Get(L"ContactName", &CustomerDetails::contact_name, value);
  }
  HRESULT STDMETHODCALLTYPE put_ContactName(BSTR value) override {
    return Put(L"ContactName", &CustomerDetails::contact_name, value);
  }
  HRESULT STDMETHODCALLTYPE get_DueDays(short* value) override {
    return Get(L"DueDays", &CustomerDetails::due_days, value);
  }
  HRESULT STDMETHODCALLTYPE put_DueDays(short value) override {
    return Put(L"DueDays", &CustomerDetails::due_days, value);
  }
  HRESULT STDMETHODCALLTYPE get_SettDiscount(double* value) override {
    return Get(L"SettDiscount", &CustomerDetails::sett_discount, value);
  }
  HRESULT STDMETHODCALLTYPE put_SettDiscount(double value) override {
    return Put(L"SettDiscount", &CustomerDetails::sett_discount, value);
  }
  HRESULT STDMETHODCALLTYPE get_TaxCode(short* value) override {
    return Get(L"TaxCode", &CustomerDetails::tax_code, value);
  }
  HRESULT STDMETHODCALLTYPE put_TaxCode(short value) override {
    return Put(L"TaxCode", &CustomerDetails::tax_code, value);
  }
  HRESULT STDMETHODCALLTYPE get_Department(short* value) override {
    return Get(L"Department", &CustomerDetails::department, value);
  }
  HRESULT STDMETHODCALLTYPE put_Department(short value) override {
    return Put(L"Department", &CustomerDetails::department, value);
  }
  HRESULT STDMETHODCALLTYPE get_NominalCode(BSTR* value) override {
    return Get(L"NominalCode", &CustomerDetails::nominal_code, value);
  }
  HRESULT STDMETHODCALLTYPE put_NominalCode(BSTR value) override {
    return Put(L"NominalCode", &CustomerDetails::nominal_code, value);
  }
};

class SupplierRecordObject final : public AccountRecord<_SupplierRecord, accounts::SupplierRecord> {
 public:
  using AccountRecord::AccountRecord;

  HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override {
    return Get(L"Name", &SupplierDetails::name, value);
  }
  HRESULT STDMETHODCALLTYPE put_Name(BSTR value) override {
    return Put(L"Name", &SupplierDetails::name, value);
  }
  HRESULT STDMETHODCALLTYPE get_ContactName(BSTR* value) override {
    return Get(L"ContactName", &SupplierDetails::contact_name, value);
  }
  HRESULT STDMETHODCALLTYPE put_ContactName(BSTR value) override {
    return Put(L"ContactName", &SupplierDetails::contact_name, value);
  }
  HRESULT STDMETHODCALLTYPE get_DefNomCode(BSTR* value) override {
    return Get(L"DefNomCode", &SupplierDetails::def_nom_code, value);
  }
  HRESULT STDMETHODCALLTYPE put_DefNomCode(BSTR value) override {
    return Put(L"DefNomCode", &SupplierDetails::def_nom_code, value);
  }
  HRESULT STDMETHODCALLTYPE get_DefTaxCode(short* value) override {
    return Get(L"DefTaxCode", &SupplierDetails::def_tax_code, value);
  }
  HRESULT STDMETHODCALLTYPE put_DefTaxCode(short value) override {
    return Put(L"DefTaxCode", &SupplierDetails::def_tax_code, value);
  }
  HRESULT STDMETHODCALLTYPE get_DeptNumber(short* value) override {
    return Get(L"DeptNumber", &SupplierDetails::dept_number, value);
  }
  HRESULT STDMETHODCALLTYPE put_DeptNumber(short value) override {
    return Put(L"DeptNumber", &SupplierDetails::dept_number, value);
  }
};

constexpr Member kCustomerMembers[] = {
    kArdWorkspace<_CustomerRecord>,
    Method<&_CustomerRecord::Read, Boolean(String)>,
    Property<&_CustomerRecord::get_Name, &_CustomerRecord::put_Name, String>,
    Property<&_CustomerRecord::get_Address1, &_CustomerRecord::put_Address1, String>,
    Property<&_CustomerRecord::get_Address2, &_CustomerRecord::put_Address2, String>,
    Property<&_CustomerRecord::get_Address3, &_CustomerRecord::put_Address3, String>,
    Property<&_CustomerRecord::get_Address4, &_CustomerRecord::put_Address4, String>,
    Property<&_CustomerRecord::get_Address5, &_CustomerRecord::put_Address5, String>,
    Property<&_CustomerRecord::get_DelAddress1, &_CustomerRecord::put_DelAddress1, String>,
    Property<&_CustomerRecord::get_DelAddress2, &_CustomerRecord::put_DelAddress2, String>,
    Property<&_CustomerRecord::get_DelAddress3, &_CustomerRecord::put_DelAddress3, String>,
    Property<&_CustomerRecord::get_DelAddress4, &_CustomerRecord::put_DelAddress4, String>,
    Property<&_CustomerRecord::get_DelAddress5, &_CustomerRecord::put_DelAddress5, String>,
    Property<&_CustomerRecord::get_TelNumber, &_CustomerRecord::put_TelNumber, String>,
    Property<&_CustomerRecord::get_ContactName, &_CustomerRecord::put_ContactName, String>,
    Property<&_CustomerRecord::get_DueDays, &_CustomerRecord::put_DueDays, Integer>,
    Property<&_CustomerRecord::get_SettDiscount, &_CustomerRecord::put_SettDiscount, Double>,
    Property<&_CustomerRecord::get_TaxCode, &_CustomerRecord::put_TaxCode, Integer>,
    Property<&_CustomerRecord::get_Department, &_CustomerRecord::put_Department, Integer>,
    Property<&_CustomerRecord::get_NominalCode, &_CustomerRecord::put_NominalCode, String>,
};
constexpr Member kSupplierMembers[] = {
    kArdWorkspace<_SupplierRecord>,
    Method<&_SupplierRecord::Read, Boolean(String)>,
    Property<&_SupplierRecord::get_Name, &_SupplierRecord::put_Name, String>,
    Property<&_SupplierRecord::get_ContactName, &_SupplierRecord::put_ContactName, String>,
    Property<&_SupplierRecord::get_DefNomCode, &_SupplierRecord::put_DefNomCode, String>,
    Property<&_SupplierRecord::get_DefTaxCode, &_SupplierRecord::put_DefTaxCode, Integer>,
    Property<&_SupplierRecord::get_DeptNumber, &_SupplierRecord::put_DeptNumber, Integer>,
};

}  // namespace

const PublishedClass kCustomerRecord = {{L"CustomerRecord", kCustomerMembers, kCustomerRecordNames},
                                        kCustomerRecordHelp,
                                        CLSID_CustomerRecord,
                                        IID__CustomerRecord,
                                        Create<CustomerRecordObject>};
const PublishedClass kSupplierRecord = {{L"SupplierRecord", kSupplierMembers, kSupplierRecordNames},
                                        kSupplierRecordHelp,
                                        CLSID_SupplierRecord,
                                        IID__SupplierRecord,
                                        Create<SupplierRecordObject>};

}  // namespace ard::windows
