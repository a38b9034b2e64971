// frmDelAddresses: the user picks a delivery address of a customer, of a supplier or of the company
// itself. frmDelAddressDetails: one of them in full. Both without their windows.
#ifndef ARD_DIALOGS_ADDRESS_DIALOG_H_
#define ARD_DIALOGS_ADDRESS_DIALOG_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "dialogs/fields_dialog.h"
#include "dialogs/select_dialog.h"
#include "engine/field_table.h"
#include "frame/context.h"

namespace ard::dialogs {

// In the order of the kind selector.
enum class AddressKind { kSales, kPurchase, kCompany };

// A delivery address as the engine keeps it.
struct Address {
  std::wstring telephone, reference, name, fax, email, description, default_ref, contact_name,
      address_ref, address_5, address_4, address_3, address_2, address_1, account_ref;
};

// What is read of an address, in that order, by the published names.
inline constexpr engine::FieldProperty<Address> kAddressProperties[] = {
    {L"AccountRef", L"ACCOUNT_REF", &Address::account_ref},
    {L"Address1", L"ADDRESS_1", &Address::address_1},
    {L"Address2", L"ADDRESS_2", &Address::address_2},
    {L"Address3", L"ADDRESS_3", &Address::address_3},
    {L"Address4", L"ADDRESS_4", &Address::address_4},
    {L"Address5", L"ADDRESS_5", &Address::address_5},
    {L"AddressRef", L"ADDRESS_REF", &Address::address_ref},
    {L"ContactName", L"CONTACT_NAME", &Address::contact_name},
    {L"DefaultRef", L"DEFAULT_REF", &Address::default_ref},
    {L"Description", L"DESCRIPTION", &Address::description},
    {L"EMail", L"EMAIL", &Address::email},
    {L"Fax", L"FAX", &Address::fax},
    {L"Name", L"NAME", &Address::name},
    {L"Reference", L"REFERENCE", &Address::reference},
    {L"Telephone", L"TELEPHONE", &Address::telephone},
};

// Reads the address with that record number into `address`; when there is none, nothing changes.
void ReadAddress(const Context& context, AddressKind kind, std::int32_t record, Address& address);

// What the dialog asks of the ledger that owns addresses of a kind; never asked of the company's.
class AddressOwners {
 public:
  virtual ~AddressOwners() = default;
  virtual bool IsValid(AddressKind kind, const std::wstring& acc_ref) = 0;
  virtual std::wstring GetName(AddressKind kind, const std::wstring& acc_ref) = 0;
  // Lets the user pick an account, from a list positioned on `criteria` unless they are blank; ""
  // when cancelled.
  virtual std::wstring Search(AddressKind kind, const std::wstring& criteria) = 0;
};

// frmDelAddressDetails, view-only.
class AddressDetails : public FieldsDialog {
 public:
  // Reads the company's captions of the address lines.
  AddressDetails(const Context& context, const Address& address);
};

class AddressDialog : private RowsInMemory, public SelectDialog {
 public:
  // Starts with the addresses of customers, and none listed. `context` and `owners` must outlive
  // the dialog.
  AddressDialog(const Context& context, AddressOwners& owners);

  static std::span<const std::wstring_view> kind_names();
  AddressKind kind() const { return kind_; }
  const std::wstring& account() const { return account_; }
  bool account_enabled() const { return kind_ != AddressKind::kCompany; }
  const std::wstring& account_name() const { return account_name_; }
  // The record number of the selected address; 0 when none is selected.
  std::int32_t selected_record();
  bool details_enabled() { return list().HasSelection(); }

  // The handlers. Another kind starts over: no account, and for the company its addresses.
  void KindChange(AddressKind kind);
  // The user types. The addresses shown are those of the account in the field, and so go as soon as
  // that is another one; nothing else happens before the entry is complete.
  void AccountChange(std::wstring_view account);
  // Whether another account has been typed, and not been acted on yet.
  bool entry_pending() const { return entry_pending_; }
  // The entry is complete: shows the account's addresses, or lets the user search for one. False
  // when the account is unknown, and no other one has been picked.
  bool AccountEntered();
  // The look-up button of the account field.
  void LookUpClick();
  void DetailsClick();

  // What the host asks for.
  void ShowAccount(std::wstring_view account);
  void ShowAccountName(std::wstring_view name) { account_name_ = name; }

 private:
  bool Search();
  // Shows the name and the addresses of the account in the field.
  void ListAccount();
  // Shows neither.
  void ForgetAccount();
  void LoadList();
  void ClearList();

  const Context& context_;
  AddressOwners& owners_;
  AddressKind kind_ = AddressKind::kSales;
  std::wstring account_;
  std::wstring account_name_;
  bool entry_pending_ = false;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_ADDRESS_DIALOG_H_
