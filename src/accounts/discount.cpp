#include "accounts/discount.h"

#include <array>
#include <cstdint>
#include <string>

#include "accounts/account.h"
#include "frame/decimal.h"

namespace ard::accounts {
namespace {

using engine::Match;
using engine::Mode;

constexpr int kLevels = 10;
constexpr std::int16_t kValueDiscount = 1;
constexpr std::int16_t kFirstTable = 2;
constexpr std::array<std::wstring_view, 5> kTables = {L"Table A", L"Table B", L"Table C",
                                                      L"Table D", L"Table E"};

// A field of each level: its name around the number of the level.
struct LevelField {
  std::wstring before;
  std::wstring after;
  std::wstring Name(int level) const { return before + std::to_wstring(level) + after; }
};

// The rate of the highest level whose threshold is above 0 and reached; levels need not ascend.
template <class Source>
std::optional<double> RateReached(Source& source, const LevelField& threshold_field,
                                  const LevelField& rate_field, double reached) {
  for (int level = kLevels; level >= 1; --level) {
    double threshold = 0;
    source.Get(threshold_field.Name(level), threshold);
    if (threshold <= 0 || ExactDifference(reached, threshold) < 0) continue;
    double rate = 0;
    if (!source.Get(rate_field.Name(level), rate)) return std::nullopt;
    return rate;
  }
  return std::nullopt;
}

std::optional<double> ValueRate(const Context& context, double value) {
  engine::DataFile setup(context, L"SetupData");
  if (!setup.Open(Mode::kRead) || !setup.Read(1)) return std::nullopt;
  return RateReached(setup, {L"SALES_AMOUNT_SOLD_", L""}, {L"SALES_ADD_DISC_", L""}, value);
}

std::optional<double> QuantityRate(const Context& context, std::wstring_view table,
                                   const OrderLine& line) {
  engine::Record product(context, L"StockRecord");
  if (!product.Set(L"STOCK_CODE", line.prod_code) || !product.Find(Match::kExact)) {
    return std::nullopt;
  }
  const std::wstring level = std::wstring(L"DISC_") + table.back() + L"_LEVEL_";
  return RateReached(product, {level, L"_QTY"}, {level, L"_RATE"}, line.quantity);
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
  } else if (type >= kFirstTable && type < kFirstTable + static_cast<int>(kTables.size())) {
    discount.table = kTables[static_cast<std::size_t>(type - kFirstTable)];
    discount.quantity_rate = QuantityRate(context, discount.table, line);
  }
  return discount;
}

}  // namespace ard::accounts
