#include "testing/members.h"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>
#include <tuple>
#include <type_traits>
#include <utility>

#include "dialogs/fast_select.h"
#include "dialogs/product_dialog.h"
#include "published_classes.h"
#include "simulator/testing/company_builder.h"
#include "testing/memory_faults.h"
#include "testing/operations.h"

namespace ard::testing {
namespace {

using namespace classes;  // NOLINT(google-build-using-namespace): the published ones
using addresses::DelAddType;
using addresses::DeliveryAddress;
using dialogs::AddressDialog;
using dialogs::AddressKind;
using dialogs::LogonDialog;
using dialogs::Pick;
using dialogs::ProductDialog;
using dialogs::SelectDialog;
using dialogs::UserListDialog;
using users::AccessRights;

using Answers = Member::Answers;

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

std::wstring Text(const Value& answer) { return answer.ToText(); }

// The elements of an array that a member has filled.
template <std::size_t size>
std::wstring Text(const std::array<std::wstring, size>& elements) {
  std::wstring text;
  for (const std::wstring& element : elements) text += L"|" + element;
  return text;
}

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

// Hands an answer over as text.
void Give(std::wstring* take, auto&& answer) {
  const AllocationsObey none(nullptr);
  if (take) *take = Text(std::move(answer));
}

// `Object` is told where the member is that of a base class.
template <class Object = void, class Class, class Result, class... Parameters, class... Arguments>
Way Calls(Result (Class::*member)(Parameters...) const noexcept, Arguments... arguments) {
  const auto bind = [=](const Context& context) -> Call {
    using Created = std::conditional_t<std::is_void_v<Object>, Class, Object>;
    return [=, object = std::shared_ptr<Created>(Create<Created>(context))](std::wstring* take) {
      Give(take, (object.get()->*member)(arguments...));
    };
  };
  return {bind, {{arguments...}}};
}

// Calls a member by hand, where a host does no more than to call it.
template <class Class, class Action>
Way Natively(Action action) {
  const auto bind = [=](const Context& context) -> Call {
    return [=, object = std::shared_ptr<Class>(Create<Class>(context))](std::wstring* take) {
      Give(take, action(*object, object->context()));
    };
  };
  return {bind, std::nullopt};
}

// The same for a member with outputs or objects, and what a host passes to it.
template <class Class, class Action>
Way Does(Action action, std::vector<Argument> arguments) {
  Way way = Natively<Class>(action);
  way.arguments = std::move(arguments);
  return way;
}

// The arguments of a host that are more than values.
Argument Output(Value before) { return {Argument::Kind::kOutput, std::move(before)}; }
Argument Texts(std::int32_t count) { return {Argument::Kind::kTexts, count}; }
Argument StockRecord(const wchar_t* code) { return {Argument::Kind::kStockRecord, code}; }

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

bool AddToReadOnlyIniFile(const General& general, const Context& context) {
  Scripted(context).machine().ini_files_read_only = true;
  return general.AddEntryToIniFile({0, {}}, L"C:\\Host", L"Host", L"host.bmp", L"host.exe");
}

std::wstring WriteShortcut(const General& general, const Context& context) {
  Scripted(context).machine().settings = {{L"LauncherFolder", L"Launcher"},
                                          {L"LauncherFile", L"start.exe"},
                                          {L"LauncherName", L"Accounts"},
                                          {L"Installation12", L"{12}"}};
  return general.CreateAccountsShortcut(0, L"C:\\Accounts", L"C:\\Host");
}

std::tuple<std::int16_t, std::wstring, std::wstring> FirstOther(const General& general,
                                                                const Context&) {
  std::wstring name = L"ANN";
  std::wstring machine = L"-";
  const std::int16_t count = general.GetNumActiveUsersInclDet(name, machine);
  return {count, std::move(name), std::move(machine)};
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
    dialog.PasswordChange(kPassword);
    dialog.Ok();
  });
  messaging.details().use_acc_rights = true;
  return messaging.CheckForLogon();
}

bool LogOnByWindows(Messaging& messaging, const Context& context) {
  Scripted(context).settings()[L"|Company|AttemptDomainUserLogon"] = L"1";
  Scripted(context).machine().account_name = L"ANN";
  messaging.details().use_acc_rights = true;
  return messaging.CheckForLogon(true);
}

// Windows vouches for ANN, the engine asks for her password all the same.
bool LogOnByWindowsInVain(Messaging& messaging, const Context& context) {
  dynamic_cast<simulator::Simulator&>(*context.engine).TrustWindows(false);
  return LogOnByWindows(messaging, context);
}

bool LogOnToHeldData(Messaging& messaging, const Context& context) {
  Scripted(context).machine().held_files.insert(L"\\queue.dta");
  return messaging.CheckForLogon();
}

// By name and password, as a host does it that has an access table.
Way LogsOn(const wchar_t* user, const wchar_t* password) {
  return Does<Messaging>(
      [=](Messaging& messaging, const Context&) {
        messaging.details().use_acc_rights = true;
        return messaging.LogonUser(user, password);
      },
      {user, password});
}

