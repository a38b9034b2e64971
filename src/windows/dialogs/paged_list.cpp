#include "windows/dialogs/paged_list.h"

#include <uxtheme.h>
#include <windowsx.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <utility>

#include "frame/text.h"
#include "windows/dialogs/contrast.h"

namespace ard::windows {
namespace {

using dialogs::ListModel;
using dialogs::Pick;

// Blank space in a cell beside its text, in dialog units.
constexpr int kCellPadding = 8;
// What the flexible column keeps when the others leave it no room.
constexpr int kLeastCharacters = 8;

constexpr UINT_PTR kLookOn = 1;

class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace

PagedList::~PagedList() {
  if (accessible_) {
    accessible_->Disconnect();
    accessible_->Release();
  }
  Destroy();
}

void PagedList::Create(HINSTANCE module, HWND parent) {
  // The outer window has the border and the scroll bar, the list view fills it.
  DialogWindow::Create(module, parent,
                       DS_CONTROL | WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_CLIPCHILDREN,
                       WS_EX_CLIENTEDGE | WS_EX_CONTROLPARENT);
  DWORD style = WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS;
  if (!model_.multiple()) style |= LVS_SINGLESEL;
  if (!events_.column_click) style |= LVS_NOSORTHEADER;
  list_ = CreateControl(handle(), {WC_LISTVIEWW, model_.Title().c_str(), style});
  SetWindowLongPtrW(list_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  list_procedure_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(list_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListProcedure)));
  SetWindowTheme(list_, L"Explorer", nullptr);
  constexpr DWORD kStyles = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
  Send(LVM_SETEXTENDEDLISTVIEWSTYLE, kStyles, kStyles);

  int widest = 0;
  const std::vector<dialogs::Column>& columns = model_.columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    LVCOLUMNW header = {};
    header.mask = LVCF_TEXT | LVCF_FMT;
    const dialogs::Column& column = columns[Swapped(i)];
    header.fmt = column.number ? LVCFMT_RIGHT : LVCFMT_LEFT;
    header.pszText = const_cast<wchar_t*>(column.header.c_str());
    Send(LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&header));
    // The widest is the description.
    if (columns[i].width >= widest) flexible_ = i;
    widest = std::max(widest, columns[i].width);
  }
  if (Swapped(0) != 0) {
    std::vector<int> order(columns.size());
    std::iota(order.begin(), order.end(), 0);
    std::swap(order[0], order[1]);
    Send(LVM_SETCOLUMNORDERARRAY, order.size(), reinterpret_cast<LPARAM>(order.data()));
  }
  widths_.resize(model_.columns().size());
  Placed();  // the header's height is measured
}

std::size_t PagedList::Swapped(std::size_t column) const {
  const std::vector<dialogs::Column>& columns = model_.columns();
  return column < 2 && columns.size() > 1 && columns[0].number ? 1 - column : column;
}

void PagedList::SetMetrics(const Metrics& metrics) {
  const int previous = std::exchange(character_width_, metrics.Characters(1));
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    // The user may have changed the widths: they grow or shrink with the font.
    widths_[i] = previous ? MulDiv(widths_[i], character_width_, previous)
                          : metrics.Characters(model_.columns()[i].width) + metrics.X(kCellPadding);
  }
  MeasureRows();
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
  const int width = std::accumulate(widths_.begin(), widths_.end(), 0);
  return {width + GetSystemMetrics(SM_CXVSCROLL) + 2 * GetSystemMetrics(SM_CXEDGE),
          header_height_ + rows * row_height_ + 2 * GetSystemMetrics(SM_CYEDGE)};
}

void PagedList::Placed() {
  FitColumns();
  if (busy_ || !open_ || !handle()) return;
  const FlagScope scope(busy_);
  Draw();
}

void PagedList::Open() {
  open_ = true;
  Placed();
}

void PagedList::Do(const std::function<void()>& action) {
  if (busy_ || !open_ || !handle()) return;
  const FlagScope scope(busy_);
  action();
  Draw();
  // Not when there is time for it: a key that is held down leaves none.
  UpdateWindow(list_);
}

void PagedList::Draw() {
  // As many rows as are wholly visible make a page. Only a change asks the model for rows.
  model_.SetPageSize(Send(LVM_GETCOUNTPERPAGE));
  page_ = model_.rows();
  tip_cell_ = {};  // another text may be there now
  why_empty_ = page_.empty() ? model_.WhyEmpty() : std::wstring();
  Send(LVM_SETITEMCOUNT, page_.size(), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
  DrawSelection();
  DrawSortArrows();
  DrawScrollBar();
  InvalidateRect(list_, nullptr, FALSE);
  // Between the steps, keys and clicks count.
  if (model_.looking()) SetTimer(handle(), kLookOn, USER_TIMER_MINIMUM, nullptr);
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
  }
}

void PagedList::DrawSortArrows() const {
  constexpr int kArrows[] = {0, HDF_SORTUP, HDF_SORTDOWN};  // by SortOrder
  for (std::size_t i = 0; i < model_.columns().size(); ++i) {
    HDITEMW item = {};
    item.mask = HDI_FORMAT;
    SendMessageW(Header(), HDM_GETITEMW, Swapped(i), reinterpret_cast<LPARAM>(&item));
    const int arrow = kArrows[static_cast<int>(model_.columns()[i].sort)];
    const int format = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | arrow;
    if (format == std::exchange(item.fmt, format)) continue;
    SendMessageW(Header(), HDM_SETITEMW, Swapped(i), reinterpret_cast<LPARAM>(&item));
  }
}

