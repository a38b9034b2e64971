#include <cstddef>
#include <optional>
#include <string>

#include "dialogs/product_dialog.h"
#include "dialogs/show.h"
#include "frame/text.h"
#include "frame/user_settings.h"
#include "products/products.h"

namespace ard::products {
namespace {

using dialogs::ProductDialog;

// The user's settings of the search, below the host's registry path.
constexpr std::wstring_view kSection = L"Options\\ProductSearch";
constexpr std::wstring_view kField = L"Field";
constexpr std::wstring_view kTab = L"Tab";

// A setting that is a number; `otherwise` when it is absent, unreadable or no number.
int NumberSetting(const Context& context, std::wstring_view name, int otherwise) {
  std::int32_t number = otherwise;
  const std::wstring text = UserSetting(context, kSection, name, std::to_wstring(otherwise));
  Attempt(context.trace(), {L"Environment", L"GetSetting", name},
          [&] { Convert(Value(text), number); });
  return number;
}

// The rows that the user picked; none when they cancelled.
std::vector<dialogs::Row> PickProducts(const Context& context,
                                       const ProductDialog::Options& options,
                                       std::optional<std::wstring_view> criteria) {
  const std::optional<std::int32_t> row_count = RecordCount(context, dialogs::kStockFile);
  ProductDialog dialog(context, options);
  dialog.Load(row_count);
  if (options.product_info) {
    dialog.PresetSearchField(NumberSetting(context, kField, 0));
    dialog.PresetTab(NumberSetting(context, kTab, 1));
  }
  if (criteria) {
    const bool blank = Trimmed(*criteria).empty();
    if (options.product_info && !blank) dialog.FilterBy(*criteria);
    if (!options.multiple || !criteria->empty()) dialog.PositionOn(std::wstring(*criteria) + L'*');
  }
  Show(context, dialog);
  if (!dialog.result()) return {};
  SaveUserSetting(context, kSection, kField,
                  std::to_wstring(static_cast<int>(dialog.search_field())));
  SaveUserSetting(context, kSection, kTab, std::to_wstring(static_cast<int>(dialog.tab())));
  return dialog.list().SelectedRows();
}

std::wstring PickOne(const Context& context, const ProductDialog::Options& options,
                     std::optional<std::wstring_view> criteria = std::nullopt) {
  const std::vector<dialogs::Row> rows = PickProducts(context, options, criteria);
  return rows.empty() ? std::wstring() : std::wstring(Trimmed(rows.front().Cell(1)));
}

}  // namespace

std::wstring Products::FastList(bool prod_info) const noexcept {
  return Call<std::wstring>(L"FastList", {prod_info}, [&](std::wstring& stock_code) {
    stock_code = PickOne(context(),
                         {.special_rows = details().show_special_prods, .product_info = prod_info});
  });
}

std::wstring Products::List(std::wstring_view search_criteria, bool prod_info) const noexcept {
  return Call<std::wstring>(L"List", {search_criteria, prod_info}, [&](std::wstring& stock_code) {
    stock_code = PickOne(context(),
                         {.special_rows = details().show_special_prods, .product_info = prod_info},
                         search_criteria);
  });
}

std::wstring Products::ListMultipleSelect(std::wstring_view search_criteria) const noexcept {
  return Call<std::wstring>(
      L"ListMultipleSelect", {search_criteria}, [&](std::wstring& stock_codes) {
        const std::vector<dialogs::Row> rows = PickProducts(
            context(), {.special_rows = details().show_special_prods, .multiple = true},
            search_criteria);
        std::wstring codes = L";";
        for (const dialogs::Row& row : rows) {
          codes += Trimmed(row.Cell(1));
          codes += L';';
        }
        if (codes != L";") stock_codes = codes;
      });
}

}  // namespace ard::products
