#include "users/messaging.h"

#include <cstdint>
#include <utility>

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

constexpr std::wstring_view kLogon = L"CheckForLogon";
constexpr std::wstring_view kLogonUser = L"LogonUser";

std::wstring ExclusiveText(const std::wstring& app_name) {
  const std::wstring app(Trimmed(app_name));
  return L"Ardenic is currently running and is a single-user version.\r\n\r\nIn order to run " +
         app + L", you will need to do one of the following:\r\n\r\n(a) Close Ardenic and run " +
         app + L" again.\r\n(b) Turn access rights off and then run " + app +
         L" again. (Recommended)\r\n\r\n" + app +
         L" will now close to allow you carry out one of the above actions.";
}

// A setting as a number or a Boolean; 0 or False when it is no such thing.
template <class T>
T SettingAs(const Context& context, std::wstring_view section, std::wstring_view name) {
  T setting{};
  Attempt(context.trace(), {L"Environment", L"GetSetting", name},
          [&] { Convert(Value(UserSetting(context, section, name, L"0")), setting); });
  return setting;
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
  return Call<bool>(kLogon, {check_nt_account}, [&](bool& logged_on) {
    if (settings::General(context().environment).IsArdExclusive(details().ard_data_path)) {
      NoteDecision(kLogon,
                   L"Refused: queue.dta in ArdDataPath is held by another program, or not there.");
      ShowMessage(ExclusiveText(context().app_name));
      return;
    }
    engine::Logon logon = NewLogon();
    logged_on =
        CheckUserAccess() ? LogonByDialog(logon, check_nt_account) : LogonByCompanyPassword(logon);
    if (logged_on) return logon.Confirm();
    NoteDecision(kLogon, L"Refused: nobody has been logged on in the dialog.");
  });
}

bool Messaging::LogonUser(std::wstring_view user_name, std::wstring_view password) noexcept {
  engine::Logon logon = NewLogon();
  const bool logged_on = LogOn(logon, user_name, password);
  if (logged_on) logon.Confirm();
  return logged_on;
}

bool Messaging::LogOn(engine::Logon& logon, std::wstring_view user_name,
                      std::wstring_view password) noexcept {
  const bool logged_on = Call<bool>(kLogonUser, {user_name, password}, [&](bool& allowed) {
    details().user_logged = Trimmed(user_name);
    details().pass_logged = Trimmed(password);
    if (!logon.Connect(user_name, password)) {
      NoteDecision(kLogonUser, L"Refused: the engine does not log the user on.");
      return TellRefusal();
    }
    allowed = !details().use_acc_rights || IsManager(user_name) || IsInAccessTable(user_name);
    if (allowed) return;
    ShowMessage(std::wstring(Trimmed(user_name)) + L" is not allowed access to " +
                std::wstring(Trimmed(context().app_name)) + L".");
  });
  if (!logged_on) logon.Undo();
  return logged_on;
}

bool Messaging::LogoffUser() const noexcept {
  return Call<bool>(L"LogoffUser", [&](bool& done) {
    done = true;
    engine::Disconnect(context().trace(), context().workspace);
  });
}

bool Messaging::CheckUserAccess() const noexcept {
  return Call<bool>(L"CheckUserAccess", [](bool& access) { access = true; });
}

std::wstring Messaging::GetPassword() const noexcept {
  return Call<std::wstring>(L"GetPassword", [](std::wstring&) {});
}

bool Messaging::PoAccess(std::wstring_view user_name) const noexcept {
  return Call<bool>(L"PoAccess", {user_name},
                    [&](bool& access) { access = HasPurchaseOrderAccess(context(), user_name); });
}

engine::Logon Messaging::NewLogon() const noexcept {
  return {context(), details().ard_data_path, details().unique_id};
}

bool Messaging::LogonByDialog(engine::Logon& logon, bool check_nt_account) {
  LogonDialog dialog(context(), LogonDialog::Form::kUserDetails,
                     [&](const std::wstring& name, const std::wstring& password) {
                       return LogOn(logon, name, password);
                     });
  dialog.SetCompany(details().company_name);
  dialog.SetProgPath(details().prog_path);
  dialog.SetRemembered(SettingAs<std::int16_t>(context(), LogonSection(), kRemember));
  if (dialog.remember()) {
    dialog.SetName(UserSetting(context(), LogonSection(), kLogonName, L""));
  }

  std::wstring domain_user;
  if (check_nt_account && !IsCtrlDown(context())) domain_user = AttemptDomainUserLogon(logon);
  if (Trimmed(domain_user).empty()) {
    Show(context(), dialog);
  } else {
    dialog.NameChange(domain_user);
    dialog.Ok();
  }
  if (!dialog.result()) return false;

  SaveLogonSetting(kRemember, std::to_wstring(dialog.remembered()));
  if (dialog.remember()) SaveLogonSetting(kLogonName, dialog.name());
  return true;
}

bool Messaging::LogonByCompanyPassword(engine::Logon& logon) {
  const std::wstring password = GetPassword();
  if (Trimmed(password).empty()) return LogOn(logon, L"MANAGER", password);
  LogonDialog dialog(context(), LogonDialog::Form::kCompanyPassword,
                     [&](const std::wstring& name, const std::wstring& entered) {
                       return LogOn(logon, name, entered);
                     });
  Show(context(), dialog);
  return dialog.result();
}

std::wstring Messaging::AttemptDomainUserLogon(engine::Logon& logon) {
  constexpr std::wstring_view kSetting = L"AttemptDomainUserLogon";
  std::wstring_view why = L"Not tried: the setting is off.";
  if (SettingAs<bool>(context(), L"Company", kSetting)) {
    std::wstring name;
    Attempt(context().trace(), {L"Environment", L"AccountName"},
            [&] { name = context().environment.AccountName(); });
    why = L"Not tried: the Windows account's name cannot be told.";
    if (!Trimmed(name).empty()) {
      if (logon.ConnectNT(name)) return name;
      why = L"Refused: the Windows account is none of the engine's users.";
    }
  }
  NoteDecision(kSetting, why);
  return {};
}

void Messaging::TellRefusal() const {
  if (!context().workspace) return;
  std::wstring number;
  std::wstring text;
  engine::ReadLastError(context(), number, text);
  ShowMessage(
      L"Could not logon to Ardenic.  The following error was returned by the Ardenic "
      L"program:\r\n\r\n" +
      number + L"\r\n" + text);
}

bool Messaging::IsInAccessTable(std::wstring_view user_name) const {
  std::wstring query = L"SELECT ID FROM AccessRights WHERE UserName='";
  query.append(user_name).append(L"'");
  database::Recordset users(context(), query, database::Cursor::kForwardOnly);
  const bool found = !(users.Bof() && users.Eof());
  if (!found) {
    const std::wstring_view why = users.is_open()
                                      ? L"Refused: the user is not in the table AccessRights."
                                      : L"Refused: the table AccessRights cannot be read.";
    NoteDecision(kLogonUser, why);
  }
  return found;
}

std::wstring Messaging::LogonSection() const {
  return L"Options\\Logon\\" + details().company_name;
}

void Messaging::SaveLogonSetting(std::wstring_view name, std::wstring_view value) const {
  SaveUserSetting(context(), LogonSection(), name, value);
}

}  // namespace ard::users
