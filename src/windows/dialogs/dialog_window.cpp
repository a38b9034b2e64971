#include "windows/dialogs/dialog_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <cstddef>

#include "frame/error.h"

namespace ard::windows {
namespace {

[[noreturn]] void ThrowNoWindow() {
  throw Error(static_cast<std::int32_t>(HRESULT_FROM_WIN32(GetLastError())),
              L"A window could not be created.");
}

SIZE SizeOf(const RECT& rect) { return {rect.right - rect.left, rect.bottom - rect.top}; }

}  // namespace

SIZE ClientOf(HWND window) {
  RECT client = {};
  GetClientRect(window, &client);
  return SizeOf(client);
}

SIZE FrameOf(HWND window) {
  RECT outer = {};
  GetWindowRect(window, &outer);
  const SIZE size = SizeOf(outer);
  const SIZE client = ClientOf(window);
  return {size.cx - client.cx, size.cy - client.cy};
}

void Place(HWND window, int x, int y, int width, int height) {
  SetWindowPos(window, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

HWND CreateControl(HWND parent, const Control& control) {
  const HWND window =
      CreateWindowExW(control.extended_style, control.window_class, control.text,
                      WS_CHILD | WS_VISIBLE | control.style, 0, 0, 0, 0, parent,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(control.id)), nullptr, nullptr);
  if (!window) ThrowNoWindow();
  return window;
}

void ShowControl(HWND control, bool visible) {
  ShowWindow(control, visible ? SW_SHOWNA : SW_HIDE);
  EnableWindow(control, visible);
}

HWND DialogWindow::AddLabel(const wchar_t* text) {
  return CreateControl(handle_, {WC_STATICW, text, SS_CENTERIMAGE});
}

HWND DialogWindow::AddText(const wchar_t* text) {
  return CreateControl(handle_, {WC_STATICW, text, SS_NOPREFIX | SS_CENTERIMAGE | SS_ENDELLIPSIS});
}

HWND DialogWindow::AddEdit(const wchar_t* text, int id, DWORD style) {
  return CreateControl(handle_,
                       {WC_EDITW, text, WS_TABSTOP | ES_AUTOHSCROLL | style, id, WS_EX_CLIENTEDGE});
}

HWND DialogWindow::AddCombo(int id, std::span<const std::wstring_view> entries) {
  const HWND combo =
      CreateControl(handle_, {WC_COMBOBOXW, L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, id});
  for (const std::wstring_view entry : entries) {
    SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.data()));
  }
  return combo;
}

HWND DialogWindow::AddButton(int id, const wchar_t* text) {
  const DWORD kind = id == IDOK ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
  return CreateControl(handle_, {WC_BUTTONW, text, WS_TABSTOP | kind, id});
}

void DialogWindow::Create(HINSTANCE module, HWND parent, DWORD style, DWORD extended_style) {
  struct {
    DLGTEMPLATE dialog;
    WORD menu, window_class, title;  // none, the dialog class, none
  } empty = {};
  empty.dialog.style = style;
  empty.dialog.dwExtendedStyle = extended_style;
  // Not nothing, so that there is a client area inside the frame to be measured.
  empty.dialog.cx = 100;
  empty.dialog.cy = 100;
  if (!CreateDialogIndirectParamW(module, &empty.dialog, parent, Procedure,
                                  reinterpret_cast<LPARAM>(this))) {
    ThrowNoWindow();
  }
}

void DialogWindow::Destroy() {
  if (!handle_) return;
  SetWindowLongPtrW(handle_, DWLP_USER, 0);
  DestroyWindow(handle_);
  handle_ = nullptr;
}

INT_PTR CALLBACK DialogWindow::Procedure(HWND window, UINT message, WPARAM wparam,
                                         LPARAM lparam) noexcept {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, lparam);
    reinterpret_cast<DialogWindow*>(lparam)->handle_ = window;
    return FALSE;
  }
  auto* self = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!self) return FALSE;
  if (message == WM_NCDESTROY) {
    self->handle_ = nullptr;
    return FALSE;
  }
  const std::optional<LRESULT> result =
      WithoutExceptions([&] { return self->Handle(message, wparam, lparam); });
  if (!result) return FALSE;
  SetWindowLongPtrW(window, DWLP_MSGRESULT, static_cast<LONG_PTR>(*result));
  return TRUE;
}

}  // namespace ard::windows
