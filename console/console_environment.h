// The console's Environment: messages and dialogs as text, driven by a person or a pipe.
#ifndef ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_
#define ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_

#include <iosfwd>
#include <map>
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

  // The answer is a line of input; an empty one, or none, cancels.
  std::wstring InputBox(std::wstring_view prompt, std::wstring_view title) override;

  // Draws the dialog, and again after each line of input: an empty line is Enter, a single
  // character is that key, a word is a command. The end of the input closes the dialog.
  void Show(dialogs::SelectDialog& dialog) override { Converse(dialog, nullptr); }
  void Show(dialogs::ProductDialog& dialog) override;

  // Settings last as long as the environment.
  std::wstring GetSetting(std::wstring_view application, std::wstring_view section,
                          std::wstring_view name, std::wstring_view otherwise) override;
  void SaveSetting(std::wstring_view application, std::wstring_view section, std::wstring_view name,
                   std::wstring_view value) override;

 private:
  // `products` is the same dialog when it is that of the products.
  void Converse(dialogs::SelectDialog& dialog, dialogs::ProductDialog* products);
  void Draw(dialogs::SelectDialog& dialog, dialogs::ProductDialog* products);
  void Handle(dialogs::SelectDialog& dialog, dialogs::ProductDialog* products,
              const std::wstring& line);
  bool ReadLine(std::wstring& line);

  std::istream& in_;
  std::ostream& out_;
  bool echo_ = false;
  std::map<std::wstring, std::wstring> settings_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_CONSOLE_ENVIRONMENT_H_
