// How a class shows a dialog.
#ifndef ARD_DIALOGS_SHOW_H_
#define ARD_DIALOGS_SHOW_H_

#include "frame/context.h"

namespace ard::dialogs {

// Shows the dialog modally. One that cannot be shown is noted, and counts as cancelled.
template <class Dialog>
void Show(const Context& context, Dialog& dialog) {
  Attempt(context.trace(), {dialog.form(), L"Show"}, [&] { context.environment.Show(dialog); });
}

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_SHOW_H_
