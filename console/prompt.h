// The classes at a text prompt: one object of each class, their properties and methods by name.
#ifndef ARD_CONSOLE_PROMPT_H_
#define ARD_CONSOLE_PROMPT_H_

#include <iosfwd>
#include <string>
#include <string_view>

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

  // Reads and carries out lines until the end of the input or "quit". Returns whether every line
  // could be carried out.
  bool Run(bool interactive);

  // One line: `? Class.Member(arguments)` answers the member's result as a literal,
  // followed by its outputs, `Class.Property = value` an empty text. Throws PromptError.
  std::wstring Evaluate(std::wstring_view line);

 private:
  std::string Help() const;

  std::istream& in_;
  std::ostream& out_;
  ConsoleEnvironment environment_;
  Classes classes_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_PROMPT_H_
