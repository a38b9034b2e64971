// Products, their transactions and their prices.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/company.h"
#include "simulator/safe_file.h"
#include "simulator/simulator.h"
#include "simulator/testing/company_builder.h"
#include "testing/recording_workspace.h"

namespace ard::simulator {
namespace {

namespace fs = std::filesystem;
using engine::Match;
using engine::Mode;

constexpr std::int16_t kCustomer = 'S', kList = 'L', kSupplier = 'U';

std::wstring Text(auto& object, std::wstring_view field) {
  return std::wstring(Trimmed(object.GetFields()->Item(field)->GetValue().ToText()));
}
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
  auto record = Product(L"bolt");
  const auto list = record->Transactions();
  const auto quantity = list->GetFields()->Item(L"QUANTITY");
  EXPECT_EQ(list->Count(), 2);
  EXPECT_EQ(quantity->GetValue(), Value(10.0));
  EXPECT_TRUE(list->MoveNext());
  EXPECT_EQ(quantity->GetValue(), Value(30.0));
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(list->MoveNext());
    EXPECT_EQ(quantity->GetValue(), Value(0.0));
  }
  list->MoveFirst();
  EXPECT_EQ(quantity->GetValue(), Value(10.0));

  for (const wchar_t* without : {L"CAP", L"NONE"}) {
    const auto none = Product(without)->Transactions();
    EXPECT_EQ(none->Count(), 0);
    EXPECT_FALSE(none->MoveNext());
    EXPECT_EQ(Text(*none, L"QUANTITY"), L"0");
  }
  EXPECT_THROW(workspace_->CreateRecord(L"SalesRecord")->Transactions(), Error);
  engine_->company().Set(L"StockTransactionData", nullptr);
  EXPECT_EQ(record->Transactions()->Count(), 0);
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
      {L"CASH", L"BOLT", 10.0},   // without a list
      {L"NOBODY", L"NUT", 10.0},  // unknown customer
      {L"ABC", L"NONE", 0.0},
  };
  for (const auto& c : customers) {
    EXPECT_EQ(pricing->CustomerUnitPrice(c.account, c.product), c.price) << c.product.data();
  }
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NUT", L"SUP1"), 3.25);
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NUT", L"ABC"), 5.0);
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NUT", L"A REFERENCE TOO LONG"), 5.0);
  EXPECT_EQ(pricing->SupplierUnitPrice(L"NONE", L"SUP1"), 0.0);
}

TEST_F(StockTest, AnEngineWithoutPricingServiceSaysSo) {
  const auto company = CompanyBuilder().Build();
  for (const bool has_setup : {true, false}) {
    if (!has_setup) company->company().Set(L"SetupData", nullptr);
    EXPECT_THROW(company->workspace()->CreatePricing(), Error);
    EXPECT_EQ(company->LastError()->Number(), kErrorUnknownName);
  }
}

TEST_F(StockTest, APriceKeyIsTheTypesCharacterTheReferenceAndTheProduct) {
  const auto index = workspace_->CreateIndex(L"PriceIndex");
  ASSERT_TRUE(index->Open(Mode::kRead));
  EXPECT_EQ(index->RecordNumber(), 6) << "by type, then reference, then product";
  const struct {
    std::wstring key;
    std::int32_t record;  // 0 when nothing is found
  } cases[] = {
      {L"USUP1    NUT", 4},         {L"USUP1    NUT" + std::wstring(27, L' '), 4},
      {L"USUP1    NUT ", 0},        {L"USUP1NUT", 0},
      {L"SSUP1    NUT", 0},         {L"LTRADE   ROD", 7},
      {L"USUP1 IS TOO LONGNUT", 0},
  };
  for (const auto& c : cases) {
    index->SetKey(c.key);
    ASSERT_EQ(index->Find(Match::kExact), c.record != 0) << ToUtf8(c.key);
    if (c.record != 0) {
      EXPECT_EQ(index->RecordNumber(), c.record);
    }
  }
  const auto record = workspace_->CreateRecord(L"PriceRecord");
  Set(*record, L"TYPE", kSupplier);
  Set(*record, L"EXT_REF", L"SUP1");
  Set(*record, L"STOCK_CODE", L"NUT");
  EXPECT_TRUE(record->Find(Match::kExact));
  Set(*record, L"EXT_REF", L"SUP1 IS TOO LONG");
  EXPECT_FALSE(record->Find(Match::kExact));
}

