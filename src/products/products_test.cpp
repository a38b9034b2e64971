#include "products/products.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "simulator/testing/company_builder.h"
#include "testing/recording_workspace.h"
#include "testing/scripted_environment.h"

namespace ard::products {
namespace {

using simulator::CompanyBuilder;
using simulator::FieldValues;
using simulator::Simulator;

class ProductsTest : public ::testing::Test {
 protected:
  void Open(CompanyBuilder& builder) {
    engine_ = builder.Build();
    products_.context().workspace = engine_->workspace();
    products_.context().app_name = L"Manufacturing";
  }
  void TearDown() override {
    if (!engine_) return;
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
    EXPECT_TRUE(environment_.messages().empty());
  }

  // The fields of a stock record, by the engine itself; "?" when there is no such product.
  std::wstring Stored(std::wstring_view code, std::wstring_view field) {
    const auto record = engine_->workspace()->CreateRecord(L"StockRecord");
    const auto fields = record->GetFields();
    fields->Item(L"STOCK_CODE")->SetValue(code);
    if (!record->Find(engine::Match::kExact)) return L"?";
    const Value value = fields->Item(field)->GetValue();
    return value.is_null() ? L"Null" : value.ToText();
  }

  testing::ScriptedEnvironment environment_;
  std::unique_ptr<Simulator> engine_;
  Products products_{environment_};
};

// ---- Queries ----

TEST_F(ProductsTest, AnswersFromTheStockRecordOrNeutrally) {
  CompanyBuilder builder;
  builder.Product(L"BOLT", {{L"DESCRIPTION", L"  Bolt  "},
                            {L"DEPT_NUMBER", std::int16_t{3}},
                            {L"STOCK_CAT", std::int16_t{7}},
                            {L"LOCATION", L" A1 "},
                            {L"PURCHASE_REF", L" SUP "},
                            {L"SUPPLIER_PART_NUMBER", L" P9 "},
                            {L"UNIT_OF_SALE", L" Each "},
                            {L"QTY_IN_STOCK", 5.0},
                            {L"QTY_ALLOCATED", 7.0},
                            {L"QTY_ON_ORDER", 2.5},
                            {L"QTY_REORDER_LEVEL", 4.0},
                            {L"QTY_REORDER", 20.0},
                            {L"SALES_PRICE", 1.25},
                            {L"LAST_PURCHASE_DATE", Date{45000}},
                            {L"IGNORE_STK_LVL_FLAG", true}});
  builder.Product(L"PLAIN");
  Open(builder);
  const Products& p = products_;
  EXPECT_EQ(p.GetDesc(L"BOLT"), L"Bolt");
  EXPECT_EQ(p.GetDept(L"BOLT"), 3);
  EXPECT_EQ(p.GetCategory(L"BOLT"), 7);
  // As stored: neither trimmed nor padded by the library.
  EXPECT_EQ(Trimmed(p.GetBinLocation(L"BOLT")), L"A1");
  EXPECT_EQ(p.GetBinLocation(L"BOLT").front(), L' ');
  EXPECT_EQ(p.GetSupplier(L"BOLT").substr(0, 5), L" SUP ");
  EXPECT_EQ(p.GetSupplierPart(L"BOLT").substr(0, 4), L" P9 ");
  EXPECT_EQ(p.GetUnitSale(L"BOLT").substr(0, 6), L" Each ");
  EXPECT_EQ(p.GetInStock(L"BOLT"), 5);
  EXPECT_EQ(p.GetReOrderLevel(L"BOLT"), 4);
  EXPECT_EQ(p.GetReOrderQty(L"BOLT"), 20);
  EXPECT_EQ(p.GetLastPurDate(L"BOLT").days, 45000);
  EXPECT_TRUE(p.IgnoreStock(L"BOLT"));
  EXPECT_EQ(p.GetFreeStock(L"BOLT"), -2);
  EXPECT_EQ(p.GetSellPrice(L"BOLT"), 1.25);
  EXPECT_TRUE(p.IsValid(L"BOLT"));
  EXPECT_TRUE(p.IsMemberOfCategory(L"BOLT", 7));
  EXPECT_FALSE(p.IsMemberOfCategory(L"BOLT", 0));
  EXPECT_TRUE(p.IsMemberOfCategory(L"PLAIN", 0));
  EXPECT_EQ(p.GetLastPurDate(L"PLAIN").days, 0);  // the blank date is Null

  for (const wchar_t* unknown : {L"", L"BOL", L" BOLT"}) {
    EXPECT_EQ(p.GetDesc(unknown), L"") << unknown;
    EXPECT_EQ(p.GetDept(unknown), 0);
    EXPECT_EQ(p.GetInStock(unknown), 0);
    EXPECT_EQ(p.GetFreeStock(unknown), 0);
    EXPECT_EQ(p.GetLastPurDate(unknown).days, 0);
    EXPECT_FALSE(p.IgnoreStock(unknown));
    EXPECT_FALSE(p.IsValid(unknown));
    EXPECT_FALSE(p.IsMemberOfCategory(unknown, 0));
  }
}

TEST_F(ProductsTest, OutputsAreAssignedOnlyWhenTheRecordWasRead) {
  CompanyBuilder builder;
  builder.Product(L"BOLT", {{L"QTY_ALLOCATED", 7.0},
                            {L"QTY_ON_ORDER", 2.5},
                            {L"QTY_REORDER_LEVEL", 4.0},
                            {L"QTY_REORDER", 20.0},
                            {L"PURCHASE_REF", L"SUP"}});
  Open(builder);
  double allocated = 1, on_order = 2, reorder = 3;
  std::wstring supplier = L"mine";
  products_.GetAllocOnOrder(L"NUT", allocated, on_order);
  products_.GetSupplierOnOrder(L"NUT", supplier, on_order, reorder);
  EXPECT_EQ(std::tuple(allocated, on_order, reorder, supplier), std::tuple(1, 2, 3, L"mine"));
  products_.GetAllocOnOrder(L"BOLT", allocated, on_order);
  EXPECT_EQ(std::tuple(allocated, on_order), std::tuple(7, 2.5));
  on_order = 0;
  products_.GetSupplierOnOrder(L"BOLT", supplier, on_order, reorder);
  EXPECT_EQ(std::tuple(Trimmed(supplier), on_order, reorder), std::tuple(L"SUP", 2.5, 20));
}

TEST_F(ProductsTest, FreeStockIsExactAndIsValidReadsNoRecord) {
  CompanyBuilder builder;
  builder.Product(L"A", {{L"QTY_IN_STOCK", 10.3}, {L"QTY_ALLOCATED", 10.1}})
      .Product(L"B", {{L"QTY_IN_STOCK", 0.3}, {L"QTY_ALLOCATED", 0.1}});
  Open(builder);
  EXPECT_EQ(products_.GetFreeStock(L"A"), 0.2);
  EXPECT_EQ(products_.GetFreeStock(L"B"), 0.2);
  const std::int64_t read = engine_->records_read();
  EXPECT_TRUE(products_.IsValid(L"A"));
  EXPECT_EQ(engine_->records_read(), read);
}

// ---- Prices ----

constexpr std::int16_t kOneCustomer = 83;
constexpr std::int16_t kPriceList = 76;
constexpr std::int16_t kSupplierPrice = 85;

CompanyBuilder& AddPrice(CompanyBuilder& builder, std::int16_t type, std::wstring_view ref,
                         std::int16_t discount_type, double value,
                         std::wstring_view code = L"BOLT") {
  return builder.Record(L"PriceData", {{L"TYPE", type},
                                       {L"EXT_REF", ref},
                                       {L"STOCK_CODE", code},
                                       {L"DISCOUNT_TYPE", discount_type},
                                       {L"VALUE", value}});
}

CompanyBuilder& AddBolt(CompanyBuilder& builder) {
  return builder.Product(L"BOLT", {{L"SALES_PRICE", 50.0}, {L"LAST_PURCHASE_PRICE", 20.0}});
}

TEST_F(ProductsTest, AnEntryWorksOnThePricesByItsType) {
  const struct {
    std::int16_t type;
    double value;
    double price;
  } cases[] = {{0, 12, 12}, {1, 10, 50}, {2, 10, 45}, {3, 10, 40},
               {4, 10, 22}, {5, 10, 30}, {6, 10, 0},  {-1, 10, 0}};
  for (const auto& c : cases) {
    CompanyBuilder builder;
    AddPrice(AddBolt(builder), kOneCustomer, L"ABC", c.type, c.value);
    Open(builder);
    EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), c.price) << c.type;
  }
}

