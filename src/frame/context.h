// The context properties: what a host hands to an object before it calls its methods.
#ifndef ARD_FRAME_CONTEXT_H_
#define ARD_FRAME_CONTEXT_H_

#include <memory>
#include <string>
#include <string_view>

#include "frame/environment.h"

namespace ard {

namespace engine {
class Workspace;
class Engine;
}  // namespace engine
namespace database {
class Connection;
}

// Every object carries one; which of the properties its class publishes is the class's matter.
// Nothing here is checked: what is missing makes the steps that need it fail.
struct Context {
  explicit Context(Environment& machine) : environment(machine) {}

  Environment& environment;
  std::wstring app_name;
  std::wstring registry_path;
  std::shared_ptr<engine::Workspace> workspace;
  std::shared_ptr<engine::Engine> engine;
  std::shared_ptr<database::Connection> database;

  Trace& trace() const { return environment.trace(); }

  // Shows a message with an OK button; one that cannot be shown is skipped. Both go to the trace.
  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) const noexcept {
    if (Attempt(trace(), {L"Environment", L"ShowMessage"},
                [&] { environment.ShowMessage(icon, text, title); })) {
      trace().Shown(title, text);
    }
  }
};

}  // namespace ard

#endif  // ARD_FRAME_CONTEXT_H_
