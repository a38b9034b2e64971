#include "users/access_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "frame/text.h"

namespace ard::users {
namespace {

constexpr std::int32_t kNoAccess = 1;
constexpr std::wstring_view kManager = L"MANAGER";

}  // namespace

bool IsManager(std::wstring_view user) { return EqualsIgnoreCase(Trimmed(user), kManager); }

bool IsUserName(std::wstring_view user) {
  return !Trimmed(user).empty() && user.find(L'*') == std::wstring_view::npos;
}

bool FindUser(engine::DataFile& access, std::wstring_view user) {
  std::wstring name;  // the memory of the first is that of all
  if (!IsUserName(user)) {
    access.trace().Noted({kAccessData, L"FindUser"}, kNobodysName);
    return false;
  }
  // The length to pad to; nothing promises it before a record has been read. Without it the
  // searches might find others, and the records themselves are compared.
  const bool has_length = access.Get(kName, name);
  const std::size_t width = std::max(name.size(), user.size());
  const auto finds = [&](std::wstring_view spelling) {
    name = spelling;
    name.resize(width, L' ');
    Value key(std::move(name));
    const bool found = access.FindFirst(kName, key);
    name = std::move(key).ToText();
    return found;
  };
  if (has_length && (finds(UpperCase(user)) || finds(LowerCase(user)) || finds(user))) return true;
  const std::int32_t count = access.Count();
  for (std::int32_t record = 1; record <= count; ++record) {
    if (access.Read(record) && access.Get(kName, name) &&
        EqualsIgnoreCase(Trimmed(name), Trimmed(user))) {
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

bool HasPurchaseOrderAccess(const Context& context, std::wstring_view user) {
  engine::DataFile rights(context, kAccessData);
  bool found = false;
  if (!rights.Open(engine::Mode::kQuery)) return false;
  std::wstring pattern(user.size() + 1, L'*');
  user.copy(pattern.data(), user.size());
  if (!rights.FindFirst(kName, std::move(pattern), found)) return false;
  return !found || HasRight(rights, L"POP");
}

}  // namespace ard::users
