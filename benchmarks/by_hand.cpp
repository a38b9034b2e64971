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

#include "frame/text.h"

namespace ard::benchmarks {
namespace {

using namespace std::string_view_literals;

std::unique_ptr<engine::RecordObject> FindByHand(engine::Workspace& workspace,
                                                 std::wstring_view name, std::wstring_view field,
                                                 const Value& key) {
  std::unique_ptr<engine::RecordObject> record = workspace.CreateRecord(name);
  record->GetFields()->Item(field)->SetValue(key);
  return record->Find(engine::Match::kExact) ? std::move(record) : nullptr;
}

double NumberOf(engine::Fields& fields, std::wstring_view field) {
  return fields.Item(field)->GetValue().ToDouble();
}

// A name, as a template argument.
template <std::size_t n>
struct FixedName {
  consteval FixedName(const wchar_t (&literal)[n]) { std::copy_n(literal, n, text); }
  constexpr std::wstring_view view() const { return {text, n - 1}; }
  wchar_t text[n];
};

// What is read of a record: a number, or the length of a text.
template <FixedName field>
double Number(engine::Fields& record) {
  return NumberOf(record, field.view());
}
template <FixedName field>
double Flag(engine::Fields& record) {
  return record.Item(field.view())->GetValue().ToBoolean();
}
template <FixedName field>
double Text(engine::Fields& record) {
  return static_cast<double>(record.Item(field.view())->GetValue().ToText().size());
}
template <FixedName field>
double TrimmedText(engine::Fields& record) {
  const std::wstring text = record.Item(field.view())->GetValue().ToText();
  return static_cast<double>(Trimmed(text).size());
}
using Reading = double(engine::Fields& record);

// The sum of what is read of the record with that key; 1 where nothing is.
template <FixedName name, FixedName field, Reading*... read>
double KeyedReadByHand(engine::Workspace& workspace, const auto& key) {
  const auto record = FindByHand(workspace, name.view(), field.view(), key);
  if (!record) return 0;
  if constexpr (sizeof...(read) == 0) return 1;
  const auto fields = record->GetFields();
  return (0. + ... + read(*fields));
}

// The same through an index.
template <Reading*... read>
double LookUpByHand(engine::Workspace& workspace, std::wstring_view stock_code) {
  const auto index = workspace.CreateIndex(L"StockIndex"sv);
  const auto data = workspace.CreateDataFile(L"StockData"sv);
  double answer = 0;
  index->Open(engine::Mode::kQuery);
  data->Open(engine::Mode::kQuery);
  index->SetKey(stock_code);
  if (index->Find(engine::Match::kExact)) {
    if constexpr (sizeof...(read) == 0) {
      answer = 1;
    } else if (data->Read(index->RecordNumber())) {
      const auto product = data->GetFields();
      answer = (... + read(*product));
    }
  }
  index->Close();
  data->Close();
  return answer;
}

// What is read of the only record of a file.
double OnlyRecordByHand(engine::Workspace& workspace, std::wstring_view data_file,
                        double (*read)(engine::Fields& record, int number), int number) {
  const auto data = workspace.CreateDataFile(data_file);
  data->Open(engine::Mode::kQuery);
  data->Read(1);
  const double answer = read(*data->GetFields(), number);
  data->Close();
  return answer;
}
double TaxRate(engine::Fields& control, int code) {
  return NumberOf(control, L"T" + std::to_wstring(code) + L"_RATE");
}
double TaxDescription(engine::Fields& control, int code) {
  const std::wstring field = L"T" + std::to_wstring(code) + L"_DESCRIPTION";
  return static_cast<double>(control.Item(field)->GetValue().ToText().size());
}
double Formats(engine::Fields& setup, int) {
  const auto format = [&](std::wstring_view field) {
    const std::int16_t decimals = setup.Item(field)->GetValue().ToInteger();
    return L"0." + std::wstring(static_cast<std::size_t>(decimals), L'0');
  };
  const std::wstring quantity = format(L"STOCK_QTYDP"sv);
  const std::wstring unit = format(L"STOCK_UNITDP"sv);
  return static_cast<double>(quantity.size() + unit.size());
}

template <std::size_t kLines>
double NamesByHand(engine::Workspace& workspace, std::wstring_view data_file) {
  static std::array<std::wstring, kLines> lines;
  const auto data = workspace.CreateDataFile(data_file);
  data->Open(engine::Mode::kQuery);
  std::size_t length = 0;
  std::wstring name;  // left where there is no record
  for (std::size_t n = 0; n < kLines; ++n) {
    if (data->Read(static_cast<std::int32_t>(n)) || n == 0) {
      name = data->GetFields()->Item(L"NAME"sv)->GetValue().ToText();
    }
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

double DiscountByHand(engine::Workspace& workspace, std::wstring_view acc_ref,
                      std::wstring_view stock_code, double ordered) {
  double percentage = 0;
  std::int32_t type = 0;
  {
    const auto account = FindByHand(workspace, L"SalesRecord"sv, L"ACCOUNT_REF"sv, acc_ref);
    if (!account) return 0;
    const auto fields = account->GetFields();
    percentage = NumberOf(*fields, L"DISCOUNT_RATE"sv);
    type = fields->Item(L"DISCOUNT_TYPE"sv)->GetValue().ToLong();
  }
  if (type != 4) return percentage;
  const auto product = FindByHand(workspace, L"StockRecord"sv, L"STOCK_CODE"sv, stock_code);
  if (!product) return percentage;
  const auto fields = product->GetFields();
  constexpr std::wstring_view kLevels[][2] = {
      {L"DISC_C_LEVEL_10_QTY", L"DISC_C_LEVEL_10_RATE"},
      {L"DISC_C_LEVEL_9_QTY", L"DISC_C_LEVEL_9_RATE"},
      {L"DISC_C_LEVEL_8_QTY", L"DISC_C_LEVEL_8_RATE"},
      {L"DISC_C_LEVEL_7_QTY", L"DISC_C_LEVEL_7_RATE"},  // it is the one reached
  };
  for (const auto& [quantity, rate] : kLevels) {
    const double threshold = NumberOf(*fields, quantity);
    if (threshold > 0 && ordered >= threshold) return percentage + NumberOf(*fields, rate);
  }
  return percentage;
}

double PriceByHand(engine::Workspace& workspace, std::wstring_view stock_code,
                   std::wstring_view acc_ref) {
  if (workspace.CreatePricing()) return 0;
  const auto stock = FindByHand(workspace, L"StockRecord"sv, L"STOCK_CODE"sv, stock_code);
  if (!stock) return 0;
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
    if (Trimmed(text(*fields, L"Stock_Code"sv)) != stock_code) continue;
    const bool for_one = fields->Item(L"Type"sv)->GetValue().ToLong() == 83;
    std::wstring wanted(acc_ref);
    if (!for_one) {
      customer->GetFields()->Item(L"ACCOUNT_REF"sv)->SetValue(acc_ref);
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

double AccessByHand(engine::Workspace& workspace, std::wstring_view user, std::wstring_view area) {
  const auto access = workspace.CreateDataFile(L"AccessData"sv);
  access->Open(engine::Mode::kRead);
  std::wstring name(user);
  const auto width = access->GetFields()->Item(L"NAME"sv)->GetValue().ToText().size();
  std::transform(name.begin(), name.end(), name.begin(), std::towupper);
  name.resize(std::max(width, name.size()), L' ');
  std::int32_t right = 1;
  if (access->FindFirst(L"NAME"sv, name)) {
    right = access->GetFields()->Item(area)->GetValue().ToLong();
  }
  access->Close();
  return right;
}

// With the arguments as they are.
auto Asks(auto run, auto... arguments) {
  return [=](engine::Workspace& workspace) { return run(workspace, arguments...); };
}

template <FixedName name, FixedName field, Reading*... read>
auto Finds(auto key) {
  return Asks(
      [](engine::Workspace& workspace, const auto& the_key) {
        return KeyedReadByHand<name, field, read...>(workspace, the_key);
      },
      key);
}
template <Reading*... read>
auto LooksUp() {
  return Asks(LookUpByHand<read...>, L"BOLT");
}

constexpr bool kHasReplay = true;

const SequenceByHand kSequences[] = {
    {L"Customers.GetName", Finds<L"SalesRecord", L"ACCOUNT_REF", TrimmedText<L"NAME">>(L"ABC001"),
     7, kHasReplay},
    {L"Customers.GetContact",
     Finds<L"SalesRecord", L"ACCOUNT_REF", TrimmedText<L"CONTACT_NAME">>(L"ABC001"), 3},
    {L"Customers.IsValid, unknown", Finds<L"SalesRecord", L"ACCOUNT_REF">(L"?"), 0},
    {L"Suppliers.GetName",
     Finds<L"PurchaseRecord", L"ACCOUNT_REF", TrimmedText<L"NAME">>(L"SUP001"), 6},
    {L"Suppliers.GetDiscPercent",
     Finds<L"PurchaseRecord", L"ACCOUNT_REF", Number<L"DISCOUNT_RATE">>(L"SUP001"), 2.5},
    {L"Nominal.IsValid", Finds<L"NominalRecord", L"ACCOUNT_REF">(L"2100"), 1},
    {L"Bank.IsValid", Finds<L"BankRecord", L"ACCOUNT_REF">(L"1200"), 1},
    {L"SalesOrders.GetAccName", Finds<L"SopRecord", L"ORDER_NUMBER", Text<L"NAME">>(1), 60},
    {L"SalesOrders.GetAccRef", Finds<L"SopRecord", L"ORDER_NUMBER", Text<L"ACCOUNT_REF">>(1), 8},
    {L"PurchaseOrders.GetAccRef", Finds<L"PopRecord", L"ORDER_NUMBER", Text<L"ACCOUNT_REF">>(7), 8},
    {L"PurchaseOrders.GetOrderDate", Finds<L"PopRecord", L"ORDER_NUMBER", Number<L"ORDER_DATE">>(7),
     45000},
    {L"PurchaseOrders.IsValid", Finds<L"PopRecord", L"ORDER_NUMBER", Flag<L"POSTED_CODE">>(7), 1},
    {L"General.GetVatRate", Asks(OnlyRecordByHand, L"ControlData"sv, TaxRate, 1), 17.5},
    {L"General.GetVatDesc", Asks(OnlyRecordByHand, L"ControlData"sv, TaxDescription, 1), 30},
    {L"General.GetDPSettings", Asks(OnlyRecordByHand, L"SetupData"sv, Formats, 0), 6},
    {L"Products.IsValid", LooksUp<>(), 1},
    {L"Products.IgnoreStock", LooksUp<Flag<L"IGNORE_STK_LVL_FLAG">>(), 0},
    {L"General.GetNumActiveUsers", WalkByHand, 2, kHasReplay},
    {L"Customers.GetDiscPercent, table", Asks(DiscountByHand, L"ABC001", L"BOLT", 10.0), 12.5,
     kHasReplay},
    {L"Products.GetSpecialPrice", Asks(PriceByHand, L"BOLT", L"ABC001"), 45, kHasReplay},
    {L"General.GetCategories", CategoriesByHand, 34},
    {L"General.GetDepartments", DepartmentsByHand, 18},
    {L"General.GetTaxCodes", TaxCodesByHand, 107},
    {L"General.GetNumActiveUsersInclDet", FirstOtherByHand, 8},
    {L"cAccessRights.IsUserAllowedAccess", Asks(AccessByHand, L"EVE", L"BANK_RECORD"), 1},
    {L"Products.GetDesc", LooksUp<TrimmedText<L"DESCRIPTION">>(), 4},
    {L"Products.GetDept", LooksUp<Number<L"DEPT_NUMBER">>(), 3},
    {L"Products.GetCategory", LooksUp<Number<L"STOCK_CAT">>(), 7},
    {L"Products.GetBinLocation", LooksUp<Text<L"LOCATION">>(), 16},
    {L"Products.GetSupplier", LooksUp<Text<L"PURCHASE_REF">>(), 8},
    {L"Products.GetSupplierPart", LooksUp<Text<L"SUPPLIER_PART_NUMBER">>(), 30},
    {L"Products.GetUnitSale", LooksUp<Text<L"UNIT_OF_SALE">>(), 8},
    {L"Products.GetInStock", LooksUp<Number<L"QTY_IN_STOCK">>(), 5},
    {L"Products.GetReOrderLevel", LooksUp<Number<L"QTY_REORDER_LEVEL">>(), 4},
    {L"Products.GetReOrderQty", LooksUp<Number<L"QTY_REORDER">>(), 20},
    {L"Products.GetLastPurDate", LooksUp<Number<L"LAST_PURCHASE_DATE">>(), 45000},
    {L"Products.GetSellPrice", LooksUp<Number<L"SALES_PRICE">>(), 50},
    {L"Products.IsMemberOfCategory", LooksUp<Number<L"STOCK_CAT">>(), 7},
    {L"Products.GetFreeStock", LooksUp<Number<L"QTY_IN_STOCK">, Number<L"QTY_ALLOCATED">>(), 12},
    {L"Products.GetAllocOnOrder", LooksUp<Number<L"QTY_ALLOCATED">, Number<L"QTY_ON_ORDER">>(),
     9.5},
    {L"Products.GetSupplierOnOrder",
     LooksUp<Text<L"PURCHASE_REF">, Number<L"QTY_ON_ORDER">, Number<L"QTY_REORDER">>(), 30.5}};

}  // namespace

std::span<const SequenceByHand> SequencesByHand() { return kSequences; }

}  // namespace ard::benchmarks
