// What keys, the mouse and a screen reader do to a paged list.
#include <windowsx.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>

#include "frame/text.h"
#include "windows/dialogs/paged_list.h"

namespace ard::windows {
namespace {

using dialogs::ListModel;
using dialogs::Pick;

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

POINT PointOf(LPARAM lparam) { return {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)}; }

}  // namespace

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
  // A long text goes on in the next line, not beyond the screen.
  SendMessageW(tip_, TTM_SETMAXTIPWIDTH, 0, ClientOf(list_).cx);
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
