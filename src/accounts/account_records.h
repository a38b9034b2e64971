// CustomerRecord and SupplierRecord: a snapshot of one account's master data. Nothing is written
// back to the engine.
#ifndef ARD_ACCOUNTS_ACCOUNT_RECORDS_H_
#define ARD_ACCOUNTS_ACCOUNT_RECORDS_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "accounts/account.h"
#include "engine/field_table.h"
#include "frame/public_class.h"

namespace ard::accounts {

struct CustomerDetails {
  std::wstring name;
  std::wstring address_1, address_2, address_3, address_4, address_5;
  std::wstring del_address_1, del_address_2, del_address_3, del_address_4, del_address_5;
  std::wstring tel_number;
  std::wstring contact_name;
  std::int16_t due_days = 0;
  double sett_discount = 0;
  std::int16_t tax_code = 0;
  std::int16_t department = 0;
  std::wstring nominal_code;
};

struct SupplierDetails {
  std::wstring name;
  std::wstring contact_name;
  std::wstring def_nom_code;
  std::int16_t def_tax_code = 0;
  std::int16_t dept_number = 0;
};

// What both have in common: properties that the host may set, too, and that Read overwrites.
template <class Record, class Details>
class AccountRecord : public PropertyClass<Details> {
 public:
  // Fills the properties from that account, looked up exactly as given. They stay as they are when
  // there is none, and each does whose field cannot be read.
  bool Read(std::wstring_view acc_ref) noexcept {
    return this->template Call<bool>(L"Read", {acc_ref}, [&](bool& found) {
      engine::Record account(this->context(), Record::kFile);
      found = FindAccount(account, acc_ref);
      if (found) engine::ReadFields(account, Record::kProperties, this->details());
    });
  }

 protected:
  using PropertyClass<Details>::PropertyClass;
  ~AccountRecord() = default;
};

class CustomerRecord : public AccountRecord<CustomerRecord, CustomerDetails> {
 public:
  explicit CustomerRecord(Environment& environment)
      : AccountRecord(L"CustomerRecord", environment) {}

  static constexpr std::wstring_view kFile = L"SalesRecord";
  static constexpr engine::FieldProperty<CustomerDetails> kProperties[] = {
      {L"Name", L"NAME", &CustomerDetails::name, engine::Blanks::kTrim},
      {L"Address1", L"ADDRESS_1", &CustomerDetails::address_1, engine::Blanks::kTrim},
      {L"Address2", L"ADDRESS_2", &CustomerDetails::address_2, engine::Blanks::kTrim},
      {L"Address3", L"ADDRESS_3", &CustomerDetails::address_3, engine::Blanks::kTrim},
      {L"Address4", L"ADDRESS_4", &CustomerDetails::address_4, engine::Blanks::kTrim},
      {L"Address5", L"ADDRESS_5", &CustomerDetails::address_5, engine::Blanks::kTrim},
      {L"DelAddress1", L"DEL_ADDRESS_1", &CustomerDetails::del_address_1, engine::Blanks::kTrim},
      {L"DelAddress2", L"DEL_ADDRESS_2", &CustomerDetails::del_address_2, engine::Blanks::kTrim},
      {L"DelAddress3", L"DEL_ADDRESS_3", &CustomerDetails::del_address_3, engine::Blanks::kTrim},
      {L"DelAddress4", L"DEL_ADDRESS_4", &CustomerDetails::del_address_4, engine::Blanks::kTrim},
      {L"DelAddress5", L"DEL_ADDRESS_5", &CustomerDetails::del_address_5, engine::Blanks::kTrim},
      {L"TelNumber", L"TELEPHONE", &CustomerDetails::tel_number, engine::Blanks::kTrim},
      {L"ContactName", L"CONTACT_NAME", &CustomerDetails::contact_name, engine::Blanks::kTrim},
      {L"DueDays", L"SETTLEMENT_DUE_DAYS", &CustomerDetails::due_days},
      {L"SettDiscount", L"SETTLEMENT_DISC_RATE", &CustomerDetails::sett_discount},
      {L"TaxCode", L"DEF_TAX_CODE", &CustomerDetails::tax_code},
      {L"Department", L"DEPT_NUMBER", &CustomerDetails::department},
      {L"NominalCode", L"DEF_NOM_CODE", &CustomerDetails::nominal_code},
  };
};

class SupplierRecord : public AccountRecord<SupplierRecord, SupplierDetails> {
 public:
  explicit SupplierRecord(Environment& environment)
      : AccountRecord(L"SupplierRecord", environment) {}

  static constexpr std::wstring_view kFile = L"PurchaseRecord";
  // Fewer than a customer's, under other names, and untrimmed: that is how they are published.
  static constexpr engine::FieldProperty<SupplierDetails> kProperties[] = {
      {L"Name", L"NAME", &SupplierDetails::name},
      {L"ContactName", L"CONTACT_NAME", &SupplierDetails::contact_name},
      {L"DefNomCode", L"DEF_NOM_CODE", &SupplierDetails::def_nom_code},
      {L"DefTaxCode", L"DEF_TAX_CODE", &SupplierDetails::def_tax_code},
      {L"DeptNumber", L"DEPT_NUMBER", &SupplierDetails::dept_number},
  };
};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_ACCOUNT_RECORDS_H_
