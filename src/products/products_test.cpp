#include "products/products.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "simulator/safe_file.h"
#include "tests/core/company_test.h"
#include "tests/core/recording_workspace.h"
#include "tests/core/temporary_folder.h"

namespace ard::products {
namespace {

using simulator::CompanyBuilder;
using simulator::Simulator;
using testing::Texts;

class ProductsTest : public testing::CompanyTest {
 protected:
  void Open(CompanyBuilder& company) { CompanyTest::Open(company, products_); }
  void TearDown() override {
    CompanyTest::TearDown();
    EXPECT_EQ(environment_.TakeMessages(), Texts{});
  }

  // The stock record, by the engine itself; null when there is no such product.
  std::unique_ptr<engine::RecordObject> Find(std::wstring_view code) {
    auto record = engine_->workspace()->CreateRecord(L"StockRecord");
    record->GetFields()->Item(L"STOCK_CODE")->SetValue(code);
    return record->Find(engine::Match::kExact) ? std::move(record) : nullptr;
  }
  // Its fields, trimmed and joined; "?" when there is no such product.
  std::wstring Stored(std::wstring_view code, const std::vector<const wchar_t*>& fields) {
    const auto record = Find(code);
    if (!record) return L"?";
    std::wstring stored;
    for (const wchar_t* field : fields) {
      const Value value = record->GetFields()->Item(field)->GetValue();
      if (!stored.empty()) stored += L"|";
      stored += value.is_null() ? L"Null" : Trimmed(value.ToText());
    }
    return stored;
  }

  Products products_{environment_};
};

// ---- Queries ----

TEST_F(ProductsTest, AnswersFromTheStockRecordOrNeutrally) {
  CompanyBuilder builder;
  builder.Product(L"BOLT", L"DESCRIPTION=  Bolt  |STOCK_CAT=7|LOCATION= A1 ")
      .Product(L"PLAIN")
      .Product(L"A", L"QTY_IN_STOCK=10.3|QTY_ALLOCATED=10.1")
      .Product(L"B", L"QTY_IN_STOCK=0.3|QTY_ALLOCATED=0.1");
  Open(builder);
  const Products& p = products_;
  EXPECT_EQ(p.GetDesc(L"BOLT"), L"Bolt");
  EXPECT_TRUE(p.GetBinLocation(L"BOLT").starts_with(L" A1 ")) << "as stored";
  for (const auto& [code, category, is_member] :
       {std::tuple(L"BOLT", 7, true), {L"BOLT", 0, false}, {L"PLAIN", 0, true}, {L"?", 0, false}}) {
    EXPECT_EQ(p.IsMemberOfCategory(code, static_cast<std::int16_t>(category)), is_member);
    EXPECT_EQ(p.IsValid(code), code != std::wstring_view(L"?"));
  }
  EXPECT_FALSE(p.IsValid(L"BOL"));
  EXPECT_EQ(p.GetLastPurDate(L"PLAIN").days, 0);  // the blank date is Null
  for (const wchar_t* code : {L"A", L"B"}) EXPECT_EQ(p.GetFreeStock(code), 0.2);
  double allocated = 1, on_order = 2, reorder = 3;
  std::wstring supplier = L"mine";
  p.GetAllocOnOrder(L"?", allocated, on_order);
  p.GetSupplierOnOrder(L"?", supplier, on_order, reorder);
  EXPECT_EQ(std::tuple(allocated, on_order, reorder, supplier), std::tuple(1, 2, 3, L"mine"));
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
  return builder.Product(L"BOLT", L"SALES_PRICE=50|LAST_PURCHASE_PRICE=20");
}

TEST_F(ProductsTest, AnEntryWorksOnThePricesByItsType) {
  for (const auto& [type, price] :
       {std::pair(0, 10), {1, 50}, {2, 45}, {3, 40}, {4, 22}, {5, 30}, {6, 0}, {-1, 0}}) {
    CompanyBuilder builder;
    AddPrice(AddBolt(builder), kOneCustomer, L"ABC", static_cast<std::int16_t>(type), 10);
    Open(builder);
    EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), price) << type;
  }
}

