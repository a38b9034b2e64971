#include "console/classes.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

#include "frame/text.h"

namespace ard::console {
namespace {

constexpr std::wstring_view kAppName = L"Manufacturing";
constexpr std::wstring_view kRegistryPath = L"Manufacturing Demo";

// What a parameter is kept in for the time of a call.
template <class Parameter>
using Kept = std::conditional_t<std::is_same_v<Parameter, std::wstring_view>, std::wstring,
                                std::decay_t<Parameter>>;

// A parameter by reference is an output: it starts blank, and is no argument.
template <class Parameter>
inline constexpr bool kIsOutput =
    std::is_lvalue_reference_v<Parameter> && !std::is_const_v<std::remove_reference_t<Parameter>>;

// Calls `call`, which has the signature `Result(Parameters...)`.
template <class Call, class Result, class... Parameters, std::size_t... Index>
std::vector<Answer> CallWith(const Call& call, std::type_identity<Result(Parameters...)>,
                             Arguments& arguments, const std::vector<std::wstring_view>& outputs,
                             std::index_sequence<Index...>) {
  std::tuple<Kept<Parameters>...> kept{};
  std::size_t next = 0;
  [[maybe_unused]] const auto load = [&]<class Parameter>(auto& place,
                                                          std::type_identity<Parameter>) {
    if constexpr (!kIsOutput<Parameter>) Convert(std::move(arguments[next++]), place);
  };
  (load(std::get<Index>(kept), std::type_identity<Parameters>()), ...);

  std::vector<Answer> answers;
  if constexpr (std::is_void_v<Result>) {
    call(std::get<Index>(kept)...);
  } else {
    answers.push_back({{}, Value(call(std::get<Index>(kept)...))});
  }
  next = 0;
  [[maybe_unused]] const auto take = [&]<class Parameter>(auto& place,
                                                          std::type_identity<Parameter>) {
    if constexpr (kIsOutput<Parameter>) answers.push_back({outputs[next++], Value(place)});
  };
  (take(std::get<Index>(kept), std::type_identity<Parameters>()), ...);
  return answers;
}

// A member made of `call`. `defaults` are those of the last parameters; `outputs` the names of the
// parameters by reference.
template <class Call, class Result, class... Parameters>
Member Make(std::wstring_view class_name, std::wstring_view name, Call call,
            std::type_identity<Result(Parameters...)> signature,
            std::vector<std::wstring_view> parameters, std::vector<Value> defaults,
            std::vector<std::wstring_view> outputs) {
  return {class_name, name, std::move(parameters), std::move(defaults),
          [call, signature, outputs = std::move(outputs)](Arguments& arguments) {
            return CallWith(call, signature, arguments, outputs,
                            std::index_sequence_for<Parameters...>());
          }};
}

// A member made of a method.
template <class Object, class Class, class Result, class... Parameters>
Member Method(Object& object, std::wstring_view name,
              Result (Class::*method)(Parameters...) const noexcept,
              std::vector<std::wstring_view> parameters, std::vector<Value> defaults = {},
              std::vector<std::wstring_view> outputs = {}) {
  const auto call = [&object, method](auto&... arguments) {
    return (object.*method)(arguments...);
  };
  return Make(object.name(), name, call, std::type_identity<Result(Parameters...)>(),
              std::move(parameters), std::move(defaults), std::move(outputs));
}
template <class Object, class Class, class Result, class... Parameters>
Member Method(Object& object, std::wstring_view name,
              Result (Class::*method)(Parameters...) noexcept,
              std::vector<std::wstring_view> parameters, std::vector<Value> defaults = {}) {
  const auto call = [&object, method](auto&... arguments) {
    return (object.*method)(arguments...);
  };
  return Make(object.name(), name, call, std::type_identity<Result(Parameters...)>(),
              std::move(parameters), std::move(defaults), {});
}

// A member that gives out and takes a variable.
template <class T>
Member Property(PublicClass& object, std::wstring_view name, T& variable) {
  return {object.name(),
          name,
          {},
          {},
          [&variable](Arguments&) {
            return std::vector<Answer>{{{}, Value(variable)}};
          },
          [&variable](Value value) { Convert(std::move(value), variable); }};
}

// A member that fills an array: it takes the bounds, and answers with the elements.
template <class Object>
Member ArrayMethod(Object& object, std::wstring_view name,
                   void (Object::*method)(TextArray) const noexcept) {
  return {
      object.name(),
      name,
      {L"LowerBound", L"UpperBound"},
      {},
      [&object, method](Arguments& arguments) {
        const std::int32_t lower = arguments[0].ToInteger();
        const std::int32_t upper = arguments[1].ToInteger();
        std::vector<std::wstring> texts(static_cast<std::size_t>(std::max(upper - lower + 1, 0)));
        (object.*method)({lower, texts});
        std::vector<Answer> answers;
        for (std::wstring& text : texts) answers.push_back({{}, Value(std::move(text))});
        return answers;
      }};
}

}  // namespace

Classes::Classes(Environment& environment, const Stores& stores)
    : customers_(environment),
      products_(environment),
      general_(environment),
      messaging_(environment),
      access_rights_(environment),
      suppliers_(environment),
      nominal_(environment),
      bank_(environment),
      customer_record_(environment),
      supplier_record_(environment),
      sales_orders_(environment),
      purchase_orders_(environment),
      delivery_address_(environment) {
  AddContext(customers_, stores);
  AddCustomers();
  AddContext(products_, stores);
  AddProducts();
  for (PublicClass* const object : std::initializer_list<PublicClass*>{
           &suppliers_, &nominal_, &bank_, &sales_orders_, &purchase_orders_, &delivery_address_}) {
    AddContext(*object, stores);
  }
  AddLedgers();
  AddRecord(customer_record_, stores);
  AddRecord(supplier_record_, stores);
  AddOrders();
  AddDeliveryAddress();
  AddContext(general_, stores);
  AddCompanySettings();
  AddAccountsProgram();
  AddCurrentUsers();
  AddContext(messaging_, stores);
  AddMessaging(stores);
  AddContext(access_rights_, stores);
  AddAccessRights();
}

void Classes::AddContext(PublicClass& object, const Stores& stores) {
  Context& context = object.context();
  context.app_name = kAppName;
  context.registry_path = kRegistryPath;
  context.workspace = stores.workspace;
  context.database = stores.database;
  context.engine = stores.engine;
  members_.push_back(Property(object, L"AppName", context.app_name));
  if (&object == &access_rights_) return;  // it has no settings
  members_.push_back(Property(object, L"RegistryPath", context.registry_path));
}

void Classes::AddCustomers() {
  using accounts::Customers;
  const auto add = [&](auto... member) { members_.push_back(Method(customers_, member...)); };
  using Names = std::vector<std::wstring_view>;
  add(L"IsValid", &Customers::IsValid, Names{L"AccRef"});
  add(L"GetName", &Customers::GetName, Names{L"AccRef"});
  add(L"GetContact", &Customers::GetContact, Names{L"AccRef"});
  add(L"FastList", &Customers::FastList, Names{});
  add(L"List", &Customers::List, Names{L"SearchCriteria"});
  const Names line = {L"AccRef", L"ProdCode", L"Qty", L"UnitPrice"};
  add(L"GetDiscPercent", &Customers::GetDiscPercent, line);
  Names shown = line;
  shown.insert(shown.end(), {L"DiscOnScreen", L"QtyDP"});
  add(L"ShowDiscBDown", &Customers::ShowDiscBDown, shown);
}

void Classes::AddLedgers() {
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto& object, auto... member) {
    members_.push_back(Method(object, member...));
  };
  const Names account = {L"AccRef"};
  const Names criteria = {L"SearchCriteria"};
  using accounts::Suppliers;
  add(suppliers_, L"IsValid", &Suppliers::IsValid, account);
  add(suppliers_, L"GetName", &Suppliers::GetName, account);
  add(suppliers_, L"GetDiscPercent", &Suppliers::GetDiscPercent, account);
  add(suppliers_, L"FastList", &Suppliers::FastList, Names{});
  add(suppliers_, L"List", &Suppliers::List, criteria);
  using accounts::Nominal;
  add(nominal_, L"IsValid", &Nominal::IsValid, account);
  add(nominal_, L"FastList", &Nominal::FastList, Names{});
  add(nominal_, L"List", &Nominal::List, criteria);
  using accounts::Bank;
  add(bank_, L"IsValid", &Bank::IsValid, account);
  add(bank_, L"FastList", &Bank::FastList, Names{});
  add(bank_, L"List", &Bank::List, criteria);
}

