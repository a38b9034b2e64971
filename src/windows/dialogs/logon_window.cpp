#include "windows/dialogs/logon_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <string>

namespace ard::windows {
namespace {

// In dialog units.
constexpr int kLogonWidth = 200;
constexpr int kLogonLabelWidth = 50;
constexpr int kTextHeight = 9;
constexpr int kRuleHeight = 1;

}  // namespace

void LogonWindow::CreateControls(HINSTANCE) {
  lines_.push_back({nullptr, AddText(dialog_.welcome().c_str()), kTextHeight, kMargin});
  if (dialog_.has_heading()) {
    lines_.push_back({AddText(L"Company:"), AddText(dialog_.company().c_str()), kTextHeight, kGap});
    lines_.push_back(
        {nullptr, CreateControl(handle(), {WC_STATICW, L"", SS_ETCHEDHORZ}), kRuleHeight, kMargin});
  }
  // A label comes before its box, so that its mnemonic leads there.
  if (dialog_.asks_name()) {
    const HWND label = AddLabel(L"User &name:");
    name_ = AddEdit(dialog_.name(), 0);
    lines_.push_back({label, name_, kEditHeight, kGap});
  }
  const HWND label = AddLabel(L"&Password:");
  password_ = AddEdit(L"", ES_PASSWORD);
  lines_.push_back({label, password_, kEditHeight, kGap});
  if (dialog_.asks_name()) {
    remember_ = CreateControl(
        handle(), {WC_BUTTONW, L"&Remember my user name", WS_TABSTOP | BS_AUTOCHECKBOX});
    SendMessageW(remember_, BM_SETCHECK, dialog_.remember() ? BST_CHECKED : BST_UNCHECKED, 0);
    lines_.push_back({nullptr, remember_, kEditHeight, 0});
  }
  buttons_ = {AddButton(IDOK, L"OK"), AddButton(IDCANCEL, L"Cancel")};
  if (dialog_.asks_name()) buttons_.push_back(AddButton(IDHELP, L"&Help"));
}

HWND LogonWindow::AddText(const wchar_t* text) {
  return CreateControl(handle(), {WC_STATICW, text, SS_NOPREFIX | SS_ENDELLIPSIS});
}

HWND LogonWindow::AddLabel(const wchar_t* text) {
  return CreateControl(handle(), {WC_STATICW, text, SS_CENTERIMAGE});
}

HWND LogonWindow::AddEdit(std::wstring_view text, DWORD style) {
  return CreateControl(handle(), {WC_EDITW, std::wstring(text).c_str(),
                                  WS_TABSTOP | ES_AUTOHSCROLL | style, 0, WS_EX_CLIENTEDGE});
}

SIZE LogonWindow::InitialSize() const {
  int height = 3 * kMargin + kButtonHeight;
  for (const Line& line : lines_) height += line.height + line.gap_below;
  return {metrics().X(kLogonWidth), metrics().Y(height)};
}

void LogonWindow::Layout(SIZE client) {
  const int left = metrics().X(kMargin);
  const int width = static_cast<int>(client.cx) - 2 * left;
  const int label_width = metrics().X(kLogonLabelWidth);
  int top = kMargin;
  for (const Line& line : lines_) {
    const int y = metrics().Y(top);
    const int height = metrics().Y(line.height);
    const int indent = line.label ? label_width : 0;
    if (line.label) Place(line.label, left, y, label_width, height);
    Place(line.control, left + indent, y, width - indent, height);
    top += line.height + line.gap_below;
  }
  LayoutButtons(client, buttons_);
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
    dialog_.HelpClick();
  }
  if (!dialog_.visible()) Finish();
}

void LogonWindow::CloseBox() {
  dialog_.CloseBox();
  Finish();
}

bool LogonWindow::HandleKey(HWND, WPARAM key) {
  if (key != VK_F1 || !dialog_.asks_name()) return false;
  dialog_.HelpClick();
  return true;
}

}  // namespace ard::windows