// The last operations are those of the entry's type and value.
TEST_F(ProductsTest, AnEntryThatCannotBeReadLeavesTheSellingPrice) {
  CompanyBuilder builder;
  builder.Product(L"BOLT", L"SALES_PRICE=50")
      .Record(L"PriceData", L"TYPE=83|EXT_REF=ABC|STOCK_CODE=BOLT|VALUE=4");
  Open(builder);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 4);
  const std::int64_t operations = engine_->operations();
  for (const int before_last : {0, 2}) {
    engine_->faults().FailFrom(operations - before_last, false);
    EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 50) << before_last;
  }
}

TEST_F(ProductsTest, TheFirstEntryInRecordOrderThatAppliesGivesThePrice) {
  CompanyBuilder builder;
  AddBolt(builder).Customer(L"ABC", L"PRICE_LIST_REF=TRADE").Customer(L"OTHER");
  AddPrice(builder, kOneCustomer, L"ABC", 0, 1, L"NUT");  // another product
  AddPrice(builder, kPriceList, L"PUBLIC", 0, 2);         // nobody's list
  AddPrice(builder, kOneCustomer, L"XYZ", 0, 3);          // somebody unknown to the ledger
  AddPrice(builder, kPriceList, L"TRADE", 0, 4);
  AddPrice(builder, kOneCustomer, L"ABC", 0, 5);  // too late
  AddPrice(builder, kOneCustomer, L"ABC", 5, 6, L"UNKNOWN");
  AddPrice(builder, kOneCustomer, L"ABC", 1, 7, L"LOST");
  Open(builder);
  KeepNotes("Products.");
  for (const auto& [acc_ref, price] :
       {std::pair(L"ABC", 4), {L" xyz ", 3}, {L"XYZ", 3}, {L"OTHER", 50}}) {
    EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", acc_ref), price) << acc_ref;
  }
  EXPECT_EQ(products_.GetSpecialPrice(L"unknown ", L"abc"), 6);  // as the engine matches keys
  EXPECT_EQ(products_.GetSpecialPrice(L"UNKNOWN", L"ABC"), 6);   // by its value alone
  EXPECT_EQ(products_.GetSpecialPrice(L"LOST", L"ABC"), 0);
  EXPECT_EQ(products_.GetSpecialPrice(L"NOWHERE", L"ABC"), 0);
  const std::wstring by = L"Products.GetSpecialPrice: ";
  const std::wstring own = L" of the price list, the customer's own.";
  EXPECT_EQ(
      notes_,
      (Texts{by + L"Entry 4 of the price list, of the customer's list.", by + L"Entry 3" + own,
             by + L"Entry 3" + own, by + L"The selling price: no entry of the price list applies.",
             by + L"Entry 6" + own, by + L"Entry 6" + own, by + L"Entry 7" + own,
             by + L"None: no entry of the price list applies, and there is no selling price."}));
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
  for (const wchar_t* code : {L"MIXED", L"USED", L"RETURNED", L"THIRD", L"NONE"}) {
    builder.Product(code, L"LAST_PURCHASE_PRICE=9");
  }
  transaction(L"MIXED", 1, 15, 5, 2);
  transaction(L"MIXED", 2, 1000, 0, 50);  // no receipt
  transaction(L"MIXED", 5, 20, 0, 3);
  transaction(L"MIXED", 7, 10, 0, 3);
  transaction(L"MIXED", 7, 8, 8, 70);
  transaction(L"USED", 1, 10, 10, 2);
  transaction(L"USED", 3, 5, 5, 2);
  transaction(L"THIRD", 1, 1, 0, 1.0 / 3);
  for (const double quantity : {0.1, 0.2, -0.3}) transaction(L"RETURNED", 1, quantity, 0, 2);
  Open(builder);
  EXPECT_EQ(products_.GetCostPrice(L"MIXED", false), 9);
  for (const auto& [code, price] : {std::pair(L"MIXED", 2.75),
                                    {L"USED", 9},
                                    {L"RETURNED", 9},
                                    {L"THIRD", 1.0 / 3},
                                    {L"NONE", 9},
                                    {L"UNKNOWN", 0}}) {
    EXPECT_EQ(products_.GetCostPrice(code, true), price) << code;
  }
  EXPECT_EQ(products_.GetAveragePrice(Find(L"MIXED")), 2.75);
  EXPECT_EQ(products_.GetAveragePrice(nullptr), 0);
}