template <class Record>
void Classes::AddRecord(Record& record, const Stores& stores) {
  record.context().workspace = stores.workspace;
  members_.push_back(
      Method(record, L"Read", &Record::Read, std::vector<std::wstring_view>{L"AccRef"}));
  for (const auto& property : record.properties()) {
    std::visit(
        [&](auto member) {
          members_.push_back(Property(record, property.name, record.details().*member));
        },
        property.member);
  }
}

void Classes::AddOrders() {
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto& object, auto... member) {
    members_.push_back(Method(object, member...));
  };
  using orders::SalesOrders;
  add(sales_orders_, L"GetAccName", &SalesOrders::GetAccName, Names{L"SoNumber"});
  add(sales_orders_, L"GetAccRef", &SalesOrders::GetAccRef, Names{L"SoNumber"});
  add(sales_orders_, L"List", &SalesOrders::List, Names{});
  add(sales_orders_, L"FastList", &SalesOrders::FastList, Names{});
  using orders::PurchaseOrders;
  add(purchase_orders_, L"GetAccRef", &PurchaseOrders::GetAccRef, Names{L"PoNumber"});
  add(purchase_orders_, L"GetOrderDate", &PurchaseOrders::GetOrderDate, Names{L"PoNumber"});
  add(purchase_orders_, L"List", &PurchaseOrders::List, Names{});
  add(purchase_orders_, L"FastList", &PurchaseOrders::FastList, Names{});
  add(purchase_orders_, L"IsValid", &PurchaseOrders::IsValid, Names{L"OrderNo", L"ExclPosted"});
}

