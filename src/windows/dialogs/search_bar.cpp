#include "windows/dialogs/search_bar.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
#include <uxtheme.h>
// clang-format on

#include <string>
#include <string_view>

namespace ard::windows {
namespace {

using SearchField = dialogs::ProductDialog::SearchField;

enum SearchControl { kText = 100, kField, kSearch, kClear };

constexpr std::wstring_view kFields[] = {L"Stock Code", L"Description"};  // by SearchField

// In dialog units.
constexpr int kFieldWidth = 66;
constexpr int kLeastTextWidth = 40;

}  // namespace

void SearchBar::Create(HINSTANCE module, HWND parent) {
  DialogWindow::Create(module, parent, DS_CONTROL | WS_CHILD | WS_CLIPCHILDREN,
                       WS_EX_CONTROLPARENT);
  // It stands on the page of a tab strip.
  EnableThemeDialogTexture(handle(), ETDT_ENABLETAB);
  const HWND text_label = AddLabel(L"Search &for:");
  text_ = AddEdit(L"", kText);
  const HWND field_label = AddLabel(L"&in:");
  field_ = AddCombo(kField, kFields);
  const HWND search = AddButton(kSearch, L"&Search");
  const HWND clear = AddButton(kClear, L"&Clear");
  line_.Add({{text_label, kOwnWidth},
             {text_, kLeastTextWidth, true},
             {field_label, kOwnWidth},
             {field_, kFieldWidth},
             {search, kButtonWidth},
             {clear, kButtonWidth}},
            kBox, 0);
  Refresh();
}

void SearchBar::Placed(const Metrics& metrics) const {
  Placement placement;
  const SIZE client = ClientOf(handle());
  RECT area = {0, 0, client.cx, client.cy};
  line_.Put(placement, metrics, area);
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
