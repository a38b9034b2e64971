#include "frame/decimal.h"
#include "products/products.h"
#include "products/stock_files.h"

namespace ard::products {

template <class T>
T Products::StockField(Name member, std::wstring_view stock_code, Name field) const noexcept {
  return Call<T>(member, {stock_code}, [&](T& value) {
    StockFiles stock(context());
    if (stock.Find(stock_code)) stock.Get(field, value);
  });
}

bool Products::IsValid(std::wstring_view prod_ref) const noexcept {
  return Call<bool>(L"IsValid", {prod_ref},
                    [&](bool& valid) { valid = StockFiles(context()).Has(prod_ref); });
}

std::wstring Products::GetDesc(std::wstring_view product_ref) const noexcept {
  return Call<std::wstring>(L"GetDesc", {product_ref}, [&](std::wstring& description) {
    StockFiles stock(context());
    if (stock.Find(product_ref) && stock.Get(L"DESCRIPTION", description)) Trim(description);
  });
}

std::int16_t Products::GetDept(std::wstring_view prod_code) const noexcept {
  return StockField<std::int16_t>(L"GetDept", prod_code, L"DEPT_NUMBER");
}

std::int16_t Products::GetCategory(std::wstring_view prod_code) const noexcept {
  return StockField<std::int16_t>(L"GetCategory", prod_code, L"STOCK_CAT");
}

std::wstring Products::GetBinLocation(std::wstring_view prod_code) const noexcept {
  return StockField<std::wstring>(L"GetBinLocation", prod_code, L"LOCATION");
}

std::wstring Products::GetSupplier(std::wstring_view prod_code) const noexcept {
  return StockField<std::wstring>(L"GetSupplier", prod_code, L"PURCHASE_REF");
}

std::wstring Products::GetSupplierPart(std::wstring_view prod_code) const noexcept {
  return StockField<std::wstring>(L"GetSupplierPart", prod_code, L"SUPPLIER_PART_NUMBER");
}

std::wstring Products::GetUnitSale(std::wstring_view prod_code) const noexcept {
  return StockField<std::wstring>(L"GetUnitSale", prod_code, L"UNIT_OF_SALE");
}

double Products::GetInStock(std::wstring_view prod_code) const noexcept {
  return StockField<double>(L"GetInStock", prod_code, L"QTY_IN_STOCK");
}

double Products::GetReOrderLevel(std::wstring_view prod_code) const noexcept {
  return StockField<double>(L"GetReOrderLevel", prod_code, L"QTY_REORDER_LEVEL");
}

double Products::GetReOrderQty(std::wstring_view prod_code) const noexcept {
  return StockField<double>(L"GetReOrderQty", prod_code, L"QTY_REORDER");
}

Date Products::GetLastPurDate(std::wstring_view prod_code) const noexcept {
  return StockField<Date>(L"GetLastPurDate", prod_code, L"LAST_PURCHASE_DATE");
}

bool Products::IgnoreStock(std::wstring_view prod_code) const noexcept {
  return StockField<bool>(L"IgnoreStock", prod_code, L"IGNORE_STK_LVL_FLAG");
}

double Products::GetSellPrice(std::wstring_view prod_code) const noexcept {
  return StockField<double>(L"GetSellPrice", prod_code, L"SALES_PRICE");
}

double Products::GetFreeStock(std::wstring_view prod_code) const noexcept {
  return Call<double>(L"GetFreeStock", {prod_code}, [&](double& free) {
    StockFiles stock(context());
    double in_stock = 0;
    double allocated = 0;
    if (stock.Find(prod_code) && stock.Get(L"QTY_IN_STOCK", in_stock) &&
        stock.Get(L"QTY_ALLOCATED", allocated)) {
      free = ExactDifference(in_stock, allocated);
    }
  });
}

void Products::GetAllocOnOrder(std::wstring_view prod_code, double& allocated,
                               double& on_order) const noexcept {
  Run(L"GetAllocOnOrder", {prod_code, Output(allocated), Output(on_order)}, [&] {
    StockFiles stock(context());
    if (!stock.Find(prod_code)) return;
    stock.Get(L"QTY_ALLOCATED", allocated);
    stock.Get(L"QTY_ON_ORDER", on_order);
  });
}

void Products::GetSupplierOnOrder(std::wstring_view prod_code, std::wstring& supplier,
                                  double& on_order, double& min_re_order) const noexcept {
  Run(L"GetSupplierOnOrder", {prod_code, Output(supplier), Output(on_order), Output(min_re_order)},
      [&] {
        StockFiles stock(context());
        if (!stock.Find(prod_code)) return;
        stock.Get(L"PURCHASE_REF", supplier);
        stock.Get(L"QTY_ON_ORDER", on_order);
        stock.Get(L"QTY_REORDER", min_re_order);
      });
}

bool Products::IsMemberOfCategory(std::wstring_view prod_code,
                                  std::int16_t cat_rec_no) const noexcept {
  return Call<bool>(L"IsMemberOfCategory", {prod_code, cat_rec_no}, [&](bool& member) {
    StockFiles stock(context());
    std::int16_t category = 0;
    if (!stock.Find(prod_code) || !stock.Get(L"STOCK_CAT", category)) return;
    member = category == cat_rec_no;
    if (!member) NoteDecision(L"IsMemberOfCategory", L"False: its category is another.");
  });
}

}  // namespace ard::products
