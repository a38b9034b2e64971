#include "testing/members.h"

#include <set>

#include "accounts/customers.h"
#include "dialogs/fast_select.h"
#include "simulator/testing/company_builder.h"

namespace ard::testing {
namespace {

using accounts::Customers;
using dialogs::FastSelectForm;
using dialogs::SelectDialog;

using Answers = std::function<bool(const std::wstring&)>;

Answers OneOf(std::set<std::wstring> answers) {
  return [answers = std::move(answers)](const std::wstring& answer) {
    return answers.contains(answer);
  };
}

// A list may be positioned elsewhere when a step fails, but it gives "" or a reference in it.
Answers SomeReference(std::wstring_view first_letters) {
  return [=](const std::wstring& answer) {
    return answer.empty() || first_letters.find(answer[0]) != std::wstring_view::npos;
  };
}

// The object of class `Class` with this context.
template <class Class>
std::unique_ptr<Class> Create(const Context& context) {
  auto object = std::make_unique<Class>(context.environment);
  object->context().workspace = context.workspace;
  object->context().app_name = context.app_name;
  return object;
}

std::wstring Text(bool answer) { return answer ? L"True" : L"False"; }
std::wstring Text(std::wstring answer) { return answer; }

template <class Class, class Result, class... Parameters, class... Arguments>
std::function<std::wstring(const Context&)> Calls(Result (Class::*member)(Parameters...)
                                                      const noexcept,
                                                  Arguments... arguments) {
  return [=](const Context& context) {
    return Text((Create<Class>(context).get()->*member)(arguments...));
  };
}

std::function<std::wstring(const Context&)> Picks(const FastSelectForm& form) {
  return [&form](const Context& context) {
    const std::optional<dialogs::Row> row = dialogs::FastSelect(context, form);
    return row ? std::wstring(row->Cell(1)) : std::wstring();
  };
}

// Users: each goes through the handlers of a list dialog in their own way.

void Confirm(SelectDialog& dialog) {
  dialog.list().rows();
  dialog.KeyPress(dialogs::kEnterKey);
}

void TypePageAndConfirm(SelectDialog& dialog) {
  dialog.list().rows();
  dialog.KeyPress(L'w');
  dialog.list().PageDown();
  dialog.list().LineUp();
  dialog.list().ScrollBy(-3);
  dialog.list().SetPageSize(4);
  dialog.list().rows();
  dialog.KeyPress(L'w');
  dialog.DoubleClick();
}

void LookAndCancel(SelectDialog& dialog) {
  dialog.list().End();
  dialog.list().Home();
  dialog.Cancel();
}

void TryEveryRow(SelectDialog& dialog) {
  for (std::int32_t item = dialog.list().row_count(); item > 0 && dialog.visible(); --item) {
    dialog.list().SelectItem(item);
    dialog.Ok();
  }
}

}  // namespace

const std::vector<Member>& Members() {
  const Answers yes_no = OneOf({L"True", L"False"});
  const Answers nothing = OneOf({L""});
  const Answers customer = SomeReference(L"ABCHTW");
  static const std::vector<Member> members = {
      {L"Customers.IsValid", Calls(&Customers::IsValid, L"WORST"), nullptr, yes_no},
      {L"Customers.IsValid, unknown", Calls(&Customers::IsValid, L"?"), nullptr, OneOf({L"False"})},
      {L"Customers.GetName", Calls(&Customers::GetName, L"ABC001"), nullptr,
       OneOf({L"", L"ABC Ltd"})},
      {L"Customers.GetContact", Calls(&Customers::GetContact, L"ABC001"), nullptr,
       OneOf({L"", L"Ann"})},
      {L"Customers.FastList, first row", Calls(&Customers::FastList), Confirm, customer},
      {L"Customers.FastList, typing and paging", Calls(&Customers::FastList), TypePageAndConfirm,
       customer},
      {L"Customers.FastList, cancelled", Calls(&Customers::FastList), LookAndCancel, nothing},
      {L"Customers.List, confirmed", Calls(&Customers::List, L"W*"), Confirm, customer},
      {L"Customers.List, cancelled", Calls(&Customers::List, L"W*"), LookAndCancel, nothing},
      {L"frmFastSelectSupp", Picks(dialogs::kFastSelectSupp), TypePageAndConfirm,
       SomeReference(L"SW")},
      {L"frmFastSelectNom", Picks(dialogs::kFastSelectNom), TryEveryRow, SomeReference(L"12")},
      {L"frmFastSelectBank", Picks(dialogs::kFastSelectBank), TypePageAndConfirm,
       SomeReference(L"12")},
  };
  return members;
}

std::unique_ptr<simulator::Simulator> MembersCompany() {
  simulator::CompanyBuilder company;
  company.Customer(L"ABC001", {{L"NAME", L"ABC Ltd"}, {L"CONTACT_NAME", L"Ann"}})
      .Customer(L"BAD001", {{L"DELETED_FLAG", true}})
      .Customer(L"HOLD", {{L"ACCOUNT_ON_HOLD", true}})
      .Customer(L"WORST", {{L"ACCOUNT_ON_HOLD", true},
                           {L"BALANCE", 11.0},
                           {L"CREDIT_LIMIT", 10.0},
                           {L"TERMS_AGREED_FLAG", false}});
  for (const wchar_t* ref : {L"CAD001", L"CAD002", L"TAB001", L"TAB002", L"TAB003"}) {
    company.Customer(ref);
  }
  company.Supplier(L"SUP001").Supplier(L"WOOD", {{L"BALANCE", 11.0}, {L"CREDIT_LIMIT", 10.0}});
  company.Nominal(L"1001").Nominal(L"2100", {{L"ACCOUNT_TYPE", std::uint8_t{2}}});
  company.Bank(L"1200").Bank(L"1210").Bank(L"2220");
  return company.Build();
}

bool IsKnownMessage(const Message& message) {
  const auto has = [&](std::wstring_view text) {
    return message.text.find(text) != std::wstring::npos;
  };
  if (message.icon == Icon::kStop) {
    return message.title == L"Select Nominal Code" &&
           message.text == L"Entry to a major Control Account is not permitted";
  }
  return message.title == L"Manufacturing" &&
         (has(L"Account is on hold.") || has(L"Account is over credit limit.") ||
          has(L"Terms have not been agreed with this account."));
}

}  // namespace ard::testing
