#include "orders/orders.h"

#include <optional>

#include "dialogs/record_list.h"

namespace ard::orders {
namespace {

constexpr int kListWidth = 7040;  // twips

constexpr dialogs::FieldColumn kSalesColumns[] = {{L"S.Order No.", 12, L"ORDER_NUMBER", true},
                                                  {L"A/C", 15, L"ACCOUNT_REF"},
                                                  {L"Name", 45, L"NAME"}};
constexpr dialogs::FieldColumn kPurchaseColumns[] = {{L"P.Order No.", 12, L"ORDER_NUMBER", true},
                                                     {L"A/C", 15, L"ACCOUNT_REF"},
                                                     {L"Name", 45, L"NAME"}};

}  // namespace

const OrderBook kSalesOrderBook = {
    L"SopRecord",
    {L"frmFastSelectSop",
     L"Select Sales Order",
     {L"SopData", L"SopIndex", L"NO_OF_SOP", kSalesColumns, L"sales orders"}}};
const OrderBook kPurchaseOrderBook = {
    L"PopRecord",
    {L"frmFastSelectPop",
     L"Select Purchase Order",
     {L"PopData", L"PopIndex", L"NO_OF_POP", kPurchaseColumns, L"purchase orders"}}};

bool Orders::Find(engine::Record& order, std::int32_t number) const {
  return order.Set(L"ORDER_NUMBER", number) && order.Find(engine::Match::kExact);
}

std::wstring Orders::GetAccRef(std::int32_t number) const noexcept {
  return Read<std::wstring>(L"GetAccRef", number, L"ACCOUNT_REF");
}

std::int32_t Orders::List() const noexcept {
  return Call<std::int32_t>(L"List", [&](std::int32_t& number) {
    dialogs::SelectRecordDialog dialog(std::wstring(book_.list.caption), kListWidth);
    {
      engine::Record orders(context(), book_.record);
      orders.MoveFirst();  // where there is no order, the blank one makes the row
      AddRecords(dialog, orders, book_.list.file, [&] { return orders.MoveNext(); });
      if (!orders.exists()) dialog.list().SetReading(dialogs::Reading::kFailed);
    }
    dialog.list().SelectItem(1);
    const std::optional<dialogs::Row> choice = ChooseRow(context(), dialog);
    if (choice) number = Value(choice->Cell(1)).ToLong();
  });
}

std::wstring Orders::FastList() const noexcept {
  return Call<std::wstring>(L"FastList", [&](std::wstring& number) {
    number = dialogs::FastSelect(context(), book_.list);
  });
}

std::wstring SalesOrders::GetAccName(std::int32_t so_number) const noexcept {
  return Read<std::wstring>(L"GetAccName", so_number, L"NAME");
}

Date PurchaseOrders::GetOrderDate(std::int32_t po_number) const noexcept {
  return Read<Date>(L"GetOrderDate", po_number, L"ORDER_DATE");
}

bool PurchaseOrders::IsValid(std::int32_t order_no, bool excl_posted) const noexcept {
  return Call<bool>(L"IsValid", {order_no, excl_posted}, [&](bool& valid) {
    engine::Record order(context(), kPurchaseOrderBook.record);
    if (!Find(order, order_no)) return;
    bool posted = false;
    valid = !excl_posted || (order.Get(L"POSTED_CODE", posted) && !posted);
    if (posted) NoteDecision(L"IsValid", L"False: the order has been posted.");
  });
}

}  // namespace ard::orders
