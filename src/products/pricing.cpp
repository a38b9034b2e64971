#include <cstddef>

#include "frame/decimal.h"
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

bool IsReceipt(std::int16_t type) { return type == 1 || type == 3 || type == 5 || type == 7; }

// Sums are exact, so that nothing is left of 0.1 and 0.2 less 0.3.
double AveragePrice(engine::Record& stock) {
  engine::Transactions transactions(stock);
  engine::Column type_of(transactions, L"Type");
  engine::Column quantity_of(transactions, L"QUANTITY");
  engine::Column used_of(transactions, L"QTY_USED");
  engine::Column cost_of(transactions, L"COST_PRICE");
  double total_quantity = 0;
  double total_cost = 0;
  transactions.MoveFirst();
  const std::int32_t count = transactions.Count();
  for (std::int32_t i = 1; i <= count; ++i) {
    std::int16_t type = 0;
    double quantity = 0;
    double used = 0;
    if (type_of.Get(type) && IsReceipt(type) && quantity_of.Get(quantity) && used_of.Get(used)) {
      const double remaining = ExactDifference(quantity, used);
      double cost = 0;
      if (remaining != 0) {
        total_quantity = ExactSum(total_quantity, remaining);
        if (cost_of.Get(cost)) total_cost = ExactSum(total_cost, cost * remaining);
      }
    }
    if (i < count) transactions.MoveNext();
  }
  return total_cost != 0 && total_quantity != 0 ? total_cost / total_quantity : 0;
}

double CostPrice(const Context& context, std::wstring_view stock_code, bool use_average) {
  double price = 0;
  engine::Record stock(context, L"StockRecord");
  if (!FindProduct(stock, stock_code)) return price;
  if (use_average) price = AveragePrice(stock);
  if (price == 0) stock.Get(L"LAST_PURCHASE_PRICE", price);
  return price;
}

// The price list of one customer, looked up when it is first asked for.
class PriceListOf {
 public:
  PriceListOf(const Context& context, std::wstring_view acc_ref)
      : context_(context), acc_ref_(acc_ref) {}

  // Whether the customer exists and has that price list.
  bool Is(std::wstring_view price_list) {
    if (!looked_up_) {
      looked_up_ = true;
      engine::Record customer(context_, L"SalesRecord");
      found_ = customer.Set(L"ACCOUNT_REF", acc_ref_) && customer.Find(Match::kExact) &&
               customer.Get(L"Price_List_Ref", price_list_, engine::kTrimmed);
    }
    return found_ && price_list_ == price_list;
  }

 private:
  const Context& context_;
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
  PriceListOf customer_price_list(context, acc_ref);
  if (!entry.exists()) return prices.selling;
  engine::Column code_of(entry, L"Stock_Code");
  engine::Column type_of(entry, L"Type");
  engine::Column reference_of(entry, L"Ext_Ref");
  std::wstring code;
  std::wstring reference;
  do {
    std::int16_t type = 0;
    if (!code_of.Get(code) || Trimmed(code) != stock_code) continue;
    if (!type_of.Get(type) || !reference_of.Get(reference)) continue;
    const bool applies = type == kOneCustomer ? Trimmed(reference) == acc_ref
                                              : customer_price_list.Is(Trimmed(reference));
    if (applies) return ApplyPriceRule(prices, entry);
  } while (entry.MoveNext());
  return prices.selling;
}

double StoredSupplierPrice(const Context& context, std::wstring_view stock_code,
                           std::wstring_view padded_ref) {
  double price = 0;
  engine::Index index(context, L"PriceIndex");
  index.Open(Mode::kRead);
  std::wstring key = L"U";
  key += padded_ref;
  key += stock_code;
  if (!index.SetKey(key) || !index.Find(Match::kExact)) return price;
  const std::int32_t record = index.RecordNumber();
  if (record == 0) return price;
  engine::DataFile data(context, L"PriceData");
  data.Open(Mode::kRead);
  if (data.Read(record)) data.Get(L"STORED_PRICE", price);
  return price;
}

// A price in the supplier's currency; as it is when supplier or currency cannot be found.
double InCurrencyOf(const Context& context, std::wstring_view padded_ref, double price) {
  engine::Record supplier(context, L"PurchaseRecord");
  std::int16_t currency = 0;
  if (!supplier.Set(L"ACCOUNT_REF", padded_ref) || !supplier.Find(Match::kExact) ||
      !supplier.Get(L"CURRENCY", currency)) {
    return price;
  }
  engine::DataFile currencies(context, L"CurrencyData");
  double rate = 0;
  currencies.Open(Mode::kRead);
  if (currencies.Read(std::int32_t{currency} + 1) && currencies.Get(L"EXCHANGE_RATE", rate)) {
    price *= rate;
  }
  return price;
}

}  // namespace

double Products::GetCostPrice(std::wstring_view prod_code, bool use_average) const noexcept {
  return Call<double>(L"GetCostPrice",
                      [&](double& price) { price = CostPrice(context(), prod_code, use_average); });
}

double Products::GetAveragePrice(std::unique_ptr<engine::RecordObject> prod_header) const noexcept {
  return Call<double>(L"GetAveragePrice", [&](double& price) {
    engine::Record stock(context(), L"StockRecord", std::move(prod_header));
    price = AveragePrice(stock);
  });
}

double Products::GetSpecialPrice(std::wstring_view prod_code,
                                 std::wstring_view acc_ref) const noexcept {
  return Call<double>(L"GetSpecialPrice", [&](double& price) {
    {
      engine::Pricing pricing(context());
      if (pricing.exists()) {
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
    price = prices.selling;
    price = PriceListPrice(context(), prices, prod_code, acc_ref);
  });
}

double Products::GetSupplierPrice(std::wstring_view prod_code,
                                  std::wstring_view acc_ref) const noexcept {
  return Call<double>(L"GetSupplierPrice", [&](double& price) {
    {
      engine::Pricing pricing(context());
      if (pricing.exists()) {
        price = pricing.SupplierUnitPrice(prod_code, acc_ref);
        return;
      }
    }
    std::wstring padded_ref(acc_ref);
    if (padded_ref.size() < kReferenceLength) padded_ref.resize(kReferenceLength, L' ');
    price = StoredSupplierPrice(context(), prod_code, padded_ref);
    if (price != 0) return;
    price = CostPrice(context(), prod_code, false);
    if (price != 0) price = InCurrencyOf(context(), padded_ref, price);
  });
}

}  // namespace ard::products
