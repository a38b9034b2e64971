// The discount of a customer on a line of a sales order, and what it is made of.
#ifndef ARD_ACCOUNTS_DISCOUNT_H_
#define ARD_ACCOUNTS_DISCOUNT_H_

#include <optional>
#include <string_view>

#include "frame/context.h"

namespace ard::accounts {

struct OrderLine {
  std::wstring_view prod_code;
  double quantity;
  double unit_price;
};

// In percent. A part that does not apply, or cannot be told, is not set.
struct Discount {
  std::optional<double> account_rate;
  std::optional<double> quantity_rate;  // of the level reached in one of the product's tables
  std::optional<double> value_rate;     // of the level reached by the value of the line
  std::wstring_view table;              // "Table A" to "Table E" when a quantity table applies

  // The parts add up, without a cap.
  double Total() const;
};

// Nothing is set when there is no such account.
Discount CalculateDiscount(const Context& context, std::wstring_view acc_ref,
                           const OrderLine& line);

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_DISCOUNT_H_
