#include "users/messaging.h"

#include "host_database/odbc_connection.h"
#include "tests/core/company_test.h"
#include "tests/core/recording_workspace.h"

namespace ard::users {
namespace {

using dialogs::LogonDialog;
using host_database::OdbcConnection;
using simulator::CompanyBuilder;
using testing::Texts;

const std::wstring kToldOfError =
    L"!  Manufacturing : Could not logon to Ardenic.  The following error was returned by the "
    L"Ardenic program:\r\n\r\n";
const std::wstring kRefused = kToldOfError + L"1101\r\nThe user name or the password is wrong.";
constexpr const wchar_t* kEveNotAllowed =
    L"!  Manufacturing : Eve is not allowed access to Manufacturing.";
constexpr const wchar_t* kRemembered = L"Host|Options\\Logon\\Acme|RememberLogonName";
constexpr const wchar_t* kName = L"Host|Options\\Logon\\Acme|LogonName";
constexpr const wchar_t* kDomain = L"Host|Company|AttemptDomainUserLogon";

class MessagingTest : public testing::CompanyTest {
 protected:
  MessagingTest() {
    CompanyBuilder company;
    for (const wchar_t* user : {L"ANN", L"EVE", L"MANAGER"}) {
      company.Record(L"AccessData", {{L"NAME", user}});
    }
    company.Record(L"AccessData", L"NAME=BOB|PASSWORD=Secret");
    Open(company);
    database_->Execute(L"CREATE TABLE AccessRights (ID INTEGER, UserName VARCHAR(30))");
    database_->Execute(L"INSERT INTO AccessRights VALUES (1, 'ANN'), (2, 'BOB')");
    SetUpSession(messaging_);
  }

  void SetUpSession(Messaging& messaging) {
    Context& context = messaging.context();
    context.app_name = L" Manufacturing ";
    context.registry_path = L"Host";
    context.workspace = testing::Recorded(engine_->workspace(), recording_);
    context.engine = engine_;
    context.database = database_;
    messaging.details().ard_data_path = L" C:\\Data ";
    messaging.details().unique_id = L" id ";
    messaging.details().company_name = L"Acme";
    messaging.details().prog_path = L"C:\\Host";
  }

