// Calls and dialog events on small companies, against a plain model of what they have to give. With
// operations that fail, only what is described may come, and nothing may stay open.
#include <cmath>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "accounts/customers.h"
#include "accounts/nominal_bank.h"
#include "accounts/suppliers.h"
#include "frame/error.h"
#include "fuzzers/ledger_model_fuzz.h"
#include "fuzzers/support_fuzz.h"
#include "products/products.h"
#include "simulator/testing/company_builder.h"
#include "testing/members.h"
#include "testing/scripted_environment.h"

namespace ard::fuzz {
namespace {

using dialogs::ListModel;
using dialogs::SelectDialog;
using simulator::CompanyBuilder;
using simulator::FieldValues;

constexpr std::wstring_view kAlphabet = L"abcABC1 \u00E9\u00C9*";

// The names of the fields of levels: prefix, number, suffix.
struct LevelNames {
  std::array<std::wstring, 10> from, rate;
  LevelNames(const std::wstring& before_from, const std::wstring& before_rate,
             const std::wstring& after_from, const std::wstring& after_rate) {
    for (std::size_t i = 0; i < from.size(); ++i) {
      from[i] = before_from + std::to_wstring(i + 1) + after_from;
      rate[i] = before_rate + std::to_wstring(i + 1) + after_rate;
    }
  }
};

// A row that the list may show.
struct Entry {
  const Account* account;
  bool live;
};

class Fixture {
 public:
  explicit Fixture(Input& input) : input_(input) {
    Build();
    const auto prepare = [&](Context& context) {
      context.workspace = engine_->workspace();
      context.app_name = L"Manufacturing";
    };
    prepare(customers_.context());
    prepare(suppliers_.context());
    prepare(nominal_.context());
    prepare(bank_.context());
    prepare(products_.context());
    environment_.Obey(engine_->faults());
    faulty_ = input_.UpTo(3) == 0;
  }

  void Run() {
    do {
      if (faulty_) engine_->faults().FailFrom(input_.UpTo<std::int64_t>(80), input_.ConsumeBool());
      switch (input_.UpTo(4)) {
        case 0:
          LookUp();
          break;
        case 1:
          Discount();
          break;
        case 2:
          Prices();
          break;
        case 3:
          Allocate();
          break;
        default:
          Pick();
      }
      const simulator::Counters counters = engine_->counters();
      Require(counters.open_files == 0 && counters.living_objects == 0, "nothing is left open");
      for (const testing::Message& message : environment_.messages()) {
        Require(testing::IsKnownMessage(message), "a described message", message.text);
      }
    } while (input_.remaining_bytes() > 0);
  }

 private:
  // ---- The company ----

  Cents Hundredths(Cents most = 100'000) {
    return input_.ConsumeIntegralInRange<Cents>(-most, most);
  }
  static Value Amount(Cents cents) { return LedgerModel::Amount(cents); }
  // A reference in good form; blank sometimes.
  std::wstring Ref(std::size_t longest = kRefLength) {
    return std::wstring(Trimmed(input_.Text(longest, kAlphabet)));
  }
  std::int16_t Small(int least, int most) {
    return static_cast<std::int16_t>(input_.ConsumeIntegralInRange(least, most));
  }

  // Adds to the company and, when it takes it, to the model.
  template <class Record>
  bool Add(std::vector<Record>& records, Record record, std::wstring_view table,
           FieldValues values) {
    try {
      builder_.Record(table, values);
    } catch (const Error&) {
      return false;  // a key that is blank or there already
    }
    records.push_back(std::move(record));
    return true;
  }

