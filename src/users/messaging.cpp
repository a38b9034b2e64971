#include "users/messaging.h"

#include <cstdint>

#include "database/recordset.h"
#include "dialogs/logon_dialog.h"
#include "dialogs/show.h"
#include "engine/handles.h"
#include "frame/text.h"
#include "frame/user_settings.h"
#include "settings/general.h"
#include "users/access_file.h"

namespace ard::users {
namespace {

using dialogs::LogonDialog;

constexpr std::wstring_view kRemember = L"RememberLogonName";
constexpr std::wstring_view kLogonName = L"LogonName";
constexpr std::wstring_view kTicked = L"1";

std::wstring ExclusiveText(const std::wstring& app_name) {
  const std::wstring app(Trimmed(app_name));
  return L"Ardenic is currently running and is a single-user version.\r\n\r\nIn order to run " +
         app + L", you will need to do one of the following:\r\n\r\n(a) Close Ardenic and run " +
         app + L" again.\r\n\r\n(b) Turn access rights off and then run " + app +
         L" again. (Recommended)\r\n\r\n" + app +
         L" will now close to allow you carry out one of the above actions.";
}

// Whether a setting stands for yes; what is no Boolean does not.
bool IsYes(std::wstring_view setting) {
  try {
    return Value(setting).ToBoolean();
  } catch (const Error&) {
    return false;
  }
}

// Whether a setting is the number 1.
bool IsTicked(std::wstring_view setting) {
  try {
    return Value(setting).ToInteger() == 1;
  } catch (const Error&) {
    return false;
  }
}

// A key that cannot be asked for counts as held: then the user is asked who they are.
bool IsCtrlDown(const Context& context) {
  bool down = true;
  Attempt(context.trace(), {L"Environment", L"IsCtrlDown"},
          [&] { down = context.environment.IsCtrlDown(); });
  return down;
}

}  // namespace

bool Messaging::CheckForLogon(bool check_nt_account) noexcept {
  return Call<bool>(L"CheckForLogon", [&](bool& logged_on) {
    if (settings::General(context().environment).IsArdExclusive(session_.ard_data_path)) {
      ShowMessage(ExclusiveText(context().app_name));
      return;
    }
    logged_on = CheckUserAccess() ? LogonByDialog(check_nt_account) : LogonByCompanyPassword();
  });
}

bool Messaging::LogonUser(std::wstring_view user_name, std::wstring_view password) noexcept {
  return Call<bool>(L"LogonUser", [&](bool& logged_on) {
    session_.user_logged = Trimmed(user_name);
    session_.pass_logged = Trimmed(password);
    if (!Connect(session_.user_logged, session_.pass_logged)) return;
    if (session_.use_acc_rights && !IsManager(user_name) && !IsInAccessTable(user_name)) {
      ShowMessage(std::wstring(Trimmed(user_name)) + L" is not allowed access to " +
                  std::wstring(Trimmed(context().app_name)) + L".");
      Disconnect();
      return;
    }
    logged_on = true;
  });
}

bool Messaging::LogoffUser() const noexcept {
  return Call<bool>(L"LogoffUser", [&](bool& done) {
    done = true;
    Disconnect();
  });
}

bool Messaging::CheckUserAccess() const noexcept {
  return Call<bool>(L"CheckUserAccess", [](bool& access) { access = true; });
}

std::wstring Messaging::GetPassword() const noexcept {
  return Call<std::wstring>(L"GetPassword", [](std::wstring&) {});
}

bool Messaging::PoAccess(std::wstring_view user_name) const noexcept {
  return Call<bool>(L"PoAccess", [&](bool& access) {
    engine::DataFile rights(context(), kAccessData);
    bool found = false;
    if (!rights.Open(engine::Mode::kQuery)) return;
    if (!rights.FindFirst(kName, std::wstring(user_name) + L'*', found)) return;
    access = !found || HasRight(rights, L"POP");
  });
}

bool Messaging::LogonByDialog(bool check_nt_account) {
  LogonDialog dialog(context(), LogonDialog::Form::kUserDetails,
                     [this](const std::wstring& name, const std::wstring& password) {
                       return LogonUser(name, password);
                     });
  dialog.SetCompany(session_.company_name);
  dialog.SetProgPath(session_.prog_path);
  if (IsTicked(UserSetting(context(), LogonSection(), kRemember, L"0"))) {
    dialog.Remember(UserSetting(context(), LogonSection(), kLogonName, L""));
  }

  std::wstring domain_user;
  if (check_nt_account && !IsCtrlDown(context())) domain_user = AttemptDomainUserLogon();
  if (Trimmed(domain_user).empty()) {
    Show(context(), dialog);
  } else {
    dialog.NameChange(domain_user);
    dialog.Ok();
  }
  if (!dialog.result()) return false;

  SaveLogonSetting(kRemember, dialog.remember() ? kTicked : L"0");
  if (dialog.remember()) SaveLogonSetting(kLogonName, dialog.name());
  return true;
}

bool Messaging::LogonByCompanyPassword() {
  const std::wstring password = GetPassword();
  if (Trimmed(password).empty()) return LogonUser(L"MANAGER", password);
  LogonDialog dialog(context(), LogonDialog::Form::kCompanyPassword,
                     [this](const std::wstring& name, const std::wstring& entered) {
                       return LogonUser(name, entered);
                     });
  Show(context(), dialog);
  return dialog.result();
}

std::wstring Messaging::AttemptDomainUserLogon() {
  if (!IsYes(UserSetting(context(), L"Company", L"AttemptDomainUserLogon", L"0"))) return {};
  std::wstring name;
  Attempt(context().trace(), {L"Environment", L"AccountName"},
          [&] { name = context().environment.AccountName(); });
  if (Trimmed(name).empty()) return {};
  bool connected = false;
  Attempt(context().trace(), {L"Workspace", L"ConnectNT"}, [&] {
    if (!context().workspace) throw Error(kErrorFailed, L"No workspace has been set.");
    connected = context().workspace->ConnectNT(Trimmed(session_.ard_data_path), Trimmed(name), L"",
                                               Trimmed(session_.unique_id));
  });
  return connected ? name : std::wstring();
}

bool Messaging::Connect(std::wstring_view user, std::wstring_view password) {
  bool connected = false;
  Attempt(context().trace(), {L"Workspace", L"Connect"}, [&] {
    if (!context().workspace) throw Error(kErrorFailed, L"No workspace has been set.");
    connected = context().workspace->Connect(Trimmed(session_.ard_data_path), user, password,
                                             Trimmed(session_.unique_id));
  });
  if (connected || !context().workspace) return connected;
  std::wstring number;
  std::wstring text;
  engine::ReadLastError(context(), number, text);
  ShowMessage(
      L"Could not logon to Ardenic.  The following error was returned by the Ardenic "
      L"program:\r\n\r\n" +
      number + L"\r\n" + text);
  return false;
}

bool Messaging::IsInAccessTable(std::wstring_view user_name) const {
  std::wstring query = L"SELECT ID FROM AccessRights WHERE UserName='";
  query.append(user_name).append(L"'");
  database::Recordset users(context(), query, database::Cursor::kForwardOnly);
  return !(users.Bof() && users.Eof());
}

void Messaging::Disconnect() const {
  Attempt(context().trace(), {L"Workspace", L"Disconnect"}, [&] {
    if (!context().workspace) throw Error(kErrorFailed, L"No workspace has been set.");
    context().workspace->Disconnect();
  });
}

std::wstring Messaging::LogonSection() const { return L"Options\\Logon\\" + session_.company_name; }

void Messaging::SaveLogonSetting(std::wstring_view name, std::wstring_view value) const {
  SaveUserSetting(context(), LogonSection(), name, value);
}

}  // namespace ard::users
