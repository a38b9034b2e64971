#include "windows/dialogs/paged_list.h"

#include <uxtheme.h>
#include <windowsx.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace ard::windows {
namespace {

using dialogs::ListModel;
using dialogs::Pick;

// Blank space in a cell beside its text, in dialog units.
constexpr int kCellPadding = 8;
// What the last column keeps when the others leave it no room.
constexpr int kLastColumnCharacters = 8;

struct NavigationKey {
  WPARAM key;
  void (ListModel::*move)(Pick);
};
constexpr NavigationKey kNavigationKeys[] = {
    {VK_UP, &ListModel::LineUp},    {VK_DOWN, &ListModel::LineDown},
    {VK_PRIOR, &ListModel::PageUp}, {VK_NEXT, &ListModel::PageDown},
    {VK_HOME, &ListModel::Home},    {VK_END, &ListModel::End},
};

// What a key or click with these keys held down does to a multiple selection.
Pick PickWith(bool shift, bool control, Pick controlled) {
  if (shift) return Pick::kExtend;
  return control ? controlled : Pick::kOnly;
}

bool IsDown(int key) { return GetKeyState(key) < 0; }

class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = false; }

 private:
  bool& flag_;
};

POINT PointOf(LPARAM lparam) { return {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)}; }

}  // namespace

PagedList::~PagedList() { Destroy(); }

void PagedList::Create(HINSTANCE module, HWND parent) {
  // The outer window has the border and the scroll bar, the list view fills it.
  DialogWindow::Create(module, parent,
                       DS_CONTROL | WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_CLIPCHILDREN,
                       WS_EX_CLIENTEDGE | WS_EX_CONTROLPARENT);
  DWORD style = WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS;
  if (!model_.multiple()) style |= LVS_SINGLESEL;
  if (!events_.column_click) style |= LVS_NOSORTHEADER;
  list_ = CreateControl(handle(), {WC_LISTVIEWW, L"", style});
  SetWindowLongPtrW(list_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  list_procedure_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListProcedure)));
  SetWindowTheme(list_, L"Explorer", nullptr);
  constexpr DWORD kStyles = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
  Send(LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);

  for (const dialogs::Column& column : model_.columns()) {
    LVCOLUMNW header = {};
    header.mask = LVCF_TEXT;
    header.pszText = const_cast<wchar_t*>(column.header.c_str());
    Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(&column - model_.columns().data()),
         reinterpret_cast<LPARAM>(&header));
  }
  LayoutList();  // the header's height is measured
}

void PagedList::SetMetrics(const Metrics& metrics) {
  const bool was_open = std::exchange(open_, false);  // Move draws the outcome
  const int previous = std::exchange(character_width_, metrics.Characters(1));
  const std::vector<dialogs::Column>& columns = model_.columns();
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    // The user may have changed the widths: they grow or shrink with the font.
    const int width = previous ? MulDiv(ColumnWidth(i), character_width_, previous)
                               : metrics.Characters(columns[static_cast<std::size_t>(i)].width) +
                                     metrics.X(kCellPadding);
    Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(i), width);
  }
  MeasureRows();
  open_ = was_open;
}

