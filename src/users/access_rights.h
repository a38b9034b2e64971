// cAccessRights: what the accounts product lets its users do.
#ifndef ARD_USERS_ACCESS_RIGHTS_H_
#define ARD_USERS_ACCESS_RIGHTS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/public_class.h"

namespace ard::users {

// The published vxAccess: kinds of record to drill down to, from 0.
enum class Access : std::int32_t {
  kCustomerRecord,
  kSupplierRecord,
  kNominalRecord,
  kBankRecord,
  kProductRecord,
  kInvoiceRecord,
  kSopRecord,
  kPopRecord,
};

class AccessRights : public PublicClass {
 public:
  explicit AccessRights(Environment& environment) : PublicClass(L"cAccessRights", environment) {}

  // Whether the user may open such records. The manager always may; who is not a user may not, nor
  // does anyone get at a kind that there is none of. A user's refusal is explained in a message
  // when `display_message` asks for it.
  bool IsUserAllowedAccess(std::wstring_view user_name, Access option,
                           bool display_message) const noexcept;
  // Adds a user who may do everything. True, too, for one who is there already.
  bool AddUser(std::wstring_view user_name) const noexcept;
  // Whether there is such a user.
  bool IsValid(std::wstring_view user_name) const noexcept;
  // The name, trimmed, that the user picks; "" when cancelled.
  std::wstring List() const noexcept;
};

}  // namespace ard::users

#endif  // ARD_USERS_ACCESS_RIGHTS_H_