void Classes::AddDeliveryAddress() {
  using addresses::DelAddType;
  members_.push_back({delivery_address_.name(),
                      L"GetAddress",
                      {L"AccRef", L"AccName", L"DelType"},
                      {Value(L" "), Value(L" "), Value(0)},
                      [&](Arguments& arguments) {
                        const auto type = static_cast<DelAddType>(arguments[2].ToLong());
                        return std::vector<Answer>{
                            {{},
                             Value(delivery_address_.GetAddress(arguments[0].ToText(),
                                                                arguments[1].ToText(), type))}};
                      }});
  for (const auto& property : dialogs::AddressProperties()) {
    const auto member = std::get<std::wstring dialogs::Address::*>(property.member);
    members_.push_back(
        {delivery_address_.name(), property.name, {}, {}, [&, member](Arguments&) {
           return std::vector<Answer>{{{}, Value(delivery_address_.Get(property.name, member))}};
         }});
  }
}

void Classes::AddCompanySettings() {
  using settings::General;
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto... member) { members_.push_back(Method(general_, member...)); };
  members_.push_back(ArrayMethod(general_, L"GetCategories", &General::GetCategories));
  members_.push_back(ArrayMethod(general_, L"GetDepartments", &General::GetDepartments));
  add(L"GetDPSettings", &General::GetDPSettings, Names{}, std::vector<Value>{},
      Names{L"iQtyDP", L"iUnitDP", L"szQtyFormat", L"szUnitFormat"});
  members_.push_back(ArrayMethod(general_, L"GetTaxCodes", &General::GetTaxCodes));
  add(L"GetVatRate", &General::GetVatRate, Names{L"VatCode"});
  add(L"GetVatDesc", &General::GetVatDesc, Names{L"iVatCode"});
}

