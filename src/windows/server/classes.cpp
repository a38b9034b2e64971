#include "windows/server/published_class.h"

namespace ard::windows {

std::span<const PublishedClass* const> PublishedClasses() {
  static constexpr const PublishedClass* kClasses[] = {
      &kBank,      &kCustomerRecord, &kCustomers,       &kGeneral,     &kMessaging,
      &kNominal,   &kProducts,       &kPurchaseOrders,  &kSalesOrders, &kSupplierRecord,
      &kSuppliers, &kcAccessRights,  &kcDeliveryAddress};
  return kClasses;
}

}  // namespace ard::windows
