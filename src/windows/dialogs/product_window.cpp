#include "windows/dialogs/product_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <utility>

namespace ard::windows {
namespace {

constexpr const wchar_t* kTabs[] = {L"Products", L"Product Information"};

class WaitCursor {
 public:
  WaitCursor() = default;
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  ~WaitCursor() { SetCursor(previous_); }

 private:
  HCURSOR previous_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
};

}  // namespace

ProductWindow::ProductWindow(dialogs::ProductDialog& dialog)
    : SelectWindow(dialog, dialog.stock_list()),
      dialog_(dialog),
      info_list_(dialog.info_list(), InfoListEvents()),
      search_bar_(dialog, info_list_) {}

PagedList::Events ProductWindow::InfoListEvents() {
  PagedList::Events events = ListEvents();
  events.column_click = [this](std::size_t column) { SortBy(column); };
  return events;
}

void ProductWindow::CreateBody(HINSTANCE module) {
  SelectWindow::CreateBody(module);
  search_bar_.Create(module, handle());
  info_list_.Create(module, handle());
  tabs_ = CreateControl(handle(), {WC_TABCONTROLW, L"", WS_TABSTOP | WS_CLIPSIBLINGS});
  for (const wchar_t* text : kTabs) {
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(text);
    SendMessageW(tabs_, TCM_INSERTITEMW, std::size(kTabs), reinterpret_cast<LPARAM>(&item));
    if (!dialog_.has_product_info()) break;  // its tab alone makes the second page
  }
  ShowPage();
}

void ProductWindow::Opened() {
  // Below what stands on its pages, and so the last stop of the Tab key before the page.
  SetWindowPos(tabs_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  SelectWindow::Opened();
}

void ProductWindow::MetricsChanged() {
  SelectWindow::MetricsChanged();
  search_bar_.SetMetrics(metrics());
  info_list_.SetMetrics(metrics());
}

SIZE ProductWindow::BodySize(int rows) const {
  const SIZE stock = SelectWindow::BodySize(rows);
  return Around({std::max(stock.cx, info_list_.SizeFor(rows).cx), stock.cy});
}

SIZE ProductWindow::MinimumSize() const {
  const SIZE minimum = SelectWindow::MinimumSize();
  const SIZE bar = search_bar_.MinimumSize();
  return {std::max(minimum.cx, Around(bar).cx + 2 * metrics().X(kMargin)),
          minimum.cy + bar.cy + metrics().Y(kMargin)};
}

SIZE ProductWindow::Around(SIZE content) const {
  RECT area = {0, 0, content.cx + 2 * metrics().X(kMargin), content.cy + 2 * metrics().Y(kMargin)};
  SendMessageW(tabs_, TCM_ADJUSTRECT, TRUE, reinterpret_cast<LPARAM>(&area));
  return {area.right - area.left, area.bottom - area.top};
}

void ProductWindow::LayoutBody(int x, int y, int width, int height) {
  Place(tabs_, x, y, width, height);
  RECT page = {x, y, x + width, y + height};
  SendMessageW(tabs_, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&page));
  InflateRect(&page, -metrics().X(kMargin), -metrics().Y(kMargin));
  const int left = static_cast<int>(page.left);
  const int inner = std::max(static_cast<int>(page.right - page.left), 0);
  int top = static_cast<int>(page.top);
  if (on_info_page()) {
    const int bar = static_cast<int>(search_bar_.MinimumSize().cy);
    search_bar_.Move(left, top, inner, bar);
    top += bar + metrics().Y(kMargin);
  }
  shown().Move(left, top, inner, std::max(static_cast<int>(page.bottom) - top, 0));
}

HWND ProductWindow::InitialFocus() const {
  return on_info_page() ? search_bar_.text_box() : SelectWindow::InitialFocus();
}

void ProductWindow::Changed() {
  search_bar_.Refresh();
  SelectWindow::Changed();
}

bool ProductWindow::HandleKey(HWND control, WPARAM key) {
  const Tab other = on_info_page() ? Tab::kProducts : Tab::kProductInfo;
  // AltGr, with which characters are typed, is Ctrl and Alt.
  const bool control_down = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
  if (control_down && (key == VK_TAB || key == VK_NEXT || key == VK_PRIOR)) {
    // Of two pages, the next one is the previous one, too.
    SwitchTo(other);
    return true;
  }
  if (control_down && key >= '1' && key <= '9' && on_info_page()) {
    info_list_.Do([&] { SortBy(key - '1'); });
    return true;
  }
  if (control == tabs_ && key == (other == Tab::kProducts ? VK_LEFT : VK_RIGHT)) {
    // Not by the tab strip itself: after a key, that of Wine takes no clicks.
    SwitchTo(other);
    return true;
  }
  if (control != search_bar_.text_box()) return false;
  // Not left to the default button, which is OK.
  if (key == VK_RETURN) search_bar_.Search();
  if (key == VK_DOWN) info_list_.Enter();
  return key == VK_RETURN || key == VK_DOWN;
}

void ProductWindow::Command(int id) {
  // Enter on one of the search bar's buttons arrives here.
  if (!search_bar_.Command(id)) SelectWindow::Command(id);
}

std::optional<LRESULT> ProductWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NOTIFY) {
    const auto& notification = *reinterpret_cast<const NMHDR*>(lparam);
    if (notification.hwndFrom == tabs_ && notification.code == TCN_SELCHANGE) {
      SwitchTo(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0) == 0 ? Tab::kProducts : Tab::kProductInfo);
      return 0;
    }
  }
  return SelectWindow::Handle(message, wparam, lparam);
}

void ProductWindow::SortBy(std::size_t column) {
  const WaitCursor wait;
  dialog_.ColumnClick(column);
}

void ProductWindow::SwitchTo(Tab tab) {
  dialog_.TabClick(tab);
  if (dialog_.tab() != tab) return;
  ShowPage();
  LayoutClient();
  shown().Open();
  Focus(InitialFocus());
}

void ProductWindow::ShowPage() {
  const bool info = on_info_page();
  SendMessageW(tabs_, TCM_SETCURSEL, info ? 1 : 0, 0);
  list().Show(!info);
  search_bar_.Show(info);
  info_list_.Show(info);
  set_shown(info ? info_list_ : list());
}

}  // namespace ard::windows
