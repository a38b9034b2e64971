// A test that shows dialogs in their windows and works them as a user would.
#ifndef ARD_TESTS_WINDOWS_WINDOW_TEST_H_
#define ARD_TESTS_WINDOWS_WINDOW_TEST_H_

#include <windows.h>
// After windows.h.
#include <gtest/gtest.h>

#include <string_view>

#include "frame/context.h"
#include "tests/windows/window_driver.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows::testing {

class WindowTest : public ::testing::Test {
 protected:
  // Calls `open`, which opens a window of that title; meanwhile `act(window)` works it.
  template <class Open, class Act>
  void Work(const wchar_t* title, Open open, Act act) {
    host_.Activate();
    host_.Drive(title, open, [&](HWND window) {
      EXPECT_EQ(GetWindow(window, GW_OWNER), host_.window());
      EXPECT_FALSE(IsWindowEnabled(host_.window()));
      act(window);
    });
    EXPECT_TRUE(IsWindowEnabled(host_.window()));
  }
  template <class Dialog, class Act>
  void Show(const wchar_t* title, Dialog& dialog, Act act) {
    Work(
        title, [&] { environment_.Show(dialog); }, act);
    EXPECT_FALSE(dialog.visible());
    EXPECT_TRUE(host_.focus_returned());
  }

  // For `act`.
  void Keys(std::wstring_view keys) const {
    testing::Keys(keys);
    EXPECT_TRUE(host_.Settle());
  }
  void ClickOn(POINT point, int times = 1) const {
    Click(point, times);
    EXPECT_TRUE(host_.Settle());
  }
  HWND FocusWindow() const {
    HWND focus = nullptr;
    host_.Ask([&] { focus = GetFocus(); });
    return focus;
  }
  static void ExpectClosed(HWND window) {
    EXPECT_TRUE(Eventually([&] { return !IsWindow(window); }));
  }

  Host host_;
  WindowsEnvironment environment_{GetModuleHandleW(nullptr)};
  Context context_{environment_};
};

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_WINDOW_TEST_H_
