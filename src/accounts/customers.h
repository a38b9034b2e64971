// Customers: questions about customer (sales ledger) accounts, and the list to pick one from.
#ifndef ARD_ACCOUNTS_CUSTOMERS_H_
#define ARD_ACCOUNTS_CUSTOMERS_H_

#include <string>
#include <string_view>

#include "frame/public_class.h"

namespace ard::accounts {

// References are looked up in SalesRecord exactly as given: neither trimmed nor upper-cased.
class Customers : public PublicClass {
 public:
  explicit Customers(Environment& environment) : PublicClass(L"Customers", environment) {}

  // Whether the account exists; one on hold, over its limit or without agreed terms does.
  bool IsValid(std::wstring_view acc_ref) const noexcept;

  // NAME and CONTACT_NAME, trimmed; "" when there is no such account.
  std::wstring GetName(std::wstring_view acc_ref) const noexcept;
  std::wstring GetContact(std::wstring_view acc_ref) const noexcept;

  // The reference, trimmed, of the account that the user picks from the list; "" when cancelled.
  // A choice that is on hold, over its limit or without agreed terms is warned about when the
  // company's terms warning is on, and returned all the same.
  std::wstring FastList() const noexcept;
  // The same, with the list positioned on the first reference that matches `search_criteria`.
  std::wstring List(std::wstring_view search_criteria) const noexcept;
};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_CUSTOMERS_H_
