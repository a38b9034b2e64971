#include "accounts/customers.h"

#include "accounts/ledger_accounts.h"

namespace ard::accounts {

bool Customers::IsValid(std::wstring_view acc_ref) const noexcept {
  return Call<bool>(L"IsValid",
                    [&](bool& valid) { valid = AccountExists(context(), kSalesLedger, acc_ref); });
}

std::wstring Customers::GetName(std::wstring_view acc_ref) const noexcept {
  return Call<std::wstring>(L"GetName", [&](std::wstring& name) {
    name = AccountText(context(), kSalesLedger, acc_ref, L"NAME");
  });
}

std::wstring Customers::GetContact(std::wstring_view acc_ref) const noexcept {
  return Call<std::wstring>(L"GetContact", [&](std::wstring& contact) {
    contact = AccountText(context(), kSalesLedger, acc_ref, L"CONTACT_NAME");
  });
}

std::wstring Customers::FastList() const noexcept {
  return Call<std::wstring>(
      L"FastList", [&](std::wstring& acc_ref) { acc_ref = PickAccount(context(), kSalesLedger); });
}

std::wstring Customers::List(std::wstring_view search_criteria) const noexcept {
  return Call<std::wstring>(L"List", [&](std::wstring& acc_ref) {
    acc_ref = PickAccount(context(), kSalesLedger, search_criteria);
  });
}

}  // namespace ard::accounts
