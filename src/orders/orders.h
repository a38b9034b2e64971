// SalesOrders and PurchaseOrders: look-ups of an order by its number, and the lists to pick one
// from. What is not found, or cannot be read, is "", the zero date or False.
#ifndef ARD_ORDERS_ORDERS_H_
#define ARD_ORDERS_ORDERS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "dialogs/fast_select.h"
#include "engine/handles.h"
#include "frame/public_class.h"

namespace ard::orders {

// What tells one kind of order from the other.
struct OrderBook {
  std::wstring_view record;  // keyed by ORDER_NUMBER
  dialogs::FastSelectForm list;
};

// What both have in common.
class Orders : public PublicClass {
 public:
  // The account's reference, as it is stored.
  std::wstring GetAccRef(std::int32_t number) const noexcept;

  // The number of the order that the user picks from all orders, deleted and posted ones too, in
  // the order of the file; 0 when cancelled. One row is shown even when there are no orders.
  std::int32_t List() const noexcept;

  // The number, as text, of the order that the user picks from a list of any size, without deleted
  // orders; "" when cancelled.
  std::wstring FastList() const noexcept;

 protected:
  Orders(std::wstring_view name, Environment& environment, const OrderBook& book)
      : PublicClass(name, environment), book_(book) {}
  ~Orders() = default;

  // The order's record, if there is such an order.
  bool Find(engine::Record& order, std::int32_t number) const;
  // A field of the order in a method of that name.
  template <class T>
  T Read(Name method, std::int32_t number, Name field) const noexcept {
    return Call<T>(method, {number}, [&](T& value) {
      engine::Record order(context(), book_.record);
      if (Find(order, number)) order.Get(field, value);
    });
  }

 private:
  const OrderBook& book_;
};

extern const OrderBook kSalesOrderBook;
extern const OrderBook kPurchaseOrderBook;

class SalesOrders : public Orders {
 public:
  explicit SalesOrders(Environment& environment)
      : Orders(L"SalesOrders", environment, kSalesOrderBook) {}

  // The account's name, as it is stored.
  std::wstring GetAccName(std::int32_t so_number) const noexcept;
};

class PurchaseOrders : public Orders {
 public:
  explicit PurchaseOrders(Environment& environment)
      : Orders(L"PurchaseOrders", environment, kPurchaseOrderBook) {}

  Date GetOrderDate(std::int32_t po_number) const noexcept;

  // Whether the order exists and, with `excl_posted`, has not been posted.
  bool IsValid(std::int32_t order_no, bool excl_posted) const noexcept;
};

}  // namespace ard::orders

#endif  // ARD_ORDERS_ORDERS_H_
