#include "console/line_editor.h"

#ifdef ARD_LINE_EDITOR
#include <editline/readline.h>
#endif

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "console/console_environment.h"
#include "frame/text.h"

namespace ard::console {

#ifdef ARD_LINE_EDITOR
namespace {

// The editor asks without saying for whom.
const Prompt* asked = nullptr;

char* NextCompletion(const char* word, int number) {
  static std::vector<std::string> completions;
  if (number == 0) completions = asked->Completions(word);
  const auto index = static_cast<std::size_t>(number);
  return index < completions.size() ? strdup(completions[index].c_str()) : nullptr;
}

char** Complete(const char* word, int, int) {
  rl_attempted_completion_over = 1;  // no names of files
  return rl_completion_matches(word, NextCompletion);
}

bool Read(std::string& line) {
  const std::unique_ptr<char, decltype(&std::free)> typed(readline("> "), &std::free);
  if (!typed) return false;
  line = typed.get();
  const std::wstring text = FromUtf8(line);
  if (!Trimmed(text).empty() && WithoutPassword(text) == text) add_history(line.c_str());
  return true;
}

}  // namespace

Prompt::ReadCommand LineEditor(const Prompt& prompt) {
  std::setlocale(LC_CTYPE, "");  // how wide the characters are
  asked = &prompt;
  static char word_breaks[] = " ?(\",=";
  rl_completer_word_break_characters = word_breaks;
  rl_completion_append_character = 0;
  rl_attempted_completion_function = Complete;
  return Read;
}
#else
Prompt::ReadCommand LineEditor(const Prompt&) { return nullptr; }
#endif

}  // namespace ard::console