  std::shared_ptr<OdbcConnection> database_ =
      std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  testing::Recording recording_;
  Messaging messaging_{environment_};
};

TEST_F(MessagingTest, AFailingLogonSaysWhatTheEngineSays) {
  engine_->faults().FailFrom(1, false);
  EXPECT_FALSE(messaging_.LogonUser(L"Ann", L""));
  EXPECT_EQ(environment_.TakeMessages(),
            Texts{kToldOfError + L"-2147467259\r\nThe operation failed as requested."});
  EXPECT_EQ(engine_->disconnects(), 1) << "it may have logged her on";
  engine_->faults().FailFrom(1, true);
  EXPECT_FALSE(messaging_.LogonUser(L"Ann", L""));
  EXPECT_EQ(environment_.TakeMessages(), Texts{kToldOfError + L"\r\n"});
  EXPECT_EQ(messaging_.details().user_logged, L"Ann") << "what has been tried stays";
}

TEST_F(MessagingTest, WithoutTheAccessTableOnlyTheManagerGetsIn) {
  messaging_.details().use_acc_rights = true;
  const auto refuses = [&](const char* why) {
    EXPECT_FALSE(messaging_.LogonUser(L"Ann", L"")) << why;
    EXPECT_EQ(engine_->user(), L"") << why;
    EXPECT_TRUE(messaging_.LogonUser(L"manager", L"")) << why;
  };
  database_->Execute(L"ALTER TABLE AccessRights RENAME TO Other");
  refuses("no such table");
  database_->Close();
  refuses("a closed connection");
  messaging_.context().database = nullptr;
  refuses("no connection");
}

TEST_F(MessagingTest, AMissingHelpPageIsToldInTheDialog) {
  environment_.settings() = {{kRemembered, L"1"}, {kName, L"EVE"}};
  environment_.AnswerLogon([&](LogonDialog& dialog) {
    EXPECT_EQ(dialog.focus(), LogonDialog::Box::kPassword) << "the name is remembered";
    environment_.machine().has_help = false;
    dialog.HelpClick();
    EXPECT_EQ(dialog.notice(), L"The help page Logging On.htm is not there.");
    environment_.machine().has_help = true;
    dialog.HelpClick();
    EXPECT_EQ(dialog.notice(), L"");
    for (const wchar_t* name : {L" ", L"BOB"}) {
      dialog.NameChange(name);
      dialog.Ok();
      EXPECT_TRUE(dialog.visible());
      EXPECT_EQ(dialog.focus(), LogonDialog::Box::kName);
    }
  });
  EXPECT_FALSE(messaging_.CheckForLogon());
  EXPECT_EQ(environment_.TakeMessages().size(), 2u);
  EXPECT_EQ(environment_.settings()[kName], L"EVE");
}

// The box holds a number, which stays until it is ticked.
TEST_F(MessagingTest, WhetherTheNameIsRememberedIsANumber) {
  for (const auto& [stored, kept] : {std::pair(L"2", L"2"), {L"-1", L"-1"}, {L"nonsense", L"0"}}) {
    environment_.settings() = {{kRemembered, stored}, {kName, L"EVE"}};
    environment_.AnswerLogon([](LogonDialog& dialog) {
      EXPECT_FALSE(dialog.remember());
      EXPECT_EQ(dialog.name(), L"");
      dialog.NameChange(L"ANN");
      dialog.Ok();
    });
    EXPECT_TRUE(messaging_.CheckForLogon());
    EXPECT_EQ(environment_.settings()[kRemembered], kept);
    EXPECT_EQ(environment_.settings()[kName], L"EVE");
  }
}

TEST_F(MessagingTest, LogsOnTheWindowsAccountWhenAllowedTo) {
  const struct {
    const char* name;
    bool asked;
    const wchar_t* setting;
    bool ctrl;
    const wchar_t* account;
    bool use_acc_rights, logged_on;
    int dialogs;
    bool trusted = true;
  } cases[] = {
      {"all as it should be", true, L"True", false, L"Bob", true, true, 0},
      {"not asked", false, L"1", false, L"Bob", true, false, 1},
      {"no Boolean", true, L"yes please", false, L"Bob", true, false, 1},
      {"Ctrl held", true, L"1", true, L"Bob", true, false, 1},
      {"no name", true, L"1", false, L" ", true, false, 1},
      {"no user", true, L"1", false, L"Mallory", true, false, 1},
      {"not in the table", true, L"1", false, L"Eve", true, false, 0},
      {"no table", true, L"1", false, L"Eve", false, true, 0},
      {"asked for his password", true, L"1", false, L"Bob", true, false, 0, false},
  };
  database_->Execute(L"INSERT INTO AccessRights VALUES (3, 'Bob')");
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    environment_.settings() = {{kDomain, c.setting}};
    environment_.machine().ctrl_down = c.ctrl;
    environment_.machine().account_name = c.account;
    messaging_.details().use_acc_rights = c.use_acc_rights;
    engine_->TrustWindows(c.trusted);
    recording_.operations.clear();
    const int before = environment_.dialogs_shown();
    EXPECT_EQ(messaging_.CheckForLogon(c.asked), c.logged_on);
    EXPECT_EQ(environment_.dialogs_shown() - before, c.dialogs);
    EXPECT_EQ(engine_->user().empty(), !c.logged_on);
    if (c.trusted) messaging_.LogoffUser();
  }
  EXPECT_EQ(
      recording_.operations,
      (Texts{L"Workspace.ConnectNT(\"C:\\Data\", \"Bob\", \"\", \"id\")",
             L"Workspace.Connect(\"C:\\Data\", \"Bob\", \"\", \"id\")", L"Workspace.Disconnect"}));
  EXPECT_EQ(environment_.TakeMessages(), (Texts{kEveNotAllowed, kRefused}));
}

// A company without users, which may have a password.
class WithoutUsers : public Messaging {
 public:
  using Messaging::Messaging;
  bool CheckUserAccess() const noexcept override { return false; }
};

TEST_F(MessagingTest, NothingIsAskedWithoutUsersAndPassword) {
  WithoutUsers messaging(environment_);
  SetUpSession(messaging);
  EXPECT_TRUE(messaging.CheckForLogon());
  EXPECT_EQ(environment_.dialogs_shown(), 0);
  EXPECT_EQ(engine_->user(), L"MANAGER");
}

TEST_F(MessagingTest, WithoutAWorkspaceNobodyIsLoggedOn) {
  messaging_.context().workspace = nullptr;
  std::string trace;
  environment_.trace().Attach([&](std::string_view line) { trace.append(line).append("\n"); });
  EXPECT_FALSE(messaging_.LogonUser(L"manager", L""));
  EXPECT_FALSE(messaging_.PoAccess(L"ANN"));
  EXPECT_TRUE(messaging_.LogoffUser());
  EXPECT_NE(trace.find("\tNo workspace has been set.\n"), trace.npos) << trace;
  EXPECT_EQ(environment_.TakeMessages(), Texts{});
}

// A host may put another connection in place of the one that is called.
TEST_F(MessagingTest, HoldsTheConnectionThatOpensARecordset) {
  struct Replaced final : database::Connection {
    Context& context;
    std::shared_ptr<database::Connection> opened;
    Replaced(Context& host, std::shared_ptr<database::Connection> connection)
        : context(host), opened(std::move(connection)) {}
    std::unique_ptr<database::RecordsetObject> Open(std::wstring_view command,
                                                    database::Cursor cursor,
                                                    database::Lock lock) override {
      context.database = nullptr;
      return opened->Open(command, cursor, lock);
    }
  };
  messaging_.details().use_acc_rights = true;
  messaging_.context().database = std::make_shared<Replaced>(messaging_.context(), database_);
  EXPECT_TRUE(messaging_.LogonUser(L"ANN", L""));
}

}  // namespace
}  // namespace ard::users
