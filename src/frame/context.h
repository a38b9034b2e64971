// The context properties: what a host hands to an object before it calls its methods.
#ifndef ARD_FRAME_CONTEXT_H_
#define ARD_FRAME_CONTEXT_H_

#include <memory>
#include <string>

#include "frame/environment.h"

namespace ard {

namespace engine {
class Workspace;
class Engine;
}  // namespace engine

// Every object carries one; which of the properties its class publishes is the class's matter.
// Nothing here is checked: what is missing makes the steps that need it fail.
struct Context {
  explicit Context(Environment& machine) : environment(machine) {}

  Environment& environment;
  std::wstring app_name;
  std::wstring registry_path;
  std::shared_ptr<engine::Workspace> workspace;
  std::shared_ptr<engine::Engine> engine;

  Trace& trace() const { return environment.trace(); }
};

}  // namespace ard

#endif  // ARD_FRAME_CONTEXT_H_
