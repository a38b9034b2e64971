#include "dialogs/product_dialog.h"

#include <algorithm>
#include <iterator>

#include "frame/text.h"

namespace ard::dialogs {
namespace {

constexpr FieldColumn kStockColumns[] = {{L"Stock Code", 20, L"STOCK_CODE"},
                                         {L"Description", 55, L"DESCRIPTION"}};

constexpr Color kSpecialColor = 0xFF0000;
constexpr const wchar_t* kSpecialRows[] = {
    L"S1\tSpecial Product Item, Tax chargeable",
    L"S2\tSpecial Product Item, Tax zero rated",
    L"S3\tSpecial Service Item, Tax chargeable",
};
constexpr auto kSpecialRowCount = static_cast<std::int32_t>(std::size(kSpecialRows));

// What ends a search text that already says how it goes on.
constexpr std::wstring_view kWildcards = L"%_*?";

std::wstring LikeFilter(std::wstring_view field, std::wstring_view pattern) {
  std::wstring filter = L"[";
  filter += field;
  filter += L"] Like '";
  filter += pattern;
  filter += L"'";
  return filter;
}

}  // namespace

const ListedFile kStockFile = {L"StockData", L"StockIndex", L"NO_OF_STOCK", kStockColumns,
                               L"products"};

ProductDialog::ProductDialog(const Context& context, const Options& options)
    : SelectDialog(L"frmFastSelectProduct", L"Select Product", *this),
      options_(options),
      stock_(context, kStockFile),
      info_list_(options.product_info ? static_cast<RowSource&>(info_.emplace(context))
                                      : static_cast<RowSource&>(no_rows_)) {
  DescribeList(kStockFile, stock_list());
  if (options.multiple) {
    stock_list().SetMultiple();
    info_list_.SetMultiple();
  }
}

void ProductDialog::Load(std::optional<std::int32_t> row_count) {
  stock_.Open(stock_list(), row_count);
  stock_list().SetRowCount(row_count.value_or(0));
  stock_list().SelectFirst();
  if (!info_) return;
  info_->Open(info_list_);
  info_list_.SetRowCount(info_->RecordCount());
}

void ProductDialog::FilterBy(std::wstring_view criteria) {
  search_text_ = criteria;
  search_field_ = SearchField::kStockCode;
  std::wstring pattern(criteria);
  pattern += L'%';
  ShowFiltered(LikeFilter(L"StockCode", pattern));
}

void ProductDialog::PresetSearchField(int entry) {
  if (entry == 1) search_field_ = SearchField::kDescription;
}

void ProductDialog::PresetTab(int tab) {
  if (tab == 1 || (tab == 2 && info_)) tab_ = static_cast<Tab>(tab);
}

void ProductDialog::TabClick(Tab tab) { PresetTab(static_cast<int>(tab)); }

void ProductDialog::SearchFieldChange(SearchField field) {
  search_field_ = field;
  if (Trimmed(search_text_).empty()) {
    ClearClick();
  } else {
    SearchClick();
  }
}

void ProductDialog::ClearClick() {
  search_text_.clear();
  ShowFiltered({});
}

void ProductDialog::SearchClick() {
  std::wstring pattern = search_text_;
  if (pattern.empty() || kWildcards.find(pattern.back()) == std::wstring_view::npos) {
    pattern += L'%';
  }
  ShowFiltered(LikeFilter(search_field_ == SearchField::kStockCode ? L"StockCode" : L"Description",
                          pattern));
}

void ProductDialog::ColumnClick(std::size_t index) {
  if (!info_ || index >= info_list_.columns().size()) return;
  const SortOrder order = info_list_.columns()[index].sort == SortOrder::kAscending
                              ? SortOrder::kDescending
                              : SortOrder::kAscending;
  if (info_->Sort(index, order)) info_list_.ShowSort(index, order);
  info_list_.SelectFirst();
}

void ProductDialog::TypeAhead(wchar_t key) {
  if (tab_ == Tab::kProducts) stock_.TypeAhead(key, stock_list());
}

bool ProductDialog::LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) {
  for (std::int32_t row = kSpecialRowCount - ExtraRows(first); row < kSpecialRowCount; ++row) {
    rows.push_back({row - kSpecialRowCount + 1, kSpecialRows[row], kSpecialColor});
  }
  return stock_.LoadPage(first, last, rows);
}

std::int32_t ProductDialog::ExtraRows(std::int32_t first) const {
  return options_.special_rows ? std::max(kSpecialRowCount + 1 - first, 0) : 0;
}

void ProductDialog::ShowFiltered(std::wstring_view filter) {
  if (!info_) return;
  info_->SetFilter(filter);
  info_list_.SetRowCount(info_->RecordCount());
}

}  // namespace ard::dialogs
