// What the accounts of all ledgers have in common: they are found by ACCOUNT_REF, exactly as given.
#ifndef ARD_ACCOUNTS_ACCOUNT_H_
#define ARD_ACCOUNTS_ACCOUNT_H_

#include <string_view>

#include "engine/handles.h"

namespace ard::accounts {

inline bool FindAccount(engine::Record& account, std::wstring_view acc_ref) {
  return account.Set(L"ACCOUNT_REF", acc_ref) && account.Find(engine::Match::kExact);
}

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_ACCOUNT_H_