void PagedList::MeasureRows() {
  RECT area = {0, 0, 1000, 1000};
  WINDOWPOS position = {};
  HDLAYOUT layout = {&area, &position};
  SendMessageW(Header(), HDM_LAYOUT, 0, reinterpret_cast<LPARAM>(&layout));
  header_height_ = position.cy;

  // Only a row that exists has a size.
  RECT row = {};
  row.left = LVIR_BOUNDS;
  if (page_.empty()) Send(LVM_SETITEMCOUNT, 1);
  Send(LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
  if (page_.empty()) Send(LVM_SETITEMCOUNT, 0);
  row_height_ = static_cast<int>(row.bottom - row.top);
}

SIZE PagedList::SizeFor(int rows) const {
  const SIZE frame = FrameOf(handle());
  int width = 0;
  for (int i = 0; i < static_cast<int>(model_.columns().size()); ++i) width += ColumnWidth(i);
  return {width + frame.cx, header_height_ + rows * row_height_ + frame.cy};
}

void PagedList::Move(int x, int y, int width, int height) {
  Place(handle(), x, y, width, height);
  LayoutList();
}

void PagedList::Open() {
  open_ = true;
  LayoutList();
}

void PagedList::Do(const std::function<void()>& action) {
  if (busy_ || !open_ || !handle()) return;
  const FlagScope scope(busy_);
  action();
  Draw();
}

void PagedList::Draw() {
  // As many rows as are wholly visible make a page. Only a change asks the model for rows.
  model_.SetPageSize(Send(LVM_GETCOUNTPERPAGE));
  page_ = model_.rows();
  Send(LVM_SETITEMCOUNT, page_.size(), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
  DrawSelection();
  DrawSortArrows();
  DrawScrollBar();
  InvalidateRect(list_, nullptr, FALSE);
  UpdateWindow(list_);
  events_.changed();
}

void PagedList::DrawSelection() {
  LVITEMW state = {};
  state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&state));
  for (std::size_t i = 0; i < page_.size(); ++i) {
    state.state = (model_.IsSelected(page_[i]) ? UINT{LVIS_SELECTED} : 0) |
                  (model_.IsCursor(page_[i]) ? UINT{LVIS_FOCUSED} : 0);
    if (state.state) Send(LVM_SETITEMSTATE, i, reinterpret_cast<LPARAM>(&state));
    // Nothing else tells where the cursor stands.
    if (state.state == LVIS_FOCUSED) ShowCursor();
  }
}

void PagedList::DrawSortArrows() const {
  constexpr int kArrows[] = {0, HDF_SORTUP, HDF_SORTDOWN};  // by SortOrder
  for (std::size_t i = 0; i < model_.columns().size(); ++i) {
    HDITEMW item = {};
    item.mask = HDI_FORMAT;
    SendMessageW(Header(), HDM_GETITEMW, i, reinterpret_cast<LPARAM>(&item));
    const int arrow = kArrows[static_cast<int>(model_.columns()[i].sort)];
    const int format = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | arrow;
    if (format == std::exchange(item.fmt, format)) continue;
    SendMessageW(Header(), HDM_SETITEMW, i, reinterpret_cast<LPARAM>(&item));
  }
}

void PagedList::DrawScrollBar() const {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
  info.nMin = 1;
  // Extra rows can make even a list with fewer positions than a page has rows scroll.
  info.nMax = model_.LastTop() + model_.page_size() - 1;
  info.nPage = static_cast<UINT>(model_.page_size());
  info.nPos = model_.top();
  SetScrollInfo(handle(), SB_VERT, &info, TRUE);
}

void PagedList::LayoutList() {
  const SIZE client = ClientOf(handle());
  ChangeWidths(
      [&] { Place(list_, 0, 0, static_cast<int>(client.cx), static_cast<int>(client.cy)); });
}

// The last column takes the room that the others leave. It shrinks before `change` and grows after
// it, so that the list view does not show a scroll bar, and less of a page, in between.
void PagedList::ChangeWidths(const std::function<void()>& change) {
  if (!open_) return change();
  const int last = static_cast<int>(model_.columns().size()) - 1;
  int width = static_cast<int>(ClientOf(handle()).cx);
  for (int i = 0; i < last; ++i) width -= ColumnWidth(i);
  width = std::max(width, kLastColumnCharacters * character_width_);
  const bool shrinks = width < ColumnWidth(last);
  const auto fit = [&] { Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(last), width); };

  {
    const FlagScope scope(fitting_);
    if (shrinks) fit();
    change();
    if (!shrinks) fit();
  }
  Refresh();
}

HWND PagedList::Header() const {
  return reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
}

int PagedList::ColumnWidth(int column) const {
  HDITEMW item = {};
  item.mask = HDI_WIDTH;
  SendMessageW(Header(), HDM_GETITEMW, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(&item));
  return item.cxy;
}

int PagedList::Send(UINT message, WPARAM wparam, LPARAM lparam) const {
  return static_cast<int>(SendMessageW(list_, message, wparam, lparam));
}

std::optional<LRESULT> PagedList::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_VSCROLL:
      Scroll(LOWORD(wparam));
      return 0;
    case WM_NOTIFY:
      return HandleNotification(*reinterpret_cast<NMHDR*>(lparam));
    case WM_NCPAINT:
      return PaintBorder(wparam);
    default:
      return std::nullopt;
  }
}

