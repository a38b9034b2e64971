// How a class shows a dialog.
#ifndef ARD_DIALOGS_SHOW_H_
#define ARD_DIALOGS_SHOW_H_

#include <string>
#include <type_traits>

#include "dialogs/resizable.h"
#include "frame/context.h"
#include "frame/user_settings.h"

namespace ard::dialogs {

// Shows the dialog modally. One that cannot be shown is skipped, and counts as cancelled. Where the
// user has put it, how large and with which columns, is kept with the host's settings, if there are
// any.
template <class Dialog>
void Show(const Context& context, Dialog& dialog) {
  constexpr wchar_t kSection[] = L"Options\\Windows";
  std::wstring before;
  if constexpr (std::is_base_of_v<Resizable, Dialog>) {
    if (!context.registry_path.empty()) {
      before = dialog.placement = UserSetting(context, kSection, dialog.form(), L"");
    }
  }
  const Step step = {dialog.form(), L"Show"};
  if (Attempt(context.trace(), step, [&] { context.environment.Show(dialog); })) {
    context.trace().Noted(step, L"The user has closed it.");
  }
  if constexpr (std::is_base_of_v<Resizable, Dialog>) {
    if (!context.registry_path.empty() && dialog.placement != before) {
      SaveUserSetting(context, kSection, dialog.form(), dialog.placement);
    }
  }
}

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_SHOW_H_
