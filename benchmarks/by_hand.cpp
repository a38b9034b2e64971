#include "benchmarks/by_hand.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <iterator>
#include <memory>
#include <string>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::benchmarks {
namespace {

using namespace std::string_view_literals;

std::unique_ptr<engine::RecordObject> FindByHand(engine::Workspace& workspace,
                                                 std::wstring_view name, std::wstring_view field,
                                                 std::wstring_view key) {
  std::unique_ptr<engine::RecordObject> record = workspace.CreateRecord(name);
  record->GetFields()->Item(field)->SetValue(key);
  if (!record->Find(engine::Match::kExact)) throw Error(kErrorFailed, L"not found");
  return record;
}

double NumberOf(engine::Fields& fields, std::wstring_view field) {
  return fields.Item(field)->GetValue().ToDouble();
}

double KeyedReadByHand(engine::Workspace& workspace) {
  const auto account = FindByHand(workspace, L"SalesRecord"sv, L"ACCOUNT_REF"sv, L"ABC001"sv);
  return static_cast<double>(
      Trimmed(account->GetFields()->Item(L"NAME"sv)->GetValue().ToText()).size());
}

// A field's name, as a template argument.
template <std::size_t n>
struct FieldName {
  consteval FieldName(const wchar_t (&literal)[n]) { std::copy_n(literal, n, text); }
  constexpr std::wstring_view view() const { return {text, n - 1}; }
  wchar_t text[n];
};
template <FieldName field>
double Number(engine::Fields& product) {
  return NumberOf(product, field.view());
}
template <FieldName field>
double Text(engine::Fields& product) {
  return static_cast<double>(product.Item(field.view())->GetValue().ToText().size());
}
double Description(engine::Fields& product) {
  const std::wstring text = product.Item(L"DESCRIPTION"sv)->GetValue().ToText();
  return static_cast<double>(Trimmed(text).size());
}

// What the index finds, and the sum of what is read of it.
template <double (*... read)(engine::Fields& product)>
double LookUpByHand(engine::Workspace& workspace) {
  const auto index = workspace.CreateIndex(L"StockIndex"sv);
  const auto data = workspace.CreateDataFile(L"StockData"sv);
  double answer = 0;
  index->Open(engine::Mode::kQuery);
  data->Open(engine::Mode::kQuery);
  index->SetKey(L"BOLT"sv);
  if (index->Find(engine::Match::kExact) && data->Read(index->RecordNumber())) {
    const auto product = data->GetFields();
    answer = (... + read(*product));
  }
  index->Close();
  data->Close();
  return answer;
}

template <std::size_t kLines>
double NamesByHand(engine::Workspace& workspace, std::wstring_view data_file) {
  static std::array<std::wstring, kLines> lines;
  const auto data = workspace.CreateDataFile(data_file);
  data->Open(engine::Mode::kQuery);
  std::size_t length = 0;
  for (std::size_t n = 0; n < kLines; ++n) {
    data->Read(static_cast<std::int32_t>(n));
    const std::wstring name = data->GetFields()->Item(L"NAME"sv)->GetValue().ToText();
    lines[n] = std::to_wstring(n) + L"   " + std::wstring(Trimmed(name));
    length += lines[n].size();
  }
  data->Close();
  return static_cast<double>(length);
}
double CategoriesByHand(engine::Workspace& workspace) {
  return NamesByHand<4>(workspace, L"StockCategory"sv);
}
double DepartmentsByHand(engine::Workspace& workspace) {
  return NamesByHand<2>(workspace, L"DepartmentData"sv);
}

double TaxCodesByHand(engine::Workspace& workspace) {
  static std::array<std::wstring, 12> lines;
  const auto control = workspace.CreateDataFile(L"ControlData"sv);
  control->Open(engine::Mode::kQuery);
  control->Read(1);
  const auto fields = control->GetFields();
  std::size_t length = 0;
  for (std::size_t n = 0; n < lines.size(); ++n) {
    const std::wstring label = L"T" + std::to_wstring(n);
    wchar_t rate[40];
    std::swprintf(rate, std::size(rate), L"%.2f", NumberOf(*fields, label + L"_RATE"));
    lines[n] = label + (n < 10 ? L"   " : L" ") + rate;
    length += lines[n].size();
  }
  control->Close();
  return static_cast<double>(length);
}

double FirstOtherByHand(engine::Workspace& workspace) {
  std::wstring user = L"ANN";
  std::wstring machine;
  const auto queue = workspace.CreateDataFile(L"QueueData"sv);
  queue->Open(engine::Mode::kRead);
  const std::int32_t slots = queue->Count();
  std::size_t users = 0;
  for (std::int32_t slot = 1; slot <= slots; ++slot) {
    if (!queue->Read(slot)) continue;
    const auto fields = queue->GetFields();
    const std::wstring name = fields->Item(L"LOGON_NAME"sv)->GetValue().ToText();
    if (Trimmed(name).empty()) continue;
    if (fields->Item(L"EMPTY_FLAG"sv)->GetValue().ToBoolean()) continue;
    ++users;
    if (!machine.empty() || Trimmed(name) == user) continue;
    user = Trimmed(name);
    machine = Trimmed(fields->Item(L"STATION_NAME"sv)->GetValue().ToText());
  }
  queue->Close();
  return static_cast<double>(users + user.size() + machine.size());
}

double WalkByHand(engine::Workspace& workspace) {
  const auto queue = workspace.CreateDataFile(L"QueueData"sv);
  queue->Open(engine::Mode::kRead);
  const std::int32_t slots = queue->Count();
  int users = 0;
  for (std::int32_t slot = 1; slot <= slots; ++slot) {
    if (!queue->Read(slot)) continue;
    const auto fields = queue->GetFields();
    const std::wstring name = fields->Item(L"LOGON_NAME"sv)->GetValue().ToText();
    if (Trimmed(name).empty()) continue;
    users += !fields->Item(L"EMPTY_FLAG"sv)->GetValue().ToBoolean();
  }
  queue->Close();
  return users;
}

double DiscountByHand(engine::Workspace& workspace) {
  double percentage = 0;
  std::int32_t type = 0;
  {
    const auto account = FindByHand(workspace, L"SalesRecord"sv, L"ACCOUNT_REF"sv, L"ABC001"sv);
    const auto fields = account->GetFields();
    percentage = NumberOf(*fields, L"DISCOUNT_RATE"sv);
    type = fields->Item(L"DISCOUNT_TYPE"sv)->GetValue().ToLong();
  }
  if (type != 4) return percentage;
  const auto product = FindByHand(workspace, L"StockRecord"sv, L"STOCK_CODE"sv, L"BOLT"sv);
  const auto fields = product->GetFields();
  constexpr std::wstring_view kLevels[][2] = {
      {L"DISC_C_LEVEL_10_QTY", L"DISC_C_LEVEL_10_RATE"},
      {L"DISC_C_LEVEL_9_QTY", L"DISC_C_LEVEL_9_RATE"},
      {L"DISC_C_LEVEL_8_QTY", L"DISC_C_LEVEL_8_RATE"},
      {L"DISC_C_LEVEL_7_QTY", L"DISC_C_LEVEL_7_RATE"},  // it is the one reached
  };
  for (const auto& [quantity, rate] : kLevels) {
    const double threshold = NumberOf(*fields, quantity);
    if (threshold > 0 && 10.0 >= threshold) return percentage + NumberOf(*fields, rate);
  }
  return percentage;
}

double PriceByHand(engine::Workspace& workspace) {
  if (workspace.CreatePricing()) return 0;
  const auto stock = FindByHand(workspace, L"StockRecord"sv, L"STOCK_CODE"sv, L"BOLT"sv);
  const auto prices = stock->GetFields();
  const double selling = NumberOf(*prices, L"SALES_PRICE"sv);
  const double cost = NumberOf(*prices, L"LAST_PURCHASE_PRICE"sv);
  const auto entry = workspace.CreateRecord(L"PriceRecord"sv);
  const auto customer = workspace.CreateRecord(L"SalesRecord"sv);
  do {
    const auto fields = entry->GetFields();
    const auto text = [](engine::Fields& of, std::wstring_view field) {
      return of.Item(field)->GetValue().ToText();
    };
    if (Trimmed(text(*fields, L"Stock_Code"sv)) != L"BOLT"sv) continue;
    const bool for_one = fields->Item(L"Type"sv)->GetValue().ToLong() == 83;
    std::wstring wanted(L"ABC001"sv);
    if (!for_one) {
      customer->GetFields()->Item(L"ACCOUNT_REF"sv)->SetValue(L"ABC001"sv);
      if (!customer->Find(engine::Match::kExact)) continue;
      wanted = text(*customer->GetFields(), L"Price_List_Ref"sv);
    }
    if (Trimmed(text(*fields, L"Ext_Ref"sv)) != Trimmed(wanted)) continue;
    const std::int32_t type = fields->Item(L"Discount_Type"sv)->GetValue().ToLong();
    const double value = NumberOf(*fields, L"Value"sv);
    return type == 2 ? selling - selling / 100 * value : cost;
  } while (entry->MoveNext());
  return selling;
}

double AccessByHand(engine::Workspace& workspace) {
  const auto access = workspace.CreateDataFile(L"AccessData"sv);
  access->Open(engine::Mode::kRead);
  std::wstring name(L"EVE");
  const auto width = access->GetFields()->Item(L"NAME"sv)->GetValue().ToText().size();
  std::transform(name.begin(), name.end(), name.begin(), std::towupper);
  name.resize(std::max(width, name.size()), L' ');
  std::int32_t right = 1;
  if (access->FindFirst(L"NAME"sv, name)) {
    right = access->GetFields()->Item(L"BANK_RECORD"sv)->GetValue().ToLong();
  }
  access->Close();
  return right;
}

using enum SequenceByHand::Kind;

constexpr SequenceByHand kSequences[] = {
    {L"Customers.GetName", KeyedReadByHand, 7},
    {L"General.GetNumActiveUsers", WalkByHand, 2},
    {L"Customers.GetDiscPercent, table", DiscountByHand, 12.5},
    {L"Products.GetSpecialPrice", PriceByHand, 45},
    {L"General.GetCategories", CategoriesByHand, 34, kMakesTexts},
    {L"General.GetDepartments", DepartmentsByHand, 18, kMakesTexts},
    {L"General.GetTaxCodes", TaxCodesByHand, 107, kMakesTexts},
    {L"General.GetNumActiveUsersInclDet", FirstOtherByHand, 8, kMakesTexts},
    {L"cAccessRights.IsUserAllowedAccess", AccessByHand, 1, kMakesTexts},
    {L"Products.GetDesc", LookUpByHand<Description>, 4, kLooksUp},
    {L"Products.GetDept", LookUpByHand<Number<L"DEPT_NUMBER">>, 3, kLooksUp},
    {L"Products.GetCategory", LookUpByHand<Number<L"STOCK_CAT">>, 7, kLooksUp},
    {L"Products.GetBinLocation", LookUpByHand<Text<L"LOCATION">>, 16, kLooksUp},
    {L"Products.GetSupplier", LookUpByHand<Text<L"PURCHASE_REF">>, 8, kLooksUp},
    {L"Products.GetSupplierPart", LookUpByHand<Text<L"SUPPLIER_PART_NUMBER">>, 30, kLooksUp},
    {L"Products.GetUnitSale", LookUpByHand<Text<L"UNIT_OF_SALE">>, 8, kLooksUp},
    {L"Products.GetInStock", LookUpByHand<Number<L"QTY_IN_STOCK">>, 5, kLooksUp},
    {L"Products.GetReOrderLevel", LookUpByHand<Number<L"QTY_REORDER_LEVEL">>, 4, kLooksUp},
    {L"Products.GetReOrderQty", LookUpByHand<Number<L"QTY_REORDER">>, 20, kLooksUp},
    {L"Products.GetLastPurDate", LookUpByHand<Number<L"LAST_PURCHASE_DATE">>, 45000, kLooksUp},
    {L"Products.GetSellPrice", LookUpByHand<Number<L"SALES_PRICE">>, 50, kLooksUp},
    {L"Products.IsMemberOfCategory", LookUpByHand<Number<L"STOCK_CAT">>, 7, kLooksUp},
    {L"Products.GetFreeStock", LookUpByHand<Number<L"QTY_IN_STOCK">, Number<L"QTY_ALLOCATED">>, 12,
     kLooksUp},
    {L"Products.GetAllocOnOrder", LookUpByHand<Number<L"QTY_ALLOCATED">, Number<L"QTY_ON_ORDER">>,
     9.5, kLooksUp},
    {L"Products.GetSupplierOnOrder",
     LookUpByHand<Text<L"PURCHASE_REF">, Number<L"QTY_ON_ORDER">, Number<L"QTY_REORDER">>, 30.5,
     kLooksUp}};

}  // namespace

std::span<const SequenceByHand> SequencesByHand() { return kSequences; }

}  // namespace ard::benchmarks
