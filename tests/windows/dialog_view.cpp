#include "tests/windows/dialog_view.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace ard::windows::testing {
namespace {

int Difference(COLORREF a, COLORREF b) {
  return std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
         std::abs(GetBValue(a) - GetBValue(b));
}

}  // namespace

View::View(HWND window)
    : dialog(window),
      list(Descendant(window, WC_LISTVIEWW)),
      frame(GetParent(list)),
      ok(GetDlgItem(window, IDOK)),
      cancel(GetDlgItem(window, IDCANCEL)) {}

int View::rows() const { return ListView_GetItemCount(list); }

std::wstring View::Cell(int row, int column) const {
  wchar_t text[64] = {};
  ListView_GetItemText(list, row, column, text, 64);
  return text;
}

std::wstring View::Selected() const {
  std::wstring cells;
  int row = -1;
  while ((row = ListView_GetNextItem(list, row, LVNI_SELECTED)) >= 0) {
    if (!cells.empty()) cells += L' ';
    cells += Cell(row, 0);
  }
  return cells;
}

HWND View::Header() const { return ListView_GetHeader(list); }

POINT View::HeaderPoint(int column) const {
  RECT rect = {};
  Header_GetItemRect(Header(), column, &rect);
  POINT point = {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  ClientToScreen(Header(), &point);
  return point;
}

RECT View::RowRect(int row) const {
  RECT rect = {};
  ListView_GetItemRect(list, row, &rect, LVIR_BOUNDS);
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
  ListView_SetItemState(list, row, state, mask);
}

bool Picture::EqualsRow(const Picture& other, int y) const {
  const auto row = pixels.begin() + std::ptrdiff_t{width} * y;
  return std::equal(row, row + width, other.pixels.begin() + std::ptrdiff_t{width} * y);
}

Picture PictureOf(HWND window) {
  RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  const SIZE size = SizeOf(window);
  Picture picture = {static_cast<int>(size.cx), static_cast<int>(size.cy), {}};
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = picture.width;
  info.bmiHeader.biHeight = -picture.height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const HDC source = GetDCEx(window, nullptr, DCX_WINDOW | DCX_CACHE);
  const HDC copy = CreateCompatibleDC(source);
  const HBITMAP bitmap = CreateDIBSection(source, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ previous = SelectObject(copy, bitmap);
  BitBlt(copy, 0, 0, picture.width, picture.height, source, 0, 0, SRCCOPY);
  GdiFlush();
  const auto* pixels = static_cast<const COLORREF*>(bits);
  picture.pixels.assign(pixels, pixels + std::ptrdiff_t{picture.width} * picture.height);
  DeleteObject(SelectObject(copy, previous));
  DeleteDC(copy);
  ReleaseDC(window, source);
  return picture;
}

Ink InkOf(const Host& host, const View& view, int row) {
  Picture picture;
  host.Ask([&] { picture = PictureOf(view.list); });
  const RECT rect = view.RowRect(row);
  const auto at = [&](LONG x, LONG y) {
    const COLORREF pixel = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
    return RGB(GetBValue(pixel), GetGValue(pixel), GetRValue(pixel));
  };
  Ink ink;
  ink.text = ink.background = at(rect.right - 4, rect.top + 3);
  for (LONG y = rect.top + 3; y < rect.bottom - 3; ++y) {
    for (LONG x = rect.left + 4; x < rect.left + 200; ++x) {
      if (Difference(at(x, y), ink.background) > Difference(ink.text, ink.background)) {
        ink.text = at(x, y);
      }
    }
  }
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
