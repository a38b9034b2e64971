// Calls on small companies, against a plain model of what they have to give. With
// operations that fail, only what is described may come, and nothing may stay open.
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "accounts/customers.h"
#include "frame/error.h"
#include "fuzzers/ledger_model_fuzz.h"
#include "fuzzers/support_fuzz.h"
#include "products/products.h"
#include "simulator/company.h"
#include "simulator/standard_columns.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"
#include "users/messaging.h"

namespace ard::fuzz {
namespace {

constexpr std::wstring_view kAlphabet = L"abcABC1 \u00E9\u00C9*";

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
    Trace::Origin origin;
    origin.detail = true;
    environment_.trace().Attach(
        [](std::string_view line) {
          Require(line.find(ToUtf8(kInPasswords)) == line.npos, "no password", FromUtf8(line));
        },
        origin);
  }

  void Run() {
    constexpr void (Fixture::*kCalls[])() = {&Fixture::Discount, &Fixture::Prices,
                                             &Fixture::Allocate, &Fixture::LogOn};
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
  // The trace, in all detail, is searched for this.
  static constexpr wchar_t kInPasswords[] = L"\u2021";

  void LogOn() {
    users::Messaging messaging(environment_);
    messaging.context().workspace = engine_->workspace();
    messaging.context().engine = engine_;
    messaging.context().app_name = L"Manufacturing";
    const std::wstring password = kInPasswords + input_.AnyText(8);
    messaging.LogonUser(Ref(), password);
    messaging.Put(L"PassLogged", &users::Session::pass_logged, password);
    messaging.Get(L"PassLogged", &users::Session::pass_logged);
    messaging.LogoffUser();
  }

  // ---- The company ----

  Cents Hundredths(Cents most) { return input_.ConsumeIntegralInRange(-most, most); }
  std::wstring Ref() { return std::wstring(Trimmed(input_.Text(8, kAlphabet))); }

  // Adds a record with those of the values for which the table has a field. False when the engine
  // does not take its key.
  bool Add(std::wstring_view name, const std::vector<simulator::FieldValue>& values) {
    simulator::Company& company = engine_->company();
    if (!company.Find(name)) {
      company.Set(name, company.NewTable(name, simulator::StandardColumns(name)));
    }
    simulator::Table& table = *company.Find(name);
    simulator::Row row(table.columns().size());
    for (const auto& [field, value] : values) {
      const int column = table.columns().Find(field);
      if (column < 0) continue;
      const auto place = static_cast<std::size_t>(column);
      row[place] = ConvertTo(table.columns()[place].type, value);
    }
    return table.Store(table.size() + 1, std::move(row));
  }

  void AddAccounts(Ledger& ledger, int most, std::wstring_view table) {
    for (int count = input_.UpTo(most); count > 0; --count) {
      const Account a{.ref = Ref(),
                      .type = input_.UpTo(5),
                      .rate = Hundredths(10'000),
                      .price_list = input_.OneIn(2) ? L"TRADE" : L""};
      if (Add(table, {{L"ACCOUNT_REF", a.ref},
                      {L"DISCOUNT_TYPE", a.type},
                      {L"CURRENCY", a.type},
                      {L"DISCOUNT_RATE", Amount(a.rate)},
                      {L"PRICE_LIST_REF", a.price_list}})) {
        ledger.push_back(a);
      }
    }
  }

  Levels AnyLevels(Cents most) {
    Levels levels;
    for (Level& level : levels) level = {Hundredths(most), Hundredths(10'000)};
    return levels;
  }

  void AddProducts() {
    for (int count = input_.UpTo(4); count > 0; --count) {
      StockItem p{.ref = Ref(),
                  .ignores_stock = input_.OneIn(4),
                  .in_stock = Hundredths(100'000),
                  .allocated = Hundredths(100'000),
                  .selling = Hundredths(100'000),
                  .cost = Hundredths(500),
                  .table_c = AnyLevels(2000)};
      if (!Add(L"StockData", {{L"STOCK_CODE", p.ref},
                              {L"IGNORE_STK_LVL_FLAG", p.ignores_stock},
                              {L"QTY_IN_STOCK", Amount(p.in_stock)},
                              {L"QTY_ALLOCATED", Amount(p.allocated)},
                              {L"SALES_PRICE", Amount(p.selling)},
                              {L"LAST_PURCHASE_PRICE", Amount(p.cost)},
                              {L"DISC_C_LEVEL_3_QTY", Amount(p.table_c[0].from)},
                              {L"DISC_C_LEVEL_3_RATE", Amount(p.table_c[0].rate)},
                              {L"DISC_C_LEVEL_10_QTY", Amount(p.table_c[1].from)},
                              {L"DISC_C_LEVEL_10_RATE", Amount(p.table_c[1].rate)}})) {
        continue;
      }
      for (int receipts = input_.UpTo(4); receipts > 0; --receipts) {
        // Few quantities, so that nothing is left at times.
        const Receipt r{input_.PickValueInArray({1, 2, 3, 5, 7}), 10 * Hundredths(3),
                        10 * Hundredths(1), Hundredths(100)};
        p.receipts.push_back(r);
        Add(L"StockTransactionData", {{L"STOCK_CODE", p.ref},
                                      {L"TYPE", r.type},
                                      {L"QUANTITY", Amount(r.quantity)},
                                      {L"QTY_USED", Amount(r.used)},
                                      {L"COST_PRICE", Amount(r.cost)}});
      }
      model_.products.push_back(p);
    }
  }

  void AddPrices() {
    for (int count = input_.UpTo(6); count > 0; --count) {
      const int type = input_.PickValueInArray({'S', 'U', 'L'});
      const PriceEntry e{.type = type,
                         .ref = type == 'S'   ? Key(model_.customers)
                                : type == 'U' ? Key(model_.suppliers)
                                              : L"TRADE",
                         .code = Key(model_.products),
                         .rule = input_.ConsumeIntegralInRange(-1, 7),
                         .value = Hundredths(100'000),
                         .stored = Hundredths(500)};
      // The engine finds no key that ends in the padding of a part.
      if (!e.code.empty() && Add(L"PriceData", {{L"TYPE", e.type},
                                                {L"EXT_REF", e.ref},
                                                {L"STOCK_CODE", e.code},
                                                {L"DISCOUNT_TYPE", e.rule},
                                                {L"VALUE", Amount(e.value)},
                                                {L"STORED_PRICE", Amount(e.stored)}})) {
        model_.prices.push_back(e);
      }
    }
    for (int count = input_.UpTo(3); count > 0; --count) {
      model_.exchange_rates.push_back(Hundredths(500));
      Add(L"CurrencyData", {{L"EXCHANGE_RATE", Amount(model_.exchange_rates.back())}});
    }
  }

  void Build() {
    model_.value_levels = AnyLevels(2'000'000);
    engine_ = simulator::CompanyBuilder()
                  .Setup({{L"SALES_AMOUNT_SOLD_1", Amount(model_.value_levels[0].from)},
                          {L"SALES_ADD_DISC_1", Amount(model_.value_levels[0].rate)},
                          {L"SALES_AMOUNT_SOLD_9", Amount(model_.value_levels[1].from)},
                          {L"SALES_ADD_DISC_9", Amount(model_.value_levels[1].rate)}})
                  .Build();
    // Before the accounts, which take most of the input.
    AddProducts();
    AddAccounts(model_.customers, 20, L"SalesData");
    AddAccounts(model_.suppliers, 4, L"PurchaseData");
    AddPrices();
  }

  // ---- Calls ----

  // The key of some record, at times in another case; or just any.
  template <class Record>
  std::wstring Key(const std::vector<Record>& records) {
    if (records.empty() || input_.OneIn(5)) return Ref();
    const std::wstring& key = records[input_.UpTo(records.size() - 1)].ref;
    return input_.OneIn(4) ? LowerCase(key) : key;
  }

  // Numbers may differ by the noise of doubles.
  void Near(double answer, double expected, const char* property) const {
    const bool is_near = std::abs(answer - expected) <= 1e-9 * std::max(1.0, std::abs(expected));
    Require(std::isfinite(answer) && (is_near || faulty_), property, answer, expected);
  }

  void Discount() {
    const std::wstring ref = Key(model_.customers);
    const std::wstring code = Key(model_.products);
    const Cents quantity = Hundredths(3000);
    const Cents price = Hundredths(3000);
    const double answer = customers_.GetDiscPercent(ref, code, Amount(quantity), Amount(price));
    const double expected = Amount(model_.DiscountRate(
        model_.Find(model_.customers, ref), model_.Find(model_.products, code), quantity, price));
    Require(faulty_ || answer == expected, "the rates of account and level", answer, expected);
  }

  void Prices() {
    const std::wstring code = Key(model_.products);
    const std::wstring customer = Key(model_.customers);
    const std::wstring supplier = Key(model_.suppliers);
    const StockItem* product = model_.Find(model_.products, code);
    Near(products_.GetSpecialPrice(code, customer), model_.SpecialPrice(code, customer),
         "what the customer pays");
    Near(products_.GetSupplierPrice(code, supplier), model_.SupplierPrice(code, supplier),
         "what the supplier charges");
    Near(products_.GetCostPrice(code, true), product ? product->AverageCost() : 0, "average cost");
    Near(products_.GetCostPrice(code, false), product ? Amount(product->cost) : 0, "last cost");
  }

  void Allocate() {
    const std::wstring code = Key(model_.products);
    StockItem* product = model_.Find(model_.products, code);
    const Cents quantity = Hundredths(100'000);
    const bool done = products_.UpdateAllocQty(code, Amount(quantity));
    const bool may = product && (product->ignores_stock || product->Free() >= quantity);
    Require(done == may || (faulty_ && !done), "allocated when there is enough", code);
    engine_->faults().Reset();
    const double free = products_.GetFreeStock(code);
    // A write that fails leaves the quantity as it was; a flag that cannot be read is not set.
    const bool changed = product && free != Amount(product->Free());
    const bool written =
        faulty_ ? changed && product->Free() >= quantity : may && !product->ignores_stock;
    if (written) product->allocated += quantity;
    Require(free == (product ? Amount(product->Free()) : 0), "what is free", code, free);
  }

  Input& input_;
  LedgerModel model_;
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
