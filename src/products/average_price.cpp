#include <string_view>

#include "frame/decimal.h"
#include "products/stock_record.h"

namespace ard::products {
namespace {

bool IsReceipt(std::int16_t type) { return type == 1 || type == 3 || type == 5 || type == 7; }

}  // namespace

// Nothing is rounded. Whether something is left, of a receipt and in all, is asked of the exact
// decimals, so that the noise of 0.1 and 0.2 less 0.3 is never divided by.
double AveragePrice(engine::Record& stock) {
  engine::Transactions transactions(stock);
  double total_quantity = 0;
  double total_cost = 0;
  double left = 0;
  transactions.MoveFirst();
  const std::int32_t count = transactions.Count();
  for (std::int32_t i = 1; i <= count; ++i, transactions.MoveNext()) {
    std::int16_t type = 0;
    double quantity = 0;
    double used = 0;
    if (!transactions.Get(L"Type", type) || !IsReceipt(type) ||
        !transactions.Get(L"QUANTITY", quantity) || !transactions.Get(L"QTY_USED", used)) {
      continue;
    }
    const double exact = ExactDifference(quantity, used);
    if (exact == 0) continue;
    const double remaining = quantity - used;
    left = ExactSum(left, exact);
    total_quantity += remaining;
    double cost = 0;
    if (transactions.Get(L"COST_PRICE", cost)) total_cost += cost * remaining;
  }
  if (left == 0 || total_quantity == 0) {
    const std::wstring_view reason = stock.exists()
                                         ? L"None: no receipt that can be read has anything left."
                                         : L"None: no stock record has been passed.";
    stock.trace().Noted({L"Products", L"GetAveragePrice"}, reason);
    return 0;
  }
  return total_cost / total_quantity;
}

}  // namespace ard::products
