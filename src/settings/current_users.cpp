#include <limits>

#include "dialogs/show.h"
#include "dialogs/user_list_dialog.h"
#include "engine/logon_queue.h"
#include "frame/text.h"
#include "settings/general.h"

namespace ard::settings {
namespace {

void CountOneMore(std::int16_t& count) {
  if (count < std::numeric_limits<std::int16_t>::max()) ++count;
}

}  // namespace

std::int16_t General::GetNumActiveUsers() const noexcept {
  return Call<std::int16_t>(L"GetNumActiveUsers", [&](std::int16_t& count) {
    engine::LogonQueue logons(context());
    while (logons.Next()) CountOneMore(count);
  });
}

std::int16_t General::GetNumActiveUsersInclDet(std::wstring& user_name,
                                               std::wstring& mach_name) const noexcept {
  return Call<std::int16_t>(L"GetNumActiveUsersInclDet", {Output(user_name), Output(mach_name)},
                            [&](std::int16_t& count) {
                              engine::LogonQueue logons(context());
                              bool found = false;
                              while (logons.Next()) {
                                CountOneMore(count);
                                if (found || logons.name() == Trimmed(user_name)) continue;
                                found = true;
                                user_name = logons.name();
                                mach_name = logons.Station();
                              }
                            });
}

void General::ShowUserList(bool manager) const noexcept {
  Run(L"ShowUserList", {manager}, [&] {
    dialogs::UserListDialog dialog(context(), manager);
    Show(context(), dialog);
  });
}

}  // namespace ard::settings
