#include "accounts/nominal_bank.h"

#include "accounts/account.h"
#include "dialogs/progress.h"
#include "dialogs/record_list.h"

namespace ard::accounts {
namespace {

constexpr wchar_t kSelectBank[] = L"Select Bank Account";
constexpr std::wstring_view kReference = L"ACCOUNT_REF";

}  // namespace

const dialogs::FastSelectForm kNominalList = {
    L"frmFastSelectNom",
    L"Select Nominal Code",
    {L"NominalData", L"NominalIndex", L"NO_OF_NOMINAL", kAccountColumns, L"nominal accounts"},
    dialogs::FastSelectForm::Ok::kPostingAccountsOnly};
const dialogs::FastSelectForm kBankList = {
    L"frmFastSelectBank",
    kSelectBank,
    {L"BankData", L"BankIndex", L"NO_OF_BANK", kAccountColumns, L"bank accounts"},
    dialogs::FastSelectForm::Ok::kAnyRow,
    dialogs::FastSelectForm::Fill::kFirstTwelve};

bool CodedAccounts::IsValid(std::wstring_view acc_ref) const noexcept {
  return Call<bool>(L"IsValid", {acc_ref}, [&](bool& valid) {
    engine::Record account(context(), record_);
    valid = FindAccount(account, acc_ref);
  });
}

std::wstring CodedAccounts::FastList() const noexcept {
  return Call<std::wstring>(L"FastList", [&](std::wstring& code) { code = Pick(std::nullopt); });
}

std::wstring CodedAccounts::Pick(std::optional<std::wstring_view> criteria) const {
  return dialogs::FastSelect(context(), list_, criteria);
}

std::wstring Nominal::List(std::wstring_view search_criteria) const noexcept {
  return Call<std::wstring>(L"List", {search_criteria},
                            [&](std::wstring& code) { code = Pick(search_criteria); });
}

std::wstring Bank::List(std::wstring_view search_criteria) const noexcept {
  return Call<std::wstring>(L"List", {search_criteria}, [&](std::wstring& code) {
    dialogs::SelectRecordDialog dialog(kSelectBank);
    {
      engine::DataFile banks(context(), L"BankData");
      if (!banks.Open(engine::Mode::kQuery)) dialog.list().SetReading(dialogs::Reading::kFailed);
      banks.FindFirst(kReference, search_criteria);
      dialogs::Progress progress(context(), L"Reading bank accounts", banks.Count());
      // The first row is there before any test: the file stands on some account, found or not.
      AddRecords(dialog, banks, kBankList.file,
                 [&] { return progress.Advance() && banks.FindNext(kReference, search_criteria); });
      if (progress.cancelled()) return NoteDecision(L"List", L"The user has stopped the reading.");
    }
    const std::optional<dialogs::Row> choice = ChooseRow(context(), dialog);
    if (choice) code = Trimmed(choice->Cell(1));
  });
}

}  // namespace ard::accounts
