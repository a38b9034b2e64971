#include "tests/windows/dialog_view.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "frame/text.h"

namespace ard::windows::testing {
namespace {

// How many GDI and user objects the process has. Wine does not count them; there, the highest
// numbers among a few new ones tell, since the numbers of objects that are gone are used again.
std::pair<int, int> GuiObjects() {
  const HANDLE process = GetCurrentProcess();
  const auto gdi = static_cast<int>(GetGuiResources(process, GR_GDIOBJECTS));
  const auto user = static_cast<int>(GetGuiResources(process, GR_USEROBJECTS));
  if (gdi + user > 0) return {gdi, user};

  constexpr int kProbes = 200;
  std::vector<HFONT> fonts;
  std::vector<HMENU> menus;
  std::pair<int, int> highest;
  for (int i = 0; i < kProbes; ++i) {
    fonts.push_back(CreateFontW(10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma"));
    menus.push_back(CreateMenu());
    highest.first = std::max(highest.first, static_cast<int>(LOWORD(fonts.back())));
    highest.second = std::max(highest.second, static_cast<int>(LOWORD(menus.back())));
  }
  for (const HFONT font : fonts) DeleteObject(font);
  for (const HMENU menu : menus) DestroyMenu(menu);
  return highest;
}

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
      const int blue = GetBValue(pixel);
      if (red - std::max(green, blue) > kClearly) ++ink.red;
      if (blue - std::max(red, green) > kClearly) ++ink.blue;
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

std::wstring View::Cursor() const {
  const auto row =
      static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
  return row < 0 ? std::wstring() : Cell(row, 0);
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

void ExpectNothingLeftBehind(const std::function<void()>& open_and_close) {
  constexpr int kCycles = 200;
  for (int i = 0; i < 10; ++i) open_and_close();
  const auto before = GuiObjects();
  for (int i = 0; i < kCycles; ++i) open_and_close();
  const auto after = GuiObjects();
  // One object that stays each time would be `kCycles` more.
  EXPECT_LT(after.first - before.first, kCycles / 2);
  EXPECT_LT(after.second - before.second, kCycles / 2);
}

}  // namespace ard::windows::testing
