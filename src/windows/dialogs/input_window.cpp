#include "windows/dialogs/input_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

namespace ard::windows {
namespace {

constexpr int kInputWidth = 206;  // in dialog units

}  // namespace

void InputWindow::CreateControls(HINSTANCE) {
  // An ampersand in the prompt is one, and a long word breaks rather than runs out of the window.
  const HWND prompt =
      CreateControl(handle(), {WC_STATICW, prompt_text_.c_str(), SS_NOPREFIX | SS_EDITCONTROL});
  edit_ = AddEdit(L"");
  head().Add({{prompt, kInputWidth}}, kWrapped);
  head().Add({{edit_, kInputWidth}}, kBox, 0);
  const HWND ok = AddButton(IDOK, L"OK");
  const HWND cancel = AddButton(IDCANCEL, L"Cancel");
  foot().Add({{nullptr, 0, true}, {ok, kButtonWidth}, {cancel, kButtonWidth}}, kButtons, 0);
}

void InputWindow::Command(int id) {
  if (id == IDOK) {
    text_ = TextOf(edit_);
    Finish();
  } else if (id == IDCANCEL) {
    Finish();
  }
}

}  // namespace ard::windows
