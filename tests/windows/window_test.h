// A test that shows dialogs in their windows and works them as a user would: keys and mouse go
// through the system's own input queue, from a second thread, while the window runs its modal loop
// on the first.
#ifndef ARD_TESTS_WINDOWS_WINDOW_TEST_H_
#define ARD_TESTS_WINDOWS_WINDOW_TEST_H_

#include <windows.h>
// After windows.h.
#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "frame/context.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows::testing {

// What is to be seen of a window. The list is the one visible at the time of construction.
struct View {
  explicit View(HWND window);

  std::wstring Cell(int row, int column) const;
  // The first cells of the rows in view, with a blank between: of all, or of those in that state.
  std::wstring Rows(UINT state = LVNI_ALL) const;
  std::wstring Selected() const { return Rows(LVNI_SELECTED); }
  RECT RowRect(int row) const;
  HWND Header() const { return ListView_GetHeader(list); }
  SCROLLINFO Scroll() const;

  // On the screen, where to click: "Row3", "Header1" and "Tab0", which count from 0 (there may be
  // fewer rows), and the controls by their texts: "OK".
  POINT Place(std::wstring_view name) const;

  HWND window;
  HWND list;
  HWND frame;
  HWND ok;
};

// What a window shows, with its frame and all that is in it.
struct Picture {
  LONG width = 0;
  std::vector<COLORREF> pixels;

  bool operator==(const Picture&) const = default;
};

class WindowTest : public ::testing::Test {
 protected:
  using Act = std::function<void(const View&)>;

  // An application's window, with a field that has the focus.
  WindowTest();
  ~WindowTest() override { DestroyWindow(host_); }

  // Calls `open`, which opens a modal window of that title, and meanwhile `act` on another thread.
  // A window that is then still there is closed, so that a failing test ends.
  void Drive(const std::wstring& title, const std::function<void()>& open, const Act& act);
  // The same, as it is meant to be: from the host's field, which gets the focus back.
  void Work(const std::wstring& title, const std::function<void()>& open, const Act& act);
  template <class Dialog>
  void Show(Dialog& dialog, const Act& act) {
    Work(
        std::wstring(dialog.caption()), [&] { environment_.Show(dialog); }, act);
    EXPECT_FALSE(dialog.visible());
  }

  // For `act`. What is input has been dealt with, or has closed the window, when these return.
  // Characters as they are typed; and in braces keys and the places of clicks, with the keys that
  // are held down meanwhile: "b{Enter}{Ctrl+Shift+Down}{Ctrl+Row3}{Double+Row2}{OK}".
  void Keys(std::wstring_view keys) const;
  void Drag(POINT from, POINT to) const;
  void TurnWheel(HWND window, int delta) const;
  struct Step {
    std::wstring keys;
    std::wstring seen;
  };
  // What `look` sees after each.
  void Walk(const std::function<std::wstring()>& look, std::initializer_list<Step> steps) const;

  // Calls `action` on the thread of the windows.
  void Ask(const std::function<void()>& action) const;
  HWND FocusWindow() const;
  Picture PictureOf(HWND window) const;
  // Waits until all has been dealt with; fails when that takes long.
  void Settle() const;
  static void ExpectClosed(const View& view);

  HWND host_;
  HWND field_;
  HWND driven_ = nullptr;
  WindowsEnvironment environment_{GetModuleHandleW(nullptr)};
  Context context_{environment_};
};

// Polls `condition` for a few seconds; whether it has come true.
bool Eventually(const std::function<bool()>& condition);

// The windows inside `parent`, at any depth: all of them, and the visible one of that class.
std::vector<HWND> Descendants(HWND parent);
HWND Descendant(HWND parent, std::wstring_view window_class);
std::wstring ClassOf(HWND window);
std::wstring TextOf(HWND window);
RECT RectOf(HWND window);
SIZE SizeOf(HWND window);
// Where its middle is.
POINT MiddleOf(HWND window);

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_WINDOW_TEST_H_
