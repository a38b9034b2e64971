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

enum ControlId { kText = 100, kField, kSearch, kClear };

constexpr wchar_t kTextLabel[] = L"Search &for:";
constexpr wchar_t kFieldLabel[] = L"&in:";
constexpr const wchar_t* kFields[] = {L"Product Code", L"Description"};  // by SearchField

// In dialog units.
constexpr int kFieldWidth = 66;
constexpr int kTextMinimumWidth = 40;
constexpr int kDropHeight = 60;

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

int SearchBar::WidthBesidesText() const {
  const LONG labels = metrics_->TextSize(kTextLabel).cx + metrics_->TextSize(kFieldLabel).cx;
  return static_cast<int>(labels) + metrics_->X(kFieldWidth + 2 * kButtonWidth + 5 * kGap);
}

void SearchBar::Move(int x, int y, int width, int height) {
  Place(handle(), x, y, width, height);
  FitHeight(field_, height);
  const int button = metrics_->X(kButtonWidth);
  const int gap = metrics_->X(kGap);
  struct Slot {
    HWND control;
    int width;
    int height;
  };
  const Slot slots[] = {
      {text_label_, static_cast<int>(metrics_->TextSize(kTextLabel).cx), height},
      {text_, std::max(width - WidthBesidesText(), 0), height},
      {field_label_, static_cast<int>(metrics_->TextSize(kFieldLabel).cx), height},
      {field_, metrics_->X(kFieldWidth), metrics_->Y(kDropHeight)},
      {search_, button, height},
      {clear_, button, height},
  };
  int left = 0;
  for (const Slot& slot : slots) {
    Place(slot.control, left, 0, slot.width, slot.height);
    left += slot.width + gap;
  }
}

// A combo box takes its height from that of its entries, whatever size it is given.
void SearchBar::FitHeight(HWND combo_box, int height) const {
  RECT outer = {};
  GetWindowRect(combo_box, &outer);
  const auto entry =
      static_cast<int>(SendMessageW(combo_box, CB_GETITEMHEIGHT, static_cast<WPARAM>(-1), 0));
  const int frame = static_cast<int>(outer.bottom - outer.top) - entry;
  SendMessageW(combo_box, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), height - frame);
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