TEST_F(ProductsTest, TheFirstEntryInRecordOrderThatAppliesGivesThePrice) {
  CompanyBuilder builder;
  AddBolt(builder).Customer(L"ABC", {{L"PRICE_LIST_REF", L"TRADE"}}).Customer(L"OTHER");
  AddPrice(builder, kOneCustomer, L"ABC", 0, 1, L"NUT");  // another product
  AddPrice(builder, kPriceList, L"PUBLIC", 0, 2);         // nobody's list
  AddPrice(builder, kOneCustomer, L"XYZ", 0, 3);          // somebody unknown to the ledger
  AddPrice(builder, kPriceList, L"TRADE", 0, 4);
  AddPrice(builder, kOneCustomer, L"ABC", 0, 5);  // too late
  AddPrice(builder, kOneCustomer, L"ABC", 5, 6, L"UNKNOWN");
  AddPrice(builder, kOneCustomer, L"ABC", 1, 7, L"LOST");
  Open(builder);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 4);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"XYZ"), 3);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"OTHER"), 50);
  EXPECT_EQ(products_.GetSpecialPrice(L"UNKNOWN", L"ABC"), 6);  // by its value alone
  EXPECT_EQ(products_.GetSpecialPrice(L"LOST", L"ABC"), 0);
  EXPECT_EQ(products_.GetSpecialPrice(L"NOWHERE", L"ABC"), 0);
}

