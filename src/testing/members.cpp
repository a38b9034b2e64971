#include "testing/members.h"

#include <set>
#include <tuple>
#include <utility>

#include "accounts/customers.h"
#include "dialogs/fast_select.h"
#include "dialogs/product_dialog.h"
#include "products/products.h"
#include "settings/general.h"
#include "simulator/testing/company_builder.h"
#include "users/access_rights.h"
#include "users/messaging.h"

namespace ard::testing {
namespace {

using accounts::Customers;
using dialogs::FastSelectForm;
using dialogs::LogonDialog;
using dialogs::Pick;
using dialogs::ProductDialog;
using dialogs::SelectDialog;
using dialogs::UserListDialog;
using products::Products;
using settings::General;
using users::AccessRights;
using users::Messaging;

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
  object->context().engine = context.engine;
  object->context().app_name = context.app_name;
  object->context().database = context.database;
  return object;
}

std::wstring Text(bool answer) { return answer ? L"True" : L"False"; }
std::wstring Text(std::wstring answer) { return answer; }
std::wstring Text(std::int16_t answer) { return std::to_wstring(answer); }
std::wstring Text(double answer) { return Value(answer).ToText(); }
std::wstring Text(Date answer) { return Value(answer).ToText(); }

// The outputs of a member.
template <class First, class... More>
std::wstring Text(const std::tuple<First, More...>& outputs) {
  return std::apply(
      [](const First& first, const More&... more) {
        std::wstring text = Text(first);
        ((text += L"," + Text(more)), ...);
        return text;
      },
      outputs);
}

using Binding = std::function<Call(const Context&)>;

// Hands an answer over as text.
void Give(std::wstring* take, auto&& answer) {
  if (take) *take = Text(std::move(answer));
}

template <class Class, class Result, class... Parameters, class... Arguments>
Binding Calls(Result (Class::*member)(Parameters...) const noexcept, Arguments... arguments) {
  return [=](const Context& context) -> Call {
    return [=, object = std::shared_ptr<Class>(Create<Class>(context))](std::wstring* take) {
      Give(take, (object.get()->*member)(arguments...));
    };
  };
}

// Calls a member with outputs or objects by hand.
template <class Class, class Action>
Binding Does(Action action) {
  return [=](const Context& context) -> Call {
    return [=, object = std::shared_ptr<Class>(Create<Class>(context))](std::wstring* take) {
      Give(take, action(*object, object->context()));
    };
  };
}

double AverageOf(const Products& products, const Context& context) {
  std::unique_ptr<engine::RecordObject> record;
  Attempt(context.trace(), {L"test", L"StockRecord"}, [&] {
    record = context.workspace->CreateRecord(L"StockRecord");
    record->GetFields()->Item(L"STOCK_CODE")->SetValue(L"BOLT");
    record->Find(engine::Match::kExact);
  });
  return products.GetAveragePrice(std::move(record));
}

std::tuple<double, double> AllocOnOrder(const Products& products, const Context&) {
  double allocated = -1;
  double on_order = -1;
  products.GetAllocOnOrder(L"BOLT", allocated, on_order);
  return {allocated, on_order};
}

std::tuple<std::wstring, double, double> SupplierOnOrder(const Products& products, const Context&) {
  std::wstring supplier = L"-";
  double on_order = -1;
  double re_order = -1;
  products.GetSupplierOnOrder(L"BOLT", supplier, on_order, re_order);
  Trim(supplier);
  return {std::move(supplier), on_order, re_order};
}

// The users' side: these answer the dialogs that only it has.

ScriptedEnvironment& Scripted(const Context& context) {
  return dynamic_cast<ScriptedEnvironment&>(context.environment);
}

bool AddToFullIniFile(const General& general, const Context& context) {
  for (const wchar_t* key : {L"AddIn1", L"AddIn2"}) {
    Scripted(context).machine().ini_files.Write(L"veltrix.ini", L"CorloAddIns", key, L"x,host.exe");
  }
  Scripted(context).AnswerChoice([] { return Choice::kRetry; });
  Scripted(context).AnswerChoice([] { return Choice::kIgnore; });
  std::wstring items[] = {L"host.exe"};
  return general.AddEntryToIniFile({0, items}, L"C:\\Host", L"Host", L"host.bmp", L"host.exe");
}

std::wstring WriteShortcut(const General& general, const Context& context) {
  Scripted(context).machine().settings = {{L"LauncherFolder", L"Launcher"},
                                          {L"LauncherFile", L"start.exe"},
                                          {L"LauncherName", L"Accounts"},
                                          {L"Installation12", L"{12}"}};
  return general.CreateAccountsShortcut(0, L"C:\\Accounts", L"C:\\Host");
}

std::wstring FirstOther(const General& general, const Context&) {
  std::wstring name = L"ANN";
  std::wstring machine = L"-";
  const std::int16_t count = general.GetNumActiveUsersInclDet(name, machine);
  return Text(count) + L"," + name + L"," + machine;
}

// Every handler of the user list.
std::wstring WorkTheUserList(const General& general, const Context& context) {
  auto& database = dynamic_cast<host_database::OdbcConnection&>(*context.database);
  database.Execute(L"DELETE FROM CurrentUsers");
  database.Execute(
      L"INSERT INTO CurrentUsers VALUES (1, 'Manufacturing', 'ANN', 'A1'), "
      L"(2, 'Manufacturing', 'BOB', 'B1')");
  Scripted(context).AnswerUserList([](UserListDialog& dialog) {
    dialog.list().rows();
    dialog.TabClick(UserListDialog::Tab::kHost);
    dialog.DeleteClick();
    dialog.list().End();
    dialog.DeleteClick();
    dialog.RefreshClick();
    dialog.TabClick(UserListDialog::Tab::kAccounts);
    dialog.list().rows();
    dialog.CloseBox();
  });
  general.ShowUserList(true);
  return L"";
}

bool LogOnByDialog(Messaging& messaging, const Context& context) {
  Scripted(context).AnswerLogon([](LogonDialog& dialog) {
    dialog.HelpClick();
    dialog.Ok();
    dialog.RememberClick(true);
    dialog.NameChange(L"EVE");
    dialog.Ok();
    dialog.NameChange(L"ANN");
    dialog.PasswordChange(L"x");
    dialog.Ok();
  });
  messaging.session().use_acc_rights = true;
  const bool logged_on = messaging.CheckForLogon();
  if (!logged_on) messaging.LogoffUser();
  return logged_on;
}

bool LogOnByWindows(Messaging& messaging, const Context& context) {
  Scripted(context).settings()[L"|Company|AttemptDomainUserLogon"] = L"1";
  Scripted(context).machine().account_name = L"ANN";
  messaging.session().use_acc_rights = true;
  return messaging.CheckForLogon(true);
}

std::wstring LogOn(Messaging& messaging, const Context&) {
  messaging.session().use_acc_rights = true;
  std::wstring answers;
  for (const wchar_t* user : {L"ANN", L"EVE", L"NOBODY"}) {
    answers += messaging.LogonUser(user, L"x") ? L"y" : L"n";
  }
  return answers;
}

class WithoutUsers : public Messaging {
 public:
  using Messaging::Messaging;
  bool CheckUserAccess() const noexcept override { return false; }
  std::wstring GetPassword() const noexcept override { return L"x"; }
};

bool LogOnByCompanyPassword(WithoutUsers& messaging, const Context& context) {
  Scripted(context).AnswerLogon([](LogonDialog& dialog) {
    dialog.Ok();
    dialog.PasswordChange(L"x");
    dialog.Ok();
    dialog.CloseBox();
  });
  return messaging.CheckForLogon();
}

bool MayOpen(const AccessRights& rights, const Context&) {
  return rights.IsUserAllowedAccess(L"EVE", users::Access::kBankRecord, true);
}

Binding Picks(const FastSelectForm& form) {
  return [&form](const Context& context) -> Call {
    return [&form, &context](std::wstring* take) {
      const std::optional<dialogs::Row> row = dialogs::FastSelect(context, form);
      Give(take, row ? std::wstring(row->Cell(1)) : std::wstring());
    };
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

ScriptedEnvironment::Script OnProducts(void (*script)(ProductDialog&)) {
  return [=](SelectDialog& dialog) { script(dynamic_cast<ProductDialog&>(dialog)); };
}

void SearchSortAndConfirm(ProductDialog& dialog) {
  dialog.list().rows();
  dialog.KeyPress(L'n');
  dialog.TabClick(ProductDialog::Tab::kProductInfo);
  dialog.SearchTextChange(L"B");
  dialog.SearchClick();
  dialog.SearchFieldChange(ProductDialog::SearchField::kDescription);
  dialog.SearchFieldChange(ProductDialog::SearchField::kStockCode);
  dialog.list().rows();
  dialog.ClearClick();
  dialog.ColumnClick(1);
  dialog.ColumnClick(1);
  dialog.list().LineDown();
  dialog.DoubleClick();
  dialog.TabClick(ProductDialog::Tab::kProducts);
  dialog.KeyPress(dialogs::kEnterKey);
}

void PickSeveral(ProductDialog& dialog) {
  dialog.list().SetPageSize(3);
  dialog.list().Home();
  dialog.list().PageDown(Pick::kExtend);
  dialog.list().End(Pick::kNone);
  dialog.list().Toggle();
  dialog.Ok();
}

}  // namespace

const std::vector<Member>& Members() {
  const Answers yes_no = OneOf({L"True", L"False"});
  const Answers nothing = OneOf({L""});
  const Answers customer = SomeReference(L"ABCHTW");
  const Answers product = SomeReference(L"BNS");
  const Answers products = SomeReference(L";");
  // A transaction whose cost cannot be read counts by its quantity.
  const Answers cost = OneOf({L"0", L"1", L"2", L"20"});
  const auto zero_or = [](std::wstring answer) { return OneOf({L"0", std::move(answer)}); };
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

      {L"Products.IsValid", Calls(&Products::IsValid, L"BOLT"), nullptr, yes_no},
      {L"Products.GetDesc", Calls(&Products::GetDesc, L"BOLT"), nullptr, OneOf({L"", L"Bolt"})},
      {L"Products.GetDept", Calls(&Products::GetDept, L"BOLT"), nullptr, zero_or(L"3")},
      {L"Products.GetCategory", Calls(&Products::GetCategory, L"BOLT"), nullptr, zero_or(L"7")},
      {L"Products.GetBinLocation", Calls(&Products::GetBinLocation, L"BOLT"), nullptr,
       SomeReference(L"A")},
      {L"Products.GetSupplier", Calls(&Products::GetSupplier, L"BOLT"), nullptr,
       SomeReference(L"S")},
      {L"Products.GetSupplierPart", Calls(&Products::GetSupplierPart, L"BOLT"), nullptr,
       SomeReference(L"P")},
      {L"Products.GetUnitSale", Calls(&Products::GetUnitSale, L"BOLT"), nullptr,
       SomeReference(L"E")},
      {L"Products.GetInStock", Calls(&Products::GetInStock, L"BOLT"), nullptr, zero_or(L"5")},
      {L"Products.GetReOrderLevel", Calls(&Products::GetReOrderLevel, L"BOLT"), nullptr,
       zero_or(L"4")},
      {L"Products.GetReOrderQty", Calls(&Products::GetReOrderQty, L"BOLT"), nullptr,
       zero_or(L"20")},
      {L"Products.GetLastPurDate", Calls(&Products::GetLastPurDate, L"BOLT"), nullptr,
       OneOf({L"1899-12-30", L"2023-03-15"})},
      {L"Products.IgnoreStock", Calls(&Products::IgnoreStock, L"NUT"), nullptr, yes_no},
      {L"Products.GetFreeStock", Calls(&Products::GetFreeStock, L"BOLT"), nullptr, zero_or(L"-2")},
      {L"Products.GetAllocOnOrder", Does<Products>(AllocOnOrder), nullptr,
       OneOf({L"-1,-1", L"7,-1", L"-1,2.5", L"7,2.5"})},
      {L"Products.GetSupplierOnOrder", Does<Products>(SupplierOnOrder), nullptr,
       OneOf({L"-,-1,-1", L"SUP001,-1,-1", L"SUP001,2.5,-1", L"SUP001,-1,20", L"-,2.5,20",
              L"SUP001,2.5,20"})},
      {L"Products.IsMemberOfCategory",
       Calls(&Products::IsMemberOfCategory, L"BOLT", std::int16_t{7}), nullptr, yes_no},
      {L"Products.GetSellPrice", Calls(&Products::GetSellPrice, L"BOLT"), nullptr, zero_or(L"50")},
      {L"Products.GetCostPrice", Calls(&Products::GetCostPrice, L"BOLT", true), nullptr, cost},
      {L"Products.GetAveragePrice", Does<Products>(AverageOf), nullptr, cost},
      {L"Products.GetSpecialPrice", Calls(&Products::GetSpecialPrice, L"BOLT", L"ABC001"), nullptr,
       OneOf({L"0", L"45", L"50"})},
      {L"Products.GetSupplierPrice", Calls(&Products::GetSupplierPrice, L"BOLT", L"SUP001"),
       nullptr, OneOf({L"0", L"20", L"30"})},
      {L"Products.FastList", Calls(&Products::FastList, true), Confirm, product},
      {L"Products.FastList, every handler", Calls(&Products::FastList, true),
       OnProducts(SearchSortAndConfirm), product},
      {L"Products.List", Calls(&Products::List, L"N", true), Confirm, product},
      {L"Products.List, one page", Calls(&Products::List, L"N", false), LookAndCancel, nothing},
      {L"Products.ListMultipleSelect", Calls(&Products::ListMultipleSelect, L"B"),
       OnProducts(PickSeveral), products},
      {L"Products.CreateNewProduct, asking", Calls(&Products::CreateNewProduct, L"NEW", L""),
       nullptr, OneOf({L"", L"Asked"}), true},
      {L"Products.SaveNewProduct", Calls(&Products::SaveNewProduct, L"NEW"), nullptr, yes_no, true},
      {L"Products.CopyProduct", Calls(&Products::CopyProduct, L"BOLT", L"NEW", L"New"), nullptr,
       yes_no, true},
      {L"Products.UpdateAllocQty", Calls(&Products::UpdateAllocQty, L"BOLT", -1.5), nullptr, yes_no,
       true},

      {L"General.AddEntryToIniFile", Does<General>(AddToFullIniFile), nullptr, yes_no, true},
      {L"General.IsF12Hide", Calls(&General::IsF12Hide), nullptr, OneOf({L"False"})},
      {L"General.GetF11Program", Calls(&General::GetF11Program), nullptr, OneOf({L"CONTROL.EXE"})},
      {L"General.IsArdExclusive", Calls(&General::IsArdExclusive, L"C:\\Data"), nullptr, yes_no},
      {L"General.CreateAccountsShortcut", Does<General>(WriteShortcut), nullptr,
       OneOf({L"", L"C:\\Host\\RunAccounts.lnk"}), true},
      {L"General.GetNumActiveUsers", Calls(&General::GetNumActiveUsers), nullptr,
       OneOf({L"0", L"1", L"2", L"3"})},
      {L"General.GetNumActiveUsersInclDet", Does<General>(FirstOther), nullptr,
       OneOf({L"0,ANN,-", L"1,ANN,-", L"1,BOB,", L"1,BOB,PC2", L"2,BOB,", L"2,BOB,PC2"})},
      {L"frmUserList", Does<General>(WorkTheUserList), nullptr, nothing, true},
      {L"Messaging.CheckForLogon, frmUserDetails", Does<Messaging>(LogOnByDialog), nullptr, yes_no,
       true},
      {L"Messaging.CheckForLogon, Windows account", Does<Messaging>(LogOnByWindows), nullptr,
       yes_no, true},
      {L"Messaging.CheckForLogon, frmCompanyPassword", Does<WithoutUsers>(LogOnByCompanyPassword),
       nullptr, yes_no, true},
      // Nobody but Ann, whatever fails.
      {L"Messaging.LogonUser", Does<Messaging>(LogOn), nullptr, OneOf({L"ynn", L"nnn"}), true},
      {L"Messaging.LogoffUser", Calls(&Messaging::LogoffUser), nullptr, OneOf({L"True"})},
      {L"Messaging.PoAccess, denied", Calls(&Messaging::PoAccess, L"EVE"), nullptr,
       OneOf({L"False"})},
      {L"Messaging.PoAccess", Calls(&Messaging::PoAccess, L"ANN"), nullptr, yes_no},
      {L"cAccessRights.IsUserAllowedAccess", Does<AccessRights>(MayOpen), nullptr,
       OneOf({L"False"})},
      {L"cAccessRights.AddUser", Calls(&AccessRights::AddUser, L"NEW"), nullptr, yes_no, true},
      {L"cAccessRights.IsValid", Calls(&AccessRights::IsValid, L"Odd"), nullptr, yes_no},
      {L"cAccessRights.List", Calls(&AccessRights::List), Confirm, SomeReference(L"AEO")},
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
  company
      .Product(L"BOLT", {{L"DESCRIPTION", L"Bolt"},
                         {L"DEPT_NUMBER", std::int16_t{3}},
                         {L"STOCK_CAT", std::int16_t{7}},
                         {L"LOCATION", L"A1"},
                         {L"PURCHASE_REF", L"SUP001"},
                         {L"SUPPLIER_PART_NUMBER", L"P9"},
                         {L"UNIT_OF_SALE", L"Each"},
                         {L"QTY_IN_STOCK", 5.0},
                         {L"QTY_ALLOCATED", 7.0},
                         {L"QTY_ON_ORDER", 2.5},
                         {L"QTY_REORDER_LEVEL", 4.0},
                         {L"QTY_REORDER", 20.0},
                         {L"SALES_PRICE", 50.0},
                         {L"LAST_PURCHASE_PRICE", 20.0},
                         {L"LAST_PURCHASE_DATE", Date{45000}}})
      .Product(L"NUT", {{L"IGNORE_STK_LVL_FLAG", true}})
      .Product(L"BAD", {{L"DELETED_FLAG", true}});
  for (const wchar_t* code : {L"NAIL", L"SCREW", L"STUD", L"SPRING"}) company.Product(code);
  for (const auto type : {std::int16_t{1}, std::int16_t{2}, std::int16_t{5}}) {
    company.Record(
        L"StockTransactionData",
        {{L"STOCK_CODE", L"BOLT"}, {L"TYPE", type}, {L"QUANTITY", 10.0}, {L"COST_PRICE", 2.0}});
  }
  company
      .Record(L"PriceData", {{L"TYPE", std::int16_t{76}},
                             {L"EXT_REF", L"TRADE"},
                             {L"STOCK_CODE", L"BOLT"},
                             {L"DISCOUNT_TYPE", std::int16_t{3}},
                             {L"VALUE", 7.0}})
      .Record(L"PriceData", {{L"TYPE", std::int16_t{83}},
                             {L"EXT_REF", L"ABC001"},
                             {L"STOCK_CODE", L"BOLT"},
                             {L"DISCOUNT_TYPE", std::int16_t{2}},
                             {L"VALUE", 10.0}})
      .Record(L"CurrencyData", {{L"EXCHANGE_RATE", 1.5}});
  company.Record(L"AccessData", {{L"NAME", L"ANN"}, {L"PASSWORD", L"x"}})
      .Record(L"AccessData", {{L"NAME", L"EVE"}, {L"BANK_RECORD", 1}, {L"POP", 1}})
      .Record(L"AccessData", {{L"NAME", L" Odd"}})
      .Record(L"QueueData", {{L"LOGON_NAME", L"ANN"}, {L"STATION_NAME", L"PC1"}})
      .Record(L"QueueData", {{L"LOGON_NAME", L"OLD"}, {L"EMPTY_FLAG", true}})
      .Record(L"QueueData", {{L"LOGON_NAME", L"BOB"}, {L"STATION_NAME", L"PC2"}});
  return company.Build();
}

std::shared_ptr<host_database::OdbcConnection> MembersDatabase() {
  const auto database =
      std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
  database->Execute(
      L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), Description VARCHAR(60))");
  for (const wchar_t* row : {L"'BOLT', 'Best'", L"'NUT', 'Better'", L"'NAIL', 'Brass'"}) {
    database->Execute(L"INSERT INTO ProdInfoStockFields VALUES (" + std::wstring(row) + L")");
  }
  database->Execute(L"CREATE TABLE AccessRights (ID INTEGER, UserName VARCHAR(30))");
  database->Execute(L"INSERT INTO AccessRights VALUES (1, 'ANN')");
  database->Execute(
      L"CREATE TABLE CurrentUsers (ID INTEGER, Product VARCHAR(30), UserName VARCHAR(30), "
      L"UniqueID VARCHAR(30))");
  return database;
}

bool IsKnownMessage(const Message& message) {
  const auto has = [&](std::wstring_view text) {
    return message.text.find(text) != std::wstring::npos;
  };
  if (message.icon == Icon::kStop) {
    return message.title == L"Select Nominal Code" &&
           message.text == L"Entry to a major Control Account is not permitted";
  }
  if (message.title == L"User List") return message.text == L"You must select a logon to delete.";
  return message.title == L"Manufacturing" &&
         (has(L"You must enter a user name.") || has(L"Could not logon to Ardenic.") ||
          has(L" is not allowed access to Manufacturing.") ||
          has(L"Ardenic is currently running and is a single-user version.") ||
          has(L"You do not have the access rights") ||
          has(L"An error occurred whilst making an entry to the 'veltrix.ini' file.") ||
          has(L"Account is on hold.") || has(L"Account is over credit limit.") ||
          has(L"Terms have not been agreed with this account."));
}

}  // namespace ard::testing
