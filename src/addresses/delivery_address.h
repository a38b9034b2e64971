// cDeliveryAddress: the user picks a delivery address of a customer, of a supplier or of the
// company itself, and the object keeps it.
#ifndef ARD_ADDRESSES_DELIVERY_ADDRESS_H_
#define ARD_ADDRESSES_DELIVERY_ADDRESS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "dialogs/address_dialog.h"
#include "frame/public_class.h"

namespace ard::addresses {

// The published tbDelAddType.
enum class DelAddType : std::int32_t { kCompany = 0, kSales = 1, kPurchase = 2 };

class DeliveryAddress : public PublicClass {
 public:
  explicit DeliveryAddress(Environment& environment)
      : PublicClass(L"cDeliveryAddress", environment) {}

  // Shows the picker on addresses of that kind, those of the account when one is given. True when
  // the user confirmed; the address that they picked, where it can be read, is then what the
  // properties hold.
  bool GetAddress(std::wstring_view acc_ref = L" ", std::wstring_view acc_name = L" ",
                  DelAddType type = DelAddType::kCompany) noexcept;

  // A property of the address read last: one of the members of dialogs::Address.
  std::wstring Get(std::wstring_view property,
                   std::wstring dialogs::Address::*member) const noexcept {
    return Call<std::wstring>(property, [&](std::wstring& value) { value = address_.*member; });
  }

 private:
  dialogs::Address address_;
};

}  // namespace ard::addresses

#endif  // ARD_ADDRESSES_DELIVERY_ADDRESS_H_