TEST_F(ProductsTest, AverageCostIsOverWhatIsLeftOfTheReceipts) {
  CompanyBuilder builder;
  const auto transaction = [&](std::wstring_view code, std::int16_t type, double quantity,
                               double used, double cost) {
    builder.Record(L"StockTransactionData", {{L"STOCK_CODE", code},
                                             {L"TYPE", type},
                                             {L"QUANTITY", quantity},
                                             {L"QTY_USED", used},
                                             {L"COST_PRICE", cost}});
  };
  builder.Product(L"MIXED", {{L"LAST_PURCHASE_PRICE", 9.0}})
      .Product(L"USED", {{L"LAST_PURCHASE_PRICE", 9.0}})
      .Product(L"RETURNED", {{L"LAST_PURCHASE_PRICE", 9.0}})
      .Product(L"NONE", {{L"LAST_PURCHASE_PRICE", 9.0}});
  transaction(L"MIXED", 1, 15, 5, 2);
  transaction(L"MIXED", 2, 1000, 0, 50);  // no receipt
  transaction(L"MIXED", 5, 30, 0, 3);
  transaction(L"MIXED", 7, 8, 8, 70);
  transaction(L"USED", 1, 10, 10, 2);
  transaction(L"USED", 3, 5, 5, 2);
  for (const double quantity : {0.1, 0.2, -0.3}) transaction(L"RETURNED", 1, quantity, 0, 2);
  Open(builder);
  EXPECT_EQ(products_.GetCostPrice(L"MIXED", true), 2.75);
  EXPECT_EQ(products_.GetCostPrice(L"MIXED", false), 9);
  EXPECT_EQ(products_.GetCostPrice(L"USED", true), 9);
  EXPECT_EQ(products_.GetCostPrice(L"RETURNED", true), 9);
  EXPECT_EQ(products_.GetCostPrice(L"NONE", true), 9);
  EXPECT_EQ(products_.GetCostPrice(L"UNKNOWN", true), 0);

  auto record = engine_->workspace()->CreateRecord(L"StockRecord");
  record->GetFields()->Item(L"STOCK_CODE")->SetValue(L"MIXED");
  ASSERT_TRUE(record->Find(engine::Match::kExact));
  EXPECT_EQ(products_.GetAveragePrice(std::move(record)), 2.75);
  EXPECT_EQ(products_.GetAveragePrice(nullptr), 0);
}

