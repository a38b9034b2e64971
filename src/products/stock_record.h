// The stock record of one product, located by its code.
#ifndef ARD_PRODUCTS_STOCK_RECORD_H_
#define ARD_PRODUCTS_STOCK_RECORD_H_

#include <string_view>

#include "engine/handles.h"

namespace ard::products {

// Locates the product in `stock`, a StockRecord, by its code exactly as given.
inline bool FindProduct(engine::Record& stock, std::wstring_view stock_code) {
  return stock.Set(L"STOCK_CODE", stock_code) && stock.Find(engine::Match::kExact);
}

// What a unit has cost on average, of all that is left of the receipts; 0 when nothing is.
double AveragePrice(engine::Record& stock);

}  // namespace ard::products

#endif  // ARD_PRODUCTS_STOCK_RECORD_H_
