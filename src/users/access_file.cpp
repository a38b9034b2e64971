#include "users/access_file.h"

#include <cstdint>
#include <string>

#include "frame/text.h"

namespace ard::users {
namespace {

constexpr std::int32_t kNoAccess = 1;

}  // namespace

bool IsManager(std::wstring_view user) { return UpperCase(Trimmed(user)) == L"MANAGER"; }

bool FindUser(engine::DataFile& access, std::wstring_view user) {
  std::wstring stored;
  access.Get(kName, stored);
  for (std::wstring name : {UpperCase(user), LowerCase(user), std::wstring(user)}) {
    if (name.size() < stored.size()) name.resize(stored.size(), L' ');
    if (access.FindFirst(kName, name)) return true;
  }
  const std::int32_t count = access.Count();
  for (std::int32_t record = 1; record <= count; ++record) {
    if (access.Read(record) && access.Get(kName, stored, engine::kTrimmed) &&
        EqualsIgnoreCase(stored, Trimmed(user))) {
      return true;
    }
  }
  return false;
}

bool HasRight(engine::DataFile& access, std::wstring_view field) {
  std::int32_t right = kNoAccess;
  access.Get(field, right);
  return right != kNoAccess;
}

}  // namespace ard::users
