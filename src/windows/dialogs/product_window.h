// ProductWindow: the window of the product dialog (dialogs/product_dialog.h): a tab strip with the
// stock list on the first page, a search and the list of what it finds on the second, unless the
// dialog has no product information.
//
// Everything works by keyboard, too: Ctrl+Tab, Ctrl+PageDown and Ctrl+PageUp switch pages; on the
// second, Enter in the search box searches, Down goes on to the list, and Ctrl+1, Ctrl+2 ... sort
// by that column, as a click on its header does.
#ifndef ARD_WINDOWS_DIALOGS_PRODUCT_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_PRODUCT_WINDOW_H_

#include <windows.h>

#include <cstddef>
#include <optional>

#include "dialogs/product_dialog.h"
#include "windows/dialogs/search_bar.h"
#include "windows/dialogs/select_window.h"

namespace ard::windows {

class ProductWindow : public SelectWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit ProductWindow(dialogs::ProductDialog& dialog);

 private:
  using Tab = dialogs::ProductDialog::Tab;

  void CreateBody(HINSTANCE module) override;
  void MetricsChanged() override;
  SIZE BodySize(int rows) const override;
  SIZE MinimumSize() const override;
  void LayoutBody(int x, int y, int width, int height) override;
  void Opened() override;
  void Changed() override;
  HWND InitialFocus() const override;
  bool HandleKey(HWND control, WPARAM key) override;
  void Command(int id) override;
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

  PagedList::Events InfoListEvents();
  bool on_info_page() const { return dialog_.tab() == Tab::kProductInfo; }
  // The size of the tab strip around a page with content of that size.
  SIZE Around(SIZE content) const;
  void SwitchTo(Tab tab);
  void SortBy(std::size_t column);  // from 0
  void ShowPage();

  dialogs::ProductDialog& dialog_;
  PagedList info_list_;
  SearchBar search_bar_;
  HWND tabs_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_PRODUCT_WINDOW_H_
