#include "windows/dialogs/select_window.h"

#include <algorithm>
#include <array>

namespace ard::windows {
namespace {

constexpr int kInitialRows = 20;
constexpr int kMinimumRows = 5;

}  // namespace

SelectWindow::SelectWindow(dialogs::SelectDialog& dialog)
    : ModalWindow(Border::kResizable),
      dialog_(dialog),
      list_(dialog.list(), {[this](wchar_t key) {
                              dialog_.KeyPress(key);
                              FinishIfHidden();
                            },
                            [this] {
                              dialog_.DoubleClick();
                              FinishIfHidden();
                            },
                            [this] { UpdateOk(); }}) {}

void SelectWindow::CreateControls(HINSTANCE module) {
  list_.Create(module, handle());
  ok_ = AddButton(IDOK, L"OK");
  cancel_ = AddButton(IDCANCEL, L"Cancel");
}

SIZE SelectWindow::InitialSize() const { return SizeFor(kInitialRows); }

SIZE SelectWindow::MinimumSize() const {
  const int width = metrics().X(2 * kMargin + 2 * kButtonWidth + kGap);
  return {width, SizeFor(kMinimumRows).cy};
}

SIZE SelectWindow::SizeFor(int rows) const {
  const SIZE list = list_.SizeFor(rows);
  return {list.cx + 2 * metrics().X(kMargin), list.cy + metrics().Y(kMargin) + HeightBelowList()};
}

int SelectWindow::HeightBelowList() const { return metrics().Y(2 * kMargin + kButtonHeight); }

void SelectWindow::Layout(SIZE client) {
  const int x = metrics().X(kMargin);
  const int y = metrics().Y(kMargin);
  list_.Move(x, y, std::max(static_cast<int>(client.cx) - 2 * x, 0),
             std::max(static_cast<int>(client.cy) - y - HeightBelowList(), 0));
  LayoutButtons(client, std::array{ok_, cancel_});
}

void SelectWindow::Command(int id) {
  if (id == IDOK && GetFocus() == list_.focus_window()) {
    dialog_.KeyPress(dialogs::kEnterKey);
  } else if (id == IDOK && dialog_.ok_enabled()) {
    dialog_.Ok();
  } else if (id == IDCANCEL) {
    dialog_.Cancel();
  }
  FinishIfHidden();
  list_.Refresh();
}

void SelectWindow::CloseBox() {
  dialog_.CloseBox();
  FinishIfHidden();
}

void SelectWindow::FinishIfHidden() {
  if (!dialog_.visible()) Finish();
}

void SelectWindow::UpdateOk() {
  const bool enabled = dialog_.ok_enabled();
  // The focus must not stay on a button that takes no key.
  if (!enabled && GetFocus() == ok_) SetFocus(list_.focus_window());
  EnableWindow(ok_, enabled);
}

}  // namespace ard::windows
