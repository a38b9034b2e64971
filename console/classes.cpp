#include "console/classes.h"

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

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

template <class Class, class Result, class... Parameters, std::size_t... Index>
std::vector<Answer> CallWith(Class& object, Result (Class::*method)(Parameters...) const noexcept,
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
    (object.*method)(std::get<Index>(kept)...);
  } else {
    answers.push_back({{}, Value((object.*method)(std::get<Index>(kept)...))});
  }
  next = 0;
  [[maybe_unused]] const auto take = [&]<class Parameter>(auto& place,
                                                          std::type_identity<Parameter>) {
    if constexpr (kIsOutput<Parameter>) answers.push_back({outputs[next++], Value(place)});
  };
  (take(std::get<Index>(kept), std::type_identity<Parameters>()), ...);
  return answers;
}

// A member made of a method. `defaults` are those of the last parameters; `outputs` the names of
// the parameters by reference.
template <class Class, class Result, class... Parameters>
Member Method(Class& object, std::wstring_view name,
              Result (Class::*method)(Parameters...) const noexcept,
              std::vector<std::wstring_view> parameters, std::vector<Value> defaults = {},
              std::vector<std::wstring_view> outputs = {}) {
  return {object.name(), name, std::move(parameters), std::move(defaults),
          [&object, method, outputs = std::move(outputs)](Arguments& arguments) {
            return CallWith(object, method, arguments, outputs,
                            std::index_sequence_for<Parameters...>());
          }};
}

}  // namespace

Classes::Classes(Environment& environment, const Stores& stores)
    : customers_(environment), products_(environment) {
  AddContext(customers_, stores);
  AddCustomers();
  AddContext(products_, stores);
  AddProducts();
}

void Classes::AddContext(PublicClass& object, const Stores& stores) {
  Context& context = object.context();
  context.app_name = kAppName;
  context.registry_path = kRegistryPath;
  context.workspace = stores.workspace;
  context.database = stores.database;
  const auto add = [&](std::wstring_view name, std::wstring& text) {
    members_.push_back({object.name(),
                        name,
                        {},
                        {},
                        [&text](Arguments&) {
                          return std::vector<Answer>{{{}, Value(text)}};
                        },
                        [&text](Value value) { Convert(std::move(value), text); }});
  };
  add(L"AppName", context.app_name);
  add(L"RegistryPath", context.registry_path);
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

}  // namespace ard::console
