#include "windows/dialogs/input_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <array>

namespace ard::windows {
namespace {

constexpr int kInputWidth = 220;  // in dialog units

}  // namespace

void InputWindow::CreateControls(HINSTANCE) {
  // An ampersand in the prompt is one, and a long word breaks rather than runs out of the window.
  prompt_ =
      CreateControl(handle(), {WC_STATICW, prompt_text_.c_str(), SS_NOPREFIX | SS_EDITCONTROL});
  edit_ =
      CreateControl(handle(), {WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, 0, WS_EX_CLIENTEDGE});
  ok_ = AddButton(IDOK, L"OK");
  cancel_ = AddButton(IDCANCEL, L"Cancel");
}

SIZE InputWindow::InitialSize() const {
  return {metrics().X(kInputWidth),
          PromptHeight() + metrics().Y(3 * kMargin + kGap + kEditHeight + kButtonHeight)};
}

void InputWindow::Layout(SIZE client) {
  const int x = metrics().X(kMargin);
  const int y = metrics().Y(kMargin);
  const int width = static_cast<int>(client.cx) - 2 * x;
  const int height = PromptHeight();
  Place(prompt_, x, y, width, height);
  Place(edit_, x, y + height + metrics().Y(kGap), width, metrics().Y(kEditHeight));
  LayoutButtons(client, std::array{ok_, cancel_});
}

void InputWindow::Command(int id) {
  if (id == IDOK) {
    text_ = TextOf(edit_);
    Finish();
  } else if (id == IDCANCEL) {
    Finish();
  }
}

int InputWindow::PromptHeight() const {
  const int width = metrics().X(kInputWidth - 2 * kMargin);
  return static_cast<int>(metrics().TextSize(prompt_text_, width).cy);
}

}  // namespace ard::windows
