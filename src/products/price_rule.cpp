#include "products/price_rule.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace ard::products {
namespace {

using Rule = double (*)(const BasePrices& prices, double value);

// By Discount_Type. Percentages divide first and multiply then, which fixes how results round.
constexpr Rule kRules[] = {
    [](const BasePrices&, double value) { return value; },
    [](const BasePrices& prices, double) { return prices.selling; },
    [](const BasePrices& prices, double value) {
      return prices.selling - (prices.selling / 100) * value;
    },
    [](const BasePrices& prices, double value) { return prices.selling - value; },
    [](const BasePrices& prices, double value) {
      return prices.cost + (prices.cost / 100) * value;
    },
    [](const BasePrices& prices, double value) { return prices.cost + value; },
};

}  // namespace

double ApplyPriceRule(const BasePrices& prices, engine::Record& entry) {
  std::int16_t type = 0;
  double value = 0;
  if (!entry.Get(L"Discount_Type", type) || !entry.Get(L"Value", value)) {
    return prices.selling;
  }
  if (type < 0 || static_cast<std::size_t>(type) >= std::size(kRules)) {
    entry.trace().Noted({L"PriceRecord", L"Fields", L"Discount_Type"},
                        L"None of 0 to 5: no price.");
    return 0;
  }
  return kRules[type](prices, value);
}

}  // namespace ard::products
