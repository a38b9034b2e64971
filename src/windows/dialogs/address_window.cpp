#include "windows/dialogs/address_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
#include <windowsx.h>
// clang-format on

#include <string>

namespace ard::windows {
namespace {

enum AddressControl { kKind = 200, kAccount, kLookUp, kDetails };

constexpr wchar_t kDetailsText[] = L"&Details...";

constexpr int kFieldWidth = 70;  // in dialog units

}  // namespace

void AddressWindow::CreateBody(HINSTANCE module) {
  const HWND kind_label = AddLabel(L"&Kind:");
  kind_ = AddCombo(kKind, dialogs::AddressDialog::kind_names());
  const HWND account_label = AddLabel(L"&Account:");
  account_ = AddEdit(L"", kAccount);
  look_up_ = AddButton(kLookUp, L"&Look up...");
  name_ = AddText(L"");
  head().Add({{kind_label, kLabelWidth}, {kind_, kFieldWidth}});
  head().Add({{account_label, kLabelWidth},
              {account_, kFieldWidth},
              {look_up_, kButtonWidth},
              {name_, 0, true}});
  SelectWindow::CreateBody(module);
  RefreshHeading();
}

HWND AddressWindow::CreateExtraButton() { return details_ = AddButton(kDetails, kDetailsText); }

HWND AddressWindow::InitialFocus() const {
  return dialog_.account_enabled() && !dialog_.ok_enabled() ? account_
                                                            : SelectWindow::InitialFocus();
}

void AddressWindow::Changed() {
  SelectWindow::Changed();
  const bool enabled = dialog_.details_enabled();
  if (!enabled && GetFocus() == details_) SetFocus(kind_);
  EnableWindow(details_, enabled);
}

void AddressWindow::Command(int id) {
  if (id == kLookUp) {
    Do([&] { dialog_.LookUpClick(); });
  } else if (id == kDetails) {
    dialog_.DetailsClick();
  } else {
    SelectWindow::Command(id);
  }
}

// Not left to the default button: a disabled one takes no Enter.
bool AddressWindow::HandleKey(HWND control, WPARAM key) {
  if (control != account_ || key != VK_RETURN || dialog_.ok_enabled()) return false;
  AccountEntered();
  if (dialog_.ok_enabled()) list().Enter();
  return true;
}

void AddressWindow::AccountEntered() {
  bool known = true;
  Do([&] { known = dialog_.AccountEntered(); });
  if (!known) Focus(account_);
}

void AddressWindow::Handled(const MSG& message) {
  if (!dialog_.entry_pending()) return;
  const HWND focus = GetFocus();
  const bool goes_on = focus != account_ && focus != look_up_ && IsChild(handle(), focus) &&
                       GetDlgCtrlID(focus) != IDCANCEL;
  // Its letter comes next, which a disabled button would not take either.
  const bool details = message.message == WM_SYSKEYDOWN && message.wParam == kDetailsText[1];
  if (goes_on || details) AccountEntered();
}

std::optional<LRESULT> AddressWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_LBUTTONDOWN && dialog_.entry_pending()) {
    // A click on a button that is disabled until the entry has been acted on, and then takes it.
    AccountEntered();
    POINT point = {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
    const HWND button = ChildWindowFromPoint(handle(), point);
    if (button != handle() && IsWindowEnabled(button)) {
      MapWindowPoints(handle(), button, &point, 1);
      PostMessageW(button, message, wparam, MAKELPARAM(point.x, point.y));
    }
    return 0;
  }
  if (message != WM_COMMAND) return SelectWindow::Handle(message, wparam, lparam);
  const int id = LOWORD(wparam);
  const int code = HIWORD(wparam);
  if (id == kKind && code == CBN_SELCHANGE) {
    const LRESULT entry = SendMessageW(kind_, CB_GETCURSEL, 0, 0);
    Do([&] { dialog_.KindChange(static_cast<dialogs::AddressKind>(entry)); });
  } else if (id == kAccount && code == EN_CHANGE) {
    const std::wstring text = TextOf(account_);
    // It is the dialog's own text that RefreshHeading shows.
    if (text != dialog_.account()) Do([&] { dialog_.AccountChange(text); });
  } else {
    return SelectWindow::Handle(message, wparam, lparam);
  }
  return 0;
}

void AddressWindow::Do(const std::function<void()>& handler) {
  list().Do(handler);
  RefreshHeading();
}

void AddressWindow::RefreshHeading() {
  SendMessageW(kind_, CB_SETCURSEL, static_cast<WPARAM>(dialog_.kind()), 0);
  if (TextOf(account_) != dialog_.account()) SetWindowTextW(account_, dialog_.account().c_str());
  SetWindowTextW(name_, dialog_.account_name().c_str());
  EnableWindow(account_, dialog_.account_enabled());
  EnableWindow(look_up_, dialog_.account_enabled());
}

}  // namespace ard::windows
