#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "frame/text.h"
#include "simulator/engine_objects.h"

namespace ard::simulator {
namespace {

// Types of a price entry.
enum PriceType : std::int32_t { kCustomerPrice = 'S', kSupplierPrice = 'U' };

enum DiscountType : std::int32_t {
  kFixedPrice,
  kNoDiscount,
  kPercentOff,
  kAmountOff,
  kPercentOnCost,
  kAmountOnCost,
};

// A record, or none, of a table that may lack any column.
class Entry {
 public:
  Entry() = default;
  Entry(const Table& table, std::int32_t record) : table_(&table), record_(record) {}

  explicit operator bool() const { return record_ != 0; }
  Value Get(std::wstring_view field) const {
    const int column = record_ == 0 ? -1 : table_->columns().Find(field);
    return column < 0 ? Value() : table_->Cell(record_, static_cast<std::size_t>(column));
  }
  double Number(std::wstring_view field) const { return Get(field).ToDouble(); }

 private:
  const Table* table_ = nullptr;
  std::int32_t record_ = 0;
};

// What the entry makes of the product's own price and cost.
double Priced(const Entry& product, const Entry& price) {
  const double list_price = product.Number(L"SALES_PRICE");
  const double cost = product.Number(L"LAST_PURCHASE_PRICE");
  const double value = price.Number(L"VALUE");
  switch (price.Get(L"DISCOUNT_TYPE").ToLong()) {
    case kFixedPrice:
      return value;
    case kPercentOff:
      return list_price * (1 - value / 100);
    case kAmountOff:
      return list_price - value;
    case kPercentOnCost:
      return cost * (1 + value / 100);
    case kAmountOnCost:
      return cost + value;
    case kNoDiscount:
    default:
      return list_price;
  }
}

class SimulatedPricing : public engine::PricingObject, private EngineObject {
 public:
  explicit SimulatedPricing(std::shared_ptr<EngineState> state) : EngineObject(std::move(state)) {}

  double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) override {
    return Run([&] {
      const Entry product = Find(L"StockData", {WithoutPadding(stock_code)});
      if (!product) return 0.0;
      Entry price = Price(kCustomerPrice, acc_ref, stock_code);
      if (!price) {
        const Entry customer = Find(L"SalesData", {WithoutPadding(acc_ref)});
        price = ListPrice(customer.Get(L"PRICE_LIST_REF").ToText(), stock_code);
      }
      return price ? Priced(product, price) : product.Number(L"SALES_PRICE");
    });
  }

  double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) override {
    return Run([&] {
      const Entry product = Find(L"StockData", {WithoutPadding(stock_code)});
      if (!product) return 0.0;
      const Entry price = Price(kSupplierPrice, acc_ref, stock_code);
      return price ? price.Number(L"STORED_PRICE") : product.Number(L"LAST_PURCHASE_PRICE");
    });
  }

 private:
  const Table* Find(std::wstring_view table) const { return state()->company->Find(table); }

  // The record with that key.
  Entry Find(std::wstring_view table_name, const std::vector<Value>& cells) const {
    const Table* table = Find(table_name);
    if (table == nullptr) return {};
    const std::optional<std::wstring> key = table->ComposeKey(cells);
    const std::int32_t position = key ? table->FindKey(*key, engine::Match::kExact) : 0;
    return position == 0 ? Entry() : Entry(*table, table->RecordAt(position));
  }

  Entry Price(PriceType type, std::wstring_view ref, std::wstring_view stock_code) const {
    return Find(L"PriceData", {type, WithoutPadding(ref), WithoutPadding(stock_code)});
  }

  // The entry of a named list, whose type is any but that of one customer or supplier.
  Entry ListPrice(std::wstring_view list, std::wstring_view stock_code) const {
    const Table* table = Find(L"PriceData");
    if (table == nullptr || list.empty()) return {};
    for (std::int32_t record = 1; record <= table->size(); ++record) {
      const Entry entry(*table, record);
      const std::int32_t type = entry.Get(L"TYPE").ToLong();
      if (type != kCustomerPrice && type != kSupplierPrice &&
          EqualsIgnoreCase(entry.Get(L"EXT_REF").ToText(), list) &&
          EqualsIgnoreCase(entry.Get(L"STOCK_CODE").ToText(), WithoutPadding(stock_code))) {
        return entry;
      }
    }
    return {};
  }
};

}  // namespace

std::unique_ptr<engine::PricingObject> MakePricing(std::shared_ptr<EngineState> state) {
  return std::make_unique<SimulatedPricing>(std::move(state));
}

}  // namespace ard::simulator
