#include "accounts/suppliers.h"

#include "accounts/account.h"

namespace ard::accounts {

double Suppliers::GetDiscPercent(std::wstring_view acc_ref) const noexcept {
  return Call<double>(L"GetDiscPercent", {acc_ref}, [&](double& percentage) {
    engine::Record account(context(), kPurchaseLedger.record);
    if (FindAccount(account, acc_ref)) account.Get(L"DISCOUNT_RATE", percentage);
  });
}

}  // namespace ard::accounts
