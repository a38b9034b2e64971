#include "windows/dialogs/select_window.h"

#include <algorithm>
#include <array>

namespace ard::windows {
namespace {

constexpr int kInitialRows = 20;
constexpr int kMinimumRows = 5;

}  // namespace

SelectWindow::SelectWindow(dialogs::SelectDialog& dialog, dialogs::ListModel& list)
    : ModalWindow(Border::kResizable), dialog_(dialog), list_(list, ListEvents()) {}

PagedList::Events SelectWindow::ListEvents() {
  PagedList::Events events;
  events.key_press = [this](wchar_t key) {
    dialog_.KeyPress(key);
    FinishIfHidden();
  };
  events.double_click = [this] {
    dialog_.DoubleClick();
    FinishIfHidden();
  };
  events.changed = [this] { Changed(); };
  return events;
}

void SelectWindow::CreateControls(HINSTANCE module) {
  CreateBody(module);
  ok_ = AddButton(IDOK, L"OK");
  cancel_ = AddButton(IDCANCEL, L"Cancel");
}

SIZE SelectWindow::InitialSize() const {
  SIZE size = SizeFor(kInitialRows);
  if (dialog_.width() > 0) {
    const int width = MulDiv(dialog_.width(), static_cast<int>(DpiOf(handle())), kTwipsPerInch);
    size.cx = width - FrameOf(handle()).cx;
  }
  size.cx = std::max(size.cx, MinimumSize().cx);
  return size;
}

SIZE SelectWindow::MinimumSize() const {
  const int width = metrics().X(2 * kMargin + 2 * kButtonWidth + kGap);
  return {width, SizeFor(kMinimumRows).cy};
}

SIZE SelectWindow::SizeFor(int rows) const {
  const SIZE body = BodySize(rows);
  return {body.cx + 2 * metrics().X(kMargin), body.cy + metrics().Y(kMargin) + HeightBelowBody()};
}

int SelectWindow::HeightBelowBody() const { return metrics().Y(2 * kMargin + kButtonHeight); }

void SelectWindow::Layout(SIZE client) {
  const int x = metrics().X(kMargin);
  const int y = metrics().Y(kMargin);
  LayoutBody(x, y, std::max(static_cast<int>(client.cx) - 2 * x, 0),
             std::max(static_cast<int>(client.cy) - y - HeightBelowBody(), 0));
  LayoutButtons(client, std::array{ok_, cancel_});
}

void SelectWindow::Command(int id) {
  if (id == IDOK && GetFocus() == shown_->focus_window()) {
    dialog_.KeyPress(dialogs::kEnterKey);
  } else if (id == IDOK && dialog_.ok_enabled()) {
    dialog_.Ok();
  } else if (id == IDCANCEL) {
    dialog_.Cancel();
  }
  FinishIfHidden();
  shown_->Refresh();
}

void SelectWindow::CloseBox() {
  dialog_.CloseBox();
  FinishIfHidden();
}

void SelectWindow::FinishIfHidden() {
  if (!dialog_.visible()) Finish();
}

void SelectWindow::Changed() {
  const bool enabled = dialog_.ok_enabled();
  // The focus must not stay on a button that takes no key.
  if (!enabled && GetFocus() == ok_) SetFocus(shown_->focus_window());
  EnableWindow(ok_, enabled);
}

}  // namespace ard::windows
