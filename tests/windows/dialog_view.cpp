#include "tests/windows/dialog_view.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <cstdlib>

#include "frame/text.h"

namespace ard::windows::testing {
namespace {

// To be called on the thread of the windows.
Ink CountInk(const View& view, int row) {
  constexpr int kClearly = 80;
  Ink ink;
  const HDC dc = GetDC(view.list);
  const RECT rect = view.RowRect(row);
  const COLORREF background = GetPixel(dc, rect.right - 3, rect.top + 3);
  ink.background = background;
  for (int y = rect.top + 2; y < rect.bottom - 2; ++y) {
    for (int x = rect.left + 4; x < rect.left + 200; ++x) {
      const COLORREF pixel = GetPixel(dc, x, y);
      const int red = GetRValue(pixel);
      const int green = GetGValue(pixel);
      if (red - std::max(green, static_cast<int>(GetBValue(pixel))) > kClearly) ++ink.red;
      const int difference =
          std::abs(red - GetRValue(background)) + std::abs(green - GetGValue(background));
      if (difference > 150) ++ink.any;
    }
  }
  ReleaseDC(view.list, dc);
  return ink;
}

}  // namespace

View::View(HWND window)
    : dialog(window),
      list(Descendant(window, WC_LISTVIEWW)),
      frame(GetParent(list)),
      ok(GetDlgItem(window, IDOK)),
      cancel(GetDlgItem(window, IDCANCEL)) {}

int View::rows() const { return static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0)); }

std::wstring View::Cell(int row, int column) const {
  wchar_t text[64] = {};
  LVITEMW item = {};
  item.iSubItem = column;
  item.pszText = text;
  item.cchTextMax = 64;
  SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return std::wstring(Trimmed(text));
}

std::wstring View::Selected() const {
  std::wstring cells;
  int row = -1;
  for (;;) {
    row = static_cast<int>(
        SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED));
    if (row < 0) return cells;
    if (!cells.empty()) cells += L' ';
    cells += Cell(row, 0);
  }
}

HWND View::Header() const {
  return reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
}

POINT View::HeaderPoint(int column) const {
  RECT rect = {};
  SendMessageW(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(column),
               reinterpret_cast<LPARAM>(&rect));
  POINT point = {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  ClientToScreen(Header(), &point);
  return point;
}

RECT View::RowRect(int row) const {
  RECT rect = {};
  rect.left = LVIR_BOUNDS;
  SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&rect));
  return rect;
}

POINT View::RowPoint(int row) const {
  const RECT rect = RowRect(0);
  const LONG height = rect.bottom - rect.top;
  POINT point = {rect.left + 20, rect.top + height * row + height / 2};
  ClientToScreen(list, &point);
  return point;
}

SCROLLINFO View::Scroll() const {
  SCROLLINFO info = {};
  info.cbSize = sizeof(info);
  info.fMask = SIF_ALL;
  GetScrollInfo(frame, SB_VERT, &info);
  return info;
}

void View::SetState(int row, UINT state, UINT mask) const {
  LVITEMW item = {};
  item.state = state;
  item.stateMask = mask;
  SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

Ink InkOf(const Host& host, const View& view, int row) {
  Ink ink;
  host.Ask([&] { ink = CountInk(view, row); });
  return ink;
}

RECT RectOf(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  return rect;
}

SIZE SizeOf(HWND window) {
  const RECT rect = RectOf(window);
  return {rect.right - rect.left, rect.bottom - rect.top};
}

void Resize(HWND window, SIZE size) {
  SetWindowPos(window, nullptr, 0, 0, static_cast<int>(size.cx), static_cast<int>(size.cy),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace ard::windows::testing