  Account AnyAccount() {
    return {Ref(),
            std::wstring(Trimmed(input_.Text(3, kAlphabet))),
            input_.UpTo(3) == 0,
            input_.ConsumeBool(),
            input_.ConsumeBool(),
            Hundredths(300),
            Hundredths(300),
            input_.ConsumeIntegralInRange(-1, 8),
            Hundredths(10'000),
            input_.ConsumeBool() ? L"TRADE" : Ref(2)};
  }

  void AddAccounts() {
    for (int count = input_.UpTo(20); count > 0; --count) {
      const Account a = AnyAccount();
      Add(model_.customers, a, L"SalesData",
          {{L"ACCOUNT_REF", a.ref},
           {L"NAME", a.name},
           {L"DELETED_FLAG", a.deleted},
           {L"ACCOUNT_ON_HOLD", a.on_hold},
           {L"TERMS_AGREED_FLAG", a.terms_agreed},
           {L"BALANCE", Amount(a.balance)},
           {L"CREDIT_LIMIT", Amount(a.credit_limit)},
           {L"DISCOUNT_TYPE", a.type},
           {L"DISCOUNT_RATE", Amount(a.rate)},
           {L"PRICE_LIST_REF", a.price_list}});
    }
    for (int count = input_.UpTo(4); count > 0; --count) {
      const Account a = AnyAccount();
      Add(model_.suppliers, a, L"PurchaseData",
          {{L"ACCOUNT_REF", a.ref},
           {L"NAME", a.name},
           {L"DELETED_FLAG", a.deleted},
           {L"ACCOUNT_ON_HOLD", a.on_hold},
           {L"TERMS_AGREED_FLAG", a.terms_agreed},
           {L"BALANCE", Amount(a.balance)},
           {L"CREDIT_LIMIT", Amount(a.credit_limit)},
           {L"DISCOUNT_RATE", Amount(a.rate)},
           {L"CURRENCY", a.type}});
    }
    for (int count = input_.UpTo(6); count > 0; --count) {
      Account a = AnyAccount();
      a.type = std::abs(a.type) % 3;
      Add(model_.nominals, a, L"NominalData",
          {{L"ACCOUNT_REF", a.ref},
           {L"NAME", a.name},
           {L"DELETED_FLAG", a.deleted},
           {L"ACCOUNT_TYPE", a.type}});
    }
    for (int count = input_.UpTo(15); count > 0; --count) {
      const Account a = AnyAccount();
      Add(model_.banks, a, L"BankData",
          {{L"ACCOUNT_REF", a.ref}, {L"NAME", a.name}, {L"DELETED_FLAG", a.deleted}});
    }
  }

  void AddProducts() {
    static const auto* const names = [] {
      auto* tables = new std::vector<LevelNames>;
      for (const wchar_t table : std::wstring(L"ABCDE")) {
        const std::wstring level = std::wstring(L"DISC_") + table + L"_LEVEL_";
        tables->emplace_back(level, level, L"_QTY", L"_RATE");
      }
      return tables;
    }();
    for (int count = input_.UpTo(4); count > 0; --count) {
      StockItem p{.ref = Ref(4),
                  .ignores_stock = input_.UpTo(3) == 0,
                  .in_stock = Hundredths(),
                  .allocated = Hundredths(),
                  .selling = Hundredths(),
                  .cost = Hundredths(500)};
      const auto table = input_.UpTo<std::size_t>(4);
      const auto low = input_.UpTo<std::size_t>(8);
      const std::size_t high = low + 1;
      p.tables[table][low] = {Hundredths(2000), Hundredths(10'000)};
      p.tables[table][high] = {Hundredths(2000), Hundredths(10'000)};
      const LevelNames& level = (*names)[table];
      if (!Add(model_.products, p, L"StockData",
               {{L"STOCK_CODE", p.ref},
                {L"IGNORE_STK_LVL_FLAG", p.ignores_stock},
                {L"QTY_IN_STOCK", Amount(p.in_stock)},
                {L"QTY_ALLOCATED", Amount(p.allocated)},
                {L"SALES_PRICE", Amount(p.selling)},
                {L"LAST_PURCHASE_PRICE", Amount(p.cost)},
                {level.from[low], Amount(p.tables[table][low].from)},
                {level.rate[low], Amount(p.tables[table][low].rate)},
                {level.from[high], Amount(p.tables[table][high].from)},
                {level.rate[high], Amount(p.tables[table][high].rate)}})) {
        continue;
      }
      for (int receipts = input_.UpTo(4); receipts > 0; --receipts) {
        const Receipt r{input_.ConsumeIntegralInRange(0, 9), Hundredths(30), Hundredths(30),
                        Hundredths(100)};
        Add(model_.products.back().receipts, r, L"StockTransactionData",
            {{L"STOCK_CODE", p.ref},
             {L"TYPE", r.type},
             {L"QUANTITY", Amount(r.quantity)},
             {L"QTY_USED", Amount(r.used)},
             {L"COST_PRICE", Amount(r.cost)}});
      }
    }
  }

  void AddPrices() {
    for (int count = input_.UpTo(6); count > 0; --count) {
      const int type = input_.PickValueInArray({'S', 'U', 'L'});
      const PriceEntry e{
          type,
          type == 'L' ? L"TRADE" : Key(type == 'S' ? model_.customers : model_.suppliers),
          Key(model_.products),
          input_.ConsumeIntegralInRange(-1, 7),
          Hundredths(),
          Hundredths(500)};
      if (e.code.empty() || e.ref.size() > kRefLength) continue;
      Add(model_.prices, e, L"PriceData",
          {{L"TYPE", e.type},
           {L"EXT_REF", e.ref},
           {L"STOCK_CODE", e.code},
           {L"DISCOUNT_TYPE", e.rule},
           {L"VALUE", Amount(e.value)},
           {L"STORED_PRICE", Amount(e.stored)}});
    }
    for (int count = input_.UpTo(3); count > 0; --count) {
      const Cents rate = Hundredths(500);
      Add(model_.exchange_rates, rate, L"CurrencyData", {{L"EXCHANGE_RATE", Amount(rate)}});
    }
  }

  void Build() {
    static const LevelNames names(L"SALES_AMOUNT_SOLD_", L"SALES_ADD_DISC_", L"", L"");
    AddAccounts();
    AddProducts();
    AddPrices();
    model_.terms_warning = input_.UpTo(3) != 0;
    builder_.Setup({{L"TERMS_WARNING", model_.terms_warning}});
    for (int count = input_.UpTo(3); count > 0; --count) {
      const auto i = input_.UpTo<std::size_t>(9);
      model_.value_levels[i] = {Hundredths(2'000'000), Hundredths(10'000)};
      builder_.Setup({{names.from[i], Amount(model_.value_levels[i].from)},
                      {names.rate[i], Amount(model_.value_levels[i].rate)}});
    }
    engine_ = builder_.Build();
  }

  // ---- Calls ----

  // The reference of some record, as it is or in another case; or just any.
  template <class Record>
  std::wstring Key(const std::vector<Record>& records) {
    if (records.empty() || input_.UpTo(4) == 0) return Ref();
    const std::wstring& ref = records[input_.UpTo(records.size() - 1)].ref;
    return input_.UpTo(3) == 0 ? LowerCase(ref) : ref;
  }
  std::wstring Padded(std::wstring key) {
    if (input_.UpTo(3) == 0 && key.size() < 9) key.resize(input_.UpTo<std::size_t>(9), L' ');
    return key;
  }

  // A number that has to be that of the model, but for noise.
  void Near(double answer, double expected, const char* property) const {
    Require(std::isfinite(answer), "a number", answer);
    if (faulty_) return;
    const double noise = 1e-9 * std::max(1.0, std::abs(expected));
    Require(std::abs(answer - expected) <= noise, property, answer, expected);
  }

  void LookUp() {
    const std::wstring customer = Padded(Key(model_.customers));
    const std::wstring nominal = Padded(Key(model_.nominals));
    const Account* account = model_.Find(model_.customers, customer, kRefLength);
    const bool valid = customers_.IsValid(customer);
    const std::wstring name = customers_.GetName(customer);
    const bool valid_nominal = nominal_.IsValid(nominal);
    Require(valid == (account != nullptr) || (faulty_ && !valid), "valid as it is there", customer);
    Require(name == (account ? account->name : L"") || (faulty_ && name.empty()), "its name", name);
    Require(
        faulty_ || valid_nominal == (model_.Find(model_.nominals, nominal, kRefLength) != nullptr),
        "valid as it is there", nominal);
  }

  void Discount() {
    const std::wstring ref = Padded(Key(model_.customers));
    const std::wstring code = Key(model_.products);
    const Cents quantity = Hundredths(3000);
    const Cents price = Hundredths(3000);
    const double answer = customers_.GetDiscPercent(ref, code, LedgerModel::Amount(quantity),
                                                    LedgerModel::Amount(price));
    const double expected = LedgerModel::Amount(model_.DiscountRate(ref, code, quantity, price));
    Require(faulty_ || answer == expected, "the rates of account and level", answer, expected);
    const std::wstring supplier = Key(model_.suppliers);
    const Account* account = model_.Find(model_.suppliers, supplier, kRefLength);
    Near(suppliers_.GetDiscPercent(supplier), account ? LedgerModel::Amount(account->rate) : 0,
         "the supplier's rate");
  }

  void Prices() {
    const std::wstring code = Key(model_.products);
    if (code.empty()) return;
    const std::wstring customer = Key(model_.customers);
    const std::wstring supplier = Key(model_.suppliers);
    Near(products_.GetSpecialPrice(code, customer), model_.SpecialPrice(code, customer),
         "what the customer pays");
    Near(products_.GetSupplierPrice(code, supplier), model_.SupplierPrice(code, supplier),
         "what the supplier charges");
    const StockItem* product = model_.Find(model_.products, code, kCodeLength);
    const double average = product ? LedgerModel::AveragePrice(*product) : 0;
    const double cost = product ? LedgerModel::Amount(product->cost) : 0;
    Near(products_.GetCostPrice(code, false), cost, "the last purchase price");
    Near(products_.GetCostPrice(code, true), average != 0 ? average : cost, "the average cost");
  }

  void Allocate() {
    const std::wstring code = Key(model_.products);
    StockItem* product = model_.Find(model_.products, code, kCodeLength);
    const Cents quantity = Hundredths();
    const bool done = products_.UpdateAllocQty(code, LedgerModel::Amount(quantity));
    const bool may =
        product && (product->ignores_stock || product->in_stock - product->allocated >= quantity);
    Require(done == may || (faulty_ && !done), "allocated when there is enough", code, quantity);
    if (faulty_) engine_->faults().Reset();
    const double free = products_.GetFreeStock(code);
    if (may && !product->ignores_stock) {
      const Cents after = product->in_stock - product->allocated - quantity;
      // A step that fails leaves the quantity as it was.
      if (!faulty_ || free == LedgerModel::Amount(after)) product->allocated += quantity;
    }
    const Cents left = product ? product->in_stock - product->allocated : 0;
    Require(free == LedgerModel::Amount(left), "what is free", free, left);
  }

  // ---- Dialogs ----

  void Pick() {
    const int list = input_.UpTo(4);
    std::optional<std::wstring> criteria;
    if (list == 4 || (list != 3 && input_.ConsumeBool())) {
      criteria = input_.Text(3, kAlphabet) + (input_.ConsumeBool() ? L"*" : L"");
    }
    Ledger* const ledgers[] = {&model_.customers, &model_.suppliers, &model_.nominals,
                               &model_.banks, &model_.banks};
    const Ledger& ledger = *ledgers[list];
    std::vector<Entry> entries;
    for (const std::size_t i : LedgerModel::InOrder(ledger)) {
      entries.push_back({&ledger[i], !ledger[i].deleted || list >= 3});
    }
    if (list == 3 && entries.size() > 12) entries.resize(12);
    std::size_t at = list == 4 || ledger.empty() ? 0 : 1;  // where the cursor is to be
    static const Account nobody;
    if (criteria) {
      const auto is_sought = [&](const Entry& e) {
        return LedgerModel::IsSought(*e.account, *criteria);
      };
      if (list == 4) {
        std::erase_if(entries, [&](const Entry& e) { return !is_sought(e); });
        if (entries.empty()) entries = {{ledger.empty() ? &nobody : &ledger[0], true}};
      } else if (!ledger.empty()) {
        auto found = std::find_if(entries.begin(), entries.end(), is_sought);
        if (found == entries.end()) {
          found = std::find_if(entries.begin(), entries.end(),
                               [&](const Entry& e) { return e.account == &ledger[0]; });
        }
        at = static_cast<std::size_t>(found - entries.begin()) + 1;
      }
    }
    const Account* picked = nullptr;
    const std::size_t messages = environment_.messages().size();
    std::size_t refusals = 0;
    environment_.Answer(
        [&](SelectDialog& dialog) { Use(dialog, entries, at, list, picked, refusals); });

    std::wstring answer;
    if (list == 0) answer = criteria ? customers_.List(*criteria) : customers_.FastList();
    if (list == 1) answer = criteria ? suppliers_.List(*criteria) : suppliers_.FastList();
    if (list == 2) answer = criteria ? nominal_.List(*criteria) : nominal_.FastList();
    if (list == 3) answer = bank_.FastList();
    if (list == 4) answer = bank_.List(*criteria);
    if (faulty_) {
      Require(answer.empty() || model_.Find(*ledgers[list], answer, kRefLength), "one of the list",
              answer);
      return;
    }
    Require(answer == (picked ? picked->ref : L""), "the one that is picked", answer);
    std::wstring warning =
        picked && list < 2 && model_.terms_warning ? model_.Warning(*picked) : L"";
    const std::size_t expected = messages + refusals + (warning.empty() ? 0 : 1);
    Require(environment_.messages().size() == expected, "as many messages", answer, warning);
    if (!warning.empty()) {
      Require(environment_.messages().back().text == warning, "the warnings", answer, warning);
    }
  }

  // What the user does, and what the list has to look like after each of it.
  void Use(SelectDialog& dialog, const std::vector<Entry>& entries, std::size_t at, int list,
           const Account*& picked, std::size_t& refusals) {
    ListModel& rows = dialog.list();
    const auto live = [&](std::size_t position) {
      return position >= 1 && position <= entries.size() && entries[position - 1].live;
    };
    const auto selected = [&]() -> std::size_t {
      return rows.selected() ? static_cast<std::size_t>(rows.selected()->position) : 0;
    };
    const auto selects = [&](std::size_t position, const char* property) {
      Require(faulty_ || selected() == (live(position) ? position : 0), property, position,
              selected());
    };
    selects(at, "the list is positioned");
    for (int events = input_.UpTo(10); events > 0 && dialog.visible(); --events) {
      const std::size_t before = selected();
      std::size_t allowed_least = 0;
      std::size_t allowed_most = entries.size();
      switch (input_.UpTo(10)) {
        case 0: {
          const auto position = input_.UpTo<std::size_t>(entries.size() + 1);
          const bool exists = position >= 1 && position <= entries.size();
          rows.SelectItem(static_cast<std::int32_t>(position));
          selects(exists ? position : before, "an item is selected");
          break;
        }
        case 1: {
          if (list == 4) break;  // no type-ahead
          const wchar_t key = kAlphabet[input_.UpTo(kAlphabet.size() - 1)];
          dialog.KeyPress(key);
          std::size_t found = 0;
          while (found < entries.size() &&
                 !LedgerModel::IsSought(*entries[found].account, std::wstring(1, key) + L'*')) {
            ++found;
          }
          selects(found < entries.size() ? found + 1 : before, "type-ahead selects");
          break;
        }
        case 2:
          rows.LineDown();
          allowed_least = before;
          if (live(before + 1)) selects(before + 1, "the next line");
          break;
        case 3:
          rows.LineUp();
          if (before > 0) allowed_most = before;
          if (before > 1 && live(before - 1)) selects(before - 1, "the line before");
          break;
        case 4:
          rows.PageDown();
          allowed_least = before;
          break;
        case 5:
          rows.PageUp();
          if (before > 0) allowed_most = before;
          break;
        case 6:
          rows.Home();
          if (live(1)) selects(1, "the first");
          break;
        case 7:
          rows.End();
          if (live(entries.size())) selects(entries.size(), "the last");
          break;
        case 8:
          rows.ScrollBy(input_.ConsumeIntegralInRange(-30, 30));
          selects(before, "scrolling selects nothing");
          break;
        case 9:
          rows.SetPageSize(input_.UpTo(20));
          selects(before, "a size selects nothing");
          break;
        default:
          input_.ConsumeBool() ? dialog.Ok() : dialog.KeyPress(dialogs::kEnterKey);
          if (faulty_) break;
          Require(dialog.visible() || before > 0, "nothing is no choice");
          if (before == 0) break;
          const Account& account = *entries[before - 1].account;
          const bool refused = list == 2 && account.type != 1;
          Require(dialog.visible() == refused, "a control account is refused", account.ref);
          if (refused) ++refusals;
          if (!refused) picked = &account;
      }
      if (faulty_) continue;
      Require(selected() == 0 || (selected() >= allowed_least && selected() <= allowed_most),
              "keys move their way", before, selected());
      CheckPage(rows, entries, list);
    }
    if (dialog.visible()) dialog.CloseBox();
  }

  static void CheckPage(ListModel& list, const std::vector<Entry>& entries, int ledger) {
    auto row = list.rows().begin();
    const auto top = static_cast<std::size_t>(list.top());
    const std::size_t end =
        std::min(top + static_cast<std::size_t>(list.page_size()), entries.size() + 1);
    for (std::size_t position = top; position < end; ++position) {
      const auto& [account, live] = entries[position - 1];
      if (!live) continue;
      Require(row != list.rows().end() && row->position == static_cast<std::int32_t>(position) &&
                  Trimmed(row->Cell(1)) == account->ref && Trimmed(row->Cell(2)) == account->name,
              "a live entry has its row", account->ref, position);
      const bool red = ledger < 2 && account->IsOverLimit();
      Require(row->color == (red ? dialogs::kRed : dialogs::kDefaultColor),
              "red when over the limit", account->ref);
      ++row;
    }
    Require(row == list.rows().end(), "a deleted entry has no row", top);
  }

  Input& input_;
  LedgerModel model_;
  CompanyBuilder builder_;
  std::unique_ptr<simulator::Simulator> engine_;
  testing::ScriptedEnvironment environment_;
  accounts::Customers customers_{environment_};
  accounts::Suppliers suppliers_{environment_};
  accounts::Nominal nominal_{environment_};
  accounts::Bank bank_{environment_};
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