void PagedList::Scroll(int code) {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_TRACKPOS;
  switch (code) {
    case SB_LINEUP:
      return Do([&] { model_.ScrollBy(-1); });
    case SB_LINEDOWN:
      return Do([&] { model_.ScrollBy(1); });
    case SB_PAGEUP:
      return Do([&] { model_.ScrollBy(-model_.page_size()); });
    case SB_PAGEDOWN:
      return Do([&] { model_.ScrollBy(model_.page_size()); });
    case SB_TOP:
      return Do([&] { model_.ScrollTo(1); });
    case SB_BOTTOM:
      return Do([&] { model_.ScrollTo(model_.row_count()); });
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      // The message itself has but 16 bits for the position.
      GetScrollInfo(handle(), SB_VERT, &info);
      return Do([&] { model_.ScrollTo(info.nTrackPos); });
    default:
      return;
  }
}

void PagedList::Wheel(int delta) {
  UINT lines = 3;
  SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  const int step = static_cast<int>(std::min(lines, static_cast<UINT>(model_.page_size())));
  if ((delta < 0) != (wheel_ < 0)) wheel_ = 0;
  wheel_ += delta * step;
  const int rows = wheel_ / WHEEL_DELTA;
  wheel_ -= rows * WHEEL_DELTA;
  if (rows != 0) Do([&] { model_.ScrollBy(-rows); });
}

std::optional<LRESULT> PagedList::HandleNotification(NMHDR& notification) {
  if (notification.hwndFrom != list_) return std::nullopt;
  switch (notification.code) {
    case LVN_GETDISPINFOW:
      GetText(reinterpret_cast<NMLVDISPINFOW*>(&notification)->item);
      return 0;
    case NM_CUSTOMDRAW:
      return CustomDraw(*reinterpret_cast<NMLVCUSTOMDRAW*>(&notification));
    case LVN_ITEMCHANGED: {
      // Not by mouse or keyboard, which never reach the list view, but by a screen reader.
      const auto& change = *reinterpret_cast<const NMLISTVIEW*>(&notification);
      const bool selected = (change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0;
      const bool unselected = (change.uOldState & ~change.uNewState & LVIS_SELECTED) != 0;
      if (change.iItem < 0 || !(selected || (unselected && model_.multiple()))) return 0;
      const bool only = selected && Send(LVM_GETSELECTEDCOUNT) == 1;
      Do([&] {
        model_.SelectRow(static_cast<std::size_t>(change.iItem),
                         only ? Pick::kOnly : Pick::kToggle);
      });
      return 0;
    }
    case LVN_COLUMNCLICK: {
      const auto& click = *reinterpret_cast<const NMLISTVIEW*>(&notification);
      Do([&] { events_.column_click(static_cast<std::size_t>(click.iSubItem)); });
      return 0;
    }
    default:
      return std::nullopt;
  }
}

void PagedList::GetText(LVITEMW& item) const {
  if (!(item.mask & LVIF_TEXT) || item.cchTextMax < 1) return;
  const auto index = static_cast<std::size_t>(item.iItem);
  const std::wstring_view text =
      index < page_.size() ? page_[index].Cell(item.iSubItem + 1) : std::wstring_view();
  const std::size_t length = text.copy(item.pszText, static_cast<std::size_t>(item.cchTextMax) - 1);
  item.pszText[length] = L'\0';
}

std::optional<LRESULT> PagedList::CustomDraw(NMLVCUSTOMDRAW& draw) const {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  // A selected row: the list view takes the highlight's own text colour where that needs it.
  const std::size_t index = draw.nmcd.dwItemSpec;
  const dialogs::Color color = index < page_.size() ? page_[index].color : dialogs::kDefaultColor;
  if (color != dialogs::kDefaultColor) draw.clrText = color;
  return CDRF_DODEFAULT;
}

// With visual styles, the border looks like that of every list view.
std::optional<LRESULT> PagedList::PaintBorder(WPARAM region) const {
  const LRESULT result = DefWindowProcW(handle(), WM_NCPAINT, region, 0);
  const HTHEME theme = OpenThemeData(handle(), L"LISTVIEW");
  if (!theme) return result;
  RECT outer = {};
  GetWindowRect(handle(), &outer);
  OffsetRect(&outer, -static_cast<int>(outer.left), -static_cast<int>(outer.top));
  const int edge_x = GetSystemMetrics(SM_CXEDGE);
  const int edge_y = GetSystemMetrics(SM_CYEDGE);
  const HDC dc = GetWindowDC(handle());
  ExcludeClipRect(dc, edge_x, edge_y, static_cast<int>(outer.right) - edge_x,
                  static_cast<int>(outer.bottom) - edge_y);
  DrawThemeBackground(theme, dc, 0, 0, &outer, nullptr);
  ReleaseDC(handle(), dc);
  CloseThemeData(theme);
  return result;
}

LRESULT CALLBACK PagedList::ListProcedure(HWND list, UINT message, WPARAM wparam,
                                          LPARAM lparam) noexcept {
  auto* self = reinterpret_cast<PagedList*>(GetWindowLongPtrW(list, GWLP_USERDATA));
  const std::optional<LRESULT> result =
      WithoutExceptions([&] { return self->HandleList(message, wparam, lparam); });
  return result ? *result : self->CallList(message, wparam, lparam);
}

LRESULT PagedList::CallList(UINT message, WPARAM wparam, LPARAM lparam) const {
  return CallWindowProcW(list_procedure_, list_, message, wparam, lparam);
}

std::optional<LRESULT> PagedList::HandleList(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_KEYDOWN:
      if (!HandleKey(wparam)) return std::nullopt;
      return 0;
    case WM_CHAR:
      // Control characters are no text, and the space bar is a key of multiple selection.
      if (wparam > L' ' || (wparam == L' ' && !model_.multiple()))
        Do([&] { events_.key_press(static_cast<wchar_t>(wparam)); });
      return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
      Click(PointOf(lparam), wparam);
      return 0;
    case WM_LBUTTONDBLCLK:
      DoubleClick(PointOf(lparam), wparam);
      return 0;
    case WM_MOUSEWHEEL:
      Wheel(GET_WHEEL_DELTA_WPARAM(wparam));
      return 0;
    case WM_NCCALCSIZE:
      // No vertical scroll bar of its own, which would scroll within the page.
      SetWindowLongPtrW(list_, GWL_STYLE, GetWindowLongPtrW(list_, GWL_STYLE) & ~WS_VSCROLL);
      return std::nullopt;
    case WM_NOTIFY: {
      const auto& change = *reinterpret_cast<const NMHEADERW*>(lparam);
      const bool widened =
          change.hdr.code == HDN_ITEMCHANGEDW && (change.pitem->mask & HDI_WIDTH) != 0;
      if (!widened || fitting_) return std::nullopt;
      LRESULT result = 0;
      ChangeWidths([&] { result = CallList(message, wparam, lparam); });
      return result;
    }
    default:
      return std::nullopt;
  }
}

