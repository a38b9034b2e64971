#include "accounts/customers.h"

#include "accounts/discount.h"
#include "dialogs/discount_breakdown.h"
#include "frame/decimal.h"

namespace ard::accounts {

std::wstring Customers::GetContact(std::wstring_view acc_ref) const noexcept {
  return Call<std::wstring>(
      L"GetContact", [&](std::wstring& contact) { contact = TextOf(acc_ref, L"CONTACT_NAME"); });
}

double Customers::GetDiscPercent(std::wstring_view acc_ref, std::wstring_view prod_code, double qty,
                                 double unit_price) const noexcept {
  return Call<double>(L"GetDiscPercent", [&](double& percentage) {
    percentage = CalculateDiscount(context(), acc_ref, {prod_code, qty, unit_price}).Total();
  });
}

void Customers::ShowDiscBDown(std::wstring_view acc_ref, std::wstring_view prod_code, double qty,
                              double unit_price, double disc_on_screen,
                              std::int16_t qty_dp) const noexcept {
  Run(L"ShowDiscBDown", [&] {
    using Element = dialogs::DiscountBreakdown::Element;
    const Discount discount = CalculateDiscount(context(), acc_ref, {prod_code, qty, unit_price});
    dialogs::DiscountBreakdown dialog(qty_dp, discount.table);
    dialog.Set(Element::kAccount, discount.account_rate);
    dialog.Set(Element::kQuantity, discount.quantity_rate);
    dialog.Set(Element::kValue, discount.value_rate);
    dialog.Set(Element::kUnexplained, ExactDifference(disc_on_screen, discount.Total()));
    Attempt(context().trace(), {dialog.form(), L"Show"},
            [&] { context().environment.Show(dialog); });
  });
}

}  // namespace ard::accounts