void PagedList::DrawScrollBar() {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  info.nMin = 1;
  // Extra rows can make even a list with fewer positions than a page has rows scroll.
  info.nMax = model_.LastTop() + model_.page_size() - 1;
  info.nPage = static_cast<UINT>(model_.page_size());
  info.nPos = model_.top();
  // With nothing to scroll there is no scroll bar, and more room.
  const LONG before = ClientOf(handle()).cx;
  SetScrollInfo(handle(), SB_VERT, &info, TRUE);
  if (ClientOf(handle()).cx != before) FitColumns();
}

// The list view fills the client area, and its columns fill the list view.
void PagedList::FitColumns() {
  if (widths_.empty()) return;
  const FlagScope scope(fitting_);
  const SIZE client = ClientOf(handle());
  Place(list_, 0, 0, static_cast<int>(client.cx), static_cast<int>(client.cy));
  const auto width = static_cast<int>(client.cx);
  const int others = std::accumulate(widths_.begin(), widths_.end(), 0) - widths_[flexible_];
  const int room = std::max(width - kLeastCharacters * character_width_, 0);
  int rest = width;
  const auto set = [&](std::size_t column, int to) {
    rest -= to;
    if (ColumnWidth(column) != to) Send(LVM_SETCOLUMNWIDTH, Swapped(column), to);
  };
  for (std::size_t i = 0; i < widths_.size(); ++i) {
    if (i != flexible_) set(i, others > room ? MulDiv(widths_[i], room, others) : widths_[i]);
  }
  set(flexible_, rest);
}

// What the flexible column gains, its right neighbour loses.
void PagedList::ColumnDragged(std::size_t column, int width) {
  if (column != flexible_) {
    widths_[column] = width;
  } else if (column + 1 < widths_.size()) {
    const int gain = width - widths_[column];
    widths_[column + 1] = std::max(widths_[column + 1] - gain, character_width_);
  }
  Placed();
}

HWND PagedList::Header() const {
  return reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
}

int PagedList::ColumnWidth(std::size_t column) const {
  HDITEMW item = {};
  item.mask = HDI_WIDTH;
  SendMessageW(Header(), HDM_GETITEMW, Swapped(column), reinterpret_cast<LPARAM>(&item));
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
    case WM_TIMER:
      KillTimer(handle(), kLookOn);
      Do([&] {
        if (model_.looking()) model_.Home();
      });
      return 0;
    case WM_NOTIFY:
      return HandleNotification(*reinterpret_cast<NMHDR*>(lparam));
    case WM_NCPAINT:
      return PaintBorder(wparam);
    default:
      return std::nullopt;
  }
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
      Do([&] { events_.column_click(Swapped(static_cast<std::size_t>(click.iSubItem))); });
      return 0;
    }
    default:
      return std::nullopt;
  }
}

void PagedList::GetText(LVITEMW& item) const {
  if (!(item.mask & LVIF_TEXT) || item.cchTextMax < 1) return;
  const auto index = static_cast<std::size_t>(item.iItem);
  // The engine pads its texts with blanks.
  const auto cell = static_cast<int>(Swapped(static_cast<std::size_t>(item.iSubItem))) + 1;
  const std::wstring_view text =
      index < page_.size() ? Trimmed(page_[index].Cell(cell)) : std::wstring_view();
  const std::size_t length = text.copy(item.pszText, static_cast<std::size_t>(item.cchTextMax) - 1);
  item.pszText[length] = L'\0';
}

std::optional<LRESULT> PagedList::CustomDraw(NMLVCUSTOMDRAW& draw) const {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return page_.empty() ? CDRF_NOTIFYPOSTPAINT : CDRF_NOTIFYITEMDRAW;
    case CDDS_POSTPAINT:
      DrawWhyEmpty(draw.nmcd.hdc);
      return 0;
    case CDDS_ITEMPREPAINT:
      break;
    default:
      return CDRF_DODEFAULT;
  }
  const std::size_t index = draw.nmcd.dwItemSpec;
  const dialogs::Color color = index < page_.size() ? page_[index].color : dialogs::kDefaultColor;
  if (color == dialogs::kDefaultColor) return CDRF_DODEFAULT;
  if (Send(LVM_GETITEMSTATE, index, LVIS_SELECTED) == 0) {
    draw.clrText = Readable(color, GetSysColor(COLOR_WINDOW), kVisible);
    return CDRF_DODEFAULT;
  }
  // Where a selection is shown by the highlight colour, that of the row takes its place.
  const bool active = GetFocus() == list_;
  const COLORREF other = GetSysColor(active ? COLOR_HIGHLIGHTTEXT : COLOR_BTNFACE);
  const COLORREF own = Readable(color, other, kLegible);
  draw.clrText = active ? other : own;
  draw.clrTextBk = active ? own : other;
  draw.nmcd.uItemState &= ~UINT{CDIS_SELECTED};
  return CDRF_DODEFAULT;
}

void PagedList::DrawWhyEmpty(HDC dc) const {
  RECT area = {};
  GetClientRect(list_, &area);
  area.top = header_height_;
  InflateRect(&area, -character_width_, -row_height_ / 4);
  SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
  SetBkMode(dc, TRANSPARENT);
  DrawTextW(dc, why_empty_.c_str(), -1, &area, DT_NOPREFIX | DT_WORDBREAK);
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

}  // namespace ard::windows
