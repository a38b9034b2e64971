// Messaging: the host's logon session with the accounts data.
#ifndef ARD_USERS_MESSAGING_H_
#define ARD_USERS_MESSAGING_H_

#include <string>
#include <string_view>

#include "engine/logon.h"
#include "frame/public_class.h"

namespace ard::users {

// What a host sets of a session beyond its context, and who it is that is logged on. Nothing here
// is checked or changed on the way.
struct Session {
  std::wstring ard_data_path;
  std::wstring user_logged;
  std::wstring pass_logged;
  std::wstring unique_id;
  std::wstring prog_path;
  std::wstring company_name;
  bool use_acc_rights = false;
};

class Messaging : public PropertyClass<Session> {
 public:
  explicit Messaging(Environment& environment) : PropertyClass(L"Messaging", environment) {}
  virtual ~Messaging() = default;

  static constexpr Property<Session> kProperties[] = {
      {L"ArdDataPath", &Session::ard_data_path},   {L"UserLogged", &Session::user_logged},
      {L"PassLogged", &Session::pass_logged},      {L"UniqueID", &Session::unique_id},
      {L"UseAccRights", &Session::use_acc_rights}, {L"ProgPath", &Session::prog_path},
      {L"CompanyName", &Session::company_name},
  };

  // The whole logon: refuses when the accounts data is held exclusively, then asks the user for
  // name and password; with `check_nt_account`, and if the user's settings say so, who is logged on
  // to Windows is logged on without being asked, unless Ctrl is held down. True when a user is
  // logged on.
  bool CheckForLogon(bool check_nt_account = false) noexcept;
  // Logs the user on to the accounts data, and off again when the host's own access table is to be
  // applied and does not have them, or cannot be read. Tells the user why not.
  bool LogonUser(std::wstring_view user_name, std::wstring_view password) noexcept;
  // Logs off; True, even when nobody was logged on.
  bool LogoffUser() const noexcept;
  // Whether users are told apart: always. A company without users has a password (the two are
  // overridden in tests, for the way in that asks for it).
  virtual bool CheckUserAccess() const noexcept;
  virtual std::wstring GetPassword() const noexcept;
  // Whether the user may use purchase orders: everyone but who is denied them. False when that
  // cannot be told.
  bool PoAccess(std::wstring_view user_name) const noexcept;

 private:
  engine::Logon NewLogon() const noexcept;
  // These leave it to the caller to confirm the logon. The first undoes one that it refuses.
  bool LogOn(engine::Logon& logon, std::wstring_view user_name,
             std::wstring_view password) noexcept;
  bool LogonByDialog(engine::Logon& logon, bool check_nt_account);
  bool LogonByCompanyPassword(engine::Logon& logon);
  // Logs on who is logged on to Windows; "" when that is switched off or does not succeed.
  std::wstring AttemptDomainUserLogon(engine::Logon& logon);
  // Tells the user why the engine has not logged them on.
  void TellRefusal() const;
  // Whether the host's access table has the user, put to it as given.
  bool IsInAccessTable(std::wstring_view user_name) const;

  // The settings that remember the last logon to this company.
  std::wstring LogonSection() const;
  void SaveLogonSetting(std::wstring_view name, std::wstring_view value) const;

  void ShowMessage(std::wstring_view text) const {
    context().ShowMessage(Icon::kExclamation, text, context().app_name);
  }
};

}  // namespace ard::users

#endif  // ARD_USERS_MESSAGING_H_
