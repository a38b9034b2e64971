#include "windows/dialogs/product_window.h"

#include <algorithm>

namespace ard::windows {
namespace {

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
  tabs_.Create(handle());
  tabs_.Add(L"Products");
  // Its tab alone makes the second page.
  if (dialog_.has_product_info()) tabs_.Add(L"Product Information");
  ShowPage();
}

void ProductWindow::Opened() {
  tabs_.Lower();
  SelectWindow::Opened();
}

SIZE ProductWindow::BodySize() const {
  SIZE content = SelectWindow::BodySize();
  content.cx = std::max(content.cx, info_list_.SizeFor(0).cx);
  return tabs_.Around(metrics(), content);
}

SIZE ProductWindow::LeastBodySize() const {
  SIZE content = SelectWindow::LeastBodySize();
  const SIZE bar = search_bar_.LeastSize(metrics());
  content.cx = std::max(content.cx, bar.cx);
  content.cy += bar.cy + metrics().Y(kMargin);
  return tabs_.Around(metrics(), content);
}

void ProductWindow::PutBody(Placement& placement, const RECT& area) {
  RECT page = area;
  tabs_.Put(placement, metrics(), page);
  if (on_info_page()) {
    RECT bar = page;
    bar.bottom = bar.top + search_bar_.LeastSize(metrics()).cy;
    placement.Put(search_bar_.handle(), bar);
    page.top = bar.bottom + metrics().Y(kMargin);
  }
  placement.Put(shown().handle(), page);
}

void ProductWindow::Placed() {
  search_bar_.Placed(metrics());
  SelectWindow::Placed();
}

HWND ProductWindow::InitialFocus() const {
  return on_info_page() ? search_bar_.text_box() : SelectWindow::InitialFocus();
}

void ProductWindow::Changed() {
  search_bar_.Refresh();
  SelectWindow::Changed();
}

bool ProductWindow::HandleKey(HWND control, WPARAM key) {
  if (const std::optional<int> tab = tabs_.TabFor(control, key)) {
    SwitchTo(*tab);
    return true;
  }
  if (!on_info_page()) return false;
  if (GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0 && key >= '1' && key <= '9') {
    info_list_.Do([&] { SortBy(key - '1'); });
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
    if (const std::optional<int> tab = tabs_.TabFor(*reinterpret_cast<const NMHDR*>(lparam))) {
      SwitchTo(*tab);
      return 0;
    }
  }
  return SelectWindow::Handle(message, wparam, lparam);
}

void ProductWindow::SortBy(std::size_t column) {
  const WaitCursor wait;
  dialog_.ColumnClick(column);
}

void ProductWindow::SwitchTo(int tab) {
  const auto wanted = static_cast<Tab>(tab + 1);
  if (wanted == dialog_.tab()) return;
  dialog_.TabClick(wanted);
  ShowPage();
  LayoutClient();
  shown().Open();
  Focus(InitialFocus());
}

void ProductWindow::ShowPage() {
  const bool info = on_info_page();
  tabs_.Select(info ? 1 : 0);
  ShowControl(list().handle(), !info);
  ShowControl(search_bar_.handle(), info);
  ShowControl(info_list_.handle(), info);
  set_shown(info ? info_list_ : list());
}

}  // namespace ard::windows