TEST_F(ProductsTest, SupplierPricesAreStoredOnesOrTheCostInTheSuppliersCurrency) {
  CompanyBuilder builder;
  builder.Product(L"BOLT", L"LAST_PURCHASE_PRICE=10")
      .Product(L"WORTHLESS")
      .Supplier(L"EURO", L"CURRENCY=1")
      .Supplier(L"NOWHERE", L"CURRENCY=5")
      .Record(L"CurrencyData", L"EXCHANGE_RATE=1")
      .Record(L"CurrencyData", L"EXCHANGE_RATE=1.5");
  for (const wchar_t* ref : {L"EURO", L"EIGHTCHA"}) {
    builder.Record(L"PriceData", {{L"TYPE", kSupplierPrice},
                                  {L"EXT_REF", ref},
                                  {L"STOCK_CODE", L"NUT"},
                                  {L"STORED_PRICE", 3.5}});
  }
  Open(builder);
  KeepNotes("Products.");
  EXPECT_EQ(products_.GetSupplierPrice(L"NUT", L"EURO"), 3.5);  // not converted
  EXPECT_EQ(products_.GetSupplierPrice(L"NUT", L"EIGHTCHA"), 3.5);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"EURO"), 15);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"NOWHERE"), 10);  // no such currency
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"UNKNOWN"), 10);
  EXPECT_EQ(products_.GetSupplierPrice(L"WORTHLESS", L"EURO"), 0);
  const std::wstring by = L"Products.GetSupplierPrice: ";
  const std::wstring cost = L"Products.GetCostPrice: The last purchase price.";
  const std::wstring as_it_is = by + L"As it is: the supplier has no currency with a rate.";
  EXPECT_EQ(notes_,
            (Texts{by + L"The supplier's stored price.", by + L"The supplier's stored price.", cost,
                   by + L"By the rate of the supplier's currency.", cost, as_it_is, cost, as_it_is,
                   cost}));
}

TEST_F(ProductsTest, TheEnginesPricingServiceHasTheLastWord) {
  CompanyBuilder builder;
  builder.Product(L"BOLT").Customer(L"ABC", L"PRICE_LIST_REF=TRADE").Supplier(L"SUP");
  for (const wchar_t* entry : {L"TYPE=76|EXT_REF=TRADE|VALUE=4",  // first in record order
                               L"TYPE=83|EXT_REF=ABC|VALUE=5",    // but the service asks for this
                               L"TYPE=85|EXT_REF=SUP|STORED_PRICE=3.5"}) {
    builder.Record(L"PriceData", (std::wstring(entry) + L"|STOCK_CODE=BOLT").c_str());
  }
  Open(builder.Setup(L"PRICING_SERVICE=True"));
  testing::Recording recording;
  products_.context().workspace = testing::Recorded(engine_->workspace(), recording);
  KeepNotes();
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 5);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"SUP"), 3.5);
  EXPECT_EQ(notes_, (Texts{L"Products.GetSpecialPrice: The engine's pricing service.",
                           L"Products.GetSupplierPrice: The engine's pricing service."}));
  EXPECT_EQ(recording.operations, (Texts{L"Workspace.CreateRecordObject(\"Pricing\")",
                                         L"Pricing.CustomerUnitPrice(\"ABC\", \"BOLT\")",
                                         L"Workspace.CreateRecordObject(\"Pricing\")",
                                         L"Pricing.SupplierUnitPrice(\"BOLT\", \"SUP\")"}));
}