void Classes::AddProducts() {
  using products::Products;
  using Names = std::vector<std::wstring_view>;
  using Defaults = std::vector<Value>;
  const auto add = [&](auto... member) { members_.push_back(Method(products_, member...)); };
  const Names code = {L"ProdCode"};
  const Names code_and_account = {L"ProdCode", L"AccRef"};
  add(L"GetDesc", &Products::GetDesc, Names{L"ProductRef"});
  add(L"GetDept", &Products::GetDept, code);
  add(L"GetCategory", &Products::GetCategory, code);
  add(L"GetBinLocation", &Products::GetBinLocation, code);
  add(L"GetSupplier", &Products::GetSupplier, code);
  add(L"GetSupplierPart", &Products::GetSupplierPart, code);
  add(L"GetUnitSale", &Products::GetUnitSale, code);
  add(L"GetInStock", &Products::GetInStock, code);
  add(L"GetReOrderLevel", &Products::GetReOrderLevel, code);
  add(L"GetReOrderQty", &Products::GetReOrderQty, code);
  add(L"GetLastPurDate", &Products::GetLastPurDate, code);
  add(L"IgnoreStock", &Products::IgnoreStock, code);
  add(L"GetFreeStock", &Products::GetFreeStock, code);
  add(L"GetAllocOnOrder", &Products::GetAllocOnOrder, code, Defaults{},
      Names{L"Allocated", L"OnOrder"});
  add(L"GetSupplierOnOrder", &Products::GetSupplierOnOrder, code, Defaults{},
      Names{L"Supplier", L"OnOrder", L"MinReOrder"});
  add(L"IsMemberOfCategory", &Products::IsMemberOfCategory, Names{L"ProdCode", L"CatRecNo"});
  add(L"IsValid", &Products::IsValid, Names{L"ProdRef"});
  members_.push_back({products_.name(),
                      L"ShowSpecialProds",
                      {},
                      {},
                      [&](Arguments&) {
                        return std::vector<Answer>{{{}, Value(products_.ShowSpecialProds())}};
                      },
                      [&](Value value) { products_.SetShowSpecialProds(value.ToBoolean()); }});
  add(L"GetSellPrice", &Products::GetSellPrice, code);
  add(L"GetCostPrice", &Products::GetCostPrice, Names{L"ProdCode", L"UseAverage"});
  // The stock record that a host would hand in is here the one of a stock code.
  members_.push_back(
      {products_.name(), L"GetAveragePrice", {L"ProdHeader"}, {}, [&](Arguments& arguments) {
         auto record = products_.context().workspace->CreateRecord(L"StockRecord");
         record->GetFields()->Item(L"STOCK_CODE")->SetValue(arguments[0]);
         record->Find(engine::Match::kExact);
         return std::vector<Answer>{{{}, Value(products_.GetAveragePrice(std::move(record)))}};
       }});
  add(L"GetSpecialPrice", &Products::GetSpecialPrice, code_and_account);
  add(L"GetSupplierPrice", &Products::GetSupplierPrice, code_and_account);
  add(L"FastList", &Products::FastList, Names{L"bProdInfo"}, Defaults{true});
  add(L"List", &Products::List, Names{L"SearchCriteria", L"bProdInfo"}, Defaults{true});
  add(L"ListMultipleSelect", &Products::ListMultipleSelect, Names{L"SearchCriteria"});
  add(L"CreateNewProduct", &Products::CreateNewProduct, Names{L"ProdCode", L"ProdDesc"},
      Defaults{L""});
  add(L"SaveNewProduct", &Products::SaveNewProduct, code);
  add(L"CopyProduct", &Products::CopyProduct, Names{L"ExistProd", L"NewCode", L"NewDesc"});
  add(L"UpdateAllocQty", &Products::UpdateAllocQty, Names{L"ProdCode", L"Qty"});
}

