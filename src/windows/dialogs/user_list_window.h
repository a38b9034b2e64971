// UserListWindow: the window of the user list (dialogs/user_list_dialog.h): a tab strip with a list
// on each page, and on the second, for the manager, a button that deletes a logon.
#ifndef ARD_WINDOWS_DIALOGS_USER_LIST_WINDOW_H_
#define ARD_WINDOWS_DIALOGS_USER_LIST_WINDOW_H_

#include <windows.h>

#include <optional>

#include "dialogs/user_list_dialog.h"
#include "windows/dialogs/modal_window.h"
#include "windows/dialogs/paged_list.h"
#include "windows/dialogs/tab_strip.h"

namespace ard::windows {

class UserListWindow : public ModalWindow {
 public:
  // `dialog` must outlive the window. After Run, `dialog.visible()` is false.
  explicit UserListWindow(dialogs::UserListDialog& dialog);

 private:
  using Tab = dialogs::UserListDialog::Tab;

  const wchar_t* Caption() const override { return dialog_.caption().data(); }
  void CreateControls(HINSTANCE module) override;
  std::vector<PagedList*> Lists() override { return {&accounts_, &host_}; }
  std::wstring* Kept() override { return &dialog_.placement; }
  SIZE BodySize() const override;
  SIZE LeastBodySize() const override;
  void PutBody(Placement& placement, const RECT& area) override;
  void Placed() override;
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
  int Twips(int twips) const;  // in pixels
  // What the second page has below its list.
  int HeightOfDelete() const;
  void SwitchTo(int tab);  // from 0
  void ShowPage();

  dialogs::UserListDialog& dialog_;
  PagedList accounts_;
  PagedList host_;
  TabStrip tabs_;
  HWND delete_ = nullptr;
  Lines below_host_;
};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_DIALOGS_USER_LIST_WINDOW_H_
