#include "windows/dialogs/fields_window.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <array>

namespace ard::windows {
namespace {

// In dialog units.
constexpr int kTextWidth = 150;
constexpr int kNumberWidth = 60;
constexpr int kFieldHeight = kEditHeight + kGap;

}  // namespace

void FieldsWindow::CreateControls(HINSTANCE) {
  const DWORD align = dialog_.numeric() ? ES_RIGHT : ES_LEFT;
  for (const auto& [label, text] : dialog_.lines()) {
    // An ampersand in a label is one: the company may have written it.
    fields_.push_back(
        {CreateControl(handle(), {WC_STATICW, label.c_str(), SS_NOPREFIX | SS_CENTERIMAGE}),
         CreateControl(handle(),
                       {WC_EDITW, text.c_str(), WS_TABSTOP | ES_AUTOHSCROLL | ES_READONLY | align,
                        0, WS_EX_CLIENTEDGE})});
  }
  close_ = AddButton(IDOK, L"Close");
}

int FieldsWindow::LabelWidth() const {
  LONG width = 0;
  for (const dialogs::FieldsDialog::Line& line : dialog_.lines()) {
    // As TextSize measures, an ampersand would not count.
    std::wstring label;
    for (const wchar_t c : line.label) label.append(c == L'&' ? 2 : 1, c);
    width = std::max(width, metrics().TextSize(label).cx);
  }
  return static_cast<int>(width) + metrics().X(kMargin);
}

SIZE FieldsWindow::InitialSize() const {
  const int width = dialog_.numeric() ? kNumberWidth : kTextWidth;
  return {
      LabelWidth() + metrics().X(2 * kMargin + width),
      metrics().Y(3 * kMargin + kButtonHeight + static_cast<int>(fields_.size()) * kFieldHeight)};
}

void FieldsWindow::Layout(SIZE client) {
  const int left = metrics().X(kMargin);
  const int label_width = LabelWidth();
  const int text_width = static_cast<int>(client.cx) - 2 * left - label_width;
  const int height = metrics().Y(kEditHeight);
  int top = kMargin;
  for (const Field& field : fields_) {
    const int y = metrics().Y(top);
    Place(field.label, left, y, label_width, height);
    Place(field.text, left + label_width, y, text_width, height);
    top += kFieldHeight;
  }
  LayoutButtons(client, std::array{close_});
}

void FieldsWindow::Command(int id) {
  if (id == IDOK || id == IDCANCEL) Finish();
}

}  // namespace ard::windows
