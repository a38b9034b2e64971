#include "tests/core/member_rows.h"
#include "tests/core/operations.h"

namespace ard::testing {
namespace {

using namespace classes;  // NOLINT(google-build-using-namespace): the published ones
using dialogs::LogonDialog;
using dialogs::UserListDialog;
using users::AccessRights;

bool AddToFullIniFile(const General& general, const Context& context) {
  for (const wchar_t* key : {L"AddIn1", L"AddIn2"}) {
    Scripted(context).machine().ini_files.Write(L"veltrix.ini", L"CorloAddIns", key, L"x,host.exe");
  }
  Scripted(context).AnswerChoice([] { return Choice::kRetry; });
  Scripted(context).AnswerChoice([] { return Choice::kIgnore; });
  std::wstring items[] = {L"host.exe"};
  return general.AddEntryToIniFile({0, items}, L"C:\\Host", L"Host", L"host.bmp", L"host.exe");
}

bool AddToReadOnlyIniFile(const General& general, const Context& context) {
  Scripted(context).machine().ini_files_read_only = true;
  return general.AddEntryToIniFile({0, {}}, L"C:\\Host", L"Host", L"host.bmp", L"host.exe");
}

std::wstring WriteShortcut(const General& general, const Context& context) {
  Scripted(context).machine().settings = {{L"LauncherFolder", L"Launcher"},
                                          {L"LauncherFile", L"start.exe"},
                                          {L"LauncherName", L"Accounts"},
                                          {L"Installation12", L"{12}"}};
  return general.CreateAccountsShortcut(0, L"C:\\Accounts", L"C:\\Host");
}

std::tuple<std::int16_t, std::wstring, std::wstring> FirstOther(const General& general,
                                                                const Context&) {
  std::wstring name = L"ANN";
  std::wstring machine = L"-";
  const std::int16_t count = general.GetNumActiveUsersInclDet(name, machine);
  return {count, std::move(name), std::move(machine)};
}

// Every handler of the user list.
std::wstring WorkTheUserList(const General& general, const Context& context) {
  auto& database = dynamic_cast<host_database::OdbcConnection&>(*context.database);
  database.Execute(L"DELETE FROM CurrentUsers");
  database.Execute(
      L"INSERT INTO CurrentUsers VALUES (1, 'Manufacturing', 'ANN', 'A1'), "
      L"(2, 'Manufacturing', 'BOB', 'B1')");
  Scripted(context).AnswerUserList([](UserListDialog& dialog) {
    dialog.list().rows();
    dialog.TabClick(UserListDialog::Tab::kHost);
    dialog.DeleteClick();
    dialog.list().End();
    dialog.DeleteClick();
    dialog.RefreshClick();
    dialog.TabClick(UserListDialog::Tab::kAccounts);
    dialog.list().rows();
    dialog.CloseBox();
  });
  general.ShowUserList(true);
  return L"";
}

bool LogOnByDialog(Messaging& messaging, const Context& context) {
  Scripted(context).AnswerLogon([](LogonDialog& dialog) {
    dialog.HelpClick();
    dialog.Ok();
    dialog.RememberClick(true);
    dialog.NameChange(L"EVE");
    dialog.Ok();
    dialog.NameChange(L"ANN");
    dialog.PasswordChange(kPassword);
    dialog.Ok();
  });
  messaging.details().use_acc_rights = true;
  return messaging.CheckForLogon();
}

bool LogOnByWindows(Messaging& messaging, const Context& context) {
  Scripted(context).settings()[L"|Company|AttemptDomainUserLogon"] = L"1";
  Scripted(context).machine().account_name = L"ANN";
  messaging.details().use_acc_rights = true;
  return messaging.CheckForLogon(true);
}

// Windows vouches for ANN, the engine asks for her password all the same.
bool LogOnByWindowsInVain(Messaging& messaging, const Context& context) {
  dynamic_cast<simulator::Simulator&>(*context.engine).TrustWindows(false);
  return LogOnByWindows(messaging, context);
}

bool LogOnToHeldData(Messaging& messaging, const Context& context) {
  Scripted(context).machine().held_files.insert(L"\\queue.dta");
  return messaging.CheckForLogon();
}

// By name and password, as a host does it that has an access table.
Way LogsOn(const wchar_t* user, const wchar_t* password) {
  return Does<Messaging>(
      [=](Messaging& messaging, const Context&) {
        messaging.details().use_acc_rights = true;
        return messaging.LogonUser(user, password);
      },
      {user, password});
}

class WithoutUsers : public Messaging {
 public:
  using Messaging::Messaging;
  bool CheckUserAccess() const noexcept override { return false; }
  std::wstring GetPassword() const noexcept override { return kPassword; }
};

bool LogOnByCompanyPassword(WithoutUsers& messaging, const Context& context) {
  Scripted(context).AnswerLogon([](LogonDialog& dialog) {
    dialog.Ok();
    dialog.PasswordChange(kPassword);
    dialog.Ok();
    dialog.CloseBox();
  });
  return messaging.CheckForLogon();
}

std::wstring Look(const General& general, const Context&) {
  general.ShowUserList(false);
  return L"";
}

bool MayDoAll(const AccessRights& rights, const Context&) {
  return rights.IsUserAllowedAccess(L" Manager ", users::Access::kPopRecord, true);
}

bool MayOpen(const AccessRights& rights, const Context&) {
  return rights.IsUserAllowedAccess(L"EVE", users::Access::kBankRecord, true);
}

}  // namespace

std::vector<Member> UserMembers() {
  using namespace needed;  // NOLINT(google-build-using-namespace): the steps
  const auto yes_no = OneOf({L"True", L"False"});
  return {
      // A host's would stay in the machine's own file.
      {L"General.AddEntryToIniFile", 0, Once(Natively<General>(AddToFullIniFile)), yes_no},
      {L"General.AddEntryToIniFile, read-only", Once(Natively<General>(AddToReadOnlyIniFile)),
       yes_no},
      {L"General.IsF12Hide", 0, Calls(&General::IsF12Hide), L"False"},
      {L"General.GetF11Program", 0, Calls(&General::GetF11Program), OneOf({L"CONTROL.EXE"})},
      {L"General.IsArdExclusive", 0, Calls(&General::IsArdExclusive, L"C:\\Data"), yes_no},
      {L"General.CreateAccountsShortcut", 0,
       Once(Does<General>(WriteShortcut, {0, L"C:\\Accounts", L"C:\\Host"})),
       OneOf({L"", L"C:\\Host\\RunAccounts.lnk"})},
      // Three slots, whose names and flags are read; the station of one.
      {L"General.GetNumActiveUsers", kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kClose,
       Calls(&General::GetNumActiveUsers), OneOf({L"0", L"1", L"2", L"3"})},
      {L"General.GetNumActiveUsersInclDet",
       kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kField + kClose,
       Does<General>(FirstOther, {Output(L"ANN"), Output(L"-")}),
       OneOf({L"0,ANN,-", L"1,ANN,-", L"1,BOB,", L"1,BOB,PC2", L"2,BOB,", L"2,BOB,PC2"})},
      {L"General.ShowUserList, every handler", Once(Does<General>(WorkTheUserList, {true})),
       OneOf({L""})},
      {L"General.ShowUserList, by others", Once(Does<General>(Look, {false})), OneOf({L""})},
      {L"Messaging.CheckForLogon, frmUserDetails", Once(Does<Messaging>(LogOnByDialog, {})),
       yes_no},
      {L"Messaging.CheckForLogon, Windows account", Once(Does<Messaging>(LogOnByWindows, {true})),
       yes_no},
      {L"Messaging.CheckForLogon, frmCompanyPassword",
       Once(Natively<WithoutUsers>(LogOnByCompanyPassword)), yes_no},
      {L"Messaging.CheckForLogon, Windows account refused",
       Once(Natively<Messaging>(LogOnByWindowsInVain)), OneOf({L"False"})},
      {L"Messaging.CheckForLogon, held", Once(Natively<Messaging>(LogOnToHeldData)),
       OneOf({L"False"})},
      // Nobody but Ann, whatever fails.
      // Connect; and Disconnect; in vain, and LastError, its number and text.
      {L"Messaging.LogonUser", 1, Once(LogsOn(L"ANN", kPassword)), yes_no},
      {L"Messaging.LogonUser, not in the table", 2, Once(LogsOn(L"EVE", L"")), OneOf({L"False"})},
      {L"Messaging.LogonUser, refused", 4, Once(LogsOn(L"NOBODY", L"")), OneOf({L"False"})},
      {L"Messaging.LogoffUser", 1, Calls(&Messaging::LogoffUser), OneOf({L"True"})},
      {L"Messaging.PoAccess, denied", kOpen + kFind + kFields + kField + kClose,
       Calls(&Messaging::PoAccess, L"EVE"), L"False"},
      {L"Messaging.PoAccess", kOpen + kFind + kFields + kField + kClose,
       Calls(&Messaging::PoAccess, L"ANN"), L"True"},
      // A name tells how long they are kept; found at once; the right.
      {L"cAccessRights.IsUserAllowedAccess",
       kOpen + kFields + kField + kFind + kFields + kField + kClose,
       Does<AccessRights>(MayOpen, {L"EVE", 3, true}), OneOf({L"False"})},
      {L"cAccessRights.IsUserAllowedAccess, manager", 0,
       Does<AccessRights>(MayDoAll, {L" Manager ", 7, true}), OneOf({L"True"})},
      // Not there; opened anew, each field, its type and blank value, the name, Write.
      {L"cAccessRights.AddUser",
       kOpen + kFind + kClose + kOpen + kFields + kCount + 3 * kAccessFields + kField + kCount + 1 +
           kClose,
       Once(Calls(&AccessRights::AddUser, L"NEW")), L"True"},
      // Not found in three ways, then read one after the other.
      {L"cAccessRights.IsValid",
       kOpen + kFields + kField + 3 * kFind + kCount + 3 * (kRead + kFields + kField) + kClose,
       Calls(&AccessRights::IsValid, L"Odd"), L"True"},
      {L"cAccessRights.List", Calls(&AccessRights::List), SomeReference(L"AEO"), Confirm},
  };
}

}  // namespace ard::testing
