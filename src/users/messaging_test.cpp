#include "users/messaging.h"

#include "host_database/odbc_connection.h"
#include "tests/core/company_test.h"

namespace ard::users {
namespace {

using dialogs::LogonDialog;
using host_database::OdbcConnection;

class MessagingTest : public testing::CompanyTest {
 protected:
  MessagingTest() {
    simulator::CompanyBuilder company;
    Open(company.Record(L"AccessData", L"NAME=ANN").Record(L"AccessData", L"NAME=BOB"), messaging_);
    database_->Execute(L"CREATE TABLE AccessRights (ID INTEGER, UserName VARCHAR(30))");
    database_->Execute(L"INSERT INTO AccessRights VALUES (1, 'ANN')");
    messaging_.context().database = database_;
    messaging_.details().use_acc_rights = true;
  }

  std::shared_ptr<OdbcConnection> database_ =
      std::make_shared<OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  Messaging messaging_{environment_};
};

// The focus goes where something is to be entered.
TEST_F(MessagingTest, AMissingHelpPageIsToldInTheDialog) {
  environment_.settings() = {{L"|Options\\Logon\\|RememberLogonName", L"1"},
                             {L"|Options\\Logon\\|LogonName", L"EVE"}};
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
  messaging_.context().database = std::make_shared<Replaced>(messaging_.context(), database_);
  EXPECT_TRUE(messaging_.LogonUser(L"ANN", L""));
}

TEST_F(MessagingTest, CtrlHeldAsksForANameInPlaceOfTheWindowsAccount) {
  environment_.settings() = {{L"|Company|AttemptDomainUserLogon", L"1"}};
  environment_.machine().account_name = L"ANN";
  for (const bool held : {true, false}) {
    environment_.machine().ctrl_down = held;
    const int before = environment_.dialogs_shown();
    EXPECT_EQ(messaging_.CheckForLogon(true), !held);
    EXPECT_EQ(environment_.dialogs_shown() - before, held);
    EXPECT_EQ(engine_->user().empty(), held);
  }
}

}  // namespace
}  // namespace ard::users
