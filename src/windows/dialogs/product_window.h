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
#include "windows/dialogs/tab_strip.h"

namespace ard::windows {

class ProductWindow : public SelectWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit ProductWindow(dialogs::ProductDialog& dialog);

 private:
  using Tab = dialogs::ProductDialog::Tab;

  void CreateBody(HINSTANCE module) override;
  std::vector<PagedList*> Lists() override { return {&list(), &info_list_}; }
  SIZE BodySize() const override;
  SIZE LeastBodySize() const override;
  void PutBody(Placement& placement, const RECT& area) override;
  void Placed() override;
  void Opened() override;
  void Changed() override;
  HWND InitialFocus() const override;
  bool HandleKey(HWND control, WPARAM key) override;
  void Command(int id) override;
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

  PagedList::Events InfoListEvents();
  bool on_info_page() const { return dialog_.tab() == Tab::kProductInfo; }
  void SwitchTo(int tab);           // from 0
  void SortBy(std::size_t column);  // from 0
  void ShowPage();

  dialogs::ProductDialog& dialog_;
  PagedList info_list_;
  SearchBar search_bar_;
  TabStrip tabs_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_PRODUCT_WINDOW_H_
