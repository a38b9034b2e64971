// UserListWindow: the window of the user list (dialogs/user_list_dialog.h): a tab strip with a list
// on each page, and on the second, for the manager, a button that deletes a logon. Ctrl+Tab
// switches pages.
#ifndef ARD_WINDOWS_DIALOGS_USER_LIST_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_USER_LIST_WINDOW_H_

#include <windows.h>

#include <optional>

#include "dialogs/user_list_dialog.h"
#include "windows/dialogs/modal_window.h"
#include "windows/dialogs/paged_list.h"

namespace ard::windows {

class UserListWindow : public ModalWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit UserListWindow(dialogs::UserListDialog& dialog);

 private:
  using Tab = dialogs::UserListDialog::Tab;

  const wchar_t* Caption() const override { return dialog_.caption().data(); }
  void CreateControls(HINSTANCE module) override;
  void MetricsChanged() override;
  SIZE InitialSize() const override;
  SIZE MinimumSize() const override;
  void Layout(SIZE client) override;
  void Opened() override;
  HWND InitialFocus() const override { return shown().focus_window(); }
  void Command(int id) override;
  void CloseBox() override;
  void Wheel(int delta) override { shown().Wheel(delta); }
  bool HandleKey(HWND control, WPARAM key) override;
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

  bool on_host_page() const { return dialog_.tab() == Tab::kHost; }
  const PagedList& shown() const { return on_host_page() ? host_ : accounts_; }
  PagedList& shown() { return on_host_page() ? host_ : accounts_; }
  void AddTab(WPARAM index, const wchar_t* text);
  int Twips(int twips) const;  // in pixels
  // The client area around a page with content of that size.
  SIZE Around(SIZE content) const;
  // What the second page has below its list.
  int HeightOfDelete() const;
  void SwitchTo(Tab tab);
  void ShowPage();

  dialogs::UserListDialog& dialog_;
  PagedList accounts_;
  PagedList host_;
  HWND tabs_ = nullptr;
  HWND delete_ = nullptr;
  HWND refresh_ = nullptr;
  HWND close_ = nullptr;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_USER_LIST_WINDOW_H_
