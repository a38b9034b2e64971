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

// What both have in common: properties that the host may set, too, and that Read overwrites.
// `Details` keeps their values.
template <class Details>
class AccountRecord : public PublicClass {
 public:
  // In published order.
  std::span<const engine::FieldProperty<Details>> properties() const { return properties_; }

  Details& details() { return details_; }

  // Fills the properties from that account, looked up exactly as given. They stay as they are when
  // there is none, and each does whose field cannot be read.
  bool Read(std::wstring_view acc_ref) noexcept {
    return Call<bool>(L"Read", [&](bool& found) {
      engine::Record account(context(), record_);
      found = FindAccount(account, acc_ref);
      if (found) engine::ReadFields(account, properties_, details_);
    });
  }

  template <class T>
  T Get(Name property, T Details::*member) const noexcept {
    return Call<T>(property, [&](T& value) { value = details_.*member; });
  }
  template <class T>
  void Put(Name property, T Details::*member, std::type_identity_t<T> value) noexcept {
    Run(property, [&] { details_.*member = std::move(value); });
  }

 protected:
  AccountRecord(std::wstring_view name, Environment& environment, std::wstring_view record,
                std::span<const engine::FieldProperty<Details>> properties)
      : PublicClass(name, environment), record_(record), properties_(properties) {}
  ~AccountRecord() = default;

 private:
  std::wstring_view record_;
  std::span<const engine::FieldProperty<Details>> properties_;
  Details details_;
};

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

class CustomerRecord : public AccountRecord<CustomerDetails> {
 public:
  explicit CustomerRecord(Environment& environment);
};

class SupplierRecord : public AccountRecord<SupplierDetails> {
 public:
  explicit SupplierRecord(Environment& environment);
};

}  // namespace ard::accounts

#endif  // ARD_ACCOUNTS_ACCOUNT_RECORDS_H_
