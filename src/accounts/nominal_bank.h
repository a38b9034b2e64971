// Nominal and Bank: whether an account code exists, and the list to pick one from. These accounts
// carry no warnings.
#ifndef ARD_ACCOUNTS_NOMINAL_BANK_H_
#define ARD_ACCOUNTS_NOMINAL_BANK_H_

#include <optional>
#include <string>
#include <string_view>

#include "dialogs/fast_select.h"
#include "frame/public_class.h"

namespace ard::accounts {

extern const dialogs::FastSelectForm kNominalList;
extern const dialogs::FastSelectForm kBankList;

// What both have in common.
class CodedAccounts : public PublicClass {
 public:
  // Whether the account exists, of whatever type it is; looked up exactly as given.
  bool IsValid(std::wstring_view acc_ref) const noexcept;

  // The code, trimmed, of the account that the user picks; "" when cancelled. The list of nominal
  // accounts refuses control accounts; that of bank accounts shows the first twelve.
  std::wstring FastList() const noexcept;

 protected:
  // `record` is keyed by ACCOUNT_REF.
  CodedAccounts(std::wstring_view name, Environment& environment, std::wstring_view record,
                const dialogs::FastSelectForm& list)
      : PublicClass(name, environment), record_(record), list_(list) {}
  ~CodedAccounts() = default;

  std::wstring Pick(std::optional<std::wstring_view> criteria) const;

 private:
  std::wstring_view record_;
  const dialogs::FastSelectForm& list_;
};

class Nominal : public CodedAccounts {
 public:
  explicit Nominal(Environment& environment)
      : CodedAccounts(L"Nominal", environment, L"NominalRecord", kNominalList) {}

  // As FastList, with the list positioned on the first code that matches `search_criteria`.
  std::wstring List(std::wstring_view search_criteria) const noexcept;
};

class Bank : public CodedAccounts {
 public:
  explicit Bank(Environment& environment)
      : CodedAccounts(L"Bank", environment, L"BankRecord", kBankList) {}

  // The code, trimmed, that the user picks among the accounts that match `search_criteria` (a
  // trailing "*" matches any ending); "" when cancelled. When none matches, the list shows the
  // account on which the file stands. Progress is shown while the accounts are read.
  std::wstring List(std::wstring_view search_criteria) const noexcept;
};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_NOMINAL_BANK_H_
