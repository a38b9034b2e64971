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

class DeliveryAddress : public PropertyClass<dialogs::Address> {
 public:
  explicit DeliveryAddress(Environment& environment)
      : PropertyClass(L"cDeliveryAddress", environment) {}

  // Of the address read last.
  static constexpr auto& kProperties = dialogs::kAddressProperties;

  // Shows the picker on addresses of that kind, those of the account when one is given. True when
  // the user confirmed; the address that they picked, where it can be read, is then what the
  // properties hold.
  bool GetAddress(std::wstring_view acc_ref = L" ", std::wstring_view acc_name = L" ",
                  DelAddType type = DelAddType::kCompany) noexcept;
};

}  // namespace ard::addresses

#endif  // ARD_ADDRESSES_DELIVERY_ADDRESS_H_