void Classes::AddAccountsProgram() {
  using settings::General;
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto... member) { members_.push_back(Method(general_, member...)); };
  // Check items are separated by semicolons.
  members_.push_back({general_.name(),
                      L"AddEntryToIniFile",
                      {L"asCheckItems", L"sLongPath", L"sNarrative", L"sBitmap", L"sExeName"},
                      {},
                      [&](Arguments& arguments) {
                        std::vector<std::wstring> texts;
                        for (const Value& argument : arguments) texts.push_back(argument.ToText());
                        std::vector<std::wstring> items(1);
                        for (const wchar_t c : texts[0]) {
                          if (c == L';') {
                            items.emplace_back();
                          } else {
                            items.back() += c;
                          }
                        }
                        return std::vector<Answer>{
                            {{},
                             Value(general_.AddEntryToIniFile({0, items}, texts[1], texts[2],
                                                              texts[3], texts[4]))}};
                      }});
  add(L"IsF12Hide", &General::IsF12Hide, Names{});
  add(L"GetF11Program", &General::GetF11Program, Names{});
  add(L"IsArdExclusive", &General::IsArdExclusive, Names{L"Path"});
  add(L"CreateAccountsShortcut", &General::CreateAccountsShortcut,
      Names{L"lhWnd", L"AcctsProgPath", L"ManufProgPath", L"AccountsVersion"},
      std::vector<Value>{std::int16_t{12}});
}

void Classes::AddCurrentUsers() {
  using settings::General;
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto... member) { members_.push_back(Method(general_, member...)); };
  add(L"GetNumActiveUsers", &General::GetNumActiveUsers, Names{});
  // The name is what the output starts as.
  members_.push_back(
      {general_.name(), L"GetNumActiveUsersInclDet", {L"sUserName"}, {}, [&](Arguments& arguments) {
         std::wstring user = arguments[0].ToText();
         std::wstring machine;
         const Value count = general_.GetNumActiveUsersInclDet(user, machine);
         return std::vector<Answer>{
             {{}, count}, {L"sUserName", Value(user)}, {L"sMachName", Value(machine)}};
       }});
  add(L"ShowUserList", &General::ShowUserList, Names{L"bManager"});
}

void Classes::AddMessaging(const Stores& stores) {
  using users::Messaging;
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto... member) { members_.push_back(Method(messaging_, member...)); };
  users::Session& session = messaging_.session();
  session.ard_data_path = stores.data_path;
  const std::pair<std::wstring_view, std::wstring*> texts[] = {
      {L"ArdDataPath", &session.ard_data_path}, {L"UserLogged", &session.user_logged},
      {L"PassLogged", &session.pass_logged},    {L"UniqueID", &session.unique_id},
      {L"ProgPath", &session.prog_path},        {L"CompanyName", &session.company_name},
  };
  for (const auto& [name, text] : texts) members_.push_back(Property(messaging_, name, *text));
  members_.push_back(Property(messaging_, L"UseAccRights", session.use_acc_rights));
  add(L"CheckForLogon", &Messaging::CheckForLogon, Names{L"bCheckNtAccount"},
      std::vector<Value>{false});
  add(L"LogonUser", &Messaging::LogonUser, Names{L"UserName", L"Password"});
  add(L"LogoffUser", &Messaging::LogoffUser, Names{});
  add(L"CheckUserAccess", &Messaging::CheckUserAccess, Names{});
  add(L"GetPassword", &Messaging::GetPassword, Names{});
  add(L"PoAccess", &Messaging::PoAccess, Names{L"sUserName"});
}

void Classes::AddAccessRights() {
  using users::AccessRights;
  using Names = std::vector<std::wstring_view>;
  const auto add = [&](auto... member) { members_.push_back(Method(access_rights_, member...)); };
  members_.push_back({access_rights_.name(),
                      L"IsUserAllowedAccess",
                      {L"sUserName", L"iOption", L"bDisplayMessage"},
                      {Value(false)},
                      [&](Arguments& arguments) {
                        const auto option = static_cast<users::Access>(arguments[1].ToLong());
                        return std::vector<Answer>{
                            {{},
                             Value(access_rights_.IsUserAllowedAccess(arguments[0].ToText(), option,
                                                                      arguments[2].ToBoolean()))}};
                      }});
  add(L"AddUser", &AccessRights::AddUser, Names{L"UserName"});
  add(L"IsValid", &AccessRights::IsValid, Names{L"UserName"});
  add(L"List", &AccessRights::List, Names{});
}

}  // namespace ard::console
