// Calls on small companies, against a plain model of what they have to give. With
// operations that fail, only what is described may come, and nothing may stay open.
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include "accounts/customers.h"
#include "frame/error.h"
#include "fuzzers/support_fuzz.h"
#include "products/products.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"

namespace ard::fuzz {
namespace {

// Amounts, quantities and percentages are whole hundredths.
using Cents = std::int64_t;
double Amount(Cents cents) { return static_cast<double>(cents) / 100; }

// As it is stored, its key first. One that is not there is null, and all of it 0.
using Record = simulator::FieldValues;
Value& Get(Record& record, std::wstring_view field) {
  return std::ranges::find(record, field, &simulator::FieldValue::field)->value;
}
double Number(Record* record, std::wstring_view field) {
  return record ? Get(*record, field).ToDouble() : 0;
}
Cents InCents(Record* record, std::wstring_view field) {
  return std::llround(Number(record, field) * 100);
}
// What the engine finds, whatever the case.
bool Has(Record& record, std::wstring_view field, std::wstring_view text) {
  return UpperCase(Get(record, field).ToText()) == UpperCase(text);
}

// Two of ten discount levels, the lower one first: threshold and rate.
using Levels = const wchar_t* const[2][2];
constexpr Levels kValueLevels = {{L"SALES_AMOUNT_SOLD_1", L"SALES_ADD_DISC_1"},
                                 {L"SALES_AMOUNT_SOLD_9", L"SALES_ADD_DISC_9"}};
constexpr Levels kTableC = {{L"DISC_C_LEVEL_3_QTY", L"DISC_C_LEVEL_3_RATE"},
                            {L"DISC_C_LEVEL_10_QTY", L"DISC_C_LEVEL_10_RATE"}};

// The plainest statement of what the library has to say of a company.
struct LedgerModel {
  std::map<std::wstring_view, std::vector<Record>> tables;  // in record order
  Record setup;

  Record* Find(std::wstring_view table, std::wstring_view key) {
    for (Record& record : tables[table]) {
      if (Has(record, record[0].field, key)) return &record;
    }
    return nullptr;
  }

  // The rate of the highest level whose threshold is above 0 and reached.
  static Cents RateReached(Record* record, const Levels& levels, std::int64_t reached_by_100) {
    Cents reached = 0;
    for (const auto& [from, rate] : levels) {
      const Cents threshold = InCents(record, from);
      if (threshold > 0 && reached_by_100 >= threshold * 100) reached = InCents(record, rate);
    }
    return reached;
  }
  Cents DiscountRate(Record* customer, Record* product, Cents quantity, Cents price) {
    const Cents rate = InCents(customer, L"DISCOUNT_RATE");
    const double type = Number(customer, L"DISCOUNT_TYPE");
    return rate + (type == 1   ? RateReached(&setup, kValueLevels, quantity * price)
                   : type == 4 ? RateReached(product, kTableC, quantity * 100)
                               : 0);
  }

  static Cents Free(Record* product) {
    return InCents(product, L"QTY_IN_STOCK") - InCents(product, L"QTY_ALLOCATED");
  }
  // Of what is left of the receipts; the last purchase price when nothing is.
  double AverageCost(Record* product, std::wstring_view code) {
    Cents left = 0;
    Cents total = 0;
    for (Record& receipt : tables[L"StockTransactionData"]) {
      const double type = Number(&receipt, L"TYPE");
      if (!Has(receipt, L"STOCK_CODE", code) || type == 2) continue;
      const Cents rest = InCents(&receipt, L"QUANTITY") - InCents(&receipt, L"QTY_USED");
      left += rest;
      total += rest * InCents(&receipt, L"COST_PRICE");
    }
    if (left == 0 || total == 0) return Number(product, L"LAST_PURCHASE_PRICE");
    return Amount(total) / static_cast<double>(left);
  }

  double SpecialPrice(std::wstring_view code, std::wstring_view ref) {
    Record* const product = Find(L"StockData", code);
    Record* const customer = Find(L"SalesData", ref);
    const double selling = Number(product, L"SALES_PRICE");
    const double cost = Number(product, L"LAST_PURCHASE_PRICE");
    for (Record& entry : tables[L"PriceData"]) {
      const bool is_own = Number(&entry, L"TYPE") == 'S';
      const bool applies =
          is_own ? Has(entry, L"EXT_REF", ref)
                 : customer && Has(entry, L"EXT_REF", Get(*customer, L"PRICE_LIST_REF").ToText());
      if (!Has(entry, L"STOCK_CODE", code) || !applies) continue;
      const double value = Number(&entry, L"VALUE");
      const double by_rule[] = {value,
                                selling,
                                selling * (1 - value / 100),
                                selling - value,
                                cost * (1 + value / 100),
                                cost + value};
      const double rule = Number(&entry, L"DISCOUNT_TYPE");
      return rule >= 0 && rule < 6 ? by_rule[static_cast<int>(rule)] : 0;
    }
    return selling;
  }

