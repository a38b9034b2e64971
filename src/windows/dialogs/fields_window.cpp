#include "windows/dialogs/fields_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>

namespace ard::windows {
namespace {

// In dialog units.
constexpr int kTextWidth = 150;
constexpr int kMostTextWidth = 300;
constexpr int kNumberWidth = 60;

}  // namespace

void FieldsWindow::CreateControls(HINSTANCE) {
  const auto& lines = dialog_.lines();
  // Numbers need less room, and so do the texts among them.
  const bool numeric = std::any_of(lines.begin(), lines.end(), [](auto& l) { return l.number; });
  for (const dialogs::FieldsDialog::Line& line : lines) {
    const HWND label = AddText(line.label.c_str());
    texts_.push_back(AddEdit(line.text.c_str(), 0, ES_READONLY | (line.number ? ES_RIGHT : 0U)));
    const int width = numeric ? kNumberWidth : kTextWidth;
    head().Add({{label, kLabelWidth}, {texts_.back(), width, true}});
  }
  close_ = AddButton(IDOK, L"Close");
  foot().Add({{nullptr, 0, true}, {close_, kButtonWidth}}, kButtons, 0);
}

// As wide as the longest text, within reason: the user may make it wider.
int FieldsWindow::OpeningWidth() const {
  LONG widest = 0;
  for (const HWND text : texts_) widest = std::max(widest, metrics().TextSize(text).cx);
  const int room = metrics().X(kMargin + 2 * kGap);
  return LeastWidth() + std::clamp(static_cast<int>(widest) + room - metrics().X(kTextWidth), 0,
                                   metrics().X(kMostTextWidth - kTextWidth));
}

void FieldsWindow::Command(int id) {
  if (id == IDOK || id == IDCANCEL) Finish();
}

}  // namespace ard::windows
