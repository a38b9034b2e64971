// What is to be seen of a selection dialog's window, from the thread of its user.
#ifndef ARD_TESTS_WINDOWS_DIALOG_VIEW_H_
#define ARD_TESTS_WINDOWS_DIALOG_VIEW_H_

#include <string>
#include <vector>

#include "tests/windows/window_driver.h"

namespace ard::windows::testing {

// The list is the one visible at the time of construction.
struct View {
  explicit View(HWND window);

  int rows() const;
  std::wstring Cell(int row, int column) const;
  // The first cells of the selected rows in view, with a blank between.
  std::wstring Selected() const;

  HWND Header() const;
  // The middle of a column's header, on the screen.
  POINT HeaderPoint(int column) const;

  RECT RowRect(int row) const;
  // A point of the row, on the screen. There is one for rows that are not there, too.
  POINT RowPoint(int row) const;

  SCROLLINFO Scroll() const;

  // As assistive technology selects a row, or does not.
  void SetState(int row, UINT state, UINT mask) const;

  HWND dialog;
  HWND list;
  HWND frame;
  HWND ok;
  HWND cancel;
};

// What a window shows, with its frame and all that is in it; from the thread of the windows.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<COLORREF> pixels;

  bool operator==(const Picture&) const = default;
  bool EqualsRow(const Picture& other, int y) const;
};
Picture PictureOf(HWND window);

// The colours of a row: of what it stands on, and of its text, the one that differs most.
struct Ink {
  COLORREF background = 0;
  COLORREF text = 0;
};
Ink InkOf(const Host& host, const View& view, int row);

RECT RectOf(HWND window);
SIZE SizeOf(HWND window);
void Resize(HWND window, SIZE size);

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_DIALOG_VIEW_H_
