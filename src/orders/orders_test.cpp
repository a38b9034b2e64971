#include "orders/orders.h"

#include "tests/core/company_test.h"

namespace ard::orders {
namespace {

using simulator::CompanyBuilder;

class OrdersTest : public testing::CompanyTest {
 protected:
  OrdersTest() {
    CompanyBuilder company;
    for (const wchar_t* table : {L"SopData", L"PopData"}) {
      company
          .Record(table,
                  L"ORDER_NUMBER=12|ACCOUNT_REF=B|NAME=Bea|ORDER_DATE=45000|POSTED_CODE=True")
          .Record(table, L"ORDER_NUMBER=2|ACCOUNT_REF=A|DELETED_FLAG=True")
          .Record(table, L"ORDER_NUMBER=3|ACCOUNT_REF=C");
    }
    Open(company, sales_, purchases_);
  }

  SalesOrders sales_{environment_};
  PurchaseOrders purchases_{environment_};
};

TEST_F(OrdersTest, LooksOrdersUpByNumber) {
  EXPECT_EQ(sales_.GetAccName(1), L"");
  EXPECT_EQ(purchases_.GetAccRef(-3), L"");
  const struct {
    std::int32_t number;
    const wchar_t* date;
    bool any;
    bool unposted;
  } cases[] = {{12, L"2023-03-15", true, false},
               {3, L"1899-12-30", true, true},
               {2, L"1899-12-30", true, true},
               {1, L"1899-12-30", false, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(Value(purchases_.GetOrderDate(c.number)).ToText(), c.date) << c.number;
    EXPECT_EQ(purchases_.IsValid(c.number, false), c.any) << c.number;
    EXPECT_EQ(purchases_.IsValid(c.number, true), c.unposted) << c.number;
  }
  // What cannot be asked is not valid, whichever operation it is that fails.
  engine_->faults().Reset();
  EXPECT_TRUE(purchases_.IsValid(3, true));
  for (std::int64_t n = engine_->faults().operations(); n > 0; --n) {
    engine_->faults().FailFrom(n, false);
    EXPECT_FALSE(purchases_.IsValid(3, true)) << n;
  }
}

TEST_F(OrdersTest, ListShowsEveryOrderAndFastListNoDeletedOne) {
  Choose(2);
  EXPECT_EQ(purchases_.List(), 2);
  EXPECT_EQ(listed_, L"SelectPurchaseOrder:P.OrderNo.|12\tB\tBea|2\tA\t|3\tC\t");
  Choose(0);  // starts on the first
  EXPECT_EQ(sales_.List(), 12);
  Choose(2);
  EXPECT_EQ(sales_.FastList(), L"3");
  EXPECT_EQ(listed_, L"SelectSalesOrder:S.OrderNo.|3\tC\t|12\tB\tBea");
  environment_.Answer([](dialogs::SelectDialog& dialog) {
    dialog.KeyPress(L'1');  // numbers are looked for as text
    dialog.Ok();
  });
  EXPECT_EQ(sales_.FastList(), L"12");
}

TEST_F(OrdersTest, AnEmptyFileHasOneRowAndNoneInTheFastList) {
  CompanyBuilder company;
  Open(company, sales_, purchases_);
  for (const Orders* orders : {static_cast<Orders*>(&sales_), static_cast<Orders*>(&purchases_)}) {
    Choose(1);
    EXPECT_EQ(orders->List(), 0);
    EXPECT_TRUE(listed_.ends_with(L"OrderNo.|0\t\t")) << listed_;
    Choose(1);
    EXPECT_EQ(orders->FastList(), L"");
    EXPECT_TRUE(listed_.ends_with(L"OrderNo.")) << listed_;
  }
}

}  // namespace
}  // namespace ard::orders
