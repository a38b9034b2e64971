#include "windows/dialogs/logon_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <string>
#include <utility>
#include <vector>

namespace ard::windows {
namespace {

constexpr int kLogonWidth = 186;  // in dialog units

}  // namespace

void LogonWindow::CreateControls(HINSTANCE) {
  welcome_ = AddText(dialog_.welcome().c_str());
  head().Add({{welcome_, kLogonWidth, true}});
  if (dialog_.has_heading()) {
    const HWND label = AddText(L"Company:");
    head().Add({{label, kLabelWidth}, {AddText(dialog_.company().c_str()), 0, true}});
    head().Add({{CreateControl(handle(), {WC_STATICW, L"", SS_ETCHEDHORZ}), 0, true}}, kRule,
               kMargin);
  }
  if (dialog_.asks_name()) {
    const HWND label = AddLabel(L"User &name:");
    name_ = AddEdit(dialog_.name().c_str());
    head().Add({{label, kLabelWidth}, {name_, 0, true}});
  }
  const HWND label = AddLabel(L"&Password:");
  password_ = AddEdit(L"", 0, ES_PASSWORD);
  head().Add({{label, kLabelWidth}, {password_, 0, true}});
  if (dialog_.asks_name()) {
    remember_ = CreateControl(
        handle(), {WC_BUTTONW, L"&Remember my user name", WS_TABSTOP | BS_AUTOCHECKBOX});
    SendMessageW(remember_, BM_SETCHECK, dialog_.remember() ? BST_CHECKED : BST_UNCHECKED, 0);
    head().Add({{remember_, 0, true}}, kBox, 0);
  }
  const HWND ok = AddButton(IDOK, L"OK");
  const HWND cancel = AddButton(IDCANCEL, L"Cancel");
  const HWND help = dialog_.asks_name() ? AddButton(IDHELP, L"&Help") : nullptr;
  std::vector<Part> buttons = {{nullptr, 0, true}, {ok, kButtonWidth}, {cancel, kButtonWidth}};
  if (help) buttons.push_back({help, kButtonWidth});
  foot().Add(std::move(buttons), kButtons, 0);
}

HWND LogonWindow::Box() const {
  return dialog_.focus() == dialogs::LogonDialog::Box::kName ? name_ : password_;
}

void LogonWindow::TakeInput() {
  if (name_) dialog_.NameChange(TextOf(name_));
  dialog_.PasswordChange(TextOf(password_));
  if (remember_) dialog_.RememberClick(SendMessageW(remember_, BM_GETCHECK, 0, 0) == BST_CHECKED);
}

void LogonWindow::Command(int id) {
  if (id == IDOK) {
    TakeInput();
    dialog_.Ok();
    if (dialog_.visible()) Focus(Box());
  } else if (id == IDCANCEL) {
    dialog_.Cancel();
  } else if (id == IDHELP) {
    ShowHelp();
  }
  if (!dialog_.visible()) Finish();
}

void LogonWindow::CloseBox() {
  dialog_.CloseBox();
  Finish();
}

bool LogonWindow::HandleKey(HWND, WPARAM key) {
  if (key != VK_F1 || !dialog_.asks_name()) return false;
  ShowHelp();
  return true;
}

void LogonWindow::ShowHelp() {
  dialog_.HelpClick();
  const std::wstring& notice = dialog_.notice();
  SetWindowTextW(welcome_, (notice.empty() ? dialog_.welcome() : notice).c_str());
}

}  // namespace ard::windows