class WithoutUsers : public Messaging {
 public:
  using Messaging::Messaging;
  bool CheckUserAccess() const noexcept override { return false; }
  std::wstring GetPassword() const noexcept override { return kPassword; }
};

bool LogOnByCompanyPassword(WithoutUsers& messaging, const Context& context) {
  Scripted(context).AnswerLogon([](LogonDialog& dialog) {
    dialog.Ok();
    dialog.PasswordChange(kPassword);
    dialog.Ok();
    dialog.CloseBox();
  });
  return messaging.CheckForLogon();
}

bool MayOpen(const AccessRights& rights, const Context&) {
  return rights.IsUserAllowedAccess(L"EVE", users::Access::kBankRecord, true);
}

// The ledgers' side.

// The answers of a method that fills an array, from index 0 on.
template <std::size_t size>
auto Fills(void (General::*method)(TextArray) const noexcept) {
  return [=](const General& general, const Context&) -> const std::array<std::wstring, size>& {
    static std::array<std::wstring, size> elements;
    for (std::wstring& element : elements) element.clear();
    (general.*method)({0, elements});
    return elements;
  };
}

std::tuple<std::int16_t, std::int16_t, std::wstring, std::wstring> Decimals(const General& general,
                                                                            const Context&) {
  std::int16_t quantity = -1;
  std::int16_t unit = -1;
  std::wstring formats[2];
  general.GetDPSettings(quantity, unit, formats[0], formats[1]);
  return {quantity, unit, std::move(formats[0]), std::move(formats[1])};
}

std::wstring Breakdown(const Customers& customers, const Context& context) {
  std::wstring shown;
  Scripted(context).AnswerFields([&](dialogs::FieldsDialog& dialog) {
    for (std::size_t i = 1; i < dialog.lines().size(); ++i) shown += dialog.lines()[i].text + L"|";
    dialog.CloseClick();
  });
  customers.ShowDiscBDown(L"ABC001", L"BOLT", 10, 1, 20, 0);
  return shown;
}

// What the properties of an account's record hold after a reading.
template <class Record>
std::wstring ReadProperties(Record& record, const wchar_t* acc_ref) {
  std::wstring answer = Text(record.Read(acc_ref));
  for (const auto& property : Record::kProperties) {
    std::visit(
        [&](auto member) {
          record.Put(property.name, member, record.Get(property.name, member));
          answer += L"|" + std::wstring(Trimmed(Text(record.details().*member)));
        },
        property.member);
  }
  return answer;
}
std::wstring ReadCustomer(CustomerRecord& record, const Context&) {
  return ReadProperties(record, L"ABC001");
}
std::wstring ReadSupplier(SupplierRecord& record, const Context&) {
  return ReadProperties(record, L"SUP001");
}

// Every handler of the address dialogs, the lists that they open included.
std::wstring WorkTheAddresses(DeliveryAddress& address, const Context& context) {
  Scripted(context).AnswerAddresses([](AddressDialog& dialog) {
    dialog.KindChange(AddressKind::kPurchase);
    dialog.AccountChange(L"SUP001");
    dialog.AccountEntered();
    dialog.KindChange(AddressKind::kSales);
    dialog.AccountEntered();
    dialog.LookUpClick();
    dialog.AccountChange(L"?");
    dialog.AccountEntered();
    dialog.list().rows();
    dialog.DetailsClick();
    dialog.Ok();
    dialog.Cancel();
  });
  for (int list = 0; list < 2; ++list) {
    Scripted(context).Answer([](SelectDialog& dialog) { dialog.Ok(); });
  }
  const std::wstring picked = Text(address.GetAddress());
  return picked + address.Get(L"AccountRef", &dialogs::Address::account_ref);
}

