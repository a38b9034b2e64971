#include "simulator/synthetic_ledger.h"

#include <algorithm>
#include <compare>
#include <utility>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/standard_columns.h"

namespace ard::simulator {
namespace {

constexpr std::int32_t kMostAccounts = 200'000'000;
constexpr std::int32_t kLetters = 26;
constexpr std::size_t kRefLength = 8;
constexpr std::size_t kNameLength = 60;
constexpr std::wstring_view kKey[] = {L"ACCOUNT_REF"};

constexpr const wchar_t* kTowns[] = {
    L"Ashby",    L"Barnsley", L"Chester",  L"Durham",  L"Exeter",  L"Falmouth", L"Gloucester",
    L"Hereford", L"Ipswich",  L"Kendal",   L"Lincoln", L"Malvern", L"Norwich",  L"Oakham",
    L"Preston",  L"Reading",  L"Stafford", L"Taunton", L"Warwick", L"York"};
constexpr const wchar_t* kTrades[] = {L"Engineering", L"Fabrications", L"Joinery",  L"Motors",
                                      L"Plastics",    L"Precision",    L"Supplies", L"Tooling"};
constexpr const wchar_t* kNames[] = {L"Ann Archer",  L"Bal Singh",   L"Carol Webb", L"Dev Patel",
                                     L"Emma Clarke", L"Frank Moss",  L"Grace Obi",  L"Huw Evans",
                                     L"Iris Novak",  L"Jim Hartley", L"Kay Burton", L"Liam Byrne"};

// Chances of an account, one in so many.
constexpr std::uint64_t kOneOnHoldIn = 20;
constexpr std::uint64_t kOneWithoutTermsIn = 15;
constexpr std::uint64_t kOneDeletedIn = 50;

// Some number that looks like chance, the same for the same account and purpose.
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
  kGone
};

template <std::size_t N>
const wchar_t* Pick(const wchar_t* const (&words)[N], std::int32_t position, Purpose purpose) {
  return words[Chance(position, purpose) % N];
}

}  // namespace

SyntheticLedger::SyntheticLedger(std::int32_t accounts)
    : Table(StandardColumns(L"SalesData"), kKey), accounts_(accounts), makers_(columns().size()) {
  if (accounts < 0 || accounts > kMostAccounts) {
    throw Error(kErrorOverflow, L"A synthetic ledger has 0 to 200,000,000 accounts.");
  }
  const std::pair<std::wstring_view, Maker> makers[] = {
      {L"ACCOUNT_REF", &SyntheticLedger::Ref},
      {L"NAME", &SyntheticLedger::Name},
      {L"CONTACT_NAME", &SyntheticLedger::Contact},
      {L"ADDRESS_3", &SyntheticLedger::Town},
      {L"TELEPHONE", &SyntheticLedger::Telephone},
      {L"BALANCE", &SyntheticLedger::Balance},
      {L"CREDIT_LIMIT", &SyntheticLedger::CreditLimit},
      {L"ACCOUNT_ON_HOLD", &SyntheticLedger::OnHold},
      {L"TERMS_AGREED_FLAG", &SyntheticLedger::TermsAgreed},
      {L"DELETED_FLAG", &SyntheticLedger::Deleted},
  };
  for (const auto& [field, maker] : makers) makers_[columns().Require(field)] = maker;
}

Value SyntheticLedger::Cell(std::int32_t record, std::size_t column) const {
  const Maker maker = makers_[column];
  return maker == nullptr ? Value() : (this->*maker)(PositionOf(record));
}

std::int32_t SyntheticLedger::LowerBound(std::wstring_view key) const {
  if (const auto position = PositionOfPrefix(key)) return *position;
  std::int32_t low = 1;
  std::int32_t high = accounts_ + 1;
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
  if (key.empty() || key.size() > kRefLength) return std::nullopt;
  const char32_t letter = UpperCase(static_cast<char32_t>(key[0])) - U'A';
  if (letter >= kLetters) return std::nullopt;
  std::int32_t number = 0;
  for (std::size_t i = 1; i < kRefLength; ++i) {
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

// The place of the first account of a letter (from 0), from 0.
std::int32_t SyntheticLedger::FirstOfLetter(std::int32_t letter) const {
  return static_cast<std::int32_t>((std::int64_t{letter} * accounts_ + kLetters - 1) / kLetters);
}

std::wstring SyntheticLedger::KeyAt(std::int32_t position) const {
  const auto letter =
      static_cast<std::int32_t>((std::int64_t{position} - 1) * kLetters / accounts_);
  std::int32_t number = position - FirstOfLetter(letter);
  std::wstring ref(kRefLength, static_cast<wchar_t>(L'A' + letter));
  for (std::size_t i = kRefLength - 1; i > 0; --i, number /= 10) {
    ref[i] = static_cast<wchar_t>(L'0' + number % 10);
  }
  return ref;
}

Value SyntheticLedger::Name(std::int32_t position) const {
  std::wstring name;
  name.reserve(kNameLength);  // room for the padding, too
  name += Pick(kTowns, position, kTown);
  name += L' ';
  name += Pick(kTrades, position, kTrade);
  name += L" Ltd";
  return name;
}
Value SyntheticLedger::Contact(std::int32_t position) const {
  return Pick(kNames, position, kName);
}
Value SyntheticLedger::Town(std::int32_t position) const { return Pick(kTowns, position, kTown); }

// From the numbers that are kept free for stories.
Value SyntheticLedger::Telephone(std::int32_t position) const {
  std::wstring last = std::to_wstring(Chance(position, kPhone) % 1000);
  return L"01632 960" + last.insert(0, 3 - last.size(), L'0');
}

Value SyntheticLedger::Balance(std::int32_t position) const {
  return static_cast<double>(Chance(position, kBalance) % 500'000) / 100;
}
Value SyntheticLedger::CreditLimit(std::int32_t position) const {
  return static_cast<double>(Chance(position, kLimit) % 11) * 1000;
}
Value SyntheticLedger::OnHold(std::int32_t position) const {
  return Chance(position, kHold) % kOneOnHoldIn == 0;
}
Value SyntheticLedger::TermsAgreed(std::int32_t position) const {
  return Chance(position, kTerms) % kOneWithoutTermsIn != 0;
}
Value SyntheticLedger::Deleted(std::int32_t position) const {
  return Chance(position, kGone) % kOneDeletedIn == 0;
}

std::unique_ptr<Company> MakeSyntheticCompany(std::int32_t accounts) {
  auto company = std::make_unique<Company>();
  company->Set(L"SalesData", std::make_unique<SyntheticLedger>(accounts));
  company->Parse(L"SetupData", "NAME:text(60)\tTERMS_WARNING:boolean\nSynthetic Ledger\tyes\n",
                 "SetupData");
  company->Parse(L"ControlData", "FINANCIAL_YEAR:integer16\n2026\n", "ControlData");
  return company;
}

}  // namespace ard::simulator
