// frmDiscountBDown: what a customer's discount is made of, without its window.
#ifndef ARD_DIALOGS_DISCOUNT_BREAKDOWN_H_
#define ARD_DIALOGS_DISCOUNT_BREAKDOWN_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "frame/decimal.h"

namespace ard::dialogs {

class DiscountBreakdown {
 public:
  // The numeric fields, in their order.
  enum class Element : std::size_t { kAccount, kQuantity, kValue, kUnexplained };
  static constexpr std::size_t kElements = 4;

  // `decimals` are those of all fields; `table` names the quantity table, "" for none.
  DiscountBreakdown(int decimals, std::wstring_view table)
      : decimals_(std::max(decimals, 0)), table_(table) {}

  std::wstring_view form() const { return L"frmDiscountBDown"; }
  std::wstring_view caption() const { return L"Discount Breakdown"; }
  std::wstring_view table() const { return table_; }

  // The label beside a field.
  static std::wstring_view Label(Element element) {
    constexpr std::wstring_view kLabels[kElements] = {L"Account discount %", L"Quantity discount %",
                                                      L"Value discount %", L"Not explained %"};
    return kLabels[static_cast<std::size_t>(element)];
  }
  void Set(Element element, std::optional<double> value) {
    values_[static_cast<std::size_t>(element)] = value;
  }
  // What a field shows; a discount that does not apply shows nothing.
  std::wstring Text(Element element) const {
    const std::optional<double>& value = values_[static_cast<std::size_t>(element)];
    if (!value) return {};
    std::wstring text = FormatFixed(*value, decimals_);
    if (decimals_ == 0) text.pop_back();  // the point
    return text;
  }

  // True until the button, or the close box, has closed the dialog.
  bool visible() const { return visible_; }
  void CloseClick() { visible_ = false; }
  void CloseBox() { CloseClick(); }

 private:
  int decimals_;
  std::wstring_view table_;
  std::array<std::optional<double>, kElements> values_;
  bool visible_ = true;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_DISCOUNT_BREAKDOWN_H_
