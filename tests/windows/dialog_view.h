// What is to be seen of a selection dialog's window, from the thread of its user.
#ifndef ARD_TESTS_WINDOWS_DIALOG_VIEW_H_
#define ARD_TESTS_WINDOWS_DIALOG_VIEW_H_

#include <windows.h>

#include <string>

#include "tests/windows/window_driver.h"

namespace ard::windows::testing {

// The list is the one visible at the time of construction.
struct View {
  explicit View(HWND window);

  int rows() const;
  // Without the blanks that may pad it.
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

// Pixels of the row's cells that are clearly red, and those that differ from its
// background.
struct Ink {
  int red = 0;
  int any = 0;
  COLORREF background = 0;
};
Ink InkOf(const Host& host, const View& view, int row);

RECT RectOf(HWND window);
SIZE SizeOf(HWND window);
void Resize(HWND window, SIZE size);

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_DIALOG_VIEW_H_
