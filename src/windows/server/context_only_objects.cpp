// The classes that have nothing but their context properties so far.
#include <ArdObjects100.h>

#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

class ContextOnly : public PublicClass {
 public:
  ContextOnly(std::wstring_view name, Environment& environment) : PublicClass(name, environment) {}
};

template <class Interface>
using Plain = AutomationObject<Interface, ContextOnly>;

// The record objects.
template <class Interface>
using WorkspaceOnly = WithArdWorkspace<Plain<Interface>>;
template <class Interface>
constexpr Member kWorkspaceOnlyMembers[] = {kArdWorkspace<Interface>};

// Most classes.
template <class Interface>
using Ledger = WithAppName<WithArdWorkspace<WithRegistryPath<Plain<Interface>>>>;
template <class Interface>
constexpr Member kLedgerMembers[] = {kAppName<Interface>, kArdWorkspace<Interface>,
                                     kRegistryPath<Interface>};

using DeliveryAddressObject = Ledger<_cDeliveryAddress>;
constexpr Member kDeliveryAddressMembers[] = {kAppName<_cDeliveryAddress>,
                                              kRegistryPath<_cDeliveryAddress>,
                                              kArdWorkspace<_cDeliveryAddress>};

}  // namespace

const PublishedClass kBank = {L"Bank", CLSID_Bank, IID__Bank, kLedgerMembers<_Bank>,
                              Create<Ledger<_Bank>>};
const PublishedClass kCustomerRecord = {L"CustomerRecord", CLSID_CustomerRecord,
                                        IID__CustomerRecord, kWorkspaceOnlyMembers<_CustomerRecord>,
                                        Create<WorkspaceOnly<_CustomerRecord>>};
const PublishedClass kNominal = {L"Nominal", CLSID_Nominal, IID__Nominal, kLedgerMembers<_Nominal>,
                                 Create<Ledger<_Nominal>>};
const PublishedClass kPurchaseOrders = {L"PurchaseOrders", CLSID_PurchaseOrders,
                                        IID__PurchaseOrders, kLedgerMembers<_PurchaseOrders>,
                                        Create<Ledger<_PurchaseOrders>>};
const PublishedClass kSalesOrders = {L"SalesOrders", CLSID_SalesOrders, IID__SalesOrders,
                                     kLedgerMembers<_SalesOrders>, Create<Ledger<_SalesOrders>>};
const PublishedClass kSupplierRecord = {L"SupplierRecord", CLSID_SupplierRecord,
                                        IID__SupplierRecord, kWorkspaceOnlyMembers<_SupplierRecord>,
                                        Create<WorkspaceOnly<_SupplierRecord>>};
const PublishedClass kSuppliers = {L"Suppliers", CLSID_Suppliers, IID__Suppliers,
                                   kLedgerMembers<_Suppliers>, Create<Ledger<_Suppliers>>};
const PublishedClass kcDeliveryAddress = {L"cDeliveryAddress", CLSID_cDeliveryAddress,
                                          IID__cDeliveryAddress, kDeliveryAddressMembers,
                                          Create<DeliveryAddressObject>};

}  // namespace ard::windows
