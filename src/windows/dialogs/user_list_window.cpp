#include "windows/dialogs/user_list_window.h"

#include <algorithm>

namespace ard::windows {
namespace {

using dialogs::UserListDialog;

constexpr int kMinimumUsers = 3;

enum UserListControl { kRefresh = 100, kDelete };

// Keys and clicks do nothing but move about in the lists, and select.
PagedList::Events EventsOf(dialogs::ListModel& list) {
  PagedList::Events events;
  events.key_press = [&list](wchar_t key) {
    if (key == L' ') list.SelectCursor();
  };
  events.double_click = [] {};
  events.changed = [] {};
  return events;
}

}  // namespace

UserListWindow::UserListWindow(UserListDialog& dialog)
    : ModalWindow(Border::kResizable),
      dialog_(dialog),
      accounts_(dialog.accounts_list(), EventsOf(dialog.accounts_list())),
      host_(dialog.host_list(), EventsOf(dialog.host_list())) {}

void UserListWindow::CreateControls(HINSTANCE module) {
  accounts_.Create(module, handle());
  host_.Create(module, handle());
  if (dialog_.can_delete()) {
    delete_ = AddButton(kDelete, L"&Delete");
    below_host_.Add({{delete_, kButtonWidth}}, kButtons, 0);
  }
  tabs_.Create(handle());
  tabs_.Add(L"Accounts");
  tabs_.Add(dialog_.host_name());
  const HWND refresh = AddButton(kRefresh, L"&Refresh");
  const HWND close = AddButton(IDCANCEL, L"Close");
  foot().Add({{nullptr, 0, true}, {refresh, kButtonWidth}, {close, kButtonWidth}}, kButtons, 0);
  ShowPage();
}

int UserListWindow::Twips(int twips) const {
  return MulDiv(twips, static_cast<int>(DpiOf(handle())), kTwipsPerInch);
}

SIZE UserListWindow::BodySize() const {
  return tabs_.Around(metrics(), {accounts_.SizeFor(0).cx, Twips(UserListDialog::kListHeight)});
}

SIZE UserListWindow::LeastBodySize() const {
  return tabs_.Around(metrics(), {0, accounts_.SizeFor(kMinimumUsers).cy + HeightOfDelete()});
}

int UserListWindow::HeightOfDelete() const {
  if (!delete_) return 0;
  return std::max(Twips(UserListDialog::kListHeight - dialog_.host_list_height()),
                  metrics().Y(kButtons + kGap));
}

void UserListWindow::PutBody(Placement& placement, const RECT& area) {
  RECT page = area;
  tabs_.Put(placement, metrics(), page);
  placement.Put(accounts_.handle(), page);
  RECT below = page;
  below.top = page.bottom - below_host_.Height(metrics(), 0);
  below_host_.Put(placement, metrics(), below);
  page.bottom -= HeightOfDelete();
  placement.Put(host_.handle(), page);
}

void UserListWindow::Placed() {
  accounts_.Placed();
  host_.Placed();
}

void UserListWindow::Opened() {
  tabs_.Lower();
  accounts_.Open();
  host_.Open();
}

void UserListWindow::Command(int id) {
  switch (id) {
    case kRefresh:
      dialog_.RefreshClick();
      accounts_.Refresh();
      host_.Refresh();
      break;
    case kDelete:
      host_.Do([&] { dialog_.DeleteClick(); });
      // Where the next logon is chosen.
      Focus(InitialFocus());
      break;
    case IDCANCEL:
      CloseBox();
      break;
    default:
      break;
  }
}

void UserListWindow::CloseBox() {
  dialog_.CloseBox();
  Finish();
}

bool UserListWindow::HandleKey(HWND control, WPARAM key) {
  const std::optional<int> tab = tabs_.TabFor(control, key);
  if (tab) SwitchTo(*tab);
  return tab.has_value();
}

std::optional<LRESULT> UserListWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NOTIFY) {
    if (const std::optional<int> tab = tabs_.TabFor(*reinterpret_cast<const NMHDR*>(lparam))) {
      SwitchTo(*tab);
      return 0;
    }
  }
  return ModalWindow::Handle(message, wparam, lparam);
}

void UserListWindow::SwitchTo(int tab) {
  const auto wanted = static_cast<Tab>(tab + 1);
  if (wanted == dialog_.tab()) return;
  dialog_.TabClick(wanted);
  ShowPage();
  shown().Refresh();
  Focus(InitialFocus());
}

void UserListWindow::ShowPage() {
  const bool host = on_host_page();
  tabs_.Select(host ? 1 : 0);
  ShowControl(accounts_.handle(), !host);
  ShowControl(host_.handle(), host);
  if (delete_) ShowControl(delete_, host);
}

}  // namespace ard::windows
