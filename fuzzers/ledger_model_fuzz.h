// A small company as plain lists, and the plainest statement of what the library has to say of it.
// Amounts, quantities and percentages are whole hundredths.
#ifndef ARD_FUZZERS_LEDGER_MODEL_FUZZ_H_
#define ARD_FUZZERS_LEDGER_MODEL_FUZZ_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "frame/text.h"

namespace ard::fuzz {

using Cents = std::int64_t;

constexpr std::size_t kRefLength = 8;
constexpr std::size_t kCodeLength = 30;

struct Account {
  std::wstring ref;
  std::wstring name;
  bool deleted = false;
  bool on_hold = false;
  bool terms_agreed = false;
  Cents balance = 0;
  Cents credit_limit = 0;
  int type = 0;  // of a customer's discount, or of a nominal account; a supplier's currency
  Cents rate = 0;
  std::wstring price_list;

  bool IsOverLimit() const { return credit_limit > 0 && balance > credit_limit; }
};
using Ledger = std::vector<Account>;

struct Level {
  Cents from = 0;
  Cents rate = 0;
};
using Levels = std::array<Level, 10>;

struct Receipt {
  int type = 0;
  Cents quantity = 0;
  Cents used = 0;
  Cents cost = 0;
};

struct StockItem {
  std::wstring ref;
  bool ignores_stock = false;
  Cents in_stock = 0;
  Cents allocated = 0;
  Cents selling = 0;
  Cents cost = 0;
  std::array<Levels, 5> tables;
  std::vector<Receipt> receipts;
};

struct PriceEntry {
  int type = 0;
  std::wstring ref;
  std::wstring code;
  int rule = 0;
  Cents value = 0;
  Cents stored = 0;
};

struct LedgerModel {
  Ledger customers, suppliers, nominals, banks;
  std::vector<StockItem> products;
  std::vector<PriceEntry> prices;  // in record order
  std::vector<Cents> exchange_rates;
  Levels value_levels;
  bool terms_warning = true;

  // What the engine finds: whatever the case, with no blanks at the end or all of the field's.
  template <class Record>
  static Record* Find(std::vector<Record>& records, const std::wstring& key, std::size_t length) {
    std::wstring wanted = key;
    if (key.size() == length) wanted.erase(key.find_last_not_of(L' ') + 1);
    const auto found = std::find_if(records.begin(), records.end(), [&](const Record& record) {
      return UpperCase(record.ref) == UpperCase(wanted);
    });
    return found == records.end() || key.size() > length ? nullptr : &*found;
  }

  static std::wstring Warning(const Account& account) {
    std::wstring text;
    const auto add = [&](bool applies, const wchar_t* sentence) {
      if (applies) text += (text.empty() ? L"" : L"\r\n\r\n") + std::wstring(sentence);
    };
    add(account.on_hold, L"Account is on hold.");
    add(account.IsOverLimit(), L"Account is over credit limit.");
    add(!account.terms_agreed, L"Terms have not been agreed with this account.");
    return text;
  }

  // The highest level with a threshold that is reached; `reached` is in hundredths of hundredths.
  static Cents RateReached(const Levels& levels, std::int64_t reached) {
    for (std::size_t i = levels.size(); i-- > 0;) {
      if (levels[i].from > 0 && reached >= levels[i].from * 100) return levels[i].rate;
    }
    return 0;
  }
  Cents DiscountRate(const std::wstring& ref, const std::wstring& code, Cents quantity,
                     Cents price) {
    const Account* customer = Find(customers, ref, kRefLength);
    if (!customer) return 0;
    if (customer->type == 1) {
      return customer->rate + RateReached(value_levels, quantity * price);
    }
    const StockItem* product = Find(products, code, kCodeLength);
    if (!product || customer->type < 2 || customer->type > 6) return customer->rate;
    return customer->rate +
           RateReached(product->tables[static_cast<std::size_t>(customer->type) - 2],
                       quantity * 100);
  }

  double SpecialPrice(const std::wstring& code, const std::wstring& ref) {
    const StockItem* product = Find(products, code, kCodeLength);
    const Account* customer = Find(customers, ref, kRefLength);
    const double selling = product ? Amount(product->selling) : 0;
    const double cost = product ? Amount(product->cost) : 0;
    for (const PriceEntry& entry : prices) {
      const bool applies =
          entry.type == 'S' ? entry.ref == ref : customer && customer->price_list == entry.ref;
      if (entry.code != code || !applies) continue;
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
    const std::wstring name(Trimmed(ref));
    for (const PriceEntry& entry : prices) {
      if (entry.type == 'U' && UpperCase(entry.ref) == UpperCase(name) &&
          UpperCase(entry.code) == UpperCase(code) && entry.stored != 0) {
        return Amount(entry.stored);
      }
    }
    const StockItem* product = Find(products, code, kCodeLength);
    const Account* supplier = Find(suppliers, name, kRefLength);
    const double cost = product ? Amount(product->cost) : 0;
    const auto currency = static_cast<std::size_t>(supplier ? supplier->type : -1);
    return currency < exchange_rates.size() ? cost * Amount(exchange_rates[currency]) : cost;
  }

  // The average of what is left of the receipts; 0 when nothing is left.
  static double AveragePrice(const StockItem& product) {
    Cents quantity = 0;
    std::int64_t cost = 0;
    for (const Receipt& receipt : product.receipts) {
      if (receipt.type > 7 || receipt.type % 2 != 1) continue;
      quantity += receipt.quantity - receipt.used;
      cost += (receipt.quantity - receipt.used) * receipt.cost;
    }
    return quantity == 0 ? 0 : static_cast<double>(cost) / static_cast<double>(quantity) / 100;
  }

  // The order of the index.
  static std::vector<std::size_t> InOrder(const Ledger& ledger) {
    std::vector<std::size_t> order(ledger.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return UpperCase(ledger[a].ref) < UpperCase(ledger[b].ref);
    });
    return order;
  }
  // Whether a search takes the account: "AB*" those that begin so, "AB" that one.
  static bool IsSought(const Account& account, std::wstring criteria) {
    const bool any_ending = criteria.ends_with(L'*');
    if (any_ending) criteria.pop_back();
    if (any_ending) return UpperCase(account.ref).starts_with(UpperCase(criteria));
    criteria.erase(criteria.find_last_not_of(L' ') + 1);
    return UpperCase(account.ref) == UpperCase(criteria);
  }

  static double Amount(Cents cents) { return static_cast<double>(cents) / 100; }
};

}  // namespace ard::fuzz

#endif  // ARD_FUZZERS_LEDGER_MODEL_FUZZ_H_
