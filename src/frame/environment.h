// Environment: everything the library asks of the machine it runs on, behind one seam. There is a
// Windows one, a console one, and a scripted one for tests. Every operation may throw Error.
#ifndef ARD_FRAME_ENVIRONMENT_H_
#define ARD_FRAME_ENVIRONMENT_H_

#include <string>
#include <string_view>

#include "frame/trace.h"

namespace ard {

namespace dialogs {
class ProductDialog;
class SelectDialog;
}  // namespace dialogs

enum class Icon { kExclamation, kStop };

class Environment {
 public:
  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  virtual ~Environment() = default;

  // A modal message with an OK button.
  virtual void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) = 0;

  // Asks for a line of text, modally; "" when the user cancels.
  virtual std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) = 0;

  // Shows the dialog modally and returns once it has hidden itself (`dialog.visible()` is false).
  virtual void Show(dialogs::SelectDialog& dialog) = 0;
  virtual void Show(dialogs::ProductDialog& dialog) = 0;

  // The user's settings: text by application, section and name, such as "Options\ProductSearch" and
  // "Tab". `otherwise` is the answer where there is none.
  virtual std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                                  std::wstring_view name, std::wstring_view otherwise) = 0;
  virtual void SaveSetting(std::wstring_view application, std::wstring_view section,
                           std::wstring_view name, std::wstring_view value) = 0;

  Trace& trace() { return trace_; }

 private:
  Trace trace_;
};

}  // namespace ard

#endif  // ARD_FRAME_ENVIRONMENT_H_
