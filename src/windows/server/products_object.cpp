#include <ArdObjects100.h>
#include <ArdObjects100_names.h>

#include <memory>
#include <utility>

#include "products/products.h"
#include "windows/server/context_properties.h"

namespace ard::windows {
namespace {

using Portable = products::Products;
using Base = WithAppName<
    WithRegistryPath<WithArdWorkspace<WithDBaseConn<AutomationObject<_Products, Portable>>>>>;

class ProductsObject final : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE GetDesc(BSTR product_ref, BSTR* result) override {
    return Call(result, &Portable::GetDesc, View(product_ref));
  }
  HRESULT STDMETHODCALLTYPE GetDept(BSTR prod_code, short* result) override {
    return Call(result, &Portable::GetDept, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetCategory(BSTR prod_code, short* result) override {
    return Call(result, &Portable::GetCategory, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetBinLocation(BSTR prod_code, BSTR* result) override {
    return Call(result, &Portable::GetBinLocation, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetSupplier(BSTR prod_code, BSTR* result) override {
    return Call(result, &Portable::GetSupplier, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetSupplierPart(BSTR prod_code, BSTR* result) override {
    return Call(result, &Portable::GetSupplierPart, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetUnitSale(BSTR prod_code, BSTR* result) override {
    return Call(result, &Portable::GetUnitSale, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetInStock(BSTR prod_code, double* result) override {
    return Call(result, &Portable::GetInStock, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetReOrderLevel(BSTR prod_code, double* result) override {
    return Call(result, &Portable::GetReOrderLevel, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetReOrderQty(BSTR prod_code, double* result) override {
    return Call(result, &Portable::GetReOrderQty, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetLastPurDate(BSTR prod_code, DATE* result) override {
    return Call(result, &Portable::GetLastPurDate, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE IgnoreStock(BSTR prod_code, VARIANT_BOOL* result) override {
    return Call(result, &Portable::IgnoreStock, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetFreeStock(BSTR prod_code, double* result) override {
    return Call(result, &Portable::GetFreeStock, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetAllocOnOrder(BSTR prod_code, double* allocated,
                                            double* on_order) override {
    if (!allocated || !on_order) return E_POINTER;
    return Perform([&](Portable& portable) {
      portable.GetAllocOnOrder(View(prod_code), *allocated, *on_order);
    });
  }
  HRESULT STDMETHODCALLTYPE GetSupplierOnOrder(BSTR prod_code, BSTR* supplier, double* on_order,
                                               double* min_re_order) override {
    if (!supplier || !on_order || !min_re_order) return E_POINTER;
    TextOutput supplier_text(supplier);
    return Perform([&](Portable& portable) {
      portable.GetSupplierOnOrder(View(prod_code), supplier_text.value(), *on_order, *min_re_order);
    });
  }
  HRESULT STDMETHODCALLTYPE IsMemberOfCategory(BSTR prod_code, short cat_rec_no,
                                               VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsMemberOfCategory, View(prod_code), cat_rec_no);
  }
  HRESULT STDMETHODCALLTYPE IsValid(BSTR prod_ref, VARIANT_BOOL* result) override {
    return Call(result, &Portable::IsValid, View(prod_ref));
  }
  HRESULT STDMETHODCALLTYPE get_ShowSpecialProds(VARIANT_BOOL* result) override {
    return Call(result, &Portable::ShowSpecialProds);
  }
  HRESULT STDMETHODCALLTYPE put_ShowSpecialProds(VARIANT_BOOL value) override {
    return Perform(
        [&](Portable& portable) { portable.SetShowSpecialProds(value != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE GetSellPrice(BSTR prod_code, double* result) override {
    return Call(result, &Portable::GetSellPrice, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE GetCostPrice(BSTR prod_code, VARIANT_BOOL use_average,
                                         double* result) override {
    return Call(result, &Portable::GetCostPrice, View(prod_code), use_average != VARIANT_FALSE);
  }
  HRESULT STDMETHODCALLTYPE GetAveragePrice(IDispatch* prod_header, double* result) override {
    return Call(result, [&](Portable& portable) {
      std::unique_ptr<engine::RecordObject> record;
      Attempt(portable.context().trace(), {L"Products", L"GetAveragePrice", L"ProdHeader"},
              [&] { record = WrapRecord(prod_header); });
      return portable.GetAveragePrice(std::move(record));
    });
  }
  HRESULT STDMETHODCALLTYPE GetSpecialPrice(BSTR prod_code, BSTR acc_ref, double* result) override {
    return Call(result, &Portable::GetSpecialPrice, View(prod_code), View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE GetSupplierPrice(BSTR prod_code, BSTR acc_ref,
                                             double* result) override {
    return Call(result, &Portable::GetSupplierPrice, View(prod_code), View(acc_ref));
  }
  HRESULT STDMETHODCALLTYPE FastList(VARIANT_BOOL prod_info, BSTR* result) override {
    return Call(result, &Portable::FastList, prod_info != VARIANT_FALSE);
  }
  HRESULT STDMETHODCALLTYPE List(BSTR search_criteria, VARIANT_BOOL prod_info,
                                 BSTR* result) override {
    return Call(result, &Portable::List, View(search_criteria), prod_info != VARIANT_FALSE);
  }
  HRESULT STDMETHODCALLTYPE ListMultipleSelect(BSTR search_criteria, BSTR* result) override {
    return Call(result, &Portable::ListMultipleSelect, View(search_criteria));
  }
  HRESULT STDMETHODCALLTYPE CreateNewProduct(BSTR prod_code, BSTR prod_desc,
                                             BSTR* result) override {
    return Call(result, &Portable::CreateNewProduct, View(prod_code), View(prod_desc));
  }
  HRESULT STDMETHODCALLTYPE SaveNewProduct(BSTR prod_code, VARIANT_BOOL* result) override {
    return Call(result, &Portable::SaveNewProduct, View(prod_code));
  }
  HRESULT STDMETHODCALLTYPE CopyProduct(BSTR exist_prod, BSTR new_code, BSTR new_desc,
                                        VARIANT_BOOL* result) override {
    return Call(result, &Portable::CopyProduct, View(exist_prod), View(new_code), View(new_desc));
  }
  HRESULT STDMETHODCALLTYPE UpdateAllocQty(BSTR prod_code, double qty,
                                           VARIANT_BOOL* result) override {
    return Call(result, &Portable::UpdateAllocQty, View(prod_code), qty);
  }
};

constexpr Member kMembers[] = {
    kAppName<_Products>,
    kRegistryPath<_Products>,
    kArdWorkspace<_Products>,
    kDBaseConn<_Products>,
    Method<&_Products::GetDesc, String(String)>,
    Method<&_Products::GetDept, Integer(String)>,
    Method<&_Products::GetCategory, Integer(String)>,
    Method<&_Products::GetBinLocation, String(String)>,
    Method<&_Products::GetSupplier, String(String)>,
    Method<&_Products::GetSupplierPart, String(String)>,
    Method<&_Products::GetUnitSale, String(String)>,
    Method<&_Products::GetInStock, Double(String)>,
    Method<&_Products::GetReOrderLevel, Double(String)>,
    Method<&_Products::GetReOrderQty, Double(String)>,
    Method<&_Products::GetLastPurDate, DateTime(String)>,
    Method<&_Products::IgnoreStock, Boolean(String)>,
    Method<&_Products::GetFreeStock, Double(String)>,
    Method<&_Products::GetAllocOnOrder, void(String, ByRef<Double>, ByRef<Double>)>,
    Method<&_Products::GetSupplierOnOrder,
           void(String, ByRef<String>, ByRef<Double>, ByRef<Double>)>,
    Method<&_Products::IsMemberOfCategory, Boolean(String, Integer)>,
    Method<&_Products::IsValid, Boolean(String)>,
    Property<&_Products::get_ShowSpecialProds, &_Products::put_ShowSpecialProds, Boolean>,
    Method<&_Products::GetSellPrice, Double(String)>,
    Method<&_Products::GetCostPrice, Double(String, Boolean)>,
    Method<&_Products::GetAveragePrice, Double(ObjectReference)>,
    Method<&_Products::GetSpecialPrice, Double(String, String)>,
    Method<&_Products::GetSupplierPrice, Double(String, String)>,
    Method<&_Products::FastList, String(Optional<Boolean, VARIANT_TRUE>)>,
    Method<&_Products::List, String(String, Optional<Boolean, VARIANT_TRUE>)>,
    Method<&_Products::ListMultipleSelect, String(String)>,
    Method<&_Products::CreateNewProduct, String(String, Optional<String, nullptr>)>,
    Method<&_Products::SaveNewProduct, Boolean(String)>,
    Method<&_Products::CopyProduct, Boolean(String, String, String)>,
    Method<&_Products::UpdateAllocQty, Boolean(String, Double)>,
};

}  // namespace

const PublishedClass kProducts = {{L"Products", kMembers, kProductsNames},
                                  kProductsHelp,
                                  CLSID_Products,
                                  IID__Products,
                                  Create<ProductsObject>};

}  // namespace ard::windows
