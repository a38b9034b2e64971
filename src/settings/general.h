// General: the company's settings, its current users, and what ties the host to the accounts
// program.
#ifndef ARD_SETTINGS_GENERAL_H_
#define ARD_SETTINGS_GENERAL_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/public_class.h"

namespace ard::settings {

class General : public PublicClass {
 public:
  explicit General(Environment& environment) : PublicClass(L"General", environment) {}

  // ---- The company's settings (company_settings.cpp) ----

  // ---- The accounts program (accounts_program.cpp) ----

  // ---- Current users (current_users.cpp) ----
};

}  // namespace ard::settings

#endif  // ARD_SETTINGS_GENERAL_H_
