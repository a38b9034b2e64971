// The classes at a text prompt: one object of each class, their properties and methods by name.
#ifndef ARD_CONSOLE_PROMPT_H_
#define ARD_CONSOLE_PROMPT_H_

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "accounts/customers.h"
#include "console/console_environment.h"
#include "engine/seam.h"

namespace ard::console {

// A line that cannot be carried out: what is wrong, and at which character (from 1).
struct PromptError {
  std::wstring text;
  std::size_t column;
};

using Arguments = std::vector<Value>;

struct Member {
  std::wstring_view class_name;
  std::wstring_view name;
  std::vector<std::wstring_view> parameters;
  std::function<Value(Arguments&)> call;
  std::function<void(Value)> put = nullptr;  // of a property
};

class Prompt {
 public:
  // Objects work on `workspace`. The streams carry UTF-8 and must outlive the prompt.
  Prompt(std::istream& in, std::ostream& out, std::shared_ptr<engine::Workspace> workspace);

  // Reads and carries out lines until the end of the input or "quit". Returns whether every line
  // could be carried out.
  bool Run(bool interactive);

  // One line: `? Class.Member(arguments)` answers the member's result as a literal,
  // `Class.Property = value` an empty text. Throws PromptError.
  std::wstring Evaluate(std::wstring_view line);

 private:
  void AddProperties(PublicClass& object);
  std::string Help() const;

  std::istream& in_;
  std::ostream& out_;
  ConsoleEnvironment environment_;
  accounts::Customers customers_{environment_};
  std::vector<Member> members_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_PROMPT_H_
