// frmUserList: who is logged on to the accounts data, and to the host, on a page each; without its
// window. The manager can delete a logon to the host.
#ifndef ARD_DIALOGS_USER_LIST_DIALOG_H_
#define ARD_DIALOGS_USER_LIST_DIALOG_H_

#include <string>
#include <string_view>
#include <vector>

#include "dialogs/select_dialog.h"
#include "frame/context.h"

namespace ard::dialogs {

class UserListDialog : public Resizable {
 public:
  // Numbered as the tab strip numbers them.
  enum class Tab { kAccounts = 1, kHost = 2 };

  // Fills both lists. The context has to outlive the dialog.
  UserListDialog(const Context& context, bool manager);
  UserListDialog(const UserListDialog&) = delete;
  UserListDialog& operator=(const UserListDialog&) = delete;

  std::wstring_view form() const { return L"frmUserList"; }
  std::wstring_view caption() const { return L"User List"; }

  Tab tab() const { return tab_; }
  // The list of the page shown.
  ListModel& list() { return tab_ == Tab::kAccounts ? accounts_list_ : host_list_; }
  ListModel& accounts_list() { return accounts_list_; }
  ListModel& host_list() { return host_list_; }

  // Whether there is a delete command.
  bool can_delete() const { return manager_; }
  // The height in twips in which the lists open. Without a delete command, the host list covers
  // that one's place.
  static constexpr int kListHeight = 3120;
  int host_list_height() const { return manager_ ? kListHeight - 480 : kListHeight; }
  // The host, as its page is called.
  const std::wstring& host_name() const { return context_.app_name; }

  // True until a handler has hidden the dialog; a presentation ends its modal loop then.
  bool visible() const { return visible_; }

  // The handlers.
  void TabClick(Tab tab) { tab_ = tab; }
  void RefreshClick() { Fill(); }
  void DeleteClick();
  void CloseBox() { visible_ = false; }

 private:
  void Fill();
  void FillHostList();
  // Deletes the logon with that ID from the host's table.
  void Delete(const std::wstring& id);

  const Context& context_;
  bool manager_;
  RowsInMemory accounts_rows_;
  RowsInMemory host_rows_;
  std::vector<std::wstring> host_ids_;  // of the host rows
  ListModel accounts_list_{accounts_rows_};
  ListModel host_list_{host_rows_};
  Tab tab_ = Tab::kAccounts;
  bool visible_ = true;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_USER_LIST_DIALOG_H_
