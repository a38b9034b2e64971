#include "windows/dialogs/select_window.h"

namespace ard::windows {

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
  const HWND extra = CreateExtraButton();
  ok_ = AddButton(IDOK, L"OK");
  const HWND cancel = AddButton(IDCANCEL, L"Cancel");
  foot().Add({{extra, extra ? kButtonWidth : 0},
              {nullptr, 0, true},
              {ok_, kButtonWidth},
              {cancel, kButtonWidth}},
             kButtons, 0);
}

int SelectWindow::OpeningWidth() const {
  if (dialog_.width() == 0) return 0;
  const int width = MulDiv(dialog_.width(), static_cast<int>(DpiOf(handle())), kTwipsPerInch);
  return width - static_cast<int>(FrameOf(handle()).cx);
}

void SelectWindow::Command(int id) {
  if (id == IDOK && GetFocus() == shown_->focus_window()) {
    dialog_.KeyPress(dialogs::kEnterKey);
  } else if (id == IDOK && dialog_.ok_enabled()) {
    dialog_.Ok();
  } else if (id == IDCANCEL) {
    dialog_.Cancel();
  }
  // Whatever has kept it open, the next key is for the list.
  if (id == IDOK && dialog_.visible()) Focus(shown_->focus_window());
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
