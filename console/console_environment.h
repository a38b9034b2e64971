// The console's Environment: messages and dialogs as text, driven by a person or a pipe.
#ifndef ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_
#define ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_

#include <iosfwd>
#include <string>
#include <string_view>

#include "frame/environment.h"

namespace ard::console {

class ConsoleEnvironment : public Environment {
 public:
  // Both streams carry UTF-8 and must outlive the environment.
  ConsoleEnvironment(std::istream& in, std::ostream& out) : in_(in), out_(out) {}

  // Repeats what it reads, for an input that does not show itself: a pipe.
  void set_echo(bool echo) { echo_ = echo; }

  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) override;

  // Draws the dialog, and again after each line of input: an empty line is Enter, a single
  // character is that key, a word is a command. The end of the input closes the dialog.
  void Show(dialogs::SelectDialog& dialog) override;

 private:
  void Draw(dialogs::SelectDialog& dialog);
  void Handle(dialogs::SelectDialog& dialog, const std::wstring& line);

  std::istream& in_;
  std::ostream& out_;
  bool echo_ = false;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_
