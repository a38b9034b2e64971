// SearchBar: the row of controls above the product dialog's second list: what to search for, in
// which field, and the buttons Search and Clear.
#ifndef ARD_WINDOWS_DIALOGS_SEARCH_BAR_H_
#define ARD_WINDOWS_DIALOGS_SEARCH_BAR_H_

#include <windows.h>

#include <optional>

#include "dialogs/product_dialog.h"
#include "windows/dialogs/dialog_window.h"
#include "windows/dialogs/layout.h"
#include "windows/dialogs/metrics.h"
#include "windows/dialogs/paged_list.h"

namespace ard::windows {

class SearchBar : private DialogWindow {
 public:
  // `list` shows what the searches find.
  SearchBar(dialogs::ProductDialog& dialog, PagedList& list) : dialog_(dialog), list_(list) {}

  void Create(HINSTANCE module, HWND parent);
  using DialogWindow::handle;
  SIZE LeastSize(const Metrics& metrics) const {
    return {line_.Width(metrics), line_.Height(metrics, 0)};
  }
  void Placed(const Metrics& metrics) const;

  // Shows the dialog's search text and field, without a call of its handlers.
  void Refresh();

  // Whether `id` is one of its buttons, which then does its work.
  bool Command(int id);
  void Search();

  // The box with the search text.
  HWND text_box() const { return text_; }

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;
  void TextChange();
  void FieldChange();

  dialogs::ProductDialog& dialog_;
  PagedList& list_;
  Lines line_;
  HWND text_ = nullptr;
  HWND field_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_SEARCH_BAR_H_
