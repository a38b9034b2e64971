#include "accounts/customers.h"

#include "accounts/discount.h"
#include "dialogs/discount_breakdown.h"
#include "dialogs/show.h"
#include "frame/decimal.h"

namespace ard::accounts {

std::wstring Customers::GetContact(std::wstring_view acc_ref) const noexcept {
  return Call<std::wstring>(L"GetContact", {acc_ref}, [&](std::wstring& contact) {
    contact = TextOf(acc_ref, L"CONTACT_NAME");
  });
}

double Customers::GetDiscPercent(std::wstring_view acc_ref, std::wstring_view prod_code, double qty,
                                 double unit_price) const noexcept {
  return Call<double>(
      L"GetDiscPercent", {acc_ref, prod_code, qty, unit_price}, [&](double& percentage) {
        percentage = CalculateDiscount(context(), acc_ref, {prod_code, qty, unit_price}).Total();
      });
}

void Customers::ShowDiscBDown(std::wstring_view acc_ref, std::wstring_view prod_code, double qty,
                              double unit_price, double disc_on_screen,
                              std::int16_t qty_dp) const noexcept {
  Run(L"ShowDiscBDown", {acc_ref, prod_code, qty, unit_price, disc_on_screen, qty_dp}, [&] {
    const Discount discount = CalculateDiscount(context(), acc_ref, {prod_code, qty, unit_price});
    dialogs::DiscountBreakdown dialog(
        discount.table,
        {.account = discount.account_rate,
         .quantity = discount.quantity_rate,
         .value = discount.value_rate,
         .unexplained = ExactDifference(disc_on_screen, discount.Total())},
        qty_dp);
    Show(context(), dialog);
  });
}

}  // namespace ard::accounts
