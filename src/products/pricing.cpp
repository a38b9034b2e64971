#include <cstddef>
#include <utility>

#include "frame/text.h"
#include "products/price_rule.h"
#include "products/products.h"
#include "products/stock_record.h"

namespace ard::products {
namespace {

using engine::Match;
using engine::Mode;

// The type of a price-list entry for one customer, "S"; other entries belong to a price list.
constexpr std::int16_t kOneCustomer = 83;
constexpr std::size_t kReferenceLength = 8;

constexpr std::wstring_view kCustomerPrice = L"GetSpecialPrice";
constexpr std::wstring_view kSupplierPrice = L"GetSupplierPrice";
constexpr std::wstring_view kByService = L"The engine's pricing service.";

// Tells the trace where the answer of that member comes from.
void NoteSource(const Context& context, std::wstring_view member, std::wstring_view source) {
  context.trace().Noted({L"Products", member}, source);
}

double CostPrice(const Context& context, std::wstring_view stock_code, bool use_average) {
  double price = 0;
  engine::Record stock(context, L"StockRecord");
  if (!FindProduct(stock, stock_code)) return price;
  if (use_average) price = AveragePrice(stock);
  const bool is_average = price != 0;
  if (is_average || stock.Get(L"LAST_PURCHASE_PRICE", price)) {
    NoteSource(context, L"GetCostPrice",
               is_average ? L"The average cost." : L"The last purchase price.");
  }
  return price;
}

// Prices are looked up as keys are: without regard to case and to the blanks around them, which
// `key` has none of.
bool IsKey(std::wstring_view text, std::wstring_view key) {
  return EqualsIgnoreCase(Trimmed(text), key);
}

// The price list of one customer, who is looked up when it is first asked for.
class PriceListOf {
 public:
  PriceListOf(const Context& context, std::wstring_view acc_ref)
      : customer_(context, L"SalesRecord"), acc_ref_(acc_ref) {}

  // Whether the customer exists and has the price list of that entry.
  bool HasListOf(engine::Record& entry) {
    if (!looked_up_) {
      looked_up_ = true;
      found_ = customer_.Set(L"ACCOUNT_REF", acc_ref_) && customer_.Find(Match::kExact) &&
               customer_.Get(L"Price_List_Ref", price_list_, engine::kTrimmed);
    }
    std::wstring reference;
    return found_ && entry.Get(L"Ext_Ref", reference) && IsKey(reference, price_list_);
  }

