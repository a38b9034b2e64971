// Environment: everything the library asks of the machine it runs on, behind one seam. There is a
// Windows one, a console one, and a scripted one for tests. Every operation may throw Error.
#ifndef ARD_FRAME_ENVIRONMENT_H_
#define ARD_FRAME_ENVIRONMENT_H_

#include <string_view>

#include "frame/trace.h"

namespace ard {

namespace dialogs {
class SelectDialog;
}

enum class Icon { kExclamation, kStop };

class Environment {
 public:
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  virtual ~Environment() = default;

  // A modal message with an OK button.
  virtual void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) = 0;

  // Shows the dialog modally and returns once it has hidden itself (`dialog.visible()` is false).
  virtual void Show(dialogs::SelectDialog& dialog) = 0;

  Trace& trace() { return trace_; }

 private:
  Trace trace_;
};

}  // namespace ard

#endif  // ARD_FRAME_ENVIRONMENT_H_
