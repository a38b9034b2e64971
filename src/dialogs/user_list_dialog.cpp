#include "dialogs/user_list_dialog.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "database/recordset.h"
#include "engine/logon_queue.h"
#include "frame/text.h"

namespace ard::dialogs {
namespace {

using database::Cursor;
using database::Lock;
using database::Recordset;

constexpr int kNameWidth = 30;
constexpr int kStationWidth = 30;

std::wstring RowOf(std::wstring_view name, std::wstring_view place) {
  return UpperCase(Trimmed(name)) + L'\t' + UpperCase(Trimmed(place));
}

}  // namespace

UserListDialog::UserListDialog(const Context& context, bool manager)
    : context_(context), manager_(manager) {
  accounts_list_.SetName(L"users");
  host_list_.SetName(L"users");
  accounts_list_.AddColumn(L"User", kNameWidth);
  accounts_list_.AddColumn(L"Workstation", kStationWidth);
  host_list_.AddColumn(L"User", kNameWidth);
  host_list_.AddColumn(L"Session", kStationWidth);
  Fill();
}

void UserListDialog::Fill() {
  accounts_rows_.Clear();
  {
    engine::LogonQueue logons(context_);
    accounts_list_.SetReading(logons.is_open() ? Reading::kDone : Reading::kFailed);
    while (logons.Next()) accounts_rows_.Add(RowOf(logons.name(), logons.Station()));
  }
  accounts_list_.SetRowCount(accounts_rows_.count());
  FillHostList();
}

void UserListDialog::FillHostList() {
  host_rows_.Clear();
  host_ids_.clear();
  Recordset logons(context_,
                   L"SELECT * FROM [CurrentUsers] WHERE [Product]='" + context_.app_name +
                       L"' ORDER BY [UserName]",
                   Cursor::kForwardOnly);
  host_list_.SetReading(logons.is_open() ? Reading::kDone : Reading::kFailed);
  while (!logons.Eof()) {
    std::wstring name;
    std::wstring session;
    std::wstring id;
    logons.Get(L"UserName", name);
    logons.Get(L"UniqueID", session);
    logons.Get(L"ID", id);
    host_rows_.Add(RowOf(name, session));
    host_ids_.push_back(std::move(id));
    if (!logons.MoveNext()) break;
  }
  host_list_.SetRowCount(host_rows_.count());
}

void UserListDialog::DeleteClick() {
  if (!can_delete()) return;
  const std::optional<Row>& logon = host_list_.selected();
  if (!logon) {
    context_.ShowMessage(Icon::kExclamation, L"You must select a logon to delete.", caption());
    return;
  }
  Delete(host_ids_[static_cast<std::size_t>(logon->position) - 1]);
  FillHostList();
}

void UserListDialog::Delete(const std::wstring& id) {
  Recordset logon(context_, L"SELECT * FROM [CurrentUsers] WHERE (ID=" + id + L")", Cursor::kStatic,
                  Lock::kOptimistic);
  if (!logon.Eof()) logon.Delete();
}

}  // namespace ard::dialogs
