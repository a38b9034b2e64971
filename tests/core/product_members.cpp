#include <cmath>

#include "tests/core/member_rows.h"
#include "tests/core/operations.h"

namespace ard::testing {
namespace {

using namespace classes;  // NOLINT(google-build-using-namespace): the published ones
using dialogs::Pick;
using dialogs::ProductDialog;
using dialogs::SelectDialog;

double AverageOf(const Products& products, const Context& context) {
  std::unique_ptr<engine::RecordObject> record;
  Attempt(context.trace(), {L"test", L"StockRecord"}, [&] {
    record = context.workspace->CreateRecord(L"StockRecord");
    record->GetFields()->Item(L"STOCK_CODE")->SetValue(L"BOLT");
    record->Find(engine::Match::kExact);
  });
  return products.GetAveragePrice(std::move(record));
}

std::tuple<double, double> AllocOnOrder(const Products& products, const Context&) {
  double allocated = -1;
  double on_order = -1;
  products.GetAllocOnOrder(L"BOLT", allocated, on_order);
  return {allocated, on_order};
}

std::tuple<std::wstring, double, double> SupplierOnOrder(const Products& products, const Context&) {
  std::wstring supplier = L"-";
  double on_order = -1;
  double re_order = -1;
  products.GetSupplierOnOrder(L"BOLT", supplier, on_order, re_order);
  return {std::move(supplier), on_order, re_order};
}

ScriptedEnvironment::Script OnProducts(void (*script)(ProductDialog&)) {
  return [=](SelectDialog& dialog) { script(dynamic_cast<ProductDialog&>(dialog)); };
}

void SearchSortAndConfirm(ProductDialog& dialog) {
  dialog.list().rows();
  dialog.KeyPress(L'n');
  dialog.TabClick(ProductDialog::Tab::kProductInfo);
  dialog.SearchTextChange(L"B");
  dialog.SearchClick();
  dialog.SearchFieldChange(ProductDialog::SearchField::kDescription);
  dialog.SearchFieldChange(ProductDialog::SearchField::kStockCode);
  dialog.list().rows();
  dialog.ClearClick();
  dialog.ColumnClick(1);
  dialog.ColumnClick(1);
  dialog.list().LineDown();
  dialog.DoubleClick();
  dialog.TabClick(ProductDialog::Tab::kProducts);
  dialog.KeyPress(dialogs::kEnterKey);
}

void PickSeveral(ProductDialog& dialog) {
  dialog.list().SetPageSize(3);
  dialog.list().Home();
  dialog.list().PageDown(Pick::kExtend);
  dialog.list().End(Pick::kNone);
  dialog.list().Toggle();
  dialog.Ok();
}

}  // namespace

std::vector<Member> ProductMembers() {
  using namespace needed;  // NOLINT(google-build-using-namespace): the steps
  const auto yes_no = OneOf({L"True", L"False"});
  const auto product = SomeReference(L"BNS");
  // A transaction whose cost cannot be read counts by its quantity.
  const auto cost = OneOf({L"0", L"1", L"2", L"20"});
  return {
      {L"Products.IsValid", kNotInIndex, Calls(&Products::IsValid, L"BOLT"), L"True"},
      {L"Products.GetDesc", kProduct + kField, Calls(&Products::GetDesc, L"BOLT"), L"Bolt"},
      {L"Products.GetDept", kProduct + kField, Calls(&Products::GetDept, L"BOLT"), L"3"},
      {L"Products.GetCategory", kProduct + kField, Calls(&Products::GetCategory, L"BOLT"), L"7"},
      {L"Products.GetBinLocation", kProduct + kField, Calls(&Products::GetBinLocation, L"BOLT"),
       L"A1"},
      {L"Products.GetSupplier", kProduct + kField, Calls(&Products::GetSupplier, L"BOLT"),
       L"SUP001"},
      {L"Products.GetSupplierPart", kProduct + kField, Calls(&Products::GetSupplierPart, L"BOLT"),
       L"P9"},
      {L"Products.GetUnitSale", kProduct + kField, Calls(&Products::GetUnitSale, L"BOLT"), L"Each"},
      {L"Products.GetInStock", kProduct + kField, Calls(&Products::GetInStock, L"BOLT"), L"5"},
      {L"Products.GetReOrderLevel", kProduct + kField, Calls(&Products::GetReOrderLevel, L"BOLT"),
       L"4"},
      {L"Products.GetReOrderQty", kProduct + kField, Calls(&Products::GetReOrderQty, L"BOLT"),
       L"20"},
      {L"Products.GetLastPurDate", kProduct + kField, Calls(&Products::GetLastPurDate, L"BOLT"),
       L"2023-03-15"},
      {L"Products.IgnoreStock", kProduct + kField, Calls(&Products::IgnoreStock, L"NUT"), L"True"},
      {L"Products.GetFreeStock", kProduct + 2 * kField, Calls(&Products::GetFreeStock, L"BOLT"),
       L"-2"},
      {L"Products.GetAllocOnOrder", kProduct + 2 * kField,
       Does<Products>(AllocOnOrder, {L"BOLT", Output(-1.0), Output(-1.0)}),
       OneOf({L"-1,-1", L"7,-1", L"-1,2.5", L"7,2.5"})},
      {L"Products.GetSupplierOnOrder", kProduct + 3 * kField,
       Does<Products>(SupplierOnOrder, {L"BOLT", Output(L"-"), Output(-1.0), Output(-1.0)}),
       OneOf({L"-,-1,-1", L"SUP001,-1,-1", L"SUP001,2.5,-1", L"SUP001,-1,20", L"-,2.5,20",
              L"SUP001,2.5,20"})},
      {L"Products.IsMemberOfCategory", kProduct + kField,
       Calls(&Products::IsMemberOfCategory, L"BOLT", std::int16_t{7}), L"True"},
      {L"Products.GetSellPrice", kProduct + kField, Calls(&Products::GetSellPrice, L"BOLT"), L"50"},
      {L"Products.GetCostPrice", kLooked + kAverage, Calls(&Products::GetCostPrice, L"BOLT", true),
       cost},
      // the host finds the record
      {L"Products.GetAveragePrice", kLooked + kAverage,
       Does<Products>(AverageOf, {StockRecord(L"BOLT")}), cost},
      // Both prices; two entries of the price list, with their codes and types: the
      // customer's own list and the reference of the first, the reference and the rule of
      // the second.
      {L"Products.GetSpecialPrice",
       kNoService + kFound + 2 * kField + kCreate + 2 * kFields + 2 * 2 * kField + kMove + kFound +
           kField + kField + 3 * kField,
       Calls(&Products::GetSpecialPrice, L"BOLT", L"ABC001"), OneOf({L"0", L"45", L"50"})},
      // A third entry, which is the price.
      {L"Products.GetSpecialPrice, fixed",
       kNoService + kFound + 2 * kField + kCreate + 3 * kFields + 3 * 2 * kField + 2 * kMove +
           kFound + kField + kField + kField + 3 * kField,
       Calls(&Products::GetSpecialPrice, L"BOLT", L"VALUE"), OneOf({L"0", L"45", L"50"})},
      // No price is kept: the cost price, the supplier's currency, its rate.
      {L"Products.GetSupplierPrice",
       kNoService + kNotInIndex + kFound + kField + kFound + kField + kSingle + kField,
       Calls(&Products::GetSupplierPrice, L"BOLT", L"SUP001"), OneOf({L"0", L"20", L"30"})},
      {L"Products.FastList", Calls(&Products::FastList, true), product, Confirm},
      {L"Products.FastList, every handler", Calls(&Products::FastList, true), product,
       OnProducts(SearchSortAndConfirm)},
      {L"Products.List", Calls(&Products::List, L"N", true), product, Confirm},
      {L"Products.List, one page", Calls(&Products::List, L"N", false), OneOf({L""}),
       LookAndCancel},
      {L"Products.ListMultipleSelect", Calls(&Products::ListMultipleSelect, L"B"),
       SomeReference(L";"), OnProducts(PickSeveral)},
      {L"Products.CreateNewProduct, asking", Once(Calls(&Products::CreateNewProduct, L"NEW", L"")),
       OneOf({L"", L"Asked"})},
      // AddNew; each field and its type; the code; ExtraText, Update, Version.
      {L"Products.SaveNewProduct",
       kCreate + 1 + kFields + kCount + 2 * kStockFields + kBlankedStockFields + kField + 3,
       Once(Calls(&Products::SaveNewProduct, L"NEW")), L"True"},
      // AddNew; each field, from the one to the other; code and description; what is
      // cleared, of which one field is set twice; Update.
      {L"Products.CopyProduct",
       kFound + kCreate + 1 + kFields + kCount + 2 * kStockFields * kField + 2 * kField +
           kCleared * kField - kItem + 1,
       Once(Calls(&Products::CopyProduct, L"BOLT", L"NEW", L"New")), L"True"},
      // Whether stock is kept, in stock, allocated: too little is there.
      {L"Products.UpdateAllocQty", kFound + 3 * kField,
       Once(Calls(&Products::UpdateAllocQty, L"BOLT", -1.5)), L"False"},
      {L"Products.UpdateAllocQty, no number", kFound + 3 * kField,
       Once(Calls(&Products::UpdateAllocQty, L"BOLT", -HUGE_VAL)), L"False"},
  };
}

}  // namespace ard::testing
