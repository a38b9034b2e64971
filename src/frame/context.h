// The context properties: what a host hands to an object before it calls its methods.
#ifndef ARD_FRAME_CONTEXT_H_
#define ARD_FRAME_CONTEXT_H_

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

class Context;

// An object that the host hands over, and may replace in the middle of a step of it: what it
// replaces then lives until no call is in progress. A reference for each step would cost more than
// many a step.
template <class Seam>
class HandedOver {
 public:
  explicit HandedOver(Context& context) : context_(context) {}
  HandedOver(const HandedOver&) = delete;
  HandedOver& operator=(const HandedOver& other) { return *this = other.object_; }
  inline HandedOver& operator=(std::shared_ptr<Seam> object);

  operator const std::shared_ptr<Seam>&() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  Seam& operator*() const { return *object_; }
  Seam* operator->() const { return object_.get(); }
  // Throws Error, with that text, when there is none.
  Seam& Needed(const wchar_t* missing) const {
    if (!object_) throw Error(kErrorFailed, missing);
    return *object_;
  }

 private:
  std::shared_ptr<Seam> object_;
  Context& context_;
};

// Every object carries one; which of the properties its class publishes is the class's matter.
// Nothing here is checked: what is missing makes the steps that need it fail.
class Context {
 public:
  explicit Context(Environment& machine) : environment(machine) {}
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  Environment& environment;
  std::wstring app_name;
  std::wstring registry_path;
  HandedOver<engine::Workspace> workspace{*this};
  HandedOver<engine::Engine> engine{*this};
  HandedOver<database::Connection> database{*this};

  Trace& trace() const { return environment.trace(); }

  // A call begins, and ends; one may run within another.
  void Enter() const { ++calls_; }
  void Leave() const {
    if (--calls_ == 0 && !replaced_.empty()) LetGo();
  }

  // Shows a message with an OK button; one that cannot be shown is skipped. Both go to the trace.
  void ShowMessage(Icon icon, std::wstring_view text, std::wstring_view title) const noexcept {
    Attempt(trace(), {L"Environment", L"ShowMessage"}, [&] {
      const std::wstring held(title);  // while the message is shown, the host may change its name
      environment.ShowMessage(icon, text, held);
      trace().Shown(held, text);
    });
  }

 private:
  template <class Seam>
  friend class HandedOver;

  // What is let go of is the host's, and may come back.
  [[gnu::noinline]] void LetGo() const { const auto last = std::exchange(replaced_, {}); }

  mutable int calls_ = 0;  // in progress
  mutable std::vector<std::shared_ptr<void>> replaced_;
};

template <class Seam>
HandedOver<Seam>& HandedOver<Seam>::operator=(std::shared_ptr<Seam> object) {
  if (context_.calls_ > 0 && object_) context_.replaced_.push_back(object_);
  object_.swap(object);
  return *this;
}

}  // namespace ard

#endif  // ARD_FRAME_CONTEXT_H_