  double SupplierPrice(std::wstring_view code, std::wstring_view ref) {
    for (Record& entry : tables[L"PriceData"]) {
      const double stored = Number(&entry, L"STORED_PRICE");
      if (Number(&entry, L"TYPE") == 'U' && Has(entry, L"EXT_REF", ref) &&
          Has(entry, L"STOCK_CODE", code) && stored != 0) {
        return stored;
      }
    }
    const double cost = Number(Find(L"StockData", code), L"LAST_PURCHASE_PRICE");
    Record* const supplier = Find(L"PurchaseData", ref);
    const auto currency = static_cast<std::size_t>(Number(supplier, L"CURRENCY"));
    std::vector<Record>& rates = tables[L"CurrencyData"];
    const bool is_rated = supplier && currency < rates.size();
    return is_rated ? cost * Number(&rates[currency], L"EXCHANGE_RATE") : cost;
  }
};

class Fixture {
 public:
  explicit Fixture(Input& input) : input_(input) {
    Build();
    for (PublicClass* object : std::initializer_list<PublicClass*>{&customers_, &products_}) {
      object->context().workspace = engine_->workspace();
      object->context().app_name = L"Manufacturing";
    }
    environment_.Obey(engine_->faults());
    faulty_ = input_.OneIn(4);
    engine_->SnapshotFields(input_.OneIn(2));
  }

  void Run() {
    constexpr void (Fixture::*kCalls[])() = {&Fixture::Discount, &Fixture::Prices,
                                             &Fixture::Allocate};
    do {
      if (faulty_) engine_->faults().FailFrom(input_.UpTo(80), input_.OneIn(2));
      (this->*input_.PickValueInArray(kCalls))();
      const simulator::Counters counters = engine_->counters();
      Require(counters.open_files == 0 && counters.living_objects == 0, "nothing is left open");
      for (const testing::Message& message : environment_.messages()) {
        Require(testing::IsKnownMessage(message), "a described message", message.text);
      }
    } while (input_.remaining_bytes() > 0);
  }

 private:
  // ---- The company ----

  Cents Hundredths(Cents most) { return input_.ConsumeIntegralInRange(-most, most); }
  double Any(Cents most) { return Amount(Hundredths(most)); }
  std::wstring Ref() { return std::wstring(Trimmed(input_.Text(8, L"abcABC1 \u00E9\u00C9*"))); }

