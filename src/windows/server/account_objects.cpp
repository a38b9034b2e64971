// Customers, Suppliers, Nominal and Bank.
#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include "accounts/customers.h"
#include "accounts/nominal_bank.h"
#include "accounts/suppliers.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

// What all of them publish.
template <class Interface, class Portable>
class Accounts : public WithAppName<
                     WithArdWorkspace<WithRegistryPath<AutomationObject<Interface, Portable>>>> {
 public:
  using WithAppName<
      WithArdWorkspace<WithRegistryPath<AutomationObject<Interface, Portable>>>>::WithAppName;

  HRESULT STDMETHODCALLTYPE IsValid(BSTR acc_ref, VARIANT_BOOL* result) override {
    return this->Call(result, &Portable::IsValid, View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE FastList(BSTR* result) override {
    return this->Call(result, &Portable::FastList);
  }
  HRESULT STDMETHODCALLTYPE List(BSTR search_criteria, BSTR* result) override {
    return this->Call(result, &Portable::List, View(search_criteria));
  }
};

// The sales and the purchase ledger.
template <class Interface, class Portable>
class NamedAccounts : public Accounts<Interface, Portable> {
 public:
  using Accounts<Interface, Portable>::Accounts;

  HRESULT STDMETHODCALLTYPE GetName(BSTR acc_ref, BSTR* result) override {
    return this->Call(result, &Portable::GetName, View(acc_ref));
  }
};

class CustomersObject final : public NamedAccounts<_Customers, accounts::Customers> {
 public:
  using NamedAccounts::NamedAccounts;
  using Portable = accounts::Customers;

  HRESULT STDMETHODCALLTYPE GetContact(BSTR acc_ref, BSTR* result) override {
    return Call(result, &Portable::GetContact, View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE GetDiscPercent(BSTR acc_ref, BSTR prod_code, double qty,
                                           double unit_price, double* result) override {
    return Call(result, &Portable::GetDiscPercent, View(acc_ref), View(prod_code), qty, unit_price);
  }
  HRESULT STDMETHODCALLTYPE ShowDiscBDown(BSTR acc_ref, BSTR prod_code, double qty,
                                          double unit_price, double disc_on_screen,
                                          short qty_dp) override {
    return Perform([&](Portable& portable) {
      portable.ShowDiscBDown(View(acc_ref), View(prod_code), qty, unit_price, disc_on_screen,
                             qty_dp);
    });
  }
};

class SuppliersObject final : public NamedAccounts<_Suppliers, accounts::Suppliers> {
 public:
  using NamedAccounts::NamedAccounts;

  HRESULT STDMETHODCALLTYPE GetDiscPercent(BSTR acc_ref, double* result) override {
    return Call(result, &accounts::Suppliers::GetDiscPercent, View(acc_ref));
  }
};

class NominalObject final : public Accounts<_Nominal, accounts::Nominal> {
 public:
  using Accounts::Accounts;
};

class BankObject final : public Accounts<_Bank, accounts::Bank> {
 public:
  using Accounts::Accounts;
};

constexpr Member kCustomersMembers[] = {
    kAppName<_Customers>,
    kArdWorkspace<_Customers>,
    kRegistryPath<_Customers>,
    Method<&_Customers::IsValid, Boolean(String)>,
    Method<&_Customers::GetName, String(String)>,
    Method<&_Customers::GetContact, String(String)>,
    Method<&_Customers::FastList, String()>,
    Method<&_Customers::List, String(String)>,
    Method<&_Customers::GetDiscPercent, Double(String, String, Double, Double)>,
    Method<&_Customers::ShowDiscBDown, void(String, String, Double, Double, Double, Integer)>,
};
constexpr Member kSuppliersMembers[] = {
    kAppName<_Suppliers>,
    kArdWorkspace<_Suppliers>,
    kRegistryPath<_Suppliers>,
    Method<&_Suppliers::IsValid, Boolean(String)>,
    Method<&_Suppliers::GetName, String(String)>,
    Method<&_Suppliers::GetDiscPercent, Double(String)>,
    Method<&_Suppliers::FastList, String()>,
    Method<&_Suppliers::List, String(String)>,
};
// Nominal and bank accounts.
template <class Interface>
constexpr Member kCodedMembers[] = {
    kAppName<Interface>,
    kArdWorkspace<Interface>,
    kRegistryPath<Interface>,
    Method<&Interface::IsValid, Boolean(String)>,
    Method<&Interface::FastList, String()>,
    Method<&Interface::List, String(String)>,
};

}  // namespace

const PublishedClass kCustomers = {{L"Customers", kCustomersMembers, kCustomersNames},
                                   kCustomersHelp,
                                   CLSID_Customers,
                                   IID__Customers,
                                   Create<CustomersObject>};
const PublishedClass kSuppliers = {{L"Suppliers", kSuppliersMembers, kSuppliersNames},
                                   kSuppliersHelp,
                                   CLSID_Suppliers,
                                   IID__Suppliers,
                                   Create<SuppliersObject>};
const PublishedClass kNominal = {{L"Nominal", kCodedMembers<_Nominal>, kNominalNames},
                                 kNominalHelp,
                                 CLSID_Nominal,
                                 IID__Nominal,
                                 Create<NominalObject>};
const PublishedClass kBank = {{L"Bank", kCodedMembers<_Bank>, kBankNames},
                              kBankHelp,
                              CLSID_Bank,
                              IID__Bank,
                              Create<BankObject>};

}  // namespace ard::windows
