#include "simulator/synthetic_ledger.h"

#include <algorithm>
#include <compare>
#include <span>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/standard_columns.h"

namespace ard::simulator {
namespace {

constexpr std::int32_t kMostRecords = 200'000'000;
constexpr std::int32_t kLetters = 26;
constexpr std::size_t kKeyLength = 8;
constexpr std::size_t kNameLength = 60;

constexpr const wchar_t* kTowns[] = {
    L"Ashby",    L"Barnsley", L"Chester",  L"Durham",  L"Exeter",  L"Falmouth", L"Gloucester",
    L"Hereford", L"Ipswich",  L"Kendal",   L"Lincoln", L"Malvern", L"Norwich",  L"Oakham",
    L"Preston",  L"Reading",  L"Stafford", L"Taunton", L"Warwick", L"York"};
constexpr const wchar_t* kTrades[] = {L"Engineering", L"Fabrications", L"Joinery",  L"Motors",
                                      L"Plastics",    L"Precision",    L"Supplies", L"Tooling"};
constexpr const wchar_t* kNames[] = {L"Ann Archer",  L"Bal Singh",   L"Carol Webb", L"Dev Patel",
                                     L"Emma Clarke", L"Frank Moss",  L"Grace Obi",  L"Huw Evans",
                                     L"Iris Novak",  L"Jim Hartley", L"Kay Burton", L"Liam Byrne"};

constexpr const wchar_t* kMaterials[] = {L"Aluminium", L"Brass", L"Copper", L"Mild Steel",
                                         L"Nylon",     L"Oak",   L"Rubber", L"Stainless"};
constexpr const wchar_t* kParts[] = {L"Angle",  L"Bolt",   L"Bracket", L"Clip",
                                     L"Flange", L"Gasket", L"Handle",  L"Hinge",
                                     L"Plate",  L"Rivet",  L"Sleeve",  L"Washer"};
constexpr const wchar_t* kUnits[] = {L"Each", L"Metre", L"Pack"};

// Chances of a record, one in so many.
constexpr std::uint64_t kOneOnHoldIn = 20;
constexpr std::uint64_t kOneWithoutTermsIn = 15;
constexpr std::uint64_t kOneDeletedIn = 50;
constexpr std::uint64_t kOneUncountedIn = 30;

// Some number that looks like chance, the same for the same record and purpose.
std::uint64_t Chance(std::int32_t position, std::uint64_t purpose) {
  std::uint64_t x = static_cast<std::uint64_t>(position) * 0x9E3779B97F4A7C15u + purpose;
  x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
  x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
  return x ^ (x >> 31);
}

enum Purpose : std::uint64_t {
  kTown,
  kTrade,
  kName,
  kPhone,
  kBalance,
  kLimit,
  kHold,
  kTerms,
  kGone,
  kMaterial,
  kPart,
  kSize,
  kUnit,
  kStock,
  kAllocated,
  kOnOrder,
  kPrice,
  kUncounted,
  kDay,
};

template <std::size_t N>
const wchar_t* Pick(const wchar_t* const (&words)[N], std::int32_t position, Purpose purpose) {
  return words[Chance(position, purpose) % N];
}

Value Name(std::int32_t position) {
  std::wstring name;
  name.reserve(kNameLength);  // room for the padding, too
  name += Pick(kTowns, position, kTown);
  name += L' ';
  name += Pick(kTrades, position, kTrade);
  name += L" Ltd";
  return name;
}
Value Contact(std::int32_t position) { return Pick(kNames, position, kName); }
Value Town(std::int32_t position) { return Pick(kTowns, position, kTown); }

// From the numbers that are kept free for stories.
Value Telephone(std::int32_t position) {
  std::wstring last = std::to_wstring(Chance(position, kPhone) % 1000);
  return L"01632 960" + last.insert(0, 3 - last.size(), L'0');
}

Value Balance(std::int32_t position) {
  return static_cast<double>(Chance(position, kBalance) % 500'000) / 100;
}
Value CreditLimit(std::int32_t position) {
  return static_cast<double>(Chance(position, kLimit) % 11) * 1000;
}
Value OnHold(std::int32_t position) { return Chance(position, kHold) % kOneOnHoldIn == 0; }
Value TermsAgreed(std::int32_t position) {
  return Chance(position, kTerms) % kOneWithoutTermsIn != 0;
}
Value Deleted(std::int32_t position) { return Chance(position, kGone) % kOneDeletedIn == 0; }

// Prices and quantities to two decimals, as they are kept.
double Hundredths(std::int32_t position, Purpose purpose, std::uint64_t most) {
  return static_cast<double>(Chance(position, purpose) % most) / 100;
}

Value Description(std::int32_t position) {
  std::wstring text;
  text.reserve(kNameLength);
  text += Pick(kMaterials, position, kMaterial);
  text += L' ';
  text += Pick(kParts, position, kPart);
  text += L' ' + std::to_wstring(Chance(position, kSize) % 100 + 1) + L"mm";
  return text;
}
Value UnitOfSale(std::int32_t position) { return Pick(kUnits, position, kUnit); }
Value InStock(std::int32_t position) { return Hundredths(position, kStock, 50'000); }
Value Allocated(std::int32_t position) { return Hundredths(position, kAllocated, 20'000); }
Value OnOrder(std::int32_t position) { return Hundredths(position, kOnOrder, 10'000); }
Value SalesPrice(std::int32_t position) { return Hundredths(position, kPrice, 100'000); }
// Six tenths of the sales price, to the penny.
Value CostPrice(std::int32_t position) {
  return static_cast<double>(Chance(position, kPrice) % 100'000 * 6 / 10) / 100;
}
Value StockUncounted(std::int32_t position) {
  return Chance(position, kUncounted) % kOneUncountedIn == 0;
}

Value PostingType(std::int32_t) { return std::uint8_t{1}; }
Value OrderedBy(std::int32_t position) {
  return std::wstring(1, static_cast<wchar_t>(L'A' + Chance(position, kName) % kLetters)) +
         L"0000001";
}
// Some day of the years 2023 to 2025.
Value OrderDate(std::int32_t position) {
  return Date{static_cast<double>(44927 + Chance(position, kDay) % 1096)};
}

constexpr std::wstring_view kAccountRef[] = {L"ACCOUNT_REF"};
constexpr std::wstring_view kStockCode[] = {L"STOCK_CODE"};
constexpr std::wstring_view kOrderNumber[] = {L"ORDER_NUMBER"};

struct MadeColumn {
  std::wstring_view name;
  Value (*make)(std::int32_t position);
};
constexpr MadeColumn kCustomerColumns[] = {
    {L"NAME", Name},
    {L"CONTACT_NAME", Contact},
    {L"ADDRESS_3", Town},
    {L"TELEPHONE", Telephone},
    {L"BALANCE", Balance},
    {L"CREDIT_LIMIT", CreditLimit},
    {L"ACCOUNT_ON_HOLD", OnHold},
    {L"TERMS_AGREED_FLAG", TermsAgreed},
    {L"DELETED_FLAG", Deleted},
};
constexpr MadeColumn kNominalColumns[] = {
    {L"NAME", Name},
    {L"ACCOUNT_TYPE", PostingType},
    {L"BALANCE", Balance},
    {L"DELETED_FLAG", Deleted},
};
constexpr MadeColumn kOrderColumns[] = {
    {L"ACCOUNT_REF", OrderedBy},
    {L"NAME", Name},
    {L"ORDER_DATE", OrderDate},
    {L"DELETED_FLAG", Deleted},
};
constexpr MadeColumn kProductColumns[] = {
    {L"DESCRIPTION", Description},
    {L"UNIT_OF_SALE", UnitOfSale},
    {L"QTY_IN_STOCK", InStock},
    {L"QTY_ALLOCATED", Allocated},
    {L"QTY_ON_ORDER", OnOrder},
    {L"SALES_PRICE", SalesPrice},
    {L"LAST_PURCHASE_PRICE", CostPrice},
    {L"AVERAGE_COST_PRICE", CostPrice},
    {L"IGNORE_STK_LVL_FLAG", StockUncounted},
    {L"DELETED_FLAG", Deleted},
};

}  // namespace

struct SyntheticKind {
  std::wstring_view table;
  std::span<const std::wstring_view> key;
  std::span<const MadeColumn> columns;
};
const SyntheticKind kSyntheticCustomers = {L"SalesData", kAccountRef, kCustomerColumns};
const SyntheticKind kSyntheticSuppliers = {L"PurchaseData", kAccountRef, kCustomerColumns};
const SyntheticKind kSyntheticNominals = {L"NominalData", kAccountRef, kNominalColumns};
const SyntheticKind kSyntheticSalesOrders = {L"SopData", kOrderNumber, kOrderColumns};
const SyntheticKind kSyntheticPurchaseOrders = {L"PopData", kOrderNumber, kOrderColumns};
const SyntheticKind kSyntheticProducts = {L"StockData", kStockCode, kProductColumns};

SyntheticLedger::SyntheticLedger(std::int32_t records, const SyntheticKind& kind)
    : Table(StandardColumns(kind.table), kind.key),
      records_(records),
      numbered_(columns()[key().front()].type != ColumnType::kText),
      makers_(columns().size()) {
  if (records < 0 || records > kMostRecords) {
    throw Error(kErrorOverflow, L"A synthetic ledger has 0 to 200,000,000 records.");
  }
  for (const MadeColumn& column : kind.columns)
    makers_[columns().Require(column.name)] = column.make;
}

Value SyntheticLedger::Cell(std::int32_t record, std::size_t column) const {
  const std::int32_t position = PositionOf(record);
  if (column == key().front()) return numbered_ ? Value(position) : Value(KeyAt(position));
  const Maker maker = makers_[column];
  return maker == nullptr ? Value() : maker(position);
}

std::int32_t SyntheticLedger::LowerBound(std::wstring_view key) const {
  if (const auto position = PositionOfPrefix(key)) return *position;
  std::int32_t low = 1;
  std::int32_t high = records_ + 1;
  while (low < high) {
    const std::int32_t middle = low + (high - low) / 2;
    if (std::is_lt(CompareIgnoreCase(KeyAt(middle), key))) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

std::optional<std::int32_t> SyntheticLedger::PositionOfPrefix(std::wstring_view key) const {
  if (numbered_ || key.empty() || key.size() > kKeyLength) return std::nullopt;
  const char32_t letter = UpperCase(static_cast<char32_t>(key[0])) - U'A';
  if (letter >= kLetters) return std::nullopt;
  std::int32_t number = 0;
  for (std::size_t i = 1; i < kKeyLength; ++i) {
    const wchar_t digit = i < key.size() ? key[i] : L'0';
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + (digit - L'0');
  }
  const std::int32_t before = FirstOfLetter(static_cast<std::int32_t>(letter));
  const std::int32_t end = FirstOfLetter(static_cast<std::int32_t>(letter) + 1);
  return before + std::clamp(number, 1, end - before + 1);
}

bool SyntheticLedger::Store(std::int32_t, Row) {
  throw Error(kErrorFailed, L"A synthetic ledger cannot be written.");
}

// The place of the first record of a letter (from 0), from 0.
std::int32_t SyntheticLedger::FirstOfLetter(std::int32_t letter) const {
  return static_cast<std::int32_t>((std::int64_t{letter} * records_ + kLetters - 1) / kLetters);
}

std::wstring SyntheticLedger::KeyAt(std::int32_t position) const {
  if (numbered_) return KeyFrom(position);
  const auto letter = static_cast<std::int32_t>((std::int64_t{position} - 1) * kLetters / records_);
  std::int32_t number = position - FirstOfLetter(letter);
  std::wstring code(kKeyLength, static_cast<wchar_t>(L'A' + letter));
  for (std::size_t i = kKeyLength - 1; i > 0; --i, number /= 10) {
    code[i] = static_cast<wchar_t>(L'0' + number % 10);
  }
  return code;
}

std::unique_ptr<Company> MakeSyntheticCompany(std::int32_t accounts, std::int32_t products) {
  auto company = std::make_unique<Company>();
  const auto add = [&](const SyntheticKind& kind, std::int32_t records) {
    company->Set(kind.table, std::make_unique<SyntheticLedger>(records, kind));
  };
  for (const SyntheticKind* kind : {&kSyntheticCustomers, &kSyntheticSuppliers, &kSyntheticNominals,
                                    &kSyntheticSalesOrders, &kSyntheticPurchaseOrders}) {
    add(*kind, accounts);
  }
  add(kSyntheticProducts, products);
  company->Parse(L"SetupData", "NAME:text(60)\tTERMS_WARNING:boolean\nSynthetic Ledger\tyes\n",
                 "SetupData");
  company->Parse(L"ControlData", "FINANCIAL_YEAR:integer16\n2026\n", "ControlData");
  return company;
}

}  // namespace ard::simulator
