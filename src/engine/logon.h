// A logon to the accounts engine, as a handle: nobody stays logged on by accident.
#ifndef ARD_ENGINE_LOGON_H_
#define ARD_ENGINE_LOGON_H_

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "engine/seam.h"
#include "frame/context.h"
#include "frame/error.h"
#include "frame/text.h"

namespace ard::engine {

// Runs a step of the host's workspace; returns whether it went through.
template <class Action>
bool OnWorkspace(Trace& trace, const std::shared_ptr<Workspace>& workspace,
                 std::wstring_view operation, Action&& action) noexcept {
  return Attempt(trace, {L"ArdWorkspace", operation}, [&] {
    if (!workspace) throw Error(kErrorFailed, L"No workspace has been set.");
    action(*workspace);
  });
}

// Logs off whoever is logged on; returns whether the engine has done so.
inline bool Disconnect(Trace& trace, const std::shared_ptr<Workspace>& workspace) noexcept {
  return OnWorkspace(trace, workspace, L"Disconnect",
                     [](Workspace& target) { target.Disconnect(); });
}

// Whoever has been logged on through it is logged off when it goes, on every path on which they
// have not been confirmed. The engine gets all texts without their surrounding blanks.
class Logon {
 public:
  // Looks at these whenever a user is logged on: they have to outlive the handle.
  Logon(const Context& context, const std::wstring& data_path,
        const std::wstring& unique_id) noexcept
      : context_(context), data_path_(data_path), unique_id_(unique_id) {}
  Logon(const Logon&) = delete;
  Logon& operator=(const Logon&) = delete;
  ~Logon() { Undo(); }

  // Whether the engine has logged the user on.
  bool Connect(std::wstring_view user, std::wstring_view password) noexcept {
    return Enter(L"Connect", &Workspace::Connect, user, password);
  }
  bool ConnectNT(std::wstring_view account) noexcept {
    return Enter(L"ConnectNT", &Workspace::ConnectNT, account, {});
  }

  // Who is logged on stays so.
  void Confirm() noexcept { unconfirmed_ = nullptr; }
  // Logs off who has not been confirmed. An engine that fails to is asked once more.
  void Undo() noexcept {
    const std::shared_ptr<Workspace> workspace = std::exchange(unconfirmed_, nullptr);
    if (!workspace || Disconnect(context_.trace(), workspace)) return;
    Disconnect(context_.trace(), workspace);
  }

 private:
  bool Enter(std::wstring_view operation, decltype(&Workspace::Connect) connect,
             std::wstring_view user, std::wstring_view password) noexcept {
    // One that fails may have logged the user on all the same.
    const std::shared_ptr<Workspace> before = std::exchange(unconfirmed_, context_.workspace);
    bool accepted = false;
    const bool answered =
        OnWorkspace(context_.trace(), unconfirmed_, operation, [&](Workspace& workspace) {
          accepted = (workspace.*connect)(Trimmed(data_path_), Trimmed(user), Trimmed(password),
                                          Trimmed(unique_id_));
        });
    if (answered && !accepted) unconfirmed_ = before;
    return accepted;
  }

  const Context& context_;
  const std::wstring& data_path_;
  const std::wstring& unique_id_;
  std::shared_ptr<Workspace> unconfirmed_;  // where somebody is, or may be, logged on
};

}  // namespace ard::engine

#endif  // ARD_ENGINE_LOGON_H_
