#include "accounts/ledger_accounts.h"

#include "accounts/account.h"

namespace ard::accounts {
namespace {

using engine::Mode;

constexpr std::wstring_view kBlankLine = L"\r\n\r\n";

void AddSentence(std::wstring& text, std::wstring_view sentence) {
  if (!text.empty()) text += kBlankLine;
  text += sentence;
}

// What there is to warn of about an account, read in the order of the text; `found` tells whether
// `account` holds it.
struct Warnings {
  Warnings(engine::Record& account, bool found, auto&& is_over_limit) {
    if (found) account.Get(L"ACCOUNT_ON_HOLD", on_hold);
    over_limit = is_over_limit();
    account.Get(L"TERMS_AGREED_FLAG", terms_agreed);
  }

  bool any() const { return on_hold || over_limit || !terms_agreed; }
  std::wstring Text() const {
    std::wstring text;
    if (on_hold) AddSentence(text, L"Account is on hold.");
    if (over_limit) AddSentence(text, L"Account is over credit limit.");
    if (!terms_agreed) AddSentence(text, L"Terms have not been agreed with this account.");
    return text;
  }

  bool on_hold = false;
  bool over_limit = false;
  bool terms_agreed = false;
};

}  // namespace

const Ledger kSalesLedger = {
    L"SalesRecord",
    {L"frmFastSelectCust",
     L"Select Customer",
     {L"SalesData", L"SalesIndex", L"NO_OF_SALES", kAccountColumns, L"customers", &IsOverLimit}}};
const Ledger kPurchaseLedger = {L"PurchaseRecord",
                                {L"frmFastSelectSupp",
                                 L"Select Supplier",
                                 {L"PurchaseData", L"PurchaseIndex", L"NO_OF_PURCHASE",
                                  kAccountColumns, L"suppliers", &IsOverLimit}}};

bool LedgerAccounts::IsValid(std::wstring_view acc_ref) const noexcept {
  return Call<bool>(L"IsValid", {acc_ref}, [&](bool& valid) {
    engine::Record account(context(), ledger_.record);
    valid = FindAccount(account, acc_ref);
    // The warnings are worked out here as they are for a choice, and not shown: an account that
    // they speak of is valid all the same.
    if (valid && Warnings(account, valid, [&] { return IsOverLimit(account); }).any()) {
      IsTermsWarningOn(context());
    }
  });
}

std::wstring LedgerAccounts::GetName(std::wstring_view acc_ref) const noexcept {
  return Call<std::wstring>(L"GetName", {acc_ref},
                            [&](std::wstring& name) { name = TextOf(acc_ref, L"NAME"); });
}

std::wstring LedgerAccounts::FastList() const noexcept {
  return Call<std::wstring>(L"FastList",
                            [&](std::wstring& acc_ref) { acc_ref = Pick(std::nullopt); });
}

std::wstring LedgerAccounts::List(std::wstring_view search_criteria) const noexcept {
  return Call<std::wstring>(L"List", {search_criteria},
                            [&](std::wstring& acc_ref) { acc_ref = Pick(search_criteria); });
}

std::wstring LedgerAccounts::TextOf(std::wstring_view acc_ref, Name field) const {
  std::wstring text;
  engine::Record account(context(), ledger_.record);
  if (FindAccount(account, acc_ref)) account.Get(field, text, engine::kTrimmed);
  return text;
}

std::wstring LedgerAccounts::Pick(std::optional<std::wstring_view> criteria) const {
  return dialogs::FastSelect(context(), ledger_.list, criteria,
                             [&](const dialogs::Row& choice) { WarnAboutChoice(choice); });
}

void LedgerAccounts::WarnAboutChoice(const dialogs::Row& choice) const {
  std::wstring text;
  {
    engine::Record account(context(), ledger_.record);
    const bool found = FindAccount(account, choice.Cell(1));
    text = Warnings(account, found, [&] { return choice.color == dialogs::kRed; }).Text();
  }
  if (text.empty()) return;
  if (!IsTermsWarningOn(context())) {
    return context().trace().Noted({L"SetupData", engine::kFields, L"TERMS_WARNING"},
                                   L"Off, or not to be read: the warning is not shown.");
  }
  context().ShowMessage(Icon::kExclamation, text, context().app_name);
}

bool IsTermsWarningOn(const Context& context) {
  bool on = false;
  engine::DataFile setup(context, L"SetupData");
  if (setup.Open(Mode::kRead) && setup.Read(1)) setup.Get(L"TERMS_WARNING", on);
  return on;
}

}  // namespace ard::accounts
