// The context properties: what a host hands to an object before it calls its methods.
#ifndef ARD_FRAME_CONTEXT_H_
#define ARD_FRAME_CONTEXT_H_

#include <memory>
#include <string>
#include <string_view>

#include "frame/environment.h"
#include "frame/error.h"

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

  // One of these objects for the time of a step, in the middle of which the host may put another in
  // its place. Throws Error when there is none.
  template <class Seam>
  static std::shared_ptr<Seam> Held(const std::shared_ptr<Seam>& property, const wchar_t* missing) {
    if (!property) throw Error(kErrorFailed, missing);
    return property;
  }

  // Shows a message with an OK button; one that cannot be shown is skipped. Both go to the trace.
  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) const noexcept {
    Attempt(trace(), {L"Environment", L"ShowMessage"}, [&] {
      const std::wstring held(title);  // while the message is shown, the host may change its name
      environment.ShowMessage(icon, text, held);
      trace().Shown(held, text);
    });
  }
};

}  // namespace ard

#endif  // ARD_FRAME_CONTEXT_H_
