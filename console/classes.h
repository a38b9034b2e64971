// One object of each class, and its members by name.
#ifndef ARD_CONSOLE_CLASSES_H_
#define ARD_CONSOLE_CLASSES_H_

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "accounts/account_records.h"
#include "accounts/customers.h"
#include "accounts/nominal_bank.h"
#include "accounts/suppliers.h"
#include "addresses/delivery_address.h"
#include "database/seam.h"
#include "engine/seam.h"
#include "orders/orders.h"
#include "products/products.h"
#include "settings/general.h"
#include "users/access_rights.h"
#include "users/messaging.h"

namespace ard::console {

// What the objects work on; all but the workspace may be missing.
struct Stores {
  std::shared_ptr<engine::Workspace> workspace;
  std::shared_ptr<database::Connection> database;
  std::shared_ptr<engine::Engine> engine = nullptr;
  std::wstring data_path = {};  // the company's folder
};

using Arguments = std::vector<Value>;

// A part of what a call answers: its result, without a name, or a named output.
struct Answer {
  std::wstring_view name;
  Value value;
};

struct Member {
  std::wstring_view class_name;
  std::wstring_view name;
  std::vector<std::wstring_view> parameters;  // those that are passed in
  std::vector<Value> defaults;                // of the last ones, which may be left out
  std::function<std::vector<Answer>(Arguments&)> call;
  std::function<void(Value)> put = nullptr;  // of a property
};

class Classes {
 public:
  Classes(Environment& environment, const Stores& stores);

  const std::vector<Member>& members() const { return members_; }

 private:
  void AddContext(PublicClass& object, const Stores& stores);
  void AddCustomers();
  void AddProducts();
  void AddAccountsProgram();
  void AddCurrentUsers();
  void AddMessaging(const Stores& stores);
  void AddAccessRights();
  void AddLedgers();
  template <class Record>
  void AddRecord(Record& record, const Stores& stores);
  void AddOrders();
  void AddDeliveryAddress();
  void AddCompanySettings();

  accounts::Customers customers_;
  products::Products products_;
  settings::General general_;
  users::Messaging messaging_;
  users::AccessRights access_rights_;
  accounts::Suppliers suppliers_;
  accounts::Nominal nominal_;
  accounts::Bank bank_;
  accounts::CustomerRecord customer_record_;
  accounts::SupplierRecord supplier_record_;
  orders::SalesOrders sales_orders_;
  orders::PurchaseOrders purchase_orders_;
  addresses::DeliveryAddress delivery_address_;
  std::vector<Member> members_;
};

}  // namespace ard::console

#endif  // ARD_CONSOLE_CLASSES_H_
