// The published classes: what hosts create, in one table for class objects and registration.
#ifndef ARD_WINDOWS_SERVER_PUBLISHED_CLASS_H_
#define ARD_WINDOWS_SERVER_PUBLISHED_CLASS_H_

#include <span>

#include "windows/server/dispatch.h"

namespace ard::windows {

struct PublishedClass {
  const wchar_t* name;  // such as L"Customers"
  const CLSID& class_id;
  const IID& interface_id;
  std::span<const Member> members;  // of that interface
  // A new object with one reference. Throws when there is no memory for it.
  IDispatch* (*create)(const PublishedClass& published);
};

// All thirteen.
std::span<const PublishedClass* const> PublishedClasses();

extern const PublishedClass kBank, kCustomerRecord, kCustomers, kGeneral, kMessaging, kNominal,
    kProducts, kPurchaseOrders, kSalesOrders, kSupplierRecord, kSuppliers, kcAccessRights,
    kcDeliveryAddress;

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_PUBLISHED_CLASS_H_
