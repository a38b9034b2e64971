// The logon dialog's window and the box that asks what to do, as their users see them.
#include <windows.h>
// After windows.h.
#include <gtest/gtest.h>

#include <string>

#include "dialogs/logon_dialog.h"
#include "tests/windows/window_test.h"

namespace ard::windows {
namespace {

using dialogs::LogonDialog;

class UsersWindowTest : public testing::WindowTest {
 protected:
  static std::wstring Texts(HWND window) {
    std::wstring texts;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      texts += L"[" + testing::TextOf(child) + L"]";
    }
    return texts;
  }
};

TEST_F(UsersWindowTest, TheLogonShowsWhatItsFormHasAndHidesThePassword) {
  const std::wstring buttons = L"[OK][Cancel]";
  const std::wstring details = L"[&Remember my user name]" + buttons + L"[&Help]";
  const struct {
    LogonDialog::Form form;
    const wchar_t* title;
    const wchar_t* app;
    std::wstring texts;
  } cases[] = {
      {LogonDialog::Form::kUserDetails, L"Logon", L"Manufacturing",
       L"[Company:][Acme & Sons][][User &name:][Ann][&Password:][]" + details},
      {LogonDialog::Form::kUserDetails, L"Logon", L"Multi",
       L"[User &name:][Ann][&Password:][]" + details},
      {LogonDialog::Form::kCompanyPassword, L"Company Password", L"Manufacturing",
       L"[&Password:][]" + buttons},
  };
  for (const auto& c : cases) {
    context_.app_name = c.app;
    LogonDialog dialog(context_, c.form, [](const auto&, const auto&) { return true; });
    dialog.SetCompany(L"Acme & Sons");
    dialog.SetName(L"Ann");
    Show(c.title, dialog, [&](HWND window) {
      EXPECT_EQ(Texts(window), L"[Welcome to " + context_.app_name + L".]" + c.texts);
      EXPECT_TRUE(GetWindowLongW(FocusWindow(), GWL_STYLE) & ES_PASSWORD);
    });
  }
}

TEST_F(UsersWindowTest, AQuestionIsAnsweredByAKey) {
  const struct {
    const wchar_t* key;
    Choice choice;
  } cases[] = {{L"{A}", Choice::kAbort}, {L"{R}", Choice::kRetry}, {L"{I}", Choice::kIgnore}};
  for (const auto& c : cases) {
    Choice choice = c.choice == Choice::kAbort ? Choice::kRetry : Choice::kAbort;
    Work(
        L"A question",
        [&] { choice = environment_.AskWhatToDo(L"What?\r\n\r\nAnd why?", L"A question"); },
        [&](HWND box) {
          EXPECT_EQ(testing::TextOf(GetDlgItem(box, 0xFFFF)), L"What?\r\n\r\nAnd why?");
          Keys(c.key);
        });
    EXPECT_EQ(choice, c.choice);
  }
}

}  // namespace
}  // namespace ard::windows