 private:
  engine::Record customer_;
  std::wstring_view acc_ref_;
  bool looked_up_ = false;
  bool found_ = false;
  std::wstring price_list_;
};

// The price by the first entry of the price list that applies to the product and the customer, in
// record order; `prices.selling` when there is none.
double PriceListPrice(const Context& context, const BasePrices& prices,
                      std::wstring_view stock_code, std::wstring_view acc_ref) {
  engine::Record entry(context, L"PriceRecord");
  PriceListOf customer(context, acc_ref);
  std::wstring code;
  std::wstring reference;
  std::int32_t number = 0;
  const std::wstring_view stock_key = Trimmed(stock_code);
  const std::wstring_view account_key = Trimmed(acc_ref);
  do {
    ++number;
    std::int16_t type = 0;
    if (!entry.Get(L"Stock_Code", code) || !IsKey(code, stock_key)) continue;
    if (!entry.Get(L"Type", type)) continue;
    const bool applies = type == kOneCustomer
                             ? entry.Get(L"Ext_Ref", reference) && IsKey(reference, account_key)
                             : customer.HasListOf(entry);
    if (!applies) continue;
    if (context.trace().on()) {
      NoteSource(context, kCustomerPrice,
                 L"Entry " + std::to_wstring(number) + L" of the price list, " +
                     (type == kOneCustomer ? L"the customer's own." : L"of the customer's list."));
    }
    return ApplyPriceRule(prices, entry);
  } while (entry.MoveNext());
  NoteSource(context, kCustomerPrice,
             prices.selling != 0 ? L"The selling price: no entry of the price list applies."
                                 : L"None: no entry of the price list applies, and there is no "
                                   L"selling price.");
  return prices.selling;
}

double StoredSupplierPrice(const Context& context, std::wstring_view stock_code,
                           std::wstring_view padded_ref) {
  double price = 0;
  engine::Index index(context, L"PriceIndex");
  engine::DataFile data(context, L"PriceData");  // closed before the index
  index.Open(Mode::kRead);
  data.Open(Mode::kRead);
  std::wstring key;
  key.reserve(1 + padded_ref.size() + stock_code.size());
  key.append(1, L'U').append(padded_ref).append(stock_code);
  if (engine::ReadKey(index, data, std::move(key))) data.Get(L"STORED_PRICE", price);
  return price;
}

// A price in the supplier's currency; as it is when supplier or currency cannot be found.
double InCurrencyOf(const Context& context, std::wstring_view padded_ref, double price) {
  engine::Record supplier(context, L"PurchaseRecord");
  std::int16_t currency = 0;
  if (supplier.Set(L"ACCOUNT_REF", padded_ref) && supplier.Find(Match::kExact) &&
      supplier.Get(L"CURRENCY", currency)) {
    engine::DataFile currencies(context, L"CurrencyData");
    double rate = 0;
    currencies.Open(Mode::kRead);
    if (currencies.Read(std::int32_t{currency} + 1) && currencies.Get(L"EXCHANGE_RATE", rate)) {
      NoteSource(context, kSupplierPrice, L"By the rate of the supplier's currency.");
      return price * rate;
    }
  }
  NoteSource(context, kSupplierPrice, L"As it is: the supplier has no currency with a rate.");
  return price;
}

}  // namespace

double Products::GetCostPrice(std::wstring_view prod_code, bool use_average) const noexcept {
  return Call<double>(L"GetCostPrice", {prod_code, use_average},
                      [&](double& price) { price = CostPrice(context(), prod_code, use_average); });
}

double Products::GetAveragePrice(std::unique_ptr<engine::RecordObject> prod_header) const noexcept {
  return Call<double>(L"GetAveragePrice", {prod_header}, [&](double& price) {
    engine::Record stock(context(), L"StockRecord", std::move(prod_header));
    price = AveragePrice(stock);
  });
}

double Products::GetSpecialPrice(std::wstring_view prod_code,
                                 std::wstring_view acc_ref) const noexcept {
  return Call<double>(kCustomerPrice, {prod_code, acc_ref}, [&](double& price) {
    {
      engine::Pricing pricing(context());
      if (pricing.exists()) {
        NoteSource(context(), kCustomerPrice, kByService);
        price = pricing.CustomerUnitPrice(acc_ref, prod_code);
        return;
      }
    }
    BasePrices prices;
    engine::Record stock(context(), L"StockRecord");
    if (FindProduct(stock, prod_code)) {
      stock.Get(L"SALES_PRICE", prices.selling);
      stock.Get(L"LAST_PURCHASE_PRICE", prices.cost);
    }
    price = prices.selling;  // whatever fails from here on
    price = PriceListPrice(context(), prices, prod_code, acc_ref);
  });
}

double Products::GetSupplierPrice(std::wstring_view prod_code,
                                  std::wstring_view acc_ref) const noexcept {
  return Call<double>(kSupplierPrice, {prod_code, acc_ref}, [&](double& price) {
    {
      engine::Pricing pricing(context());
      if (pricing.exists()) {
        NoteSource(context(), kSupplierPrice, kByService);
        price = pricing.SupplierUnitPrice(prod_code, acc_ref);
        return;
      }
    }
    std::wstring padded_ref(acc_ref);
    if (padded_ref.size() < kReferenceLength) padded_ref.resize(kReferenceLength, L' ');
    price = StoredSupplierPrice(context(), prod_code, padded_ref);
    if (price != 0) return NoteSource(context(), kSupplierPrice, L"The supplier's stored price.");
    price = CostPrice(context(), prod_code, false);
    if (price != 0) price = InCurrencyOf(context(), padded_ref, price);
  });
}

}  // namespace ard::products
