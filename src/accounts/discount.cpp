#include "accounts/discount.h"

#include <cstdint>
#include <iterator>
#include <string>

#include "accounts/account.h"
#include "frame/decimal.h"
#include "frame/numbered_text.h"

namespace ard::accounts {
namespace {

using engine::Match;
using engine::Mode;

constexpr std::int16_t kLevels = 10;
constexpr std::int16_t kValueDiscount = 1;
constexpr std::int16_t kFirstTable = 2;

// A product's table, and how the names of the fields of its levels begin.
struct Table {
  std::wstring_view name;
  wchar_t level[14];
};
constexpr Table kTables[] = {{L"Table A", L"DISC_A_LEVEL_"},
                             {L"Table B", L"DISC_B_LEVEL_"},
                             {L"Table C", L"DISC_C_LEVEL_"},
                             {L"Table D", L"DISC_D_LEVEL_"},
                             {L"Table E", L"DISC_E_LEVEL_"}};

void NoteDiscount(Trace& trace, std::wstring_view table, std::wstring_view text) {
  trace.Noted({L"Customers", L"Discount", table}, text);
}

// The rate of the highest level whose threshold is above 0 and reached; levels need not ascend.
// `table` is what the trace calls them.
std::optional<double> RateReached(auto& source, std::wstring_view table, auto&& threshold_field,
                                  auto&& rate_field, double reached) {
  for (std::int16_t level = kLevels; level >= 1; --level) {
    double threshold = 0;
    source.GetIfThere(threshold_field.With(level), threshold);
    if (threshold <= 0 || !AtLeast(reached, threshold)) continue;
    double rate = 0;
    if (!source.Get(rate_field.With(level), rate)) return std::nullopt;
    if (source.trace().on()) {
      NoteDiscount(source.trace(), table, L"Level " + std::to_wstring(level) + L" is reached.");
    }
    return rate;
  }
  NoteDiscount(source.trace(), table, L"No level is reached.");
  return std::nullopt;
}

std::optional<double> ValueRate(const Context& context, double value) {
  engine::DataFile setup(context, L"SetupData");
  if (!setup.Open(Mode::kRead) || !setup.Read(1)) return std::nullopt;
  return RateReached(setup, L"Value", NumberedText(L"SALES_AMOUNT_SOLD_", L""),
                     NumberedText(L"SALES_ADD_DISC_", L""), value);
}

std::optional<double> QuantityRate(const Context& context, const Table& table,
                                   const OrderLine& line) {
  engine::Record product(context, L"StockRecord");
  if (!product.Set(L"STOCK_CODE", line.prod_code) || !product.Find(Match::kExact)) {
    return std::nullopt;
  }
  return RateReached(product, table.name, NumberedText(table.level, L"_QTY"),
                     NumberedText(table.level, L"_RATE"), line.quantity);
}

}  // namespace

double Discount::Total() const {
  return ExactSum(account_rate.value_or(0),
                  ExactSum(quantity_rate.value_or(0), value_rate.value_or(0)));
}

Discount CalculateDiscount(const Context& context, std::wstring_view acc_ref,
                           const OrderLine& line) {
  Discount discount;
  std::int16_t type = 0;
  {
    engine::Record account(context, L"SalesRecord");
    if (!FindAccount(account, acc_ref)) return discount;
    double rate = 0;
    if (account.Get(L"DISCOUNT_RATE", rate)) discount.account_rate = rate;
    account.Get(L"DISCOUNT_TYPE", type);
  }
  if (type == kValueDiscount) {
    discount.value_rate = ValueRate(context, line.quantity * line.unit_price);
  } else if (type >= kFirstTable && type < kFirstTable + std::ssize(kTables)) {
    const Table& table = kTables[type - kFirstTable];
    discount.table = table.name;
    discount.quantity_rate = QuantityRate(context, table, line);
  } else {
    NoteDiscount(context.trace(), L"", L"None but the account's own: its type has no levels.");
  }
  return discount;
}

}  // namespace ard::accounts
