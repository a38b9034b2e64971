#include "dialogs/address_dialog.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "dialogs/show.h"
#include "frame/text.h"

namespace ard::dialogs {
namespace {

using A = Address;

// What tells one kind of address from another, in the order of the kind selector.
struct AddressFile {
  std::wstring_view record;     // walked to list the addresses
  std::wstring_view data_file;  // read by record number
  bool by_account;              // whether an address belongs to an account
};
constexpr AddressFile kFiles[] = {{L"SalesDeliveryRecord", L"SalesDeliveryData", true},
                                  {L"PurchaseDeliveryRecord", L"PurchaseDeliveryData", true},
                                  {L"CompanyDeliveryRecord", L"CompanyDeliveryData", false}};
constexpr std::wstring_view kKindNames[] = {L"Sales", L"Purchase", L"Company"};

bool IsSameAccount(std::wstring_view a, std::wstring_view b) {
  return EqualsIgnoreCase(Trimmed(a), Trimmed(b));
}

const AddressFile& FileOf(AddressKind kind) { return kFiles[static_cast<std::size_t>(kind)]; }

// The lines of the details; `prompt` is the number of the company's caption for the line, 0 when
// it has none.
struct DetailsLine {
  std::wstring_view label;
  std::wstring A::*member;
  int prompt = 0;
};
constexpr DetailsLine kDetailsLines[] = {
    {L"Description", &A::description},
    {L"Name", &A::name},
    {L"Address 1", &A::address_1, 1},
    {L"Address 2", &A::address_2, 2},
    {L"Address 3", &A::address_3, 3},
    {L"Address 4", &A::address_4, 4},
    {L"Address 5", &A::address_5, 5},
    {L"Contact", &A::contact_name, 6},
    {L"Telephone", &A::telephone},
    {L"Fax", &A::fax},
    {L"E-mail", &A::email},
};

// With the company's captions, where it has any.
std::vector<FieldsDialog::Line> LinesOf(const Context& context, const Address& address) {
  std::vector<FieldsDialog::Line> lines;
  engine::DataFile setup(context, L"SetupData");
  const bool captions = setup.Open(engine::Mode::kRead) && setup.Read(1);
  for (const DetailsLine& line : kDetailsLines) {
    std::wstring label;
    if (captions && line.prompt != 0) {
      setup.Get(L"ADDRESS_PROMPT_" + std::to_wstring(line.prompt), label, engine::kTrimmed);
    }
    if (label.empty()) label = line.label;
    lines.push_back({std::move(label), std::wstring(Trimmed(address.*line.member))});
  }
  return lines;
}

}  // namespace

void ReadAddress(const Context& context, AddressKind kind, std::int32_t record, Address& address) {
  engine::DataFile file(context, FileOf(kind).data_file);
  if (!file.Open(engine::Mode::kRead) || !file.Read(record)) return;
  engine::ReadFields(file, kAddressProperties, address);
}

AddressDetails::AddressDetails(const Context& context, const Address& address)
    : FieldsDialog(L"frmDelAddressDetails", L"Delivery Address Details",
                   LinesOf(context, address)) {}

AddressDialog::AddressDialog(const Context& context, AddressOwners& owners)
    : SelectDialog(L"frmDelAddresses", L"Delivery Addresses", *this),
      context_(context),
      owners_(owners) {
  list().SetName(L"delivery addresses");
  list().SetReading(Reading::kNotYet);
  list().AddColumn(L"No.", 8, true);
  list().AddColumn(L"Description", 45);
  list().AddColumn(L"Default", 10);
}

std::span<const std::wstring_view> AddressDialog::kind_names() { return kKindNames; }

std::int32_t AddressDialog::selected_record() {
  const std::optional<Row>& row = list().selected();
  return row ? Value(row->Cell(1)).ToLong() : 0;
}

void AddressDialog::KindChange(AddressKind kind) {
  // The record numbers listed were those of another file.
  ForgetAccount();
  kind_ = kind;
  account_.clear();
  entry_pending_ = false;
  if (kind == AddressKind::kCompany) LoadList();
}

void AddressDialog::AccountChange(std::wstring_view account) {
  if (!IsSameAccount(account, account_)) {
    ForgetAccount();
    entry_pending_ = true;
  }
  account_ = account;
}

bool AddressDialog::AccountEntered() {
  entry_pending_ = false;
  if (!account_enabled() || Trimmed(account_).empty()) return true;
  if (owners_.IsValid(kind_, account_)) {
    ListAccount();
    return true;
  }
  ForgetAccount();
  return Search();
}

void AddressDialog::LookUpClick() {
  if (account_enabled()) Search();
}

void AddressDialog::DetailsClick() {
  if (!details_enabled()) return;
  Address address;
  ReadAddress(context_, kind_, selected_record(), address);
  AddressDetails details(context_, address);
  Show(context_, details);
}

void AddressDialog::ShowAccount(std::wstring_view account) {
  account_ = account;
  LoadList();
}

bool AddressDialog::Search() {
  const std::wstring found = owners_.Search(kind_, account_);
  if (found.empty()) return false;
  AccountChange(found);
  ListAccount();
  return true;
}

void AddressDialog::ListAccount() {
  entry_pending_ = false;
  account_name_ = owners_.GetName(kind_, account_);
  LoadList();
}

void AddressDialog::ForgetAccount() {
  ClearList();
  account_name_.clear();
}

void AddressDialog::ClearList() {
  Clear();
  list().SetReading(Reading::kNotYet);
  list().SetRowCount(0);
}

void AddressDialog::LoadList() {
  ClearList();
  std::int32_t preferred = 1;
  {
    const AddressFile& file = FileOf(kind_);
    engine::Record addresses(context_, file.record);
    list().SetReading(addresses.exists() ? Reading::kDone : Reading::kFailed);
    std::int32_t record = 0;
    // A new record object stands on the first record, and walks them in the order of their numbers.
    do {
      ++record;
      std::wstring text;
      if (file.by_account) {
        if (!addresses.Get(L"ACCOUNT_REF", text) || !IsSameAccount(text, account_)) continue;
      }
      engine::TextPart description;
      if (!addresses.Get(L"DESCRIPTION", description)) continue;
      std::wstring marker;
      addresses.Get(L"DEFAULT_REF", marker);
      const bool is_default = Trimmed(marker) == L"1";
      std::wstring row = Value(record).ToText();
      row.reserve(kRowLength);
      row.append(1, L'\t').append(description.text).append(is_default ? L"\tYes" : L"\t");
      Add(std::move(row));
      if (is_default) preferred = count();
    } while (addresses.MoveNext());
  }
  list().SetRowCount(count());
  list().SelectItem(preferred);
}

}  // namespace ard::dialogs
