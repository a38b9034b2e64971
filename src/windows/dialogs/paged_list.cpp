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
    case WM_MOUSEMOVE:
      TipFor(PointOf(lparam));
      return std::nullopt;
    case WM_GETOBJECT:
      if (static_cast<LONG>(lparam) != OBJID_CLIENT) return std::nullopt;
      return DescribeTo(wparam);
    case WM_NCCALCSIZE:
      // No scroll bars of its own: the vertical one would scroll within the page, and the columns
      // always fit.
      SetWindowLongPtrW(list_, GWL_STYLE,
                        GetWindowLongPtrW(list_, GWL_STYLE) & ~(WS_VSCROLL | WS_HSCROLL));
      return std::nullopt;
    case WM_NOTIFY: {
      const auto& change = *reinterpret_cast<const NMHEADERW*>(lparam);
      const bool widened =
          change.hdr.code == HDN_ITEMCHANGEDW && (change.pitem->mask & HDI_WIDTH) != 0;
      if (!widened || fitting_) return std::nullopt;
      const LRESULT result = CallList(message, wparam, lparam);
      ColumnDragged(Swapped(static_cast<std::size_t>(change.iItem)), change.pitem->cxy);
      return result;
    }
    default:
      return std::nullopt;
  }
}

void PagedList::TipFor(POINT point) {
  if (PtInRect(&tip_cell_, point)) return;
  LVHITTESTINFO hit = {};
  hit.pt = point;
  const int row = Send(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  tip_cell_ = {};
  std::wstring text;
  if (row >= 0 && row < static_cast<int>(page_.size())) {
    RECT column = {};
    SendMessageW(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(hit.iSubItem),
                 reinterpret_cast<LPARAM>(&column));
    tip_cell_.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&tip_cell_));
    tip_cell_.left = column.left;
    tip_cell_.right = column.right;
    const auto cell = static_cast<int>(Swapped(static_cast<std::size_t>(hit.iSubItem))) + 1;
    text = Trimmed(page_[static_cast<std::size_t>(row)].Cell(cell));
    const int width = Send(LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text.c_str()));
    if (width + 2 * GetSystemMetrics(SM_CXEDGE) <= column.right - column.left) text.clear();
  }
  TTTOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = list_;
  tool.rect = tip_cell_;
  tool.lpszText = text.data();
  if (!tip_) {
    tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                           WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0, list_, nullptr,
                           nullptr, nullptr);
    SendMessageW(tip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
  SendMessageW(tip_, TTM_POP, 0, 0);
  SendMessageW(tip_, TTM_SETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool));
}

std::optional<LRESULT> PagedList::DescribeTo(WPARAM reader) {
  if (!accessible_) {
    accessible_ = AccessibleList::Create(list_, [this](LONG row) {
      if (row == CHILDID_SELF) return model_.Title();
      const auto index = static_cast<std::size_t>(row) - 1;
      return index < page_.size() ? model_.Spoken(page_[index]) : std::wstring();
    });
  }
  if (!accessible_) return std::nullopt;
  return accessible_->Answer(reader);
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
