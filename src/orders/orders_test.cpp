#include "orders/orders.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "simulator/testing/company_builder.h"
#include "testing/scripted_environment.h"

namespace ard::orders {
namespace {

using dialogs::SelectDialog;
using simulator::CompanyBuilder;

class OrdersTest : public ::testing::Test {
 protected:
  void Open(CompanyBuilder& company) {
    engine_ = company.Build();
    sales_.context().workspace = engine_->workspace();
    purchases_.context().workspace = engine_->workspace();
  }
  void OpenUsual() {
    CompanyBuilder company;
    for (const wchar_t* table : {L"SopData", L"PopData"}) {
      company
          .Record(table, {{L"ORDER_NUMBER", 12},
                          {L"ACCOUNT_REF", L"B"},
                          {L"NAME", L"Bea"},
                          {L"ORDER_DATE", Date{45000}},
                          {L"POSTED_CODE", true}})
          .Record(table, {{L"ORDER_NUMBER", 2}, {L"ACCOUNT_REF", L"A"}, {L"DELETED_FLAG", true}})
          .Record(table, {{L"ORDER_NUMBER", 3}, {L"ACCOUNT_REF", L"C"}});
    }
    Open(company);
  }
  void TearDown() override {
    if (!engine_) return;
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }
  // Answers the next dialog: notes its caption and rows, selects item `position` and confirms.
  void Choose(std::int32_t position) {
    environment_.Answer([=, this](SelectDialog& dialog) {
      listed_ = dialog.caption() + L": " + dialog.list().columns()[0].header;
      for (const dialogs::Row& row : dialog.list().rows()) {
        listed_ += L"|";
        for (const wchar_t c : row.text) {
          if (c != L' ') listed_ += c;
        }
      }
      dialog.list().SelectItem(position);
      dialog.Ok();
    });
  }

  testing::ScriptedEnvironment environment_;
  std::unique_ptr<simulator::Simulator> engine_;
  std::wstring listed_;
  SalesOrders sales_{environment_};
  PurchaseOrders purchases_{environment_};
};

TEST_F(OrdersTest, LooksOrdersUpByNumber) {
  OpenUsual();
  EXPECT_EQ(Trimmed(sales_.GetAccRef(12)), L"B");
  EXPECT_EQ(Trimmed(sales_.GetAccName(12)), L"Bea");
  EXPECT_EQ(sales_.GetAccName(1), L"");
  EXPECT_EQ(Trimmed(purchases_.GetAccRef(3)), L"C");
  EXPECT_EQ(purchases_.GetAccRef(-3), L"");
  EXPECT_EQ(purchases_.GetOrderDate(12).days, 45000);
  EXPECT_EQ(purchases_.GetOrderDate(1).days, 0);
}

TEST_F(OrdersTest, APostedOrderCanBeExcluded) {
  OpenUsual();
  const struct {
    std::int32_t number;
    bool any;
    bool unposted;
  } cases[] = {{12, true, false}, {3, true, true}, {2, true, true}, {1, false, false}};
  for (const auto& c : cases) {
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
  OpenUsual();
  Choose(2);
  EXPECT_EQ(purchases_.List(), 2);
  EXPECT_EQ(listed_, L"Select Purchase Order: P.Order No.|12\tB\tBea|2\tA\t|3\tC\t");
  Choose(1);
  EXPECT_EQ(sales_.List(), 12);
  EXPECT_EQ(listed_, L"Select Sales Order: S.Order No.|12\tB\tBea|2\tA\t|3\tC\t");
  EXPECT_EQ(sales_.List(), 0);  // closed

  Choose(3);
  EXPECT_EQ(purchases_.FastList(), L"12");
  EXPECT_EQ(listed_, L"Select Purchase Order: P.Order No.|3\tC\t|12\tB\tBea");
  Choose(2);
  EXPECT_EQ(sales_.FastList(), L"3");
  EXPECT_EQ(listed_, L"Select Sales Order: S.Order No.|3\tC\t|12\tB\tBea");
  EXPECT_EQ(sales_.FastList(), L"");

  environment_.Answer([](SelectDialog& dialog) {
    dialog.KeyPress(L'1');  // numbers are looked for as text
    dialog.Ok();
  });
  EXPECT_EQ(sales_.FastList(), L"12");
}

TEST_F(OrdersTest, AnEmptyFileHasOneRow) {
  CompanyBuilder company;
  company.Without(L"SopData");
  Open(company);
  Choose(1);
  EXPECT_EQ(purchases_.List(), 0);
  EXPECT_EQ(listed_, L"Select Purchase Order: P.Order No.|0\t\t");
  Choose(1);
  EXPECT_EQ(sales_.List(), 0);  // no file at all
  EXPECT_EQ(sales_.FastList(), L"");
}

}  // namespace
}  // namespace ard::orders
