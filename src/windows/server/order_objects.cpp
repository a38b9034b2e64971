// SalesOrders and PurchaseOrders.
#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include "orders/orders.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

// What both publish.
template <class Interface, class Portable>
class Orders : public WithAppName<
                   WithArdWorkspace<WithRegistryPath<AutomationObject<Interface, Portable>>>> {
 public:
  using WithAppName<
      WithArdWorkspace<WithRegistryPath<AutomationObject<Interface, Portable>>>>::WithAppName;

  HRESULT STDMETHODCALLTYPE GetAccRef(LONG number, BSTR* result) override {
    return this->Call(result, &Portable::GetAccRef, static_cast<std::int32_t>(number));
  }
  HRESULT STDMETHODCALLTYPE List(LONG* result) override {
    return this->Call(result, &Portable::List);
  }
  HRESULT STDMETHODCALLTYPE FastList(BSTR* result) override {
    return this->Call(result, &Portable::FastList);
  }
};

class SalesOrdersObject final : public Orders<_SalesOrders, orders::SalesOrders> {
 public:
  using Orders::Orders;

  HRESULT STDMETHODCALLTYPE GetAccName(LONG so_number, BSTR* result) override {
    return Call(result, &orders::SalesOrders::GetAccName, static_cast<std::int32_t>(so_number));
  }
};

class PurchaseOrdersObject final : public Orders<_PurchaseOrders, orders::PurchaseOrders> {
 public:
  using Orders::Orders;
  using Portable = orders::PurchaseOrders;

  HRESULT STDMETHODCALLTYPE GetOrderDate(LONG po_number, DATE* result) override {
    return Call(result, &Portable::GetOrderDate, static_cast<std::int32_t>(po_number));
  }
  HRESULT STDMETHODCALLTYPE IsValid(LONG order_no, VARIANT_BOOL excl_posted,
                                    VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsValid, static_cast<std::int32_t>(order_no),
                excl_posted != VARIANT_FALSE);
  }
};

constexpr Member kSalesMembers[] = {
    kAppName<_SalesOrders>,
    Method<&_SalesOrders::GetAccName, String(Long)>,
    Method<&_SalesOrders::GetAccRef, String(Long)>,
    kArdWorkspace<_SalesOrders>,
    Method<&_SalesOrders::List, Long()>,
    kRegistryPath<_SalesOrders>,
    Method<&_SalesOrders::FastList, String()>,
};
constexpr Member kPurchaseMembers[] = {
    kAppName<_PurchaseOrders>,
    Method<&_PurchaseOrders::GetAccRef, String(Long)>,
    Method<&_PurchaseOrders::GetOrderDate, DateTime(Long)>,
    kArdWorkspace<_PurchaseOrders>,
    Method<&_PurchaseOrders::List, Long()>,
    kRegistryPath<_PurchaseOrders>,
    Method<&_PurchaseOrders::FastList, String()>,
    Method<&_PurchaseOrders::IsValid, Boolean(Long, Boolean)>,
};

}  // namespace

const PublishedClass kSalesOrders = {{L"SalesOrders", kSalesMembers, kSalesOrdersNames},
                                     kSalesOrdersHelp,
                                     CLSID_SalesOrders,
                                     IID__SalesOrders,
                                     Create<SalesOrdersObject>};
const PublishedClass kPurchaseOrders = {{L"PurchaseOrders", kPurchaseMembers, kPurchaseOrdersNames},
                                        kPurchaseOrdersHelp,
                                        CLSID_PurchaseOrders,
                                        IID__PurchaseOrders,
                                        Create<PurchaseOrdersObject>};

}  // namespace ard::windows
