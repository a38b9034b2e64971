// How a class shows a dialog.
#ifndef ARD_DIALOGS_SHOW_H_
#define ARD_DIALOGS_SHOW_H_

#include "frame/context.h"

namespace ard::dialogs {

// Shows the dialog modally. One that cannot be shown is skipped, and counts as cancelled.
template <class Dialog>
void Show(const Context& context, Dialog& dialog) {
  const Step step = {dialog.form(), L"Show"};
  if (Attempt(context.trace(), step, [&] { context.environment.Show(dialog); })) {
    context.trace().Noted(step, L"The user has closed it.");
  }
}

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_SHOW_H_