void PagedList::ShowCursor() const {
  Send(WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS));
}

bool PagedList::HandleKey(WPARAM key) {
  if (key == VK_SPACE) {
    // In a list with single selection, it is the character that follows that counts.
    if (model_.multiple()) Do([&] { model_.Toggle(); });
    return true;
  }
  const auto* entry = std::find_if(std::begin(kNavigationKeys), std::end(kNavigationKeys),
                                   [&](const NavigationKey& k) { return k.key == key; });
  if (entry == std::end(kNavigationKeys)) return false;
  // Whoever uses the keyboard needs to see the cursor.
  ShowCursor();
  const Pick pick = PickWith(IsDown(VK_SHIFT), IsDown(VK_CONTROL), Pick::kNone);
  Do([&] { (model_.*entry->move)(pick); });
  return true;
}

void PagedList::Click(POINT point, WPARAM keys) {
  SetFocus(list_);
  const int row = RowAt(point);
  const Pick pick = PickWith(keys & MK_SHIFT, keys & MK_CONTROL, Pick::kToggle);
  if (row >= 0) Do([&] { model_.SelectRow(static_cast<std::size_t>(row), pick); });
}

void PagedList::DoubleClick(POINT point, WPARAM keys) {
  // Rows that are picked one by one are not meant to confirm the choice.
  if (model_.multiple() && (keys & (MK_SHIFT | MK_CONTROL))) return Click(point, keys);
  Do([&] { events_.double_click(); });
}

void PagedList::Enter() {
  SetFocus(list_);
  Do([&] {
    if (!model_.HasSelection()) model_.SelectCursor();
  });
}

int PagedList::RowAt(POINT point) const {
  LVHITTESTINFO hit = {};
  hit.pt = point;
  const int row = Send(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  return row < static_cast<int>(page_.size()) ? row : -1;
}

}  // namespace ard::windows
