// Customers: questions about customer (sales ledger) accounts, their discounts, and the list to
// pick one from.
#ifndef ARD_ACCOUNTS_CUSTOMERS_H_
#define ARD_ACCOUNTS_CUSTOMERS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "accounts/ledger_accounts.h"

namespace ard::accounts {

class Customers : public LedgerAccounts {
 public:
  explicit Customers(Environment& environment)
      : LedgerAccounts(L"Customers", environment, kSalesLedger) {}

  // CONTACT_NAME, trimmed; "" when there is no such account.
  std::wstring GetContact(std::wstring_view acc_ref) const noexcept;

  // The percentage that this customer gets on this product: the account's own rate plus that of the
  // level reached, of the company's value discounts or of the product's quantity table, whichever
  // the account's type asks for. 0 when there is no such account.
  double GetDiscPercent(std::wstring_view acc_ref, std::wstring_view prod_code, double qty,
                        double unit_price) const noexcept;
  // Shows what that percentage is made of, with `qty_dp` decimals, and how much of `disc_on_screen`
  // it leaves unexplained.
  void ShowDiscBDown(std::wstring_view acc_ref, std::wstring_view prod_code, double qty,
                     double unit_price, double disc_on_screen, std::int16_t qty_dp) const noexcept;
};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_CUSTOMERS_H_
