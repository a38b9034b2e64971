#include "tests/core/member_rows.h"
#include "tests/core/operations.h"

namespace ard::testing {
namespace {

using namespace classes;  // NOLINT(google-build-using-namespace): the published ones
using dialogs::LogonDialog;
using dialogs::UserListDialog;
using users::AccessRights;

// To three entries, of which the second and the third are older ones of this host. What the answer
// is, and the entries then.
std::wstring AddToIniFile(const General& general, const Context& context,
                          const TextArray& check_items, bool read_only,
                          std::initializer_list<Choice> choices) {
  auto& machine = Scripted(context).machine();
  const auto key = [](int number) { return L"AddIn" + std::to_wstring(number); };
  int count = 0;
  for (const wchar_t* entry : {L"other.exe", L"x,HOST.exe", L"y,host.exe"}) {
    machine.ini_files.Write(L"veltrix.ini", L"CorloAddIns", key(++count), entry);
  }
  machine.ini_files_read_only = read_only;
  machine.choices = choices;
  std::wstring told = Text(
      general.AddEntryToIniFile(check_items, L"C:\\Host Files", L"Host", L"host.bmp", L"host.exe"));
  for (int number = 0; number <= 4; ++number) {
    told += L"|" + machine.ini_files.Read(L"VELTRIX.ini", L"CorloAddIns", key(number));
  }
  return told;
}

// The items count from index 0.
std::wstring AddInPlace(const General& general, const Context& context) {
  std::wstring items[] = {L"other.exe", L"none", L"host.exe"};
  return AddToIniFile(general, context, {-1, items}, false, {});
}

std::wstring AddBehind(const General& general, const Context& context) {
  std::wstring items[] = {L"HOST.exe"};
  return AddToIniFile(general, context, {1, items}, false, {Choice::kRetry, Choice::kIgnore});
}

std::wstring AddInVain(const General& general, const Context& context) {
  std::wstring items[] = {L"host.exe"};
  return AddToIniFile(general, context, {0, items}, true,
                      {Choice::kIgnore, Choice::kRetry, Choice::kIgnore, Choice::kIgnore});
}

std::wstring AddToReadOnlyIniFile(const General& general, const Context& context) {
  return AddToIniFile(general, context, {0, {}}, true, {});
}

bool LookForHeldData(const General& general, const Context& context) {
  Scripted(context).machine().held_files.insert(L"C:\\Held\\queue.dta");
  return general.IsArdExclusive(L" C:\\Held\\");
}

std::wstring WriteShortcut(const General& general, const Context& context) {
  Scripted(context).machine().settings = {
      {L"LauncherFolder", L"Launcher"}, {L"LauncherFile", L"start.exe"},
      {L"LauncherName", L"Accounts"},   {L"Installation12", L"{12}"},
      {L"Installation13", L"{13}"},
  };
  return general.CreateAccountsShortcut(0, L"C:\\Accounts", L"C:\\Host");
}

// For the accounts program of any later version, from folders that end with backslashes.
std::wstring WriteLaterShortcut(const General& general, const Context& context) {
  WriteShortcut(general, context);
  return general.CreateAccountsShortcut(77, L"C:\\Accounts\\\\", L"C:\\Host\\", 14);
}

std::tuple<std::int16_t, std::wstring, std::wstring> FirstOther(const General& general,
                                                                const Context&) {
  std::wstring name = L"ANN";
  std::wstring machine = L"-";
  const std::int16_t count = general.GetNumActiveUsersInclDet(name, machine);
  return {count, std::move(name), std::move(machine)};
}

// The rows of the list in front, or why there are none.
std::wstring Shown(UserListDialog& dialog) {
  std::wstring text = dialog.list().rows().empty() ? dialog.list().WhyEmpty() : L"";
  for (const dialogs::Row& row : dialog.list().rows()) {
    text.append(row.Cell(1)).append(L" ").append(row.Cell(2)).append(L"|");
  }
  return text + L"/ ";
}

// Every handler of the user list.
std::wstring WorkTheUserList(const General& general, const Context& context) {
  auto& database = dynamic_cast<host_database::OdbcConnection&>(*context.database);
  database.Execute(L"DELETE FROM CurrentUsers");
  database.Execute(
      L"INSERT INTO CurrentUsers VALUES (1, 'Manufacturing', 'ANN', 'A1'), "
      L"(2, 'Manufacturing', 'BOB', 'B1')");
  std::wstring shown;
  Scripted(context).Answer<UserListDialog>([&](UserListDialog& dialog) {
    shown = Shown(dialog);
    dialog.TabClick(UserListDialog::Tab::kHost);
    dialog.DeleteClick();
    shown += Shown(dialog);
    dialog.list().End();
    dialog.DeleteClick();
    shown += Shown(dialog);
    dialog.RefreshClick();
    shown += Shown(dialog);
    dialog.TabClick(UserListDialog::Tab::kAccounts);
    shown += Shown(dialog);
    dialog.CloseBox();
  });
  general.ShowUserList(true);
  return shown;
}

bool LogOnByDialog(Messaging& messaging, const Context& context) {
  Scripted(context).Answer<LogonDialog>([](LogonDialog& dialog) {
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
  Scripted(context).machine().user_settings[L"|Company|AttemptDomainUserLogon"] = L"1";
  Scripted(context).machine().account_name = L"ANN";
  messaging.details().use_acc_rights = true;
  messaging.details().ard_data_path = L" C:\\Data ";
  messaging.details().unique_id = L" id ";
  return messaging.CheckForLogon(true);
}

// Windows vouches for ANN, the engine asks for her password all the same.
bool LogOnByWindowsInVain(Messaging& messaging, const Context& context) {
  dynamic_cast<simulator::Simulator&>(*context.engine).TrustWindows(false);
  return LogOnByWindows(messaging, context);
}

// Who holds Ctrl is asked for a name.
bool LogOnByCtrl(Messaging& messaging, const Context& context) {
  Scripted(context).machine().ctrl_down = true;
  return LogOnByWindows(messaging, context);
}

// A host may put another connection in place of the one that is called.
struct Replaced final : database::Connection {
  explicit Replaced(Context& host) : context(host), opened(host.database) {}
  std::unique_ptr<database::RecordsetObject> Open(std::wstring_view command,
                                                  database::Cursor cursor,
                                                  database::Lock lock) override {
    context.database = nullptr;
    return opened->Open(command, cursor, lock);
  }
  Context& context;
  std::shared_ptr<database::Connection> opened;
};

bool LogOnWhileReplaced(Messaging& messaging, Context& context) {
  context.database = std::make_shared<Replaced>(context);
  messaging.details().use_acc_rights = true;
  return messaging.LogonUser(L"ANN", kPassword);
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
        messaging.details().ard_data_path = L" C:\\Data ";
        messaging.details().unique_id = L" id ";
        return messaging.LogonUser(user, password);
      },
      {user, password});
}

class WithoutUsers : public Messaging {
 public:
  using Messaging::Messaging;
  bool CheckUserAccess() const noexcept override { return false; }
};

class WithCompanyPassword : public WithoutUsers {
 public:
  using WithoutUsers::WithoutUsers;
  std::wstring GetPassword() const noexcept override { return kPassword; }
};

bool LogOnByCompanyPassword(WithCompanyPassword& messaging, const Context& context) {
  Scripted(context).Answer<LogonDialog>([](LogonDialog& dialog) {
    dialog.Ok();
    dialog.PasswordChange(kPassword);
    dialog.Ok();
    dialog.CloseBox();
  });
  return messaging.CheckForLogon();
}

std::wstring Look(const General& general, const Context& context) {
  std::wstring shown;
  Scripted(context).Answer<UserListDialog>([&](UserListDialog& dialog) {
    shown = Shown(dialog);
    dialog.TabClick(UserListDialog::Tab::kHost);
    shown += Shown(dialog);
  });
  general.ShowUserList(false);
  return shown;
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
  // What they show, too, which is written down with what fails.
  const auto any = [](const std::wstring&) { return true; };
  return {
      // A host's would stay in the machine's own file.
      {L"General.AddEntryToIniFile", Once(Natively<General>(AddInPlace)), any},
      {L"General.AddEntryToIniFile, items from 1", Once(Natively<General>(AddBehind)), any},
      {L"General.AddEntryToIniFile, in vain", Once(Natively<General>(AddInVain)), any},
      {L"General.AddEntryToIniFile, read-only", Once(Natively<General>(AddToReadOnlyIniFile)), any},
      {L"General.IsF12Hide", 0, Calls(&General::IsF12Hide), L"False"},
      {L"General.GetF11Program", 0, Calls(&General::GetF11Program), OneOf({L"CONTROL.EXE"})},
      {L"General.IsArdExclusive", 0, Calls(&General::IsArdExclusive, L"C:\\Data"), yes_no},
      {L"General.IsArdExclusive, held", 0, Natively<General>(LookForHeldData), OneOf({L"True"})},
      {L"General.CreateAccountsShortcut", 0,
       Once(Does<General>(WriteShortcut, {0, L"C:\\Accounts", L"C:\\Host"})),
       OneOf({L"", L"C:\\Host\\RunAccounts.lnk"})},
      {L"General.CreateAccountsShortcut, later version", 0,
       Once(Natively<General>(WriteLaterShortcut)), OneOf({L"", L"C:\\Host\\RunAccounts.lnk"})},
      // Three slots, whose names and flags are read; the station of one.
      {L"General.GetNumActiveUsers", kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kClose,
       Calls(&General::GetNumActiveUsers), OneOf({L"0", L"1", L"2", L"3"})},
      {L"General.GetNumActiveUsersInclDet",
       kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kField + kClose,
       Does<General>(FirstOther, {Output(L"ANN"), Output(L"-")}),
       OneOf({L"0,ANN,-", L"1,ANN,-", L"1,BOB,", L"1,BOB,PC2", L"2,BOB,", L"2,BOB,PC2"})},
      {L"General.ShowUserList, every handler", Once(Does<General>(WorkTheUserList, {true})), any},
      {L"General.ShowUserList, by others", Once(Does<General>(Look, {false})), any},
      {L"Messaging.CheckForLogon, frmUserDetails", Once(Does<Messaging>(LogOnByDialog, {})),
       yes_no},
      {L"Messaging.CheckForLogon, Windows account", Once(Does<Messaging>(LogOnByWindows, {true})),
       yes_no},
      {L"Messaging.CheckForLogon, frmCompanyPassword",
       Once(Natively<WithCompanyPassword>(LogOnByCompanyPassword)), yes_no},
      {L"Messaging.CheckForLogon, nobody to ask", 1,
       Once(Natively<WithoutUsers>(
           [](auto& messaging, auto&) { return messaging.CheckForLogon(); })),
       yes_no},
      {L"Messaging.CheckForLogon, Windows account refused",
       Once(Natively<Messaging>(LogOnByWindowsInVain)), OneOf({L"False"})},
      {L"Messaging.CheckForLogon, Ctrl held", Once(Natively<Messaging>(LogOnByCtrl)),
       OneOf({L"False"})},
      {L"Messaging.CheckForLogon, held", Once(Natively<Messaging>(LogOnToHeldData)),
       OneOf({L"False"})},
      // Nobody but Ann, whatever fails.
      // Connect; and Disconnect; in vain, and LastError, its number and text.
      {L"Messaging.LogonUser", 1, Once(LogsOn(L"ANN", kPassword)), yes_no},
      {L"Messaging.LogonUser, not in the table", 2, Once(LogsOn(L"EVE", L"")), OneOf({L"False"})},
      {L"Messaging.LogonUser, refused", 4, Once(LogsOn(L"NOBODY", L"")), OneOf({L"False"})},
      {L"Messaging.LogonUser, connection replaced", 1,
       Once(Natively<Messaging>(LogOnWhileReplaced)), yes_no},
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
