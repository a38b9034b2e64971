// What a dialog whose window can be resized has.
#ifndef ARD_DIALOGS_RESIZABLE_H_
#define ARD_DIALOGS_RESIZABLE_H_

#include <string>

namespace ard::dialogs {

struct Resizable {
  // How the window's user has left it, in words of its own; "" as it is by itself.
  std::wstring placement;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_RESIZABLE_H_
