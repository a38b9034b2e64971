// frmDiscountBDown: what a customer's discount is made of, without its window.
#ifndef ARD_DIALOGS_DISCOUNT_BREAKDOWN_H_
#define ARD_DIALOGS_DISCOUNT_BREAKDOWN_H_

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "dialogs/fields_dialog.h"
#include "frame/decimal.h"

namespace ard::dialogs {

class DiscountBreakdown : public FieldsDialog {
 public:
  // In percent; a discount that does not apply shows nothing.
  struct Rates {
    std::optional<double> account, quantity, value, unexplained;
  };

  // `table` names the table of quantity discounts, "" for none; `decimals` are those of all rates.
  DiscountBreakdown(std::wstring_view table, const Rates& rates, int decimals)
      : FieldsDialog(L"frmDiscountBDown", L"Discount Breakdown",
                     {{L"Discount table", std::wstring(table)},
                      {L"Account discount %", Text(rates.account, decimals), true},
                      {L"Quantity discount %", Text(rates.quantity, decimals), true},
                      {L"Value discount %", Text(rates.value, decimals), true},
                      {L"Unexplained discount %", Text(rates.unexplained, decimals), true}}) {}

 private:
  static std::wstring Text(std::optional<double> rate, int decimals) {
    std::wstring text;
    if (rate) text = FormatFixed(*rate, std::max(decimals, 0));
    if (text.ends_with(L'.')) text.pop_back();
    return text;
  }
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_DISCOUNT_BREAKDOWN_H_
