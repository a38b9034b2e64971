// What the accounts of all ledgers have in common: they are found by ACCOUNT_REF, exactly as given,
// and listed with their names.
#ifndef ARD_ACCOUNTS_ACCOUNT_H_
#define ARD_ACCOUNTS_ACCOUNT_H_

#include <cmath>
#include <compare>
#include <cstdint>
#include <limits>
#include <string_view>

#include "dialogs/indexed_file.h"
#include "engine/handles.h"

namespace ard::accounts {

inline bool FindAccount(engine::Record& account, std::wstring_view acc_ref) {
  return account.Set(L"ACCOUNT_REF", acc_ref) && account.Find(engine::Match::kExact);
}

// An amount of money, in the order of amounts.
struct Amount {
  Currency currency;
  double beyond = 0;  // what it is when that is more, or less, than a currency holds
  auto operator<=>(const Amount&) const = default;
};
inline void Convert(Value&& value, Amount& amount) {
  constexpr double kMost = 922337203685477;
  const double number = value.ToDouble();
  if (std::abs(number) <= kMost) {
    amount = {value.ToCurrency()};
  } else {
    using Units = std::numeric_limits<std::int64_t>;
    amount = {{number > 0 ? Units::max() : Units::min()}, number};
  }
}

// The credit-limit rule, for the current record of `account`. A limit of 0 means no limit, and the
// balance is not asked for; a balance equal to the limit is not over it. Amounts are compared as
// currency, so that the noise of a double puts no account over its limit.
bool IsOverLimit(auto& account) {
  Amount limit;
  Amount balance;
  return account.Get(L"CREDIT_LIMIT", limit) && limit > Amount{} &&
         account.Get(L"BALANCE", balance) && balance > limit;
}

inline constexpr dialogs::FieldColumn kAccountColumns[] = {{L"A/C", 15, L"ACCOUNT_REF"},
                                                           {L"Name", 60, L"NAME"}};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_ACCOUNT_H_
