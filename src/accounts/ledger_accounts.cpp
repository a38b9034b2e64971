#include "accounts/ledger_accounts.h"

#include "engine/handles.h"

namespace ard::accounts {
namespace {

using engine::Match;
using engine::Mode;

constexpr std::wstring_view kBlankLine = L"\r\n\r\n";

bool FindAccount(engine::Record& account, std::wstring_view acc_ref) {
  return account.Set(L"ACCOUNT_REF", acc_ref) && account.Find(Match::kExact);
}

void AddSentence(std::wstring& text, std::wstring_view sentence) {
  if (!text.empty()) text += kBlankLine;
  text += sentence;
}

bool IsRecordOverLimit(engine::Record& account) {
  Currency balance;
  Currency limit;
  account.Get(L"CREDIT_LIMIT", limit);
  account.Get(L"BALANCE", balance);
  return dialogs::IsOverCreditLimit(balance, limit);
}

// The warnings about an account; `found` tells whether `account` holds it.
std::wstring AccountWarning(engine::Record& account, bool found, bool over_limit) {
  std::wstring text;
  bool on_hold = false;
  if (found) account.Get(L"ACCOUNT_ON_HOLD", on_hold);
  if (on_hold) AddSentence(text, L"Account is on hold.");
  if (over_limit) AddSentence(text, L"Account is over credit limit.");
  bool terms_agreed = false;
  account.Get(L"TERMS_AGREED_FLAG", terms_agreed);
  if (!terms_agreed) AddSentence(text, L"Terms have not been agreed with this account.");
  return text;
}

void WarnAboutChoice(const Context& context, const Ledger& ledger, const dialogs::Row& choice) {
  std::wstring text;
  {
    engine::Record account(context, ledger.record);
    const bool found = FindAccount(account, choice.Cell(1));
    text = AccountWarning(account, found, choice.color == dialogs::kRed);
  }
  if (text.empty() || !IsTermsWarningOn(context)) return;
  context.ShowMessage(Icon::kExclamation, text, context.app_name);
}

}  // namespace

const Ledger kSalesLedger = {L"SalesRecord", dialogs::kFastSelectCust};

bool AccountExists(const Context& context, const Ledger& ledger, std::wstring_view acc_ref) {
  engine::Record account(context, ledger.record);
  const bool found = FindAccount(account, acc_ref);
  // The warnings are worked out here as they are for a choice, and not shown: an account that
  // they speak of is valid all the same.
  if (found && !AccountWarning(account, found, IsRecordOverLimit(account)).empty()) {
    IsTermsWarningOn(context);
  }
  return found;
}

std::wstring AccountText(const Context& context, const Ledger& ledger, std::wstring_view acc_ref,
                         std::wstring_view field) {
  std::wstring text;
  engine::Record account(context, ledger.record);
  if (FindAccount(account, acc_ref)) account.Get(field, text, engine::kTrimmed);
  return text;
}

std::wstring PickAccount(const Context& context, const Ledger& ledger,
                         std::optional<std::wstring_view> criteria) {
  const std::optional<dialogs::Row> choice = dialogs::FastSelect(context, ledger.list, criteria);
  if (!choice) return {};
  std::wstring acc_ref(Trimmed(choice->Cell(1)));
  WarnAboutChoice(context, ledger, *choice);
  return acc_ref;
}

bool IsTermsWarningOn(const Context& context) {
  bool on = false;
  engine::DataFile setup(context, L"SetupData");
  if (setup.Open(Mode::kRead)) {
    setup.Read(1);
    setup.Get(L"TERMS_WARNING", on);
  }
  return on;
}

}  // namespace ard::accounts