TEST_F(ProductsTest, SupplierPricesAreStoredOnesOrTheCostInTheSuppliersCurrency) {
  CompanyBuilder builder;
  AddBolt(builder)
      .Product(L"WORTHLESS")
      .Supplier(L"EURO", {{L"CURRENCY", std::int16_t{1}}})
      .Supplier(L"NOWHERE", {{L"CURRENCY", std::int16_t{5}}})
      .Record(L"CurrencyData", {{L"EXCHANGE_RATE", 1.0}})
      .Record(L"CurrencyData", {{L"EXCHANGE_RATE", 1.5}});
  for (const wchar_t* ref : {L"EURO", L"EIGHTCHA"}) {
    builder.Record(L"PriceData", {{L"TYPE", kSupplierPrice},
                                  {L"EXT_REF", ref},
                                  {L"STOCK_CODE", L"NUT"},
                                  {L"STORED_PRICE", 3.5}});
  }
  Open(builder);
  EXPECT_EQ(products_.GetSupplierPrice(L"NUT", L"EURO"), 3.5);  // not converted
  EXPECT_EQ(products_.GetSupplierPrice(L"NUT", L"EIGHTCHA"), 3.5);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"EURO"), 30);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"NOWHERE"), 20);  // no such currency
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"UNKNOWN"), 20);
  EXPECT_EQ(products_.GetSupplierPrice(L"WORTHLESS", L"EURO"), 0);
}

TEST_F(ProductsTest, TheEnginesPricingServiceHasTheLastWord) {
  CompanyBuilder builder;
  AddBolt(builder).Customer(L"ABC", {{L"PRICE_LIST_REF", L"TRADE"}}).Supplier(L"SUP");
  AddPrice(builder, kPriceList, L"TRADE", 0, 4);  // first in record order
  AddPrice(builder, kOneCustomer, L"ABC", 0, 5);  // but the service asks for the customer's own
  builder.Record(L"PriceData", {{L"TYPE", kSupplierPrice},
                                {L"EXT_REF", L"SUP"},
                                {L"STOCK_CODE", L"BOLT"},
                                {L"STORED_PRICE", 3.5}});
  builder.Setup({{L"PRICING_SERVICE", true}});
  Open(builder);
  testing::Recording recording;
  products_.context().workspace = testing::Recorded(engine_->workspace(), recording);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 5);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"SUP"), 3.5);
  EXPECT_EQ(recording.operations.size(), 4u);  // nothing else is asked
}

// ---- Creation ----

