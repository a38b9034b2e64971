// A host for the library's windows, and a user for them: keys and mouse go through the system's own
// input queue, from a second thread, while the window runs its modal loop on the first.
#ifndef ARD_TESTS_WINDOWS_WINDOW_DRIVER_H_
#define ARD_TESTS_WINDOWS_WINDOW_DRIVER_H_

#include <windows.h>
// After windows.h.
#include <commctrl.h>

#include <functional>
#include <string>
#include <string_view>

namespace ard::windows::testing {

// An application's window, with a field that has the focus.
class Host {
 public:
  Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host();

  HWND window() const { return window_; }

  // Makes it the active window, with the focus in the field.
  void Activate();
  // Whether the field has got the focus since the last Drive began.
  bool focus_returned() const { return focus_returned_; }

  // Calls `show`, which is to show a modal window of that title, and meanwhile `act` with it on
  // another thread. A window that is then still there is closed, so that a failing test ends.
  void Drive(const wchar_t* title, const std::function<void()>& show,
             const std::function<void(HWND)>& act);

  // For `act`: calls `action` on the thread of the windows; fails when that does not answer.
  bool Ask(const std::function<void()>& action) const;
  // For `act`: waits until all input given so far has been dealt with, or has closed the window;
  // fails when that takes long.
  bool Settle() const;

 private:
  bool IsIdle() const;
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

  HWND window_;
  HWND field_;
  HWND driven_ = nullptr;
  bool focus_returned_ = false;
};

// Polls `condition` for a few seconds; whether it has come true.
bool Eventually(const std::function<bool()>& condition);

// The visible window of that class inside `parent`, at any depth.
HWND Descendant(HWND parent, std::wstring_view window_class);
std::wstring TextOf(HWND window);

// Input. Positions are those of the screen.
// Characters as they are typed, and in braces keys, with those that are held down meanwhile:
// "b{Enter}{Ctrl+Shift+Down}{Alt+S}".
void Keys(std::wstring_view keys);
void Click(POINT point, int times = 1);
void ClickWith(WORD key, POINT point);  // held down meanwhile
void Drag(POINT from, POINT to);
void TurnWheel(POINT point, int delta);

// The middle of a window.
POINT MiddleOf(HWND window);

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_WINDOW_DRIVER_H_
