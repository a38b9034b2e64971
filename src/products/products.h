// Products: questions about stock items, their prices, the lists to pick them from, and the few
// places where the library writes stock records.
#ifndef ARD_PRODUCTS_PRODUCTS_H_
#define ARD_PRODUCTS_PRODUCTS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "engine/seam.h"
#include "frame/public_class.h"

namespace ard::products {

// What a host sets of the lists.
struct ListOptions {
  bool show_special_prods = false;  // they offer the special non-stock items, too
};

// Stock codes are looked up exactly as given: neither trimmed nor upper-cased. Quantities are in
// the product's unit of sale, prices in the units that the accounts product stores; nothing is
// rounded.
class Products : public PropertyClass<ListOptions> {
 public:
  explicit Products(Environment& environment) : PropertyClass(L"Products", environment) {}

  static constexpr Property<ListOptions> kProperties[] = {
      {L"ShowSpecialProds", &ListOptions::show_special_prods},
  };

  // Whether the code is in the stock index; no record is read.
  bool IsValid(std::wstring_view prod_ref) const noexcept;

  // Fields of the stock record; "", 0, False or the zero date when the code is not found. The
  // description is trimmed, the other texts come as stored.
  std::wstring GetDesc(std::wstring_view product_ref) const noexcept;
  std::int16_t GetDept(std::wstring_view prod_code) const noexcept;
  std::int16_t GetCategory(std::wstring_view prod_code) const noexcept;
  std::wstring GetBinLocation(std::wstring_view prod_code) const noexcept;
  std::wstring GetSupplier(std::wstring_view prod_code) const noexcept;
  std::wstring GetSupplierPart(std::wstring_view prod_code) const noexcept;
  std::wstring GetUnitSale(std::wstring_view prod_code) const noexcept;
  double GetInStock(std::wstring_view prod_code) const noexcept;
  double GetReOrderLevel(std::wstring_view prod_code) const noexcept;
  double GetReOrderQty(std::wstring_view prod_code) const noexcept;
  Date GetLastPurDate(std::wstring_view prod_code) const noexcept;
  bool IgnoreStock(std::wstring_view prod_code) const noexcept;

  // QTY_IN_STOCK less QTY_ALLOCATED, as exact decimals: negative for over-allocated stock.
  double GetFreeStock(std::wstring_view prod_code) const noexcept;

  // Outputs are assigned only when they have been read. `min_re_order` is the re-order quantity.
  void GetAllocOnOrder(std::wstring_view prod_code, double& allocated,
                       double& on_order) const noexcept;
  void GetSupplierOnOrder(std::wstring_view prod_code, std::wstring& supplier, double& on_order,
                          double& min_re_order) const noexcept;

  bool IsMemberOfCategory(std::wstring_view prod_code, std::int16_t cat_rec_no) const noexcept;

  // The list selling price; 0 when the code is not found.
  double GetSellPrice(std::wstring_view prod_code) const noexcept;
  // The last purchase price; with `use_average`, the average cost where there is one.
  double GetCostPrice(std::wstring_view prod_code, bool use_average) const noexcept;
  // The average cost of what is left of the purchases and other receipts (transaction types 1, 3, 5
  // and 7) of a stock record that the host hands in; 0 when nothing is left.
  double GetAveragePrice(std::unique_ptr<engine::RecordObject> prod_header) const noexcept;
  // What the customer pays, and what the supplier charges, in the supplier's currency: by the
  // engine's pricing service when it has one, else by the price list and the stock record.
  double GetSpecialPrice(std::wstring_view prod_code, std::wstring_view acc_ref) const noexcept;
  double GetSupplierPrice(std::wstring_view prod_code, std::wstring_view acc_ref) const noexcept;

  // The stock code, trimmed, that the user picks; "" when cancelled. `prod_info` offers the host's
  // own product-information records on a second page.
  std::wstring FastList(bool prod_info = true) const noexcept;
  // The same, with the first page positioned on the first code that starts with `search_criteria`,
  // and the second one holding just those.
  std::wstring List(std::wstring_view search_criteria, bool prod_info = true) const noexcept;
  // Several: ";A1;B2;C3;" in the order of the list; "" when none is picked.
  std::wstring ListMultipleSelect(std::wstring_view search_criteria) const noexcept;

  // Creates a product with the company's defaults; asks the user for a description when it is
  // blank. Returns the description, trimmed ("" when there is no engine to create it in).
  std::wstring CreateNewProduct(std::wstring_view prod_code,
                                std::wstring_view prod_desc = {}) const noexcept;
  // Creates a blank product. False only when there is no engine to create it in: a save that the
  // engine refuses goes unnoticed.
  bool SaveNewProduct(std::wstring_view prod_code) const noexcept;
  // Creates a copy without history and balances. False when `exist_prod` is not found.
  bool CopyProduct(std::wstring_view exist_prod, std::wstring_view new_code,
                   std::wstring_view new_desc) const noexcept;
  // Adds `qty` to the quantity allocated when the free stock allows it. True when it did, and for a
  // product that ignores stock levels.
  bool UpdateAllocQty(std::wstring_view prod_code, double qty) const noexcept;

 private:
  // A field of the stock record; neutral when the code is not found.
  template <class T>
  T StockField(Name member, std::wstring_view stock_code, Name field) const noexcept;
};

}  // namespace ard::products

#endif  // ARD_PRODUCTS_PRODUCTS_H_
