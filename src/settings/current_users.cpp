#include <algorithm>
#include <limits>
#include <vector>

#include "dialogs/user_list_dialog.h"
#include "engine/logon_queue.h"
#include "frame/text.h"
#include "settings/general.h"

namespace ard::settings {
namespace {

using engine::ActiveLogon;

std::int16_t CountOf(const std::vector<ActiveLogon>& logons) {
  constexpr std::size_t kMost = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(logons.size(), kMost));
}

}  // namespace

std::int16_t General::GetNumActiveUsers() const noexcept {
  return Call<std::int16_t>(L"GetNumActiveUsers", [&](std::int16_t& count) {
    count = CountOf(engine::ActiveLogons(context()));
  });
}

std::int16_t General::GetNumActiveUsersInclDet(std::wstring& user_name,
                                               std::wstring& mach_name) const noexcept {
  return Call<std::int16_t>(L"GetNumActiveUsersInclDet", [&](std::int16_t& count) {
    std::vector<ActiveLogon> logons = engine::ActiveLogons(context());
    count = CountOf(logons);
    const std::wstring_view own = Trimmed(user_name);
    const auto other = std::find_if(logons.begin(), logons.end(),
                                    [&](const ActiveLogon& logon) { return logon.name != own; });
    if (other == logons.end()) return;
    user_name = std::move(other->name);
    mach_name = std::move(other->station);
  });
}

void General::ShowUserList(bool manager) const noexcept {
  Run(L"ShowUserList", [&] {
    dialogs::UserListDialog dialog(context(), manager);
    Attempt(context().trace(), {dialog.form(), L"Show"},
            [&] { context().environment.Show(dialog); });
  });
}

}  // namespace ard::settings
