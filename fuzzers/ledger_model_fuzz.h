// A small company as plain lists, and the plainest statement of what the library has to say of it.
// Amounts, quantities and percentages are whole hundredths.
#ifndef ARD_FUZZERS_LEDGER_MODEL_FUZZ_H_
#define ARD_FUZZERS_LEDGER_MODEL_FUZZ_H_

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "frame/text.h"

namespace ard::fuzz {

using Cents = std::int64_t;
inline double Amount(Cents cents) { return static_cast<double>(cents) / 100; }

struct Account {
  std::wstring ref;
  int type = 0;  // of a customer's discount; a supplier's currency
  Cents rate = 0;
  std::wstring price_list;
};
using Ledger = std::vector<Account>;

struct Receipt {
  int type = 0;
  Cents quantity = 0, used = 0, cost = 0;
};

// Two of ten discount levels, the lower one first.
struct Level {
  Cents from = 0, rate = 0;
};
using Levels = std::array<Level, 2>;

struct StockItem {
  std::wstring ref;
  bool ignores_stock = false;
  Cents in_stock = 0, allocated = 0, selling = 0, cost = 0;
  Levels table_c;
  std::vector<Receipt> receipts = {};

  Cents Free() const { return in_stock - allocated; }
  // Of what is left of the receipts; the last purchase price when nothing is.
  double AverageCost() const {
    Cents left = 0;
    Cents total = 0;
    for (const Receipt& r : receipts) {
      if (r.type != 1 && r.type != 3 && r.type != 5 && r.type != 7) continue;
      left += r.quantity - r.used;
      total += (r.quantity - r.used) * r.cost;
    }
    if (left == 0 || total == 0) return Amount(cost);
    return Amount(total) / static_cast<double>(left);
  }
};

struct PriceEntry {
  int type = 0;
  std::wstring ref, code;
  int rule = 0;
  Cents value = 0, stored = 0;
};

struct LedgerModel {
  Ledger customers, suppliers;
  std::vector<StockItem> products;
  std::vector<PriceEntry> prices;  // in record order
  std::vector<Cents> exchange_rates;
  Levels value_levels;

  // What the engine finds, whatever the case.
  static bool IsSame(const std::wstring& a, const std::wstring& b) {
    return UpperCase(a) == UpperCase(b);
  }
  template <class Record>
  static Record* Find(std::vector<Record>& records, const std::wstring& key) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const Record& record) { return IsSame(record.ref, key); });
    return found == records.end() ? nullptr : &*found;
  }

  // The rate of the highest level whose threshold is above 0 and reached.
  static Cents RateReached(const Levels& levels, std::int64_t reached_by_100) {
    const auto is_reached = [&](const Level& level) {
      return level.from > 0 && reached_by_100 >= level.from * 100;
    };
    return is_reached(levels[1]) ? levels[1].rate : is_reached(levels[0]) ? levels[0].rate : 0;
  }
  Cents DiscountRate(const Account* customer, const StockItem* product, Cents quantity,
                     Cents price) const {
    if (!customer) return 0;
    Cents rate = customer->rate;
    if (customer->type == 1) rate += RateReached(value_levels, quantity * price);
    if (customer->type == 4 && product) rate += RateReached(product->table_c, quantity * 100);
    return rate;
  }

  double SpecialPrice(const std::wstring& code, const std::wstring& ref) {
    const StockItem* const product = Find(products, code);
    const Account* const customer = Find(customers, ref);
    const double selling = product ? Amount(product->selling) : 0;
    const double cost = product ? Amount(product->cost) : 0;
    for (const PriceEntry& entry : prices) {
      const bool applies = entry.type == 'S' ? IsSame(entry.ref, ref)
                                             : customer && IsSame(customer->price_list, entry.ref);
      if (!IsSame(entry.code, code) || !applies) continue;
      const double value = Amount(entry.value);
      const double by_rule[] = {value,
                                selling,
                                selling * (1 - value / 100),
                                selling - value,
                                cost * (1 + value / 100),
                                cost + value};
      return entry.rule >= 0 && entry.rule < 6 ? by_rule[entry.rule] : 0;
    }
    return selling;
  }

  double SupplierPrice(const std::wstring& code, const std::wstring& ref) {
    for (const PriceEntry& entry : prices) {
      if (entry.type == 'U' && IsSame(entry.ref, ref) && IsSame(entry.code, code) &&
          entry.stored != 0) {
        return Amount(entry.stored);
      }
    }
    const StockItem* const product = Find(products, code);
    const Account* const supplier = Find(suppliers, ref);
    const double cost = product ? Amount(product->cost) : 0;
    const auto currency = static_cast<std::size_t>(supplier ? supplier->type : -1);
    return currency < exchange_rates.size() ? cost * Amount(exchange_rates[currency]) : cost;
  }
};

}  // namespace ard::fuzz

#endif  // ARD_FUZZERS_LEDGER_MODEL_FUZZ_H_
