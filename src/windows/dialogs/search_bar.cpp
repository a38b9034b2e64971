#include "windows/dialogs/search_bar.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
#include <uxtheme.h>
// clang-format on

#include <algorithm>
#include <string>

#include "windows/dialogs/modal_window.h"

namespace ard::windows {
namespace {

using SearchField = dialogs::ProductDialog::SearchField;

enum SearchControl { kText = 100, kField, kSearch, kClear };

constexpr wchar_t kTextLabel[] = L"Search &for:";
constexpr wchar_t kFieldLabel[] = L"&in:";
constexpr const wchar_t* kFields[] = {L"Product Code", L"Description"};  // by SearchField

// In dialog units.
constexpr int kFieldWidth = 66;
constexpr int kTextMinimumWidth = 40;
constexpr int kSearchDropHeight = 60;

}  // namespace

void SearchBar::Create(HINSTANCE module, HWND parent) {
  DialogWindow::Create(module, parent, DS_CONTROL | WS_CHILD | WS_CLIPCHILDREN,
                       WS_EX_CONTROLPARENT);
  // It stands on the page of a tab strip.
  EnableThemeDialogTexture(handle(), ETDT_ENABLETAB);
  const auto add = [&](const wchar_t* window_class, const wchar_t* text, DWORD style, int id = 0,
                       DWORD extended_style = 0) {
    return CreateControl(handle(), {window_class, text, style, id, extended_style});
  };
  text_label_ = add(WC_STATICW, kTextLabel, SS_CENTERIMAGE);
  text_ = add(WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, kText, WS_EX_CLIENTEDGE);
  field_label_ = add(WC_STATICW, kFieldLabel, SS_CENTERIMAGE);
  field_ = add(WC_COMBOBOXW, L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, kField);
  search_ = add(WC_BUTTONW, L"&Search", WS_TABSTOP | BS_PUSHBUTTON, kSearch);
  clear_ = add(WC_BUTTONW, L"&Clear", WS_TABSTOP | BS_PUSHBUTTON, kClear);
  for (const wchar_t* field : kFields) {
    SendMessageW(field_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(field));
  }
  Refresh();
}

SIZE SearchBar::MinimumSize() const {
  return {WidthBesidesText() + metrics_->X(kTextMinimumWidth), metrics_->Y(kButtonHeight)};
}

// All but the text box have a width of their own, and there is a gap after each but the last.
int SearchBar::WidthBesidesText() const {
  return LabelWidth(kTextLabel) + LabelWidth(kFieldLabel) + metrics_->X(kFieldWidth) +
         2 * metrics_->X(kButtonWidth) + 5 * metrics_->X(kGap);
}

int SearchBar::LabelWidth(const wchar_t* label) const {
  return static_cast<int>(metrics_->TextSize(label).cx);
}

void SearchBar::Move(int x, int y, int width, int height) {
  Place(handle(), x, y, width, height);
  // The text box becomes as high as the combo box, which takes its height from its font: the one
  // it is given is that of the list that it drops.
  const int drop_height = metrics_->Y(kSearchDropHeight);
  Place(field_, 0, 0, metrics_->X(kFieldWidth), drop_height);
  RECT field = {};
  GetWindowRect(field_, &field);
  const int box_height = static_cast<int>(field.bottom - field.top);
  const int button_width = metrics_->X(kButtonWidth);
  struct Slot {
    HWND control;
    int width;
    int height;
  };
  const Slot slots[] = {
      {text_label_, LabelWidth(kTextLabel), height},
      {text_, std::max(width - WidthBesidesText(), 0), box_height},
      {field_label_, LabelWidth(kFieldLabel), height},
      {field_, metrics_->X(kFieldWidth), box_height},
      {search_, button_width, height},
      {clear_, button_width, height},
  };
  int left = 0;
  for (const Slot& slot : slots) {
    const int top = (height - slot.height) / 2;
    Place(slot.control, left, top, slot.width, slot.control == field_ ? drop_height : slot.height);
    left += slot.width + metrics_->X(kGap);
  }
}

void SearchBar::Refresh() {
  if (TextOf(text_) != dialog_.search_text()) {
    SetWindowTextW(text_, dialog_.search_text().c_str());
  }
  const auto field = static_cast<WPARAM>(dialog_.search_field());
  SendMessageW(field_, CB_SETCURSEL, field, 0);
}

bool SearchBar::Command(int id) {
  if (id == kSearch) {
    Search();
  } else if (id == kClear) {
    list_.Do([&] { dialog_.ClearClick(); });
  } else {
    return false;
  }
  return true;
}

void SearchBar::Search() {
  list_.Do([&] { dialog_.SearchClick(); });
}

std::optional<LRESULT> SearchBar::Handle(UINT message, WPARAM wparam, LPARAM) {
  if (message != WM_COMMAND) return std::nullopt;
  const int id = LOWORD(wparam);
  const int code = HIWORD(wparam);
  if (code == BN_CLICKED && Command(id)) return 0;
  if (id == kText && code == EN_CHANGE) {
    TextChange();
  } else if (id == kField && code == CBN_SELCHANGE) {
    FieldChange();
  } else {
    return std::nullopt;
  }
  return 0;
}

void SearchBar::TextChange() {
  const std::wstring text = TextOf(text_);
  // It is the dialog's own text that Refresh shows.
  if (text != dialog_.search_text()) dialog_.SearchTextChange(text);
}

void SearchBar::FieldChange() {
  const LRESULT entry = SendMessageW(field_, CB_GETCURSEL, 0, 0);
  list_.Do([&] { dialog_.SearchFieldChange(static_cast<SearchField>(entry)); });
}

}  // namespace ard::windows
