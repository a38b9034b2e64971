#include "addresses/delivery_address.h"

#include <optional>

#include "accounts/customers.h"
#include "accounts/suppliers.h"
#include "dialogs/show.h"
#include "frame/text.h"

namespace ard::addresses {
namespace {

using accounts::LedgerAccounts;
using dialogs::AddressKind;

// The customers and the suppliers, asked with the context of the picker.
class Owners : public dialogs::AddressOwners {
 public:
  explicit Owners(const Context& context)
      : customers_(context.environment), suppliers_(context.environment) {
    for (PublicClass* const ledger :
         {static_cast<PublicClass*>(&customers_), static_cast<PublicClass*>(&suppliers_)}) {
      ledger->context().app_name = context.app_name;
      ledger->context().workspace = context.workspace;
    }
  }

  bool IsValid(AddressKind kind, const std::wstring& acc_ref) override {
    return Of(kind).IsValid(acc_ref);
  }
  std::wstring GetName(AddressKind kind, const std::wstring& acc_ref) override {
    return Of(kind).GetName(acc_ref);
  }
  std::wstring Search(AddressKind kind, const std::wstring& criteria) override {
    return Trimmed(criteria).empty() ? Of(kind).FastList() : Of(kind).List(criteria);
  }

 private:
  const LedgerAccounts& Of(AddressKind kind) const {
    if (kind == AddressKind::kPurchase) return suppliers_;
    return customers_;
  }

  accounts::Customers customers_;
  accounts::Suppliers suppliers_;
};

std::optional<AddressKind> KindOf(DelAddType type) {
  switch (type) {
    case DelAddType::kCompany:
      return AddressKind::kCompany;
    case DelAddType::kSales:
      return AddressKind::kSales;
    case DelAddType::kPurchase:
      return AddressKind::kPurchase;
  }
  return std::nullopt;
}

}  // namespace

bool DeliveryAddress::GetAddress(std::wstring_view acc_ref, std::wstring_view acc_name,
                                 DelAddType type) noexcept {
  return Call<bool>(L"GetAddress", {acc_ref, acc_name, type}, [&](bool& picked) {
    Owners owners(context());
    dialogs::AddressDialog dialog(context(), owners);
    if (const std::optional<AddressKind> kind = KindOf(type)) dialog.KindChange(*kind);
    if (!Trimmed(acc_ref).empty()) dialog.ShowAccount(acc_ref);
    if (!Trimmed(acc_name).empty()) dialog.ShowAccountName(acc_name);
    Show(context(), dialog);
    picked = dialog.result();
    if (picked) ReadAddress(context(), dialog.kind(), dialog.selected_record(), details());
  });
}

}  // namespace ard::addresses
