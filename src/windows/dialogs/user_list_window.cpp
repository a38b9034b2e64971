#include "windows/dialogs/user_list_window.h"

#include <algorithm>
#include <array>

namespace ard::windows {
namespace {

using dialogs::UserListDialog;

constexpr int kMinimumUsers = 3;

enum UserListControl { kRefresh = 100, kDelete };

// Keys and clicks do nothing but move about in the lists.
PagedList::Events NoEvents() {
  PagedList::Events events;
  events.key_press = [](wchar_t) {};
  events.double_click = [] {};
  events.changed = [] {};
  return events;
}

}  // namespace

UserListWindow::UserListWindow(UserListDialog& dialog)
    : ModalWindow(Border::kResizable),
      dialog_(dialog),
      accounts_(dialog.accounts_list(), NoEvents()),
      host_(dialog.host_list(), NoEvents()) {}

void UserListWindow::CreateControls(HINSTANCE module) {
  accounts_.Create(module, handle());
  host_.Create(module, handle());
  if (dialog_.can_delete()) delete_ = AddButton(kDelete, L"&Delete");
  tabs_ = CreateControl(handle(), {WC_TABCONTROLW, L"", WS_TABSTOP | WS_CLIPSIBLINGS});
  AddTab(0, L"Accounts");
  AddTab(1, dialog_.host_name().c_str());
  refresh_ = AddButton(kRefresh, L"&Refresh");
  close_ = AddButton(IDCANCEL, L"Close");
  ShowPage();
}

void UserListWindow::AddTab(WPARAM index, const wchar_t* text) {
  TCITEMW item = {};
  item.mask = TCIF_TEXT;
  item.pszText = const_cast<wchar_t*>(text);
  SendMessageW(tabs_, TCM_INSERTITEMW, index, reinterpret_cast<LPARAM>(&item));
}

void UserListWindow::MetricsChanged() {
  accounts_.SetMetrics(metrics());
  host_.SetMetrics(metrics());
}

int UserListWindow::Twips(int twips) const {
  return MulDiv(twips, static_cast<int>(DpiOf(handle())), kTwipsPerInch);
}

SIZE UserListWindow::InitialSize() const {
  return Around({accounts_.SizeFor(kMinimumUsers).cx, Twips(UserListDialog::kListHeight)});
}

SIZE UserListWindow::MinimumSize() const {
  const LONG height = accounts_.SizeFor(kMinimumUsers).cy + HeightOfDelete();
  return {metrics().X(4 * kMargin + 2 * kButtonWidth + kGap), Around({0, height}).cy};
}

SIZE UserListWindow::Around(SIZE content) const {
  RECT page = {0, 0, content.cx + 2 * metrics().X(kMargin), content.cy + 2 * metrics().Y(kMargin)};
  SendMessageW(tabs_, TCM_ADJUSTRECT, TRUE, reinterpret_cast<LPARAM>(&page));
  return {page.right - page.left + 2 * metrics().X(kMargin),
          page.bottom - page.top + metrics().Y(3 * kMargin + kButtonHeight)};
}

int UserListWindow::HeightOfDelete() const {
  if (!delete_) return 0;
  return std::max(Twips(UserListDialog::kListHeight - dialog_.host_list_height()),
                  metrics().Y(kButtonHeight + kGap));
}

void UserListWindow::Layout(SIZE client) {
  const int x = metrics().X(kMargin);
  const int y = metrics().Y(kMargin);
  RECT page = {x, y, client.cx - x, client.cy - metrics().Y(2 * kMargin + kButtonHeight)};
  page.bottom = std::max(page.bottom, page.top);
  Place(tabs_, x, y, static_cast<int>(page.right - page.left),
        static_cast<int>(page.bottom - page.top));
  SendMessageW(tabs_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&page));
  InflateRect(&page, -x, -y);
  const int left = static_cast<int>(page.left);
  const int top = static_cast<int>(page.top);
  const int width = std::max(static_cast<int>(page.right) - left, 0);
  const int height = std::max(static_cast<int>(page.bottom) - top, 0);
  accounts_.Move(left, top, width, height);
  host_.Move(left, top, width, std::max(height - HeightOfDelete(), 0));
  if (delete_) {
    Place(delete_, left, top + height - metrics().Y(kButtonHeight), metrics().X(kButtonWidth),
          metrics().Y(kButtonHeight));
  }
  LayoutButtons(client, std::array{refresh_, close_});
}

void UserListWindow::Opened() {
  // Below what stands on its pages, and so the last stop of the Tab key before the page.
  SetWindowPos(tabs_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
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
  const Tab other = on_host_page() ? Tab::kAccounts : Tab::kHost;
  const bool arrow = control == tabs_ && key == (on_host_page() ? VK_LEFT : VK_RIGHT);
  const bool paging =
      GetKeyState(VK_CONTROL) < 0 && (key == VK_TAB || key == VK_NEXT || key == VK_PRIOR);
  if (arrow || paging) SwitchTo(other);
  return arrow || paging;
}

std::optional<LRESULT> UserListWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NOTIFY) {
    const auto& notification = *reinterpret_cast<const NMHDR*>(lparam);
    if (notification.hwndFrom == tabs_ && notification.code == TCN_SELCHANGE) {
      SwitchTo(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0) == 0 ? Tab::kAccounts : Tab::kHost);
      return 0;
    }
  }
  return ModalWindow::Handle(message, wparam, lparam);
}

void UserListWindow::SwitchTo(Tab tab) {
  dialog_.TabClick(tab);
  ShowPage();
  shown().Refresh();
  Focus(InitialFocus());
}

void UserListWindow::ShowPage() {
  const bool host = on_host_page();
  SendMessageW(tabs_, TCM_SETCURSEL, host ? 1 : 0, 0);
  accounts_.Show(!host);
  host_.Show(host);
  if (delete_) ShowWindow(delete_, host ? SW_SHOWNA : SW_HIDE);
}

}  // namespace ard::windows