std::wstring PickAddress(DeliveryAddress& address, const Context& context) {
  Scripted(context).AnswerAddresses([](AddressDialog& dialog) { dialog.Ok(); });
  std::wstring answer = Text(address.GetAddress(L"SUP001", L"Name", DelAddType::kPurchase));
  for (const auto& property : DeliveryAddress::kProperties) {
    const auto member = std::get<std::wstring dialogs::Address::*>(property.member);
    answer += L"|" + std::wstring(Trimmed(address.Get(property.name, member)));
  }
  return answer;
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

// Answers of several parts: each is blank, or "0", or stands in `whole` at its place; the first is
// True or False.
Answers PartsOf(const std::wstring& whole) {
  return [=](const std::wstring& answer) {
    std::wstringstream expected(whole);
    std::wstringstream given(answer);
    std::wstring part;
    std::wstring expected_part;
    std::getline(given, part, L'|');
    std::getline(expected, expected_part, L'|');
    if (part != L"True" && part != L"False") return false;
    while (std::getline(given, part, L'|')) {
      std::getline(expected, expected_part, L'|');
      if (!part.empty() && part != L"0" && part != expected_part) return false;
    }
    return true;
  };
}

// Answers of several parts, each of them one of these.
Answers ManyOf(std::set<std::wstring> parts) {
  return [parts = std::move(parts)](const std::wstring& answer) {
    std::wstringstream given(answer);
    std::wstring part;
    while (std::getline(given, part, L'|')) {
      if (!parts.contains(part)) return false;
    }
    return true;
  };
}

// The text before `separator`, which is taken off `text` along with it.
std::wstring TakeUpTo(wchar_t separator, std::wstring_view& text) {
  const std::size_t end = std::min(text.find(separator), text.size());
  std::wstring part(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

}  // namespace

Member::Member(std::wstring_view the_name, int needed, Way way,
               ScriptedEnvironment::Script the_script, Answers answers, bool effects)
    : name(the_name),
      class_name(TakeUpTo(L'.', the_name)),
      member_name(TakeUpTo(L',', the_name)),
      operations(needed),
      bind(std::move(way.bind)),
      arguments(std::move(way.arguments)),
      script(std::move(the_script)),
      may_answer(std::move(answers)),
      has_effects(effects) {
  using Plain = void (*)(SelectDialog&);
  const Plain* const plain = script.target<Plain>();
  is_cancelled = plain && *plain == LookAndCancel;
}

const std::vector<Member>& Members() {
  using namespace needed;  // NOLINT(google-build-using-namespace): the steps
  const Answers yes_no = OneOf({L"True", L"False"});
  const Answers nothing = OneOf({L""});
  const Answers customer = SomeReference(L"ABCHTVW");
  const Answers product = SomeReference(L"BNS");
  const Answers products = SomeReference(L";");
  // A transaction whose cost cannot be read counts by its quantity.
  const Answers supplier = SomeReference(L"SW");
  const Answers code = SomeReference(L"12");
  const Answers cost = OneOf({L"0", L"1", L"2", L"20"});
  constexpr std::int16_t kNone = -1;
  const auto zero_or = [](std::wstring answer) { return OneOf({L"0", std::move(answer)}); };
  static const std::vector<Member>
      members =
          {
              // Limit, balance, on hold and terms; whether there are to be warnings.
              {L"Customers.IsValid", kFound + 4 * kField + kSingle + kField,
               Calls<Customers>(&Customers::IsValid, L"WORST"), nullptr, yes_no},
              {L"Customers.IsValid, unknown", kLooked, Calls<Customers>(&Customers::IsValid, L"?"),
               nullptr, OneOf({L"False"})},
              {L"Customers.GetName", kFound + kField,
               Calls<Customers>(&Customers::GetName, L"ABC001"), nullptr, OneOf({L"", L"ABC Ltd"})},
              {L"Customers.GetContact", kFound + kField, Calls(&Customers::GetContact, L"ABC001"),
               nullptr, OneOf({L"", L"Ann"})},
              {L"Customers.FastList, first row", kAsItIs, Calls<Customers>(&Customers::FastList),
               Confirm, customer},
              {L"Customers.FastList, typing and paging", kAsItIs,
               Calls<Customers>(&Customers::FastList), TypePageAndConfirm, customer},
              {L"Customers.FastList, cancelled", kAsItIs, Calls<Customers>(&Customers::FastList),
               LookAndCancel, nothing},
              {L"Customers.List, confirmed", kAsItIs, Calls<Customers>(&Customers::List, L"W*"),
               Confirm, customer},
              {L"Customers.List, cancelled", kAsItIs, Calls<Customers>(&Customers::List, L"W*"),
               LookAndCancel, nothing},
              // The account's rate and type; the thresholds from level 10 down to the one reached,
              // its rate.
              {L"Customers.GetDiscPercent, table",
               kFound + 2 * kField + kFound + 4 * kField + kField,
               Calls(&Customers::GetDiscPercent, L"ABC001", L"BOLT", 10.0, 1.0), nullptr,
               OneOf({L"0", L"5", L"7.5", L"12.5", L"2", L"7"})},
              {L"Customers.GetDiscPercent, value",
               kFound + 2 * kField + kSingle + 9 * kField + kField,
               Calls(&Customers::GetDiscPercent, L"VALUE", L"BOLT", 10.0, 1.0), nullptr,
               OneOf({L"0", L"4"})},
              {L"Customers.ShowDiscBDown", kAsItIs,
               Does<Customers>(Breakdown, {L"ABC001", L"BOLT", 10, 1, 20, 0}), nullptr,
               ManyOf({L"", L"5", L"8", L"2", L"20", L"15", L"13", L"12", L"18"}), true},

              {L"Suppliers.IsValid", kFound + 4 * kField + kSingle + kField,
               Calls<Suppliers>(&Suppliers::IsValid, L"WOOD"), nullptr, yes_no},
              {L"Suppliers.GetName", kFound + kField,
               Calls<Suppliers>(&Suppliers::GetName, L"SUP001"), nullptr, OneOf({L"", L"Supply"})},
              {L"Suppliers.GetDiscPercent", kFound + kField,
               Calls(&Suppliers::GetDiscPercent, L"SUP001"), nullptr, zero_or(L"2.5")},
              {L"Suppliers.FastList", kAsItIs, Calls<Suppliers>(&Suppliers::FastList),
               TypePageAndConfirm, supplier},
              {L"Suppliers.List", kAsItIs, Calls<Suppliers>(&Suppliers::List, L"W*"), Confirm,
               supplier},

              {L"Nominal.IsValid", kLooked, Calls<Nominal>(&Nominal::IsValid, L"2100"), nullptr,
               yes_no},
              {L"Nominal.FastList", kAsItIs, Calls<Nominal>(&Nominal::FastList), TryEveryRow, code},
              {L"Nominal.List", kAsItIs, Calls(&Nominal::List, L"1*"), Confirm, code},
              {L"Bank.IsValid", kLooked, Calls<Bank>(&Bank::IsValid, L"1200"), nullptr, yes_no},
              {L"Bank.FastList", kAsItIs, Calls<Bank>(&Bank::FastList), TypePageAndConfirm, code},
              {L"Bank.List", kAsItIs, Calls(&Bank::List, L"12*"), TryEveryRow, code},
              {L"Bank.List, cancelled", kAsItIs, Calls(&Bank::List, L"?"), LookAndCancel, nothing},

              {L"CustomerRecord.Read, and all properties", kFound + 18 * kField,
               Does<CustomerRecord>(ReadCustomer, {L"ABC001"}), nullptr,
               PartsOf(L"True|ABC Ltd|Road 1||||Town|Yard 2||||City|0123|Ann|30|2.5|1|3|4000"),
               true},
              {L"SupplierRecord.Read, and all properties", kFound + 5 * kField,
               Does<SupplierRecord>(ReadSupplier, {L"SUP001"}), nullptr,
               PartsOf(L"True|Supply|Sue|5000|1|2"), true},

              {L"SalesOrders.GetAccName", kFound + kField, Calls(&SalesOrders::GetAccName, 1),
               nullptr, SomeReference(L"F")},
              {L"SalesOrders.GetAccRef", kFound + kField,
               Calls<SalesOrders>(&SalesOrders::GetAccRef, 1), nullptr, SomeReference(L"A")},
              {L"SalesOrders.List", kAsItIs, Calls<SalesOrders>(&SalesOrders::List), Confirm,
               OneOf({L"0", L"1", L"2"})},
              {L"SalesOrders.FastList", kAsItIs, Calls<SalesOrders>(&SalesOrders::FastList),
               TypePageAndConfirm, SomeReference(L"12")},
              {L"PurchaseOrders.GetAccRef", kFound + kField,
               Calls<PurchaseOrders>(&PurchaseOrders::GetAccRef, 7), nullptr, SomeReference(L"S")},
              {L"PurchaseOrders.GetOrderDate", kFound + kField,
               Calls(&PurchaseOrders::GetOrderDate, 7), nullptr,
               OneOf({L"1899-12-30", L"2023-03-15"})},
              {L"PurchaseOrders.List", kAsItIs, Calls<PurchaseOrders>(&PurchaseOrders::List),
               TryEveryRow, OneOf({L"0", L"7", L"8"})},
              {L"PurchaseOrders.FastList", kAsItIs,
               Calls<PurchaseOrders>(&PurchaseOrders::FastList), Confirm, SomeReference(L"7")},
              {L"PurchaseOrders.IsValid", kFound + kField, Calls(&PurchaseOrders::IsValid, 7, true),
               nullptr, yes_no},

              // An array of four, and one of two; twelve tax codes.
              {L"General.GetCategories", kOpen + 4 * (kRead + kFields + kField) + kClose,
               Does<General>(Fills<4>(&General::GetCategories), {Texts(4)}), nullptr,
               ManyOf({L"", L"0   Bolts", L"1   Bolts", L"2   Bolts", L"2   Nuts", L"3   Nuts",
                       L"3   Bolts"})},
              {L"General.GetDepartments", kOpen + 2 * (kRead + kFields + kField) + kClose,
               Does<General>(Fills<2>(&General::GetDepartments), {Texts(2)}), nullptr,
               ManyOf({L"", L"0   Works", L"1   Works"})},
              {L"General.GetDPSettings", kSingle + 2 * kField,
               Does<General>(Decimals, {Output(kNone), Output(kNone), Output(L""), Output(L"")}),
               nullptr,
               OneOf({L"2,0,0.00,0.", L"4,4,0.0000,0.0000", L"-1,0,,0.", L"2,-1,0.00,", L"-1,-1,,",
                      L"0,0,0.,0.", L"2,0,,", L"2,0,0.00,", L"4,4,,", L"2,-1,,", L"-1,0,,",
                      L"4,4,0.0000,"})},
              {L"General.GetTaxCodes", kSingle + 12 * kField,
               Does<General>(Fills<12>(&General::GetTaxCodes), {Texts(12)}), nullptr,
               [](const std::wstring& answer) {
                 std::wstring all;
                 for (int n = 0; n < 12; ++n) {
                   all += L"|T" + std::to_wstring(n) + (n < 10 ? L"   " : L" ");
                   all += n == 1 ? L"17.50" : L"0.00";
                 }
                 return answer == all || answer.size() < all.size();
               }},
              {L"General.GetVatRate", kSingle + kField,
               Calls(&General::GetVatRate, std::int16_t{1}), nullptr, zero_or(L"17.5")},
              {L"General.GetVatDesc", kSingle + kField,
               Calls(&General::GetVatDesc, std::int16_t{1}), nullptr, SomeReference(L"S")},

              {L"cDeliveryAddress.GetAddress, every handler", kAsItIs,
               Does<DeliveryAddress>(WorkTheAddresses, {}), nullptr,
               [](const std::wstring& answer) {
                 return answer == L"False" || answer == L"True" || answer == L"TrueABC001  ";
               },
               true},
              {L"cDeliveryAddress.GetAddress, and all properties", kAsItIs,
               Does<DeliveryAddress>(PickAddress, {L"SUP001", L"Name", 2}), nullptr,
               PartsOf(L"True|SUP001|Gate 3||||Port|1|Sue|1|Works|s@x|02|Supply|R7|01"), true},

              {L"Products.IsValid", kNotInIndex, Calls(&Products::IsValid, L"BOLT"), nullptr,
               yes_no},
              {L"Products.GetDesc", kProduct + kField, Calls(&Products::GetDesc, L"BOLT"), nullptr,
               OneOf({L"", L"Bolt"})},
              {L"Products.GetDept", kProduct + kField, Calls(&Products::GetDept, L"BOLT"), nullptr,
               zero_or(L"3")},
              {L"Products.GetCategory", kProduct + kField, Calls(&Products::GetCategory, L"BOLT"),
               nullptr, zero_or(L"7")},
              {L"Products.GetBinLocation", kProduct + kField,
               Calls(&Products::GetBinLocation, L"BOLT"), nullptr, SomeReference(L"A")},
              {L"Products.GetSupplier", kProduct + kField, Calls(&Products::GetSupplier, L"BOLT"),
               nullptr, SomeReference(L"S")},
              {L"Products.GetSupplierPart", kProduct + kField,
               Calls(&Products::GetSupplierPart, L"BOLT"), nullptr, SomeReference(L"P")},
              {L"Products.GetUnitSale", kProduct + kField, Calls(&Products::GetUnitSale, L"BOLT"),
               nullptr, SomeReference(L"E")},
              {L"Products.GetInStock", kProduct + kField, Calls(&Products::GetInStock, L"BOLT"),
               nullptr, zero_or(L"5")},
              {L"Products.GetReOrderLevel", kProduct + kField,
               Calls(&Products::GetReOrderLevel, L"BOLT"), nullptr, zero_or(L"4")},
              {L"Products.GetReOrderQty", kProduct + kField,
               Calls(&Products::GetReOrderQty, L"BOLT"), nullptr, zero_or(L"20")},
              {L"Products.GetLastPurDate", kProduct + kField,
               Calls(&Products::GetLastPurDate, L"BOLT"), nullptr,
               OneOf({L"1899-12-30", L"2023-03-15"})},
              {L"Products.IgnoreStock", kProduct + kField, Calls(&Products::IgnoreStock, L"NUT"),
               nullptr, yes_no},
              {L"Products.GetFreeStock", kProduct + 2 * kField,
               Calls(&Products::GetFreeStock, L"BOLT"), nullptr, zero_or(L"-2")},
              {L"Products.GetAllocOnOrder", kProduct + 2 * kField,
               Does<Products>(AllocOnOrder, {L"BOLT", Output(-1.0), Output(-1.0)}), nullptr,
               OneOf({L"-1,-1", L"7,-1", L"-1,2.5", L"7,2.5"})},
              {L"Products.GetSupplierOnOrder", kProduct + 3 * kField,
               Does<Products>(SupplierOnOrder, {L"BOLT", Output(L"-"), Output(-1.0), Output(-1.0)}),
               nullptr,
               OneOf({L"-,-1,-1", L"SUP001,-1,-1", L"SUP001,2.5,-1", L"SUP001,-1,20", L"-,2.5,20",
                      L"SUP001,2.5,20"})},
              {L"Products.IsMemberOfCategory", kProduct + kField,
               Calls(&Products::IsMemberOfCategory, L"BOLT", std::int16_t{7}), nullptr, yes_no},
              {L"Products.GetSellPrice", kProduct + kField, Calls(&Products::GetSellPrice, L"BOLT"),
               nullptr, zero_or(L"50")},
              {L"Products.GetCostPrice", kLooked + kAverage,
               Calls(&Products::GetCostPrice, L"BOLT", true), nullptr, cost},
              // the host finds the record
              {L"Products.GetAveragePrice", kLooked + kAverage,
               Does<Products>(AverageOf, {StockRecord(L"BOLT")}), nullptr, cost},
              // Both prices; two entries of the price list, with their codes and types: the
              // customer's own list and the reference of the first, the reference and the rule of
              // the second.
              {L"Products.GetSpecialPrice",
               kNoService + kFound + 2 * kField + kCreate + 2 * kFields + 2 * 2 * kField + kMove +
                   kFound + kField + kField + 3 * kField,
               Calls(&Products::GetSpecialPrice, L"BOLT", L"ABC001"), nullptr,
               OneOf({L"0", L"45", L"50"})},
              // No price is kept: the cost price, the supplier's currency, its rate.
              {L"Products.GetSupplierPrice",
               kNoService + kNotInIndex + kFound + kField + kFound + kField + kSingle + kField,
               Calls(&Products::GetSupplierPrice, L"BOLT", L"SUP001"), nullptr,
               OneOf({L"0", L"20", L"30"})},
              {L"Products.FastList", kAsItIs, Calls(&Products::FastList, true), Confirm, product},
              {L"Products.FastList, every handler", kAsItIs, Calls(&Products::FastList, true),
               OnProducts(SearchSortAndConfirm), product},
              {L"Products.List", kAsItIs, Calls(&Products::List, L"N", true), Confirm, product},
              {L"Products.List, one page", kAsItIs, Calls(&Products::List, L"N", false),
               LookAndCancel, nothing},
              {L"Products.ListMultipleSelect", kAsItIs, Calls(&Products::ListMultipleSelect, L"B"),
               OnProducts(PickSeveral), products},
              {L"Products.CreateNewProduct, asking", kAsItIs,
               Calls(&Products::CreateNewProduct, L"NEW", L""), nullptr, OneOf({L"", L"Asked"}),
               true},
              // AddNew; each field and its type; the code; ExtraText, Update, Version.
              {L"Products.SaveNewProduct",
               kCreate + 1 + kFields + kCount + 2 * kStockFields + kBlankedStockFields + kField + 3,
               Calls(&Products::SaveNewProduct, L"NEW"), nullptr, yes_no, true},
              // AddNew; each field, from the one to the other; code and description; what is
              // cleared, of which one field is set twice; Update.
              {L"Products.CopyProduct",
               kFound + kCreate + 1 + kFields + kCount + 2 * kStockFields * kField + 2 * kField +
                   kCleared * kField - kItem + 1,
               Calls(&Products::CopyProduct, L"BOLT", L"NEW", L"New"), nullptr, yes_no, true},
              // Whether stock is kept, in stock, allocated: too little is there.
              {L"Products.UpdateAllocQty", kFound + 3 * kField,
               Calls(&Products::UpdateAllocQty, L"BOLT", -1.5), nullptr, yes_no, true},

              // A host's would stay in the machine's own file.
              {L"General.AddEntryToIniFile", 0, Natively<General>(AddToFullIniFile), nullptr,
               yes_no, true},
              {L"General.AddEntryToIniFile, read-only", kAsItIs,
               Natively<General>(AddToReadOnlyIniFile), nullptr, yes_no, true},
              {L"General.IsF12Hide", 0, Calls(&General::IsF12Hide), nullptr, OneOf({L"False"})},
              {L"General.GetF11Program", 0, Calls(&General::GetF11Program), nullptr,
               OneOf({L"CONTROL.EXE"})},
              {L"General.IsArdExclusive", 0, Calls(&General::IsArdExclusive, L"C:\\Data"), nullptr,
               yes_no},
              {L"General.CreateAccountsShortcut", 0,
               Does<General>(WriteShortcut, {0, L"C:\\Accounts", L"C:\\Host"}), nullptr,
               OneOf({L"", L"C:\\Host\\RunAccounts.lnk"}), true},
              // Three slots, whose names and flags are read; the station of one.
              {L"General.GetNumActiveUsers",
               kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kClose,
               Calls(&General::GetNumActiveUsers), nullptr, OneOf({L"0", L"1", L"2", L"3"})},
              {L"General.GetNumActiveUsersInclDet",
               kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kField + kClose,
               Does<General>(FirstOther, {Output(L"ANN"), Output(L"-")}), nullptr,
               OneOf({L"0,ANN,-", L"1,ANN,-", L"1,BOB,", L"1,BOB,PC2", L"2,BOB,", L"2,BOB,PC2"})},
              {L"General.ShowUserList, every handler", kAsItIs,
               Does<General>(WorkTheUserList, {true}), nullptr, nothing, true},
              {L"Messaging.CheckForLogon, frmUserDetails", kAsItIs,
               Does<Messaging>(LogOnByDialog, {}), nullptr, yes_no, true},
              {L"Messaging.CheckForLogon, Windows account", kAsItIs,
               Does<Messaging>(LogOnByWindows, {true}), nullptr, yes_no, true},
              {L"Messaging.CheckForLogon, frmCompanyPassword", kAsItIs,
               Natively<WithoutUsers>(LogOnByCompanyPassword), nullptr, yes_no, true},
              {L"Messaging.CheckForLogon, Windows account refused", kAsItIs,
               Natively<Messaging>(LogOnByWindowsInVain), nullptr, OneOf({L"False"}), true},
              {L"Messaging.CheckForLogon, held", kAsItIs, Natively<Messaging>(LogOnToHeldData),
               nullptr, OneOf({L"False"}), true},
              // Nobody but Ann, whatever fails.
              // Connect; and Disconnect; in vain, and LastError, its number and text.
              {L"Messaging.LogonUser", 1, LogsOn(L"ANN", kPassword), nullptr, yes_no, true},
              {L"Messaging.LogonUser, not in the table", 2, LogsOn(L"EVE", L""), nullptr,
               OneOf({L"False"}), true},
              {L"Messaging.LogonUser, refused", 4, LogsOn(L"NOBODY", L""), nullptr,
               OneOf({L"False"}), true},
              {L"Messaging.LogoffUser", 1, Calls(&Messaging::LogoffUser), nullptr,
               OneOf({L"True"})},
              {L"Messaging.PoAccess, denied", kOpen + kFind + kFields + kField + kClose,
               Calls(&Messaging::PoAccess, L"EVE"), nullptr, OneOf({L"False"})},
              {L"Messaging.PoAccess", kOpen + kFind + kFields + kField + kClose,
               Calls(&Messaging::PoAccess, L"ANN"), nullptr, yes_no},
              // A name tells how long they are kept; found at once; the right.
              {L"cAccessRights.IsUserAllowedAccess",
               kOpen + kFields + kField + kFind + kFields + kField + kClose,
               Does<AccessRights>(MayOpen, {L"EVE", 3, true}), nullptr, OneOf({L"False"})},
              // Not there; opened anew, each field, its type and blank value, the name, Write.
              {L"cAccessRights.AddUser",
               kOpen + kFind + kClose + kOpen + kFields + kCount + 3 * kAccessFields + kField +
                   kCount + 1 + kClose,
               Calls(&AccessRights::AddUser, L"NEW"), nullptr, yes_no, true},
              // Not found in three ways, then read one after the other.
              {L"cAccessRights.IsValid",
               kOpen + kFields + kField + 3 * kFind + kCount + 3 * (kRead + kFields + kField) +
                   kClose,
               Calls(&AccessRights::IsValid, L"Odd"), nullptr, yes_no},
              {L"cAccessRights.List", kAsItIs, Calls(&AccessRights::List), Confirm,
               SomeReference(L"AEO")},
          };
  return members;
}

std::unique_ptr<simulator::Simulator> MembersCompany() {
  simulator::CompanyBuilder company;
  company
      .Customer(L"ABC001", {{L"NAME", L"ABC Ltd"},
                            {L"CONTACT_NAME", L"Ann"},
                            {L"ADDRESS_1", L"Road 1"},
                            {L"ADDRESS_5", L"Town"},
                            {L"DEL_ADDRESS_1", L"Yard 2"},
                            {L"DEL_ADDRESS_5", L"City"},
                            {L"TELEPHONE", L"0123"},
                            {L"SETTLEMENT_DUE_DAYS", std::int16_t{30}},
                            {L"SETTLEMENT_DISC_RATE", 2.5},
                            {L"DEF_TAX_CODE", std::int16_t{1}},
                            {L"DEPT_NUMBER", std::int16_t{3}},
                            {L"DEF_NOM_CODE", L"4000"},
                            {L"DISCOUNT_RATE", 5.0},
                            {L"DISCOUNT_TYPE", std::int16_t{4}}})
      .Customer(L"VALUE", {{L"DISCOUNT_TYPE", std::int16_t{1}}})
      .Customer(L"BAD001", {{L"DELETED_FLAG", true}})
      .Customer(L"HOLD", {{L"ACCOUNT_ON_HOLD", true}})
      .Customer(L"WORST", {{L"ACCOUNT_ON_HOLD", true},
                           {L"BALANCE", 11.0},
                           {L"CREDIT_LIMIT", 10.0},
                           {L"TERMS_AGREED_FLAG", false}});
  for (const wchar_t* ref : {L"CAD001", L"CAD002", L"TAB001", L"TAB002", L"TAB003"}) {
    company.Customer(ref);
  }
  company
      .Setup({{L"STOCK_QTYDP", std::int16_t{2}},
              {L"STOCK_UNITDP", std::int16_t{0}},
              {L"SALES_AMOUNT_SOLD_2", 10.0},
              {L"SALES_ADD_DISC_2", 4.0},
              {L"ADDRESS_PROMPT_1", L"Street"}})
      .Control({{L"T1_RATE", 17.5}, {L"T1_DESCRIPTION", L"Standard"}})
      .Record(L"StockCategory", {{L"NAME", L"Bolts"}})
      .Record(L"StockCategory", {{L"NAME", L"Nuts"}})
      .Record(L"DepartmentData", {{L"NAME", L"Works"}})
      .Record(L"SopData", {{L"ORDER_NUMBER", 1}, {L"ACCOUNT_REF", L"ABC001"}, {L"NAME", L"First"}})
      .Record(L"SopData", {{L"ORDER_NUMBER", 2}})
      .Record(L"PopData", {{L"ORDER_NUMBER", 7},
                           {L"ACCOUNT_REF", L"SUP001"},
                           {L"ORDER_DATE", Date{45000}},
                           {L"POSTED_CODE", true}})
      .Record(L"PopData", {{L"ORDER_NUMBER", 8}, {L"DELETED_FLAG", true}})
      .Record(L"SalesDeliveryData", {{L"ACCOUNT_REF", L"ABC001"}, {L"ADDRESS_REF", L"1"}})
      .Record(L"SalesDeliveryData", {{L"ACCOUNT_REF", L"WORST"}, {L"ADDRESS_REF", L"1"}})
      .Record(L"PurchaseDeliveryData", {{L"ACCOUNT_REF", L"SUP001"},
                                        {L"ADDRESS_REF", L"1"},
                                        {L"ADDRESS_1", L"Gate 3"},
                                        {L"ADDRESS_5", L"Port"},
                                        {L"CONTACT_NAME", L"Sue"},
                                        {L"DEFAULT_REF", std::uint8_t{1}},
                                        {L"DESCRIPTION", L"Works"},
                                        {L"EMAIL", L"s@x"},
                                        {L"FAX", L"02"},
                                        {L"NAME", L"Supply"},
                                        {L"REFERENCE", L"R7"},
                                        {L"TELEPHONE", L"01"}})
      .Record(L"CompanyDeliveryData", {{L"ADDRESS_REF", L"1"}, {L"DESCRIPTION", L"Yard"}});
  company
      .Supplier(L"SUP001", {{L"NAME", L"Supply"},
                            {L"CONTACT_NAME", L"Sue"},
                            {L"DEF_NOM_CODE", L"5000"},
                            {L"DEF_TAX_CODE", std::int16_t{1}},
                            {L"DEPT_NUMBER", std::int16_t{2}},
                            {L"DISCOUNT_RATE", 2.5}})
      .Supplier(L"WOOD", {{L"BALANCE", 11.0}, {L"CREDIT_LIMIT", 10.0}});
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
                         {L"LAST_PURCHASE_DATE", Date{45000}},
                         {L"DISC_C_LEVEL_3_QTY", 8.0},
                         {L"DISC_C_LEVEL_3_RATE", 2.0},
                         {L"DISC_C_LEVEL_7_QTY", 10.0},
                         {L"DISC_C_LEVEL_7_RATE", 7.5}})
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
  company.Record(L"AccessData", {{L"NAME", L"ANN"}, {L"PASSWORD", kPassword}})
      .Record(L"AccessData", {{L"NAME", L"EVE"}, {L"BANK_RECORD", 1}, {L"POP", 1}})
      .Record(L"AccessData", {{L"NAME", L" Odd"}})
      .Record(L"QueueData", {{L"LOGON_NAME", L"ANN"}, {L"STATION_NAME", L"PC1"}})
      .Record(L"QueueData", {{L"LOGON_NAME", L"OLD"}, {L"EMPTY_FLAG", true}})
      .Record(L"QueueData", {{L"LOGON_NAME", L"BOB"}, {L"STATION_NAME", L"PC2"}});
  return company.Build();
}

const std::vector<std::wstring>& MembersDatabaseCommands() {
  static const std::vector<std::wstring> commands = {
      L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), Description VARCHAR(60))",
      L"INSERT INTO ProdInfoStockFields VALUES ('BOLT', 'Best')",
      L"INSERT INTO ProdInfoStockFields VALUES ('NUT', 'Better')",
      L"INSERT INTO ProdInfoStockFields VALUES ('NAIL', 'Brass')",
      L"CREATE TABLE AccessRights (ID INTEGER, UserName VARCHAR(30))",
      L"INSERT INTO AccessRights VALUES (1, 'ANN')",
      L"CREATE TABLE CurrentUsers (ID INTEGER, Product VARCHAR(30), UserName VARCHAR(30), "
      L"UniqueID VARCHAR(30))"};
  return commands;
}

std::shared_ptr<host_database::OdbcConnection> MembersDatabase() {
  const auto database = std::make_shared<host_database::OdbcConnection>(kMembersConnection);
  for (const std::wstring& command : MembersDatabaseCommands()) database->Execute(command);
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
