// LedgerAccounts: what the sales and the purchase ledger have in common. Look-ups of an account by
// its reference, and picking one from a list with the warnings that go with it.
#ifndef ARD_ACCOUNTS_LEDGER_ACCOUNTS_H_
#define ARD_ACCOUNTS_LEDGER_ACCOUNTS_H_

#include <optional>
#include <string>
#include <string_view>

#include "dialogs/fast_select.h"
#include "frame/public_class.h"

namespace ard::accounts {

// What tells one ledger from the other.
struct Ledger {
  std::wstring_view record;  // keyed by ACCOUNT_REF
  dialogs::FastSelectForm list;
};

extern const Ledger kSalesLedger;
extern const Ledger kPurchaseLedger;

// References are looked up exactly as given: neither trimmed nor upper-cased.
class LedgerAccounts : public PublicClass {
 public:
  // Whether the account exists; one on hold, over its limit or without agreed terms does.
  bool IsValid(std::wstring_view acc_ref) const noexcept;

  // NAME, trimmed; "" when there is no such account.
  std::wstring GetName(std::wstring_view acc_ref) const noexcept;

  // The reference, trimmed, of the account that the user picks from the list; "" when cancelled.
  // A choice that is on hold, over its limit or without agreed terms is warned about when the
  // company's terms warning is on, and returned all the same.
  std::wstring FastList() const noexcept;
  // The same, with the list positioned on the first reference that matches `search_criteria`.
  std::wstring List(std::wstring_view search_criteria) const noexcept;

 protected:
  LedgerAccounts(std::wstring_view name, Environment& environment, const Ledger& ledger)
      : PublicClass(name, environment), ledger_(ledger) {}
  ~LedgerAccounts() = default;

  // A text field of the account, trimmed; "" when there is no such account.
  std::wstring TextOf(std::wstring_view acc_ref, Name field) const;

 private:
  std::wstring Pick(std::optional<std::wstring_view> criteria) const;
  void WarnAboutChoice(const dialogs::Row& choice) const;

  const Ledger& ledger_;
};

// The company's TERMS_WARNING setting; off when it cannot be read.
bool IsTermsWarningOn(const Context& context);

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_LEDGER_ACCOUNTS_H_
