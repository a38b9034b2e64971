// DialogWindow: a window of the system's dialog class, created empty. Keyboard navigation, default
// button and remembered focus come from the system; no window class needs to be registered (or left
// behind when the library is unloaded).
#ifndef ARD_WINDOWS_DIALOGS_DIALOG_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_DIALOG_WINDOW_H_

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "windows/floating_point.h"

namespace ard::windows {

// Runs `action`, the reaction to a message. An exception (the machine is out of memory) must not
// reach the system: the message then counts as dealt with, as if nothing had happened. Windows of
// the host's may have been told something before, and have changed the floating-point environment.
template <class Action>
std::optional<LRESULT> WithoutExceptions(Action&& action) noexcept {
  FloatingPoint::Establish();
  try {
    return action();
  } catch (...) {
    return 0;
  }
}

// The size that `window` has around its client area, and that of its client area.
SIZE FrameOf(HWND window);
SIZE ClientOf(HWND window);

void Place(HWND window, int x, int y, int width, int height);

std::wstring TextOf(HWND window);

// A control in `parent`. Throws Error when it cannot be created.
struct Control {
  const wchar_t* window_class;
  const wchar_t* text;
  DWORD style;
  int id = 0;
  DWORD extended_style = 0;
};
HWND CreateControl(HWND parent, const Control& control);

// What is hidden is disabled, too: its mnemonic would still be heard.
void ShowControl(HWND control, bool visible);

class DialogWindow {
 public:
  DialogWindow(const DialogWindow&) = delete;
  DialogWindow& operator=(const DialogWindow&) = delete;

  // Null before Create and once the window is gone, whoever destroyed it.
  HWND handle() const { return handle_; }

 protected:
  DialogWindow() = default;
  virtual ~DialogWindow() { Destroy(); }

  // Creates the window, hidden, at the size of a few characters. Throws Error when it cannot.
  void Create(HINSTANCE module, HWND parent, DWORD style, DWORD extended_style);
  // No message reaches Handle any more.
  void Destroy();

  // Controls of a line, in the order of the Tab key; a label comes before what it is for, so that
  // its mnemonic leads there. In a text, an ampersand is one.
  HWND AddLabel(const wchar_t* text);
  HWND AddText(const wchar_t* text);
  HWND AddEdit(const wchar_t* text, int id = 0, DWORD style = 0);
  HWND AddCombo(int id, std::span<const std::wstring_view> entries);
  HWND AddButton(int id, const wchar_t* text);

  // The reaction to a message, or nothing for the system's own.
  virtual std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) = 0;

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam,
                                    LPARAM lparam) noexcept;

  HWND handle_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_DIALOG_WINDOW_H_
