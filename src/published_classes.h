// The portable class behind each published one, under its published name.
#ifndef ARD_PUBLISHED_CLASSES_H_
#define ARD_PUBLISHED_CLASSES_H_

#include "accounts/account_records.h"
#include "accounts/customers.h"
#include "accounts/nominal_bank.h"
#include "accounts/suppliers.h"
#include "addresses/delivery_address.h"
#include "orders/orders.h"
#include "products/products.h"
#include "settings/general.h"
#include "users/access_rights.h"
#include "users/messaging.h"

namespace ard::classes {

using accounts::Bank;
using accounts::CustomerRecord;
using accounts::Customers;
using accounts::Nominal;
using accounts::SupplierRecord;
using accounts::Suppliers;
using cAccessRights = users::AccessRights;
using cDeliveryAddress = addresses::DeliveryAddress;
using orders::PurchaseOrders;
using orders::SalesOrders;
using products::Products;
using settings::General;
using users::Messaging;

}  // namespace ard::classes

#endif  // ARD_PUBLISHED_CLASSES_H_
