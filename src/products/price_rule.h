// What one entry of the price list makes of a product's prices.
#ifndef ARD_PRODUCTS_PRICE_RULE_H_
#define ARD_PRODUCTS_PRICE_RULE_H_

#include "engine/handles.h"

namespace ard::products {

struct BasePrices {
  double selling = 0;
  double cost = 0;
};

// The price by the current entry of `entry`, a PriceRecord: its Discount_Type says how its Value
// works on the prices. 0 for an unknown type; an entry that cannot be read leaves the selling
// price.
double ApplyPriceRule(const BasePrices& prices, engine::Record& entry);

}  // namespace ard::products

#endif  // ARD_PRODUCTS_PRICE_RULE_H_