TEST(StockFileTest, ANewProductIsThereWhenTheFolderIsOpenedAgain) {
  std::string name = (fs::temp_directory_path() / "ard_simulator_XXXXXX").string();
  const fs::path folder = mkdtemp(name.data());
  std::ofstream(folder / "StockData.table")
      << "# Few columns do.\nSTOCK_CODE:text(30)\tLAST_SALE_DATE:date\tSTOCK_TAKE_DATE:date\t"
         "QTY_IN_STOCK:double\tEXTRA_TEXT:text(60)\nBOLT\t2026-11-20\t\t5\t\n";
  {
    const auto engine = Simulator::Open(folder);
    const auto record = engine->workspace()->CreateRecord(L"StockRecord");
    record->AddNew();
    Set(*record, L"STOCK_CODE", L"NUT \"M8\"");
    Set(*record, L"LAST_SALE_DATE", 1);
    Set(*record, L"STOCK_TAKE_DATE", Null{});
    Set(*record, L"QTY_IN_STOCK", 10.3);
    record->SetExtraText(L"extra");
    EXPECT_TRUE(record->Update());
    record->MoveFirst();
    record->Edit();
    Set(*record, L"LAST_SALE_DATE", Null{});
    EXPECT_TRUE(record->Update());
  }
  const auto record = Simulator::Open(folder)->workspace()->CreateRecord(L"StockRecord");
  EXPECT_TRUE(record->GetFields()->Item(L"LAST_SALE_DATE")->GetValue().is_null());
  Set(*record, L"STOCK_CODE", L"NUT \"M8\"");
  ASSERT_TRUE(record->Find(Match::kExact));
  EXPECT_EQ(Text(*record, L"LAST_SALE_DATE"), L"1899-12-31");
  EXPECT_EQ(record->GetFields()->Item(L"LAST_SALE_DATE")->Type(), 9);
  EXPECT_EQ(Text(*record, L"QTY_IN_STOCK"), L"10.3");
  EXPECT_EQ(Text(*record, L"EXTRA_TEXT"), L"extra");
  EXPECT_NE(ReadFile(folder / "StockData.table").find("# Few columns do.\n"), std::string::npos);
  fs::remove_all(folder);
}

TEST_F(StockTest, ARecordedWorkspaceCanBeAskedTheSameAgain) {
  testing::Recording recording;
  const auto recorded = testing::Recorded(workspace_, recording);
  auto before = engine_->operations();
  {
    const auto index = recorded->CreateIndex(L"StockIndex");
    index->Open(Mode::kQuery);
    index->SetKey(L"BOLT");
    EXPECT_TRUE(index->Find(Match::kExact));
    const auto record = recorded->CreateRecord(L"StockRecord");
    record->Edit();
    Set(*record, L"QTY_ALLOCATED", 10);
    record->GetFields()->Item(1)->Name();
    EXPECT_EQ(recording.operations.back(), L"StockRecord.Fields(1).Name");
    EXPECT_TRUE(record->Update());
    record->Transactions()->MoveNext();
    EXPECT_THROW(recorded->CreateRecord(L"NONE"), Error);
    EXPECT_EQ(recorded->CreatePricing()->CustomerUnitPrice(L"CASH", L"ROD"), 10.0);
  }
  const auto asked = engine_->operations() - before;
  EXPECT_EQ(asked, static_cast<std::int64_t>(recording.operations.size()));
  EXPECT_EQ(recording.operations.back(), L"Pricing.CustomerUnitPrice(\"CASH\", \"ROD\")");

  before = engine_->operations();
  recording.Replay(*workspace_);
  EXPECT_EQ(engine_->operations() - before, asked);
  EXPECT_EQ(engine_->counters().living_objects, 0);
}

}  // namespace
}  // namespace ard::simulator
