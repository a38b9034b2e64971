// What the sales and the purchase ledger have in common: look-ups of an account by its reference,
// and picking one from a list with the warnings that go with it.
#ifndef ARD_ACCOUNTS_LEDGER_ACCOUNTS_H_
#define ARD_ACCOUNTS_LEDGER_ACCOUNTS_H_

#include <optional>
#include <string>
#include <string_view>

#include "dialogs/fast_select.h"
#include "frame/context.h"

namespace ard::accounts {

// What tells one ledger from the other.
struct Ledger {
  std::wstring_view record;  // keyed by ACCOUNT_REF
  const dialogs::FastSelectForm& list;
};

extern const Ledger kSalesLedger;

bool AccountExists(const Context& context, const Ledger& ledger, std::wstring_view acc_ref);

// A text field of the account, trimmed; "" when there is no such account.
std::wstring AccountText(const Context& context, const Ledger& ledger, std::wstring_view acc_ref,
                         std::wstring_view field);

// The reference, trimmed, of the account that the user picks; "" when cancelled.
std::wstring PickAccount(const Context& context, const Ledger& ledger,
                         std::optional<std::wstring_view> criteria = std::nullopt);

// The company's TERMS_WARNING setting; off when it cannot be read.
bool IsTermsWarningOn(const Context& context);

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_LEDGER_ACCOUNTS_H_