TEST_F(ProductsTest, NewProductsGetTheCompanysDefaults) {
  CompanyBuilder builder;
  builder.Setup({{L"STOCK_CATEGORY", std::int16_t{4}},
                 {L"STOCK_DEPARTMENT", std::int16_t{2}},
                 {L"STOCK_TAXCODE", std::int16_t{1}},
                 {L"STOCK_NOMINAL", L"4000"},
                 {L"STOCK_UNITS", L"Each"}});
  Open(builder);
  environment_.AnswerInput(L"  Asked  ");
  EXPECT_EQ(products_.CreateNewProduct(L" NEW1 ", L"  Given "), L"Given");
  EXPECT_TRUE(environment_.questions().empty());
  EXPECT_EQ(products_.CreateNewProduct(L" NEW2 ", L"   "), L"Asked");
  environment_.AnswerInput(L"");
  EXPECT_EQ(products_.CreateNewProduct(L"NEW3"), L"");
  EXPECT_EQ(environment_.questions(),
            (std::vector<std::wstring>{L"Manufacturing: Enter a description for item NEW2.",
                                       L"Manufacturing: Enter a description for item NEW3."}));
  EXPECT_TRUE(products_.SaveNewProduct(L" NEW4 "));

  const struct {
    const wchar_t* code;
    const wchar_t* description;
    const wchar_t* category;
    const wchar_t* department;
    const wchar_t* tax;
    const wchar_t* nominal;
    const wchar_t* unit;
  } cases[] = {{L"NEW1", L"Given", L"4", L"2", L"1", L"4000", L"Each"},
               {L"NEW2", L"Asked", L"4", L"2", L"1", L"4000", L"Each"},
               {L"NEW3", L"", L"4", L"2", L"1", L"4000", L"Each"},
               {L"NEW4", L"", L"0", L"0", L"0", L"", L""}};
  for (const auto& c : cases) {
    EXPECT_EQ(Trimmed(Stored(c.code, L"DESCRIPTION")), c.description) << c.code;
    EXPECT_EQ(Stored(c.code, L"STOCK_CAT"), c.category);
    EXPECT_EQ(Stored(c.code, L"DEPT_NUMBER"), c.department);
    EXPECT_EQ(Stored(c.code, L"TAX_CODE"), c.tax);
    EXPECT_EQ(Trimmed(Stored(c.code, L"NOMINAL_CODE")), c.nominal);
    EXPECT_EQ(Trimmed(Stored(c.code, L"UNIT_OF_SALE")), c.unit);
    // A date is given the number 1.
    EXPECT_EQ(Stored(c.code, L"LAST_SALE_DATE"), L"1899-12-31");
  }
}

TEST_F(ProductsTest, NewRecordsAreFilledByTypeAndTold) {
  CompanyBuilder builder;
  Open(builder);
  testing::Recording recording;
  std::string trace;
  environment_.trace().Attach([&](std::string_view line) { trace.append(line).append("\n"); });
  products_.context().workspace = testing::Recorded(engine_->workspace(), recording);
  EXPECT_TRUE(products_.SaveNewProduct(L"NEW"));
  const auto asked = [&](std::wstring_view what) {
    return std::count(recording.operations.begin(), recording.operations.end(), what);
  };
  EXPECT_EQ(asked(L"StockRecord.ExtraText = \"\""), 1);
  EXPECT_EQ(asked(L"StockRecord.Update"), 1);
  EXPECT_EQ(asked(L"Workspace.Version"), 1);
  // A field of a type without a blank value is left alone.
  for (const std::wstring& operation : recording.operations) {
    EXPECT_EQ(operation.find(L"False"), std::wstring::npos) << operation;
  }
  EXPECT_NE(trace.find("PostSave"), std::string::npos) << trace;
}

