// Suppliers: questions about supplier (purchase ledger) accounts, and the list to pick one from.
#ifndef ARD_ACCOUNTS_SUPPLIERS_H_
#define ARD_ACCOUNTS_SUPPLIERS_H_

#include <string_view>

#include "accounts/ledger_accounts.h"

namespace ard::accounts {

class Suppliers : public LedgerAccounts {
 public:
  explicit Suppliers(Environment& environment)
      : LedgerAccounts(L"Suppliers", environment, kPurchaseLedger) {}

  // The supplier's rate in percent; 0 when there is no such account.
  double GetDiscPercent(std::wstring_view acc_ref) const noexcept;
};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_SUPPLIERS_H_
