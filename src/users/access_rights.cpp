#include "users/access_rights.h"

#include <iterator>
#include <optional>

#include "dialogs/select_dialog.h"
#include "engine/blank_value.h"
#include "frame/text.h"
#include "users/access_file.h"

namespace ard::users {
namespace {

using engine::DataFile;
using engine::Mode;

// By the kind of record.
constexpr std::wstring_view kRights[] = {L"CUST_RECORD", L"SUPP_RECORD", L"NOM_RECORD",
                                         L"BANK_RECORD", L"PROD_RECORD", L"INV_EDIT",
                                         L"SOP_ENTRY",   L"POP_ENTRY"};

constexpr std::wstring_view kRefusal =
    L"You do not have the access rights to Drill To the selected option.\r\n"
    L"Please consult your Administrator.";

constexpr int kNameWidth = 40;

// Blanks all fields of the record to be written, and returns whether it has: they held somebody
// else's. Types without a blank value of their own are taken for numbers.
bool BlankFields(DataFile& access) {
  return access.ForEachField([](std::int32_t, engine::Field& field) {
    Value blank = engine::BlankValue(field.Type());
    if (blank.is_empty()) blank = std::int16_t{0};
    field.SetValue(blank);
  });
}

}  // namespace

bool AccessRights::IsUserAllowedAccess(std::wstring_view user_name, Access option,
                                       bool display_message) const noexcept {
  return Call<bool>(L"IsUserAllowedAccess", {user_name, option, display_message}, [&](bool& may) {
    if (IsManager(user_name)) {
      may = true;
      return;
    }
    DataFile access(context(), kAccessData);
    if (!access.Open(Mode::kRead) || !FindUser(access, user_name)) return;
    const auto kind = static_cast<std::size_t>(option);
    if (kind >= std::size(kRights)) {
      return NoteDecision(L"IsUserAllowedAccess", L"Refused: there is no such kind of record.");
    }
    may = HasRight(access, kRights[kind]);
    if (!may && display_message) {
      context().ShowMessage(Icon::kExclamation, kRefusal, context().app_name);
    }
  });
}

bool AccessRights::AddUser(std::wstring_view user_name) const noexcept {
  return Call<bool>(L"AddUser", {user_name}, [&](bool& added) {
    if (!IsUserName(user_name)) return NoteDecision(L"AddUser", kNobodysName);
    {
      DataFile access(context(), kAccessData);
      bool exists = false;
      if (!access.Open(Mode::kAppend) || !access.FindFirst(kName, user_name, exists)) return;
      added = exists;
      if (exists) return;
    }
    DataFile access(context(), kAccessData);
    if (!access.Open(Mode::kAppend) || !BlankFields(access)) return;
    std::int32_t count = 0;
    added = access.Set(L"Name", user_name) && access.Count(count) && access.Write(count + 1);
  });
}

bool AccessRights::IsValid(std::wstring_view user_name) const noexcept {
  return Call<bool>(L"IsValid", {user_name}, [&](bool& valid) {
    DataFile access(context(), kAccessData);
    valid = access.Open(Mode::kRead) && FindUser(access, user_name);
  });
}

std::wstring AccessRights::List() const noexcept {
  return Call<std::wstring>(L"List", [&](std::wstring& name) {
    dialogs::SelectRecordDialog dialog(L"Select User");
    dialog.list().SetName(L"users");
    dialog.list().AddColumn(L"User", kNameWidth);
    {
      DataFile access(context(), kAccessData);
      if (!access.Open(Mode::kRead)) dialog.list().SetReading(dialogs::Reading::kFailed);
      const std::int32_t count = access.Count();
      for (std::int32_t record = 1; record <= count; ++record) {
        std::wstring user;
        if (!access.Read(record) || !access.Get(kName, user, engine::kTrimmed)) continue;
        if (!user.empty()) dialog.AddRow(std::move(user));
      }
    }
    dialog.list().SelectItem(1);
    const std::optional<dialogs::Row> choice = ChooseRow(context(), dialog);
    if (choice) name = Trimmed(choice->Cell(1));
  });
}

}  // namespace ard::users