// What a copy clears, in its order.
std::vector<std::wstring> ExpectedResets() {
  std::vector<std::wstring> fields = {L"ASSEMBLY_LEVEL=0",
                                      L"LINK_LEVEL=0",
                                      L"STOCK_TAKE_DATE=Null",
                                      L"QTY_IN_STOCK=0",
                                      L"QTY_ALLOCATED=0",
                                      L"QTY_IN_STOCK=0",
                                      L"QTY_LAST_ORDER=0",
                                      L"QTY_LAST_STOCK_TAKE=0",
                                      L"QTY_ON_ORDER=0",
                                      L"LAST_SALE_DATE=Null",
                                      L"LAST_PURCHASE_DATE=Null",
                                      L"LAST_PURCHASE_PRICE=0",
                                      L"NO_OF_TRAN=0",
                                      L"FIRST_TRAN=0",
                                      L"LAST_TRAN=0"};
  for (const wchar_t* family : {L"QTY_SOLD", L"SALES", L"PRIOR_YR_COST", L"PRIOR_YR_QTY_SOLD",
                                L"PRIOR_YR_SALES", L"COST", L"BUDGET_QTY_SOLD", L"BUDGET_SALES"}) {
    // The months come in the order of their texts.
    for (const wchar_t* month : {L"BF", L"FUTURE", L"MTH1", L"MTH10", L"MTH11", L"MTH12", L"MTH2",
                                 L"MTH3", L"MTH4", L"MTH5", L"MTH6", L"MTH7", L"MTH8", L"MTH9"}) {
      fields.push_back(std::wstring(family) + L"_" + month + L"=0");
    }
  }
  return fields;
}

TEST_F(ProductsTest, ACopyIsWrittenInOrderAndCarriesEverythingElseOver) {
  CompanyBuilder builder;
  builder.Product(L"OLD", {{L"DESCRIPTION", L"Old one"},
                           {L"SALES_PRICE", 12.5},
                           {L"LAST_PURCHASE_PRICE", 8.0},
                           {L"QTY_IN_STOCK", 5.0},
                           {L"QTY_REORDER", 7.0},
                           {L"LAST_SALE_DATE", Date{45000}},
                           {L"WEB_PUBLISH", true},
                           {L"QTY_SOLD_MTH12", 3.0},
                           {L"BUDGET_SALES_BF", 99.0}});
  Open(builder);
  testing::Recording recording;
  products_.context().workspace = testing::Recorded(engine_->workspace(), recording);

  EXPECT_FALSE(products_.CopyProduct(L"NONE", L"NEW", L"New"));
  for (const std::wstring& operation : recording.operations) {
    EXPECT_EQ(operation.find(L"AddNew"), std::wstring::npos);
  }
  recording.operations.clear();
  EXPECT_TRUE(products_.CopyProduct(L"OLD", L" NEW ", L" New one "));

  // The writes by name, from the one of the new code on.
  std::vector<std::wstring> writes;
  bool copying = false;
  for (const std::wstring& operation : recording.operations) {
    const std::size_t value = operation.find(L"\").Value = ");
    if (operation == L"StockRecord.AddNew") copying = true;
    if (!copying || value == std::wstring::npos) continue;
    const std::size_t name = operation.find(L'"') + 1;
    writes.push_back(operation.substr(name, value - name) + L"=" + operation.substr(value + 11));
  }
  std::vector<std::wstring> expected = {L"STOCK_CODE=\"NEW\"", L"DESCRIPTION=\"New one\""};
  for (std::wstring& reset : ExpectedResets()) expected.push_back(std::move(reset));
  EXPECT_EQ(writes, expected);
  EXPECT_EQ(recording.operations.back(), L"StockRecord.Update");

  const struct {
    const wchar_t* field;
    const wchar_t* value;
  } kept[] = {{L"SALES_PRICE", L"12.5"}, {L"QTY_REORDER", L"7"},
              {L"WEB_PUBLISH", L"True"}, {L"LAST_PURCHASE_PRICE", L"0"},
              {L"QTY_IN_STOCK", L"0"},   {L"LAST_SALE_DATE", L"Null"},
              {L"QTY_SOLD_MTH12", L"0"}, {L"BUDGET_SALES_BF", L"0"}};
  for (const auto& c : kept) EXPECT_EQ(Stored(L"NEW", c.field), c.value) << c.field;
  EXPECT_EQ(Stored(L"OLD", L"QTY_IN_STOCK"), L"5");
}

