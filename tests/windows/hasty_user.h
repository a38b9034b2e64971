// A user who lets no window wait: works on a timer of the calling thread, inside the modal loops of
// the library's windows and of message boxes.
#ifndef ARD_TESTS_WINDOWS_HASTY_USER_H_
#define ARD_TESTS_WINDOWS_HASTY_USER_H_

#include <windows.h>

#include <map>
#include <vector>

namespace ard::windows::testing {

inline BOOL CALLBACK AddVisible(HWND window, LPARAM windows) {
  if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}
// The windows of the calling thread that are to be seen, from the topmost down.
inline std::vector<HWND> VisibleWindows() {
  std::vector<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), AddVisible, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

// For one call, and one at a time. Whatever window of the thread comes up gets OK, if there is such
// a button, once something has been picked; one without, or that is still there afterwards, is
// closed, and as a last resort aborted.
class HastyUser {
 public:
  // One who `cancels` uses no OK.
  explicit HastyUser(bool cancels = false)
      : timer_(SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Look)), cancels_(cancels) {
    current_ = this;
  }
  HastyUser(const HastyUser&) = delete;
  HastyUser& operator=(const HastyUser&) = delete;
  ~HastyUser() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
  }

  // How many windows have come up so far.
  int windows() const { return static_cast<int>(next_.size()); }

 private:
  enum class Step { kPick, kConfirm, kClose, kAbort };

  static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
    for (const HWND window : VisibleWindows()) {
      if (IsWindowEnabled(window)) return current_->Answer(window);
    }
  }

  void Answer(HWND window) {
    Step& next = next_[window];
    const HWND ok = cancels_ ? nullptr : GetDlgItem(window, IDOK);
    const bool can_confirm = ok && IsWindowEnabled(ok);
    if (next == Step::kPick && ok && !can_confirm) {
      PostMessageW(GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
      next = Step::kConfirm;
    } else if (next <= Step::kConfirm && can_confirm) {
      PostMessageW(window, WM_COMMAND, IDOK, 0);
      next = Step::kClose;
    } else if (next != Step::kAbort) {
      PostMessageW(window, WM_CLOSE, 0, 0);
      next = Step::kAbort;
    } else {
      PostMessageW(window, WM_COMMAND, IDABORT, 0);
      next = Step::kClose;
    }
  }

  static inline HastyUser* current_ = nullptr;

  UINT_PTR timer_;
  bool cancels_;
  std::map<HWND, Step> next_;
};

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_HASTY_USER_H_
