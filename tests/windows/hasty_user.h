// A user who lets no window wait: works on a timer of the calling thread, inside the modal loops of
// the library's windows and of message boxes.
#ifndef ARD_TESTS_WINDOWS_HASTY_USER_H_
#define ARD_TESTS_WINDOWS_HASTY_USER_H_

#include <windows.h>

#include <map>
#include <vector>

namespace ard::windows::testing {

// For one call, and one at a time. Whatever window of the thread comes up gets OK, if there is such
// a button, once something has been picked; one without, or that is still there afterwards, is
// closed, and as a last resort aborted.
class HastyUser {
 public:
  // One who `cancels` uses no OK.
  explicit HastyUser(bool cancels = false);
  HastyUser(const HastyUser&) = delete;
  HastyUser& operator=(const HastyUser&) = delete;
  ~HastyUser();

  // How many windows have come up so far.
  int windows() const { return static_cast<int>(next_.size()); }

 private:
  enum class Step { kPick, kConfirm, kClose, kAbort };

  static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD);
  void Answer(HWND window);

  UINT_PTR timer_;
  bool cancels_;
  std::map<HWND, Step> next_;
};

// The windows of the calling thread that are to be seen, from the topmost down.
std::vector<HWND> VisibleWindows();

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_HASTY_USER_H_