  // False when the engine does not take the key.
  bool Add(std::wstring_view table, const Record& record) {
    try {
      company_.Record(table, record);
    } catch (const Error& error) {
      Require(error.text().starts_with(L"A key of "), "a company", error.text());
      return false;
    }
    model_.tables[table].push_back(record);
    return true;
  }
  void AddLevels(Record& record, const Levels& levels, Cents most) {
    for (const auto& [from, rate] : levels) {
      record.insert(record.end(), {{from, Any(most)}, {rate, Any(10'000)}});
    }
  }

  void Build() {
    AddLevels(model_.setup, kValueLevels, 50'000);
    company_.Setup(model_.setup);
    // Before the accounts, which take most of the input.
    for (int count = input_.UpTo(4); count > 0; --count) AddProduct();
    for (int count = input_.UpTo(20); count > 0; --count) {
      Add(L"SalesData", {{L"ACCOUNT_REF", Ref()},
                         {L"DISCOUNT_TYPE", input_.UpTo(5)},
                         {L"DISCOUNT_RATE", Any(10'000)},
                         {L"PRICE_LIST_REF", input_.OneIn(2) ? L"TRADE" : L""}});
    }
    for (int count = input_.UpTo(4); count > 0; --count) {
      Add(L"PurchaseData", {{L"ACCOUNT_REF", Ref()}, {L"CURRENCY", input_.UpTo(5)}});
    }
    for (int count = input_.UpTo(6); count > 0; --count) AddPrice();
    for (int count = input_.UpTo(3); count > 0; --count) {
      Add(L"CurrencyData", {{L"EXCHANGE_RATE", Any(500)}});
    }
    engine_ = company_.Build();
  }

  void AddProduct() {
    const std::wstring code = Ref();
    Record product = {{L"STOCK_CODE", code},           {L"IGNORE_STK_LVL_FLAG", input_.OneIn(4)},
                      {L"QTY_IN_STOCK", Any(100'000)}, {L"QTY_ALLOCATED", Any(100'000)},
                      {L"SALES_PRICE", Any(100'000)},  {L"LAST_PURCHASE_PRICE", Any(500)}};
    AddLevels(product, kTableC, 2000);
    if (!Add(L"StockData", product)) return;
    for (int receipts = input_.UpTo(4); receipts > 0; --receipts) {
      // Few quantities, so that nothing is left at times.
      Add(L"StockTransactionData", {{L"STOCK_CODE", code},
                                    {L"TYPE", input_.PickValueInArray({1, 2, 3, 5, 7})},
                                    {L"QUANTITY", 10 * Any(3)},
                                    {L"QTY_USED", 10 * Any(1)},
                                    {L"COST_PRICE", Any(100)}});
    }
  }

  void AddPrice() {
    const int type = input_.PickValueInArray({'S', 'U', 'L'});
    const std::wstring code = Key(L"StockData");
    if (code.empty()) return;  // the engine finds no key that ends in the padding of a part
    Add(L"PriceData", {{L"TYPE", type},
                       {L"EXT_REF", type == 'S'   ? Key(L"SalesData")
                                    : type == 'U' ? Key(L"PurchaseData")
                                                  : L"TRADE"},
                       {L"STOCK_CODE", code},
                       {L"DISCOUNT_TYPE", input_.ConsumeIntegralInRange(-1, 7)},
                       {L"VALUE", Any(100'000)},
                       {L"STORED_PRICE", Any(500)}});
  }

  // ---- Calls ----

  // The key of some record, at times in another case; or just any.
  std::wstring Key(std::wstring_view table) {
    const std::vector<Record>& records = model_.tables[table];
    if (records.empty() || input_.OneIn(5)) return Ref();
    const std::wstring key = records[input_.UpTo(records.size() - 1)][0].value.ToText();
    return input_.OneIn(4) ? LowerCase(key) : key;
  }

  // Numbers may differ by the noise of doubles.
  void Near(double answer, double expected, const char* property) const {
    const bool is_near = std::abs(answer - expected) <= 1e-9 * std::max(1.0, std::abs(expected));
    Require(std::isfinite(answer) && (is_near || faulty_), property, answer, expected);
  }

  void Discount() {
    const std::wstring ref = Key(L"SalesData");
    const std::wstring code = Key(L"StockData");
    const Cents quantity = Hundredths(3000);
    const Cents price = Hundredths(3000);
    const double answer = customers_.GetDiscPercent(ref, code, Amount(quantity), Amount(price));
    const double expected = Amount(model_.DiscountRate(
        model_.Find(L"SalesData", ref), model_.Find(L"StockData", code), quantity, price));
    Require(faulty_ || answer == expected, "the rates of account and level", answer, expected);
  }

  void Prices() {
    const std::wstring code = Key(L"StockData");
    const std::wstring customer = Key(L"SalesData");
    const std::wstring supplier = Key(L"PurchaseData");
    Record* const product = model_.Find(L"StockData", code);
    Near(products_.GetSpecialPrice(code, customer), model_.SpecialPrice(code, customer),
         "what the customer pays");
    Near(products_.GetSupplierPrice(code, supplier), model_.SupplierPrice(code, supplier),
         "what the supplier charges");
    Near(products_.GetCostPrice(code, true), model_.AverageCost(product, code), "average cost");
    Near(products_.GetCostPrice(code, false), Number(product, L"LAST_PURCHASE_PRICE"), "last cost");
  }

  void Allocate() {
    const std::wstring code = Key(L"StockData");
    Record* const product = model_.Find(L"StockData", code);
    const Cents quantity = Hundredths(100'000);
    const bool done = products_.UpdateAllocQty(code, Amount(quantity));
    const bool ignores_stock = Number(product, L"IGNORE_STK_LVL_FLAG") != 0;
    const bool is_enough = model_.Free(product) >= quantity;
    const bool may = product && (ignores_stock || is_enough);
    Require(done == may || (faulty_ && !done), "allocated when there is enough", code);
    engine_->faults().Reset();
    const double free = products_.GetFreeStock(code);
    // A write that fails leaves the quantity as it was; a flag that cannot be read is not set.
    const bool changed = product && free != Amount(model_.Free(product));
    if (faulty_ ? changed && is_enough : may && !ignores_stock) {
      Value& allocated = Get(*product, L"QTY_ALLOCATED");
      allocated = Amount(InCents(product, L"QTY_ALLOCATED") + quantity);
    }
    Require(free == Amount(model_.Free(product)), "what is free", code, free);
  }

  Input& input_;
  LedgerModel model_;
  simulator::CompanyBuilder company_;
  std::shared_ptr<simulator::Simulator> engine_;
  testing::ScriptedEnvironment environment_;
  accounts::Customers customers_{environment_};
  products::Products products_{environment_};
  bool faulty_ = false;
};

}  // namespace
}  // namespace ard::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ard::fuzz::Input input(data, size);
  ard::fuzz::Fixture(input).Run();
  return 0;
}
