#include "windows/dialogs/address_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <string>

namespace ard::windows {
namespace {

enum AddressControl { kKind = 200, kAccount, kLookUp, kDetails };

constexpr wchar_t kDetailsText[] = L"&Details...";

// In dialog units.
constexpr int kLabelWidth = 36;
constexpr int kKindWidth = 70;
constexpr int kDropHeight = 70;
constexpr int kAccountWidth = 70;
constexpr int kLineHeight = kButtonHeight + kGap;
constexpr int kHeadingHeight = 2 * kLineHeight;
constexpr int kMinimumWidth = 3 * kButtonWidth + kLabelWidth + kAccountWidth;

}  // namespace

void AddressWindow::CreateBody(HINSTANCE module) {
  const auto add = [&](const wchar_t* window_class, const wchar_t* text, DWORD style, int id = 0,
                       DWORD extended_style = 0) {
    return CreateControl(handle(), {window_class, text, style, id, extended_style});
  };
  kind_label_ = add(WC_STATICW, L"&Kind:", SS_CENTERIMAGE);
  kind_ = add(WC_COMBOBOXW, L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, kKind);
  account_label_ = add(WC_STATICW, L"&Account:", SS_CENTERIMAGE);
  account_ = add(WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, kAccount, WS_EX_CLIENTEDGE);
  look_up_ = AddButton(kLookUp, L"&Look up...");
  name_ = add(WC_STATICW, L"", SS_NOPREFIX | SS_CENTERIMAGE | SS_ENDELLIPSIS);
  SelectWindow::CreateBody(module);
  details_ = AddButton(kDetails, kDetailsText);
  for (const std::wstring_view kind : dialogs::AddressDialog::kind_names()) {
    SendMessageW(kind_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(kind.data()));
  }
  RefreshHeading();
}

SIZE AddressWindow::BodySize(int rows) const {
  const SIZE list = SelectWindow::BodySize(rows);
  return {std::max<LONG>(list.cx, metrics().X(kMinimumWidth)),
          list.cy + metrics().Y(kHeadingHeight)};
}

SIZE AddressWindow::MinimumSize() const {
  return {metrics().X(kMinimumWidth + 2 * kMargin), SelectWindow::MinimumSize().cy};
}

void AddressWindow::LayoutBody(int x, int y, int width, int height) {
  const int line = metrics().Y(kButtonHeight);
  const int label = metrics().X(kLabelWidth);
  const int gap = metrics().X(kGap);
  Place(kind_label_, x, y, label, line);
  Place(kind_, x + label, y, metrics().X(kKindWidth), metrics().Y(kDropHeight));

  const int second = y + metrics().Y(kLineHeight);
  const int account_width = metrics().X(kAccountWidth);
  const int button_width = metrics().X(kButtonWidth);
  const int button_left = x + label + account_width + gap;
  const int name_left = button_left + button_width + gap;
  Place(account_label_, x, second, label, line);
  Place(account_, x + label, second, account_width, metrics().Y(kEditHeight));
  Place(look_up_, button_left, second, button_width, line);
  Place(name_, name_left, second, std::max(x + width - name_left, 0), line);

  const int heading = metrics().Y(kHeadingHeight);
  SelectWindow::LayoutBody(x, y + heading, width, std::max(height - heading, 0));
  // Beside OK and Cancel, which are below the body.
  Place(details_, x, y + height + metrics().Y(kMargin), button_width, line);
}

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
  // A click on a button that is disabled until the entry has been acted on.
  if (message == WM_LBUTTONDOWN && dialog_.entry_pending()) AccountEntered();
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
