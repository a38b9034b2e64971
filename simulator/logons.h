// Who is logged on to a simulated engine, and who may be.
#ifndef ARD_SIMULATOR_LOGONS_H_
#define ARD_SIMULATOR_LOGONS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/error.h"
#include "simulator/company.h"
#include "simulator/queue_table.h"
#include "simulator/shared_file.h"

namespace ard::simulator {

class Logons {
 public:
  explicit Logons(Company& company) : company_(company) {}

  // Logs a user on, in place of the one before: into a slot of the logon queue, where the company
  // has one. Users are the manager and everybody in AccessData; a PASSWORD there has to be given to
  // the letter, but not by who is logged on by the Windows account of that name, as long as that is
  // trusted. What is wrong otherwise.
  std::optional<Error> Connect(std::wstring_view user, std::wstring_view password);
  std::optional<Error> ConnectNT(std::wstring_view account);
  void Disconnect();
  void TrustWindows(bool trust) { trusts_windows_ = trust; }

  const std::wstring& user() const { return user_; }
  std::int64_t disconnects() const { return disconnects_; }

  void HoldExclusively(bool hold);

 private:
  // The user's password; nothing when there is no such user.
  std::optional<std::wstring> PasswordOf(std::wstring_view user) const;
  std::optional<Error> Enter(std::wstring_view user, bool by_windows);
  void Leave();
  // Whether this engine or another process holds the company for itself.
  bool IsHeld() const;
  QueueTable* Queue() const;  // null when the company has none

  Company& company_;
  std::wstring user_;
  bool by_windows_ = false;
  bool trusts_windows_ = true;
  std::int64_t disconnects_ = 0;
  std::optional<HeldFile> held_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_LOGONS_H_
