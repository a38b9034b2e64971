// Lines typed at a terminal, with a history and completion where the system has an editor for them.
#ifndef ARD_CONSOLE_LINE_EDITOR_H_
#define ARD_CONSOLE_LINE_EDITOR_H_

#include <string>

#include "console/prompt.h"

namespace ard::console {

// What reads the commands of `prompt`, which must outlive it, at a terminal; null without an
// editor. There is one at a time. A line in which a password may stand is not remembered.
Prompt::ReadCommand LineEditor(const Prompt& prompt);

}  // namespace ard::console

#endif  // ARD_CONSOLE_LINE_EDITOR_H_