// The text of the record in the table's file; "" when there is none.
std::string RecordLine(const std::filesystem::path& table, const std::string& code) {
  std::ifstream file(table);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(code + "\t")) return line;
  }
  return "";
}

TEST_F(ProductsTest, ACrashAnywhereLeavesTheWholeCopyOrNone) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / ("copy" + std::to_string(getpid()));
  fs::create_directory(folder);
  const fs::path table = folder / "StockData.table";
  int left_out = 0;
  for (std::int64_t n = 1;; ++n) {
    std::ofstream(table) << "STOCK_CODE:text(8)\tDESCRIPTION:text(20)\tSALES_PRICE:double\t"
                            "QTY_IN_STOCK:double\tLAST_SALE_DATE:date\n"
                            "OLD\tOld one\t12.5\t7\t2026-01-02\n";
    const pid_t host = fork();
    if (host == 0) {
      const auto engine = Simulator::Open(folder);
      products_.context().workspace = engine->workspace();
      engine->faults().CrashAt(n);
      _exit(products_.CopyProduct(L"OLD", L"NEW", L"New one") ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    const auto engine = Simulator::Open(folder);  // throws when the table is no table
    const std::string copy = RecordLine(table, "NEW");
    EXPECT_EQ(RecordLine(table, "OLD"), "OLD\tOld one\t12.5\t7\t2026-01-02");
    EXPECT_TRUE(copy.empty() || copy == "NEW\tNew one\t12.5\t0\t") << n << ": " << copy;
    left_out += copy.empty() ? 1 : 0;
    if (status == 0) {
      EXPECT_FALSE(copy.empty());
      break;
    }
  }
  EXPECT_GT(left_out, 100);
  fs::remove_all(folder);
}

TEST_F(ProductsTest, AllocationNeedsFreeStock) {
  CompanyBuilder builder;
  builder.Product(L"TEN", {{L"QTY_IN_STOCK", 10.0}, {L"QTY_ALLOCATED", 7.0}})
      .Product(L"FREE", {{L"IGNORE_STK_LVL_FLAG", true}, {L"QTY_ALLOCATED", 1.0}})
      .Product(L"TENTHS", {{L"QTY_IN_STOCK", 10.3}, {L"QTY_ALLOCATED", 10.1}});
  Open(builder);
  const struct {
    const wchar_t* code;
    double quantity;
    bool made;
    const wchar_t* allocated;
  } cases[] = {{L"TEN", 3.5, false, L"7"},     {L"TEN", 3, true, L"10"},
               {L"TEN", 0.5, false, L"10"},    {L"TEN", -4, true, L"6"},
               {L"FREE", 50, true, L"1"},      {L"NONE", 1, false, L"?"},
               {L"TENTHS", 0.2, true, L"10.3"}};
  for (const auto& c : cases) {
    EXPECT_EQ(products_.UpdateAllocQty(c.code, c.quantity), c.made) << c.code << c.quantity;
    EXPECT_EQ(Stored(c.code, L"QTY_ALLOCATED"), c.allocated) << c.code << c.quantity;
  }
}

TEST_F(ProductsTest, WithoutAnEngineNothingIsAskedOrClaimed) {
  environment_.AnswerInput(L"Asked");
  EXPECT_EQ(products_.CreateNewProduct(L"NEW", L"Given"), L"");
  EXPECT_FALSE(products_.SaveNewProduct(L"NEW"));
  EXPECT_FALSE(products_.CopyProduct(L"OLD", L"NEW", L""));
  EXPECT_FALSE(products_.UpdateAllocQty(L"OLD", -1));
  EXPECT_EQ(products_.GetSpecialPrice(L"OLD", L"ABC"), 0);
  EXPECT_EQ(products_.GetSupplierPrice(L"OLD", L"ABC"), 0);
  EXPECT_FALSE(products_.IsValid(L"OLD"));
  EXPECT_TRUE(environment_.questions().empty());
}

}  // namespace
}  // namespace ard::products
