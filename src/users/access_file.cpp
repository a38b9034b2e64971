#include "users/access_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "frame/text.h"

namespace ard::users {
namespace {

constexpr std::int32_t kNoAccess = 1;

}  // namespace

bool IsManager(std::wstring_view user) { return EqualsIgnoreCase(Trimmed(user), L"MANAGER"); }

bool IsUserName(std::wstring_view user) {
  return !Trimmed(user).empty() && user.find(L'*') == std::wstring_view::npos;
}

bool FindUser(engine::DataFile& access, std::wstring_view user) {
  std::wstring stored;
  if (!IsUserName(user)) access.trace().Noted({kAccessData, L"FindUser"}, kNobodysName);
  if (!IsUserName(user) || !access.Get(kName, stored)) return false;
  const std::size_t width = stored.size();
  const auto finds = [&](std::wstring name) {
    if (name.size() < width) name.resize(width, L' ');
    return access.FindFirst(kName, std::move(name));
  };
  if (finds(UpperCase(user, width)) || finds(LowerCase(user, width)) || finds(std::wstring(user))) {
    return true;
  }
  const std::int32_t count = access.Count();
  for (std::int32_t record = 1; record <= count; ++record) {
    if (access.Read(record) && access.Get(kName, stored) &&
        EqualsIgnoreCase(Trimmed(stored), Trimmed(user))) {
      return true;
    }
  }
  access.trace().Noted({kAccessData, L"FindUser"}, L"Refused: no user has that name.");
  return false;
}

bool HasRight(engine::DataFile& access, Name field) {
  std::int32_t right = kNoAccess;
  access.Get(field, right);
  if (right != kNoAccess) return true;
  access.trace().Noted({kAccessData, L"HasRight", field},
                       L"Refused: the right is 1, or cannot be read.");
  return false;
}

}  // namespace ard::users