// ---- Creation ----

TEST_F(ProductsTest, NewProductsGetTheCompanysDefaults) {
  CompanyBuilder builder;
  builder.Setup(
      L"STOCK_CATEGORY=4|STOCK_DEPARTMENT=2|STOCK_TAXCODE=1|STOCK_NOMINAL=4000|STOCK_UNITS=Each");
  Open(builder);
  environment_.AnswerInput(L"  Asked  ");
  EXPECT_EQ(products_.CreateNewProduct(L" NEW1 ", L"  Given "), L"Given");
  EXPECT_EQ(products_.CreateNewProduct(L" NEW2 ", L"   "), L"Asked");
  environment_.AnswerInput(L"");
  EXPECT_EQ(products_.CreateNewProduct(L"NEW3"), L"");
  EXPECT_EQ(environment_.questions(),
            (Texts{L"Manufacturing: Enter a description for item NEW2.",
                   L"Manufacturing: Enter a description for item NEW3."}));
  std::string trace;
  environment_.trace().Attach([&](std::string_view line) { trace.append(line).append("\n"); });
  for (const bool taken : {false, true}) {
    EXPECT_TRUE(products_.SaveNewProduct(L" NEW4 "));
    EXPECT_EQ(trace.find("StockRecord.Update\tFalse: the engine has not stored the record.") !=
                  trace.npos,
              taken);
  }
  EXPECT_FALSE(products_.CopyProduct(L"NONE", L"NEW6", L"New"));
  EXPECT_TRUE(products_.CopyProduct(L"NEW1", L" NEW5 ", L" New one "));
  // A date is given the number 1.
  for (const auto& [code, fields] : {std::pair(L"NEW1", L"1899-12-31|4|2|1|4000|Each|Given"),
                                     {L"NEW2", L"1899-12-31|4|2|1|4000|Each|Asked"},
                                     {L"NEW3", L"1899-12-31|4|2|1|4000|Each|"},
                                     {L"NEW4", L"1899-12-31|0|0|0|||"},
                                     {L"NEW5", L"Null|4|2|1|4000|Each|New one"},
                                     {L"NEW6", L"?"}}) {
    EXPECT_EQ(Stored(code, {L"LAST_SALE_DATE", L"STOCK_CAT", L"DEPT_NUMBER", L"TAX_CODE",
                            L"NOMINAL_CODE", L"UNIT_OF_SALE", L"DESCRIPTION"}),
              fields);
  }
}

