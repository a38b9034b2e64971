// The classes at a text prompt: one object of each class, their properties and methods by name.
#ifndef ARD_CONSOLE_PROMPT_H_
#define ARD_CONSOLE_PROMPT_H_

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "console/classes.h"
#include "console/console_environment.h"

namespace ard::console {

// A line that cannot be carried out: what is wrong, and at which character (from 1).
struct PromptError {
  std::wstring text;
  std::size_t column;
};

class Prompt {
 public:
  // Objects work on `stores`. The streams carry UTF-8 and must outlive the prompt.
  Prompt(std::istream& in, std::ostream& out, const Stores& stores);

  // Reads a line that is no answer to a dialog; false at the end of the input.
  using ReadCommand = std::function<bool(std::string& line)>;

  // Reads and carries out lines until the end of the input, "quit" or "exit". Returns whether every
  // line could be carried out.
  bool Run(bool interactive, const ReadCommand& read_command = nullptr);

  // One line: `? Class.Member(arguments)` answers the member's result as a literal,
  // followed by its outputs, `Class.Property = value` an empty text. Throws PromptError.
  std::wstring Evaluate(std::wstring_view line);

  // "help", "help Class" or "help Class.Member": the members, by class, with types. Throws
  // PromptError.
  std::wstring Help(std::wstring_view line) const;

  // That of all that is called.
  Environment& environment() { return environment_; }

  // What a word that has been begun may become: classes, or members of a class.
  std::vector<std::string> Completions(std::string_view word) const;

 private:
  std::istream& in_;
  std::ostream& out_;
  ConsoleEnvironment environment_;
  Classes classes_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_PROMPT_H_
