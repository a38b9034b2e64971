// Products, their transactions and their prices.
#include <gtest/gtest.h>

#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/simulator.h"
#include "simulator/testing/company_builder.h"

namespace ard::simulator {
namespace {

using engine::Match;
using engine::Mode;

constexpr std::int16_t kCustomer = 'S', kList = 'L', kSupplier = 'U';

void Set(auto& object, std::wstring_view field, const Value& value) {
  object.GetFields()->Item(field)->SetValue(value);
}

void AddPrice(CompanyBuilder& company, std::int16_t type, std::wstring_view ref,
              std::wstring_view stock_code, std::int16_t discount_type, double value) {
  company.Record(L"PriceData", {{L"TYPE", type},
                                {L"EXT_REF", ref},
                                {L"STOCK_CODE", stock_code},
                                {L"DISCOUNT_TYPE", discount_type},
                                {L"VALUE", value},
                                {L"STORED_PRICE", value}});
}

class StockTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CompanyBuilder company;
    company.Setup({{L"PRICING_SERVICE", true}}).Customer(L"CASH").Supplier(L"SUP1");
    for (const wchar_t* code : {L"NUT", L"BOLT", L"Rod", L"CAP", L"PIN", L"TIN"}) {
      company.Product(code, {{L"SALES_PRICE", 10.0}, {L"LAST_PURCHASE_PRICE", 5.0}});
    }
    company.Customer(L"ABC", {{L"PRICE_LIST_REF", L"trade"}});
    AddPrice(company, kCustomer, L"ABC", L"NUT", 0, 7.5);
    AddPrice(company, kCustomer, L"TRADE", L"TIN", 0, 1.0);  // an account of the list's name
    AddPrice(company, kSupplier, L"TRADE", L"TIN", 0, 1.0);
    AddPrice(company, kSupplier, L"SUP1", L"NUT", 0, 3.25);
    AddPrice(company, kList, L"TRADE", L"NUT", 0, 1.0);
    AddPrice(company, kList, L"TRADE", L"BOLT", 2, 25.0);
    AddPrice(company, kList, L"TRADE", L"ROD", 3, 0.5);
    AddPrice(company, 'Q', L"TRADE", L"CAP", 4, 50.0);
    AddPrice(company, kList, L"TRADE", L"PIN", 5, 0.25);
    AddPrice(company, kCustomer, L"CASH", L"ROD", 1, 99.0);
    for (const wchar_t* code : {L"BOLT", L"NUT", L"bolt", L"BOLTS"}) {
      const double quantity = 10.0 * ++transactions_;
      company.Record(L"StockTransactionData",
                     {{L"STOCK_CODE", code}, {L"TYPE", 1}, {L"QUANTITY", quantity}});
    }
    engine_ = company.Build();
    workspace_ = engine_->workspace();
  }
  void TearDown() override {
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }

  std::unique_ptr<engine::RecordObject> Product(std::wstring_view stock_code) {
    auto record = workspace_->CreateRecord(L"StockRecord");
    Set(*record, L"STOCK_CODE", stock_code);
    EXPECT_EQ(record->Find(Match::kExact), stock_code != L"NONE");
    return record;
  }

  int transactions_ = 0;
  std::unique_ptr<Simulator> engine_;
  std::shared_ptr<engine::Workspace> workspace_;
};

TEST_F(StockTest, AProductHasItsTransactionsInRecordOrder) {
  const auto list = Product(L"bolt")->Transactions();
  const auto quantity = list->GetFields()->Item(L"QUANTITY");
  EXPECT_EQ(list->Count(), 2);
  EXPECT_EQ(quantity->GetValue(), Value(10.0));
  EXPECT_TRUE(list->MoveNext());
  EXPECT_EQ(quantity->GetValue(), Value(30.0));
  EXPECT_FALSE(list->MoveNext());
  EXPECT_EQ(quantity->GetValue(), Value(0.0));
  list->MoveFirst();
  EXPECT_EQ(quantity->GetValue(), Value(10.0));
  for (const wchar_t* without : {L"CAP", L"NONE"}) {
    EXPECT_EQ(Product(without)->Transactions()->Count(), 0);
  }
  EXPECT_THROW(workspace_->CreateRecord(L"SalesRecord")->Transactions(), Error);
}

TEST_F(StockTest, PricesGoByEntryAndList) {
  const auto pricing = workspace_->CreatePricing();
  const struct {
    std::wstring_view account, product;
    double price;
  } customers[] = {
      {L"ABC", L"NUT", 7.5},      // the customer's own entry, before that of the list
      {L"ABC", L"BOLT", 7.5},     // percent off
      {L"abc  ", L"rod ", 9.5},   // amount off
      {L"ABC", L"CAP", 7.5},      // percent on cost
      {L"ABC", L"PIN", 5.25},     // amount on cost
      {L"ABC", L"TIN", 10.0},     // in no list
      {L"CASH", L"ROD", 10.0},    // no discount
      {L"NOBODY", L"NUT", 10.0},  // unknown customer
  };
  for (const auto& c : customers) {
    EXPECT_EQ(pricing->CustomerUnitPrice(c.account, c.product), c.price) << c.product.data();
  }
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NUT", L"SUP1"), 3.25);
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NUT", L"ABC"), 5.0);
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NUT", L"A REFERENCE TOO LONG"), 5.0);
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NONE", L"SUP1"), 0.0);
}

TEST_F(StockTest, APriceKeyIsTheTypesCharacterTheReferenceAndTheProduct) {
  const auto index = workspace_->CreateIndex(L"PriceIndex");
  ASSERT_TRUE(index->Open(Mode::kRead));
  EXPECT_EQ(index->RecordNumber(), 6) << "by type, then reference, then product";
  for (const auto& [key, record] : {std::pair(L"USUP1    NUT", 4),
                                    {L"LTRADE   ROD", 7},
                                    {L"USUP1    NUT ", 0},
                                    {L"USUP1NUT", 0}}) {
    index->SetKey(key);
    ASSERT_EQ(index->Find(Match::kExact), record != 0) << key;
    if (record != 0) {
      EXPECT_EQ(index->RecordNumber(), record);
    }
  }
}

}  // namespace
}  // namespace ard::simulator