TEST_F(ProductsTest, ACrashAnywhereLeavesTheWholeCopyOrNone) {
  const testing::TemporaryFolder folder;
  const std::string before =
      "STOCK_CODE:text(8)\tDESCRIPTION:text(20)\tSALES_PRICE:double\tQTY_IN_STOCK:double\t"
      "LAST_SALE_DATE:date\nOLD\tOld one\t12.5\t7\t2026-01-02\n";
  const std::string after = before + "NEW\tNew one\t12.5\t0\t\n";
  int left_out = 0;
  for (std::int64_t n = 1;; ++n) {
    simulator::ReplaceFile(folder / "StockData.table", before);
    const pid_t host = fork();
    if (host == 0) {
      const auto engine = Simulator::Open(folder);
      products_.context().workspace = engine->workspace();
      engine->faults().CrashAt(n);
      _exit(products_.CopyProduct(L"OLD", L"NEW", L"New one") ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    const std::string found = simulator::ReadFile(folder / "StockData.table");
    ASSERT_EQ(found, status == 0 || found != before ? after : before) << n;
    left_out += found == before;
    if (status == 0) break;
  }
  EXPECT_GT(left_out, 100);
}

// ARD_ALLOCATIONS says how many each makes.
TEST_F(ProductsTest, FourHostsAllocateWithoutLosingAny) {
  const char* const given = std::getenv("ARD_ALLOCATIONS");
  const int each = given != nullptr ? std::stoi(given) : 25;
  const testing::TemporaryFolder folder;
  const auto stock = [](int allocated) {
    return "STOCK_CODE:text(8)\tQTY_IN_STOCK:double\tQTY_ALLOCATED:double\n"
           "NUT\t5\t2\nBOLT\t123456\t" +
           std::to_string(allocated) + "\nPIN\t5\t3\n";
  };
  simulator::ReplaceFile(folder / "StockData.table", stock(0));

  // How many each has been told that it has made. The first goes on until it is killed.
  constexpr int kHosts = 4;
  void* const shared = mmap(nullptr, kHosts * sizeof(int), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  auto* const made = static_cast<std::atomic<int>*>(shared);
  pid_t hosts[kHosts];
  for (int i = 0; i < kHosts; ++i) {
    hosts[i] = fork();
    if (hosts[i] != 0) continue;
    const auto engine = Simulator::Open(folder);
    products_.context().workspace = engine->workspace();
    while (i == 0 || made[i] < each) {
      const bool answer = products_.UpdateAllocQty(L"BOLT", 1);
      if (engine->LastError()->Number() != 0) continue;  // another was faster: once more
      if (!answer) _exit(1);
      ++made[i];
    }
    _exit(0);
  }
  while (made[0] < each / 2) usleep(1000);
  kill(hosts[0], SIGKILL);
  int total = 0;
  for (int i = 0; i < kHosts; ++i) {
    int status = -1;
    ASSERT_EQ(waitpid(hosts[i], &status, 0), hosts[i]);
    EXPECT_EQ(status, i == 0 ? SIGKILL : 0);
    total += made[i];
  }
  // What it had stored when it was killed, it may not have been told.
  const std::string found = simulator::ReadFile(folder / "StockData.table");
  EXPECT_TRUE(found == stock(total) || found == stock(total + 1)) << total << "\n" << found;
  munmap(shared, kHosts * sizeof(int));
}

TEST_F(ProductsTest, AllocationNeedsFreeStock) {
  CompanyBuilder builder;
  builder.Product(L"TEN", L"QTY_IN_STOCK=10|QTY_ALLOCATED=7")
      .Product(L"FREE", L"IGNORE_STK_LVL_FLAG=True|QTY_ALLOCATED=1")
      .Product(L"THIRDS", {{L"QTY_IN_STOCK", 100.0 / 3}})
      .Product(L"TENTHS", L"QTY_IN_STOCK=0.3|QTY_ALLOCATED=0.2");
  Open(builder);
  const struct {
    const wchar_t* code;
    double quantity;
    bool made;
    const wchar_t* allocated;
  } cases[] = {{L"TEN", 3.5, false, L"7"},
               {L"TEN", 3, true, L"10"},
               {L"TEN", 0.5, false, L"10"},
               {L"TEN", -4, true, L"6"},
               {L"FREE", 50, true, L"1"},
               {L"NONE", 1, false, L"?"},
               {L"TENTHS", 0.1, true, L"0.3"},
               {L"TEN", std::nan(""), false, L"6"},
               {L"TEN", -HUGE_VAL, false, L"6"},
               {L"TEN", HUGE_VAL, false, L"6"},
               {L"THIRDS", 100.0 / 3, true, L"33.3333333333333"}};
  for (const auto& c : cases) {
    EXPECT_EQ(products_.UpdateAllocQty(c.code, c.quantity), c.made) << c.code << c.quantity;
    EXPECT_EQ(Stored(c.code, {L"QTY_ALLOCATED"}), c.allocated) << c.code << c.quantity;
  }
}

}  // namespace
}  // namespace ard::products
