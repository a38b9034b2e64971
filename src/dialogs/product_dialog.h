// frmFastSelectProduct: the user picks stock items, from the stock file or from the host's own
// product-information records, each on a page of its own.
#ifndef ARD_DIALOGS_PRODUCT_DIALOG_H_
#define ARD_DIALOGS_PRODUCT_DIALOG_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/indexed_file.h"
#include "dialogs/product_info.h"
#include "dialogs/select_dialog.h"
#include "frame/context.h"

namespace ard::dialogs {

extern const ListedFile kStockFile;

class ProductDialog : private RowSource, public SelectDialog {
 public:
  // Numbered as the tab strip numbers them, and as the host's settings remember them.
  enum class Tab { kProducts = 1, kProductInfo = 2 };

  // What the search looks in, by its entry in the combo box.
  enum class SearchField { kStockCode = 0, kDescription = 1 };

  struct Options {
    bool special_rows = false;  // offers the special non-stock items on top of the stock list
    bool product_info = true;   // has the second page
    bool multiple = false;      // several rows may be picked
  };

  ProductDialog(const Context& context, const Options& options);

  // Opens the stock files, sets the stock list up with `row_count` positions and the second list
  // with its records. Reads no row.
  void Load(std::optional<std::int32_t> row_count);
  // Positions the stock list on the first code that matches `criteria`.
  void PositionOn(std::wstring_view criteria) { stock_.PositionOn(criteria, stock_list()); }
  // Shows just the product-information records whose code starts with `criteria`.
  void FilterBy(std::wstring_view criteria);

  // Before the dialog is shown; an entry or a tab that it does not have is ignored.
  void PresetSearchField(int entry);
  void PresetTab(int tab);

  bool has_product_info() const { return info_.has_value(); }
  Tab tab() const { return tab_; }
  ListModel& list() override { return tab_ == Tab::kProducts ? stock_list() : info_list_; }
  ListModel& stock_list() { return SelectDialog::list(); }
  ListModel& info_list() { return info_list_; }
  const std::wstring& search_text() const { return search_text_; }
  SearchField search_field() const { return search_field_; }

  // The handlers of the second page and of the tab strip.
  void TabClick(Tab tab);
  void SearchTextChange(std::wstring_view text) { search_text_ = text; }
  void SearchFieldChange(SearchField field);
  void ClearClick();
  void SearchClick();
  // On the header of column `index`, from 0, of the second list.
  void ColumnClick(std::size_t index);

 protected:
  void TypeAhead(wchar_t key) override;

 private:
  bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override;
  std::int32_t ExtraRows(std::int32_t first) const override;

  void ShowFiltered(std::wstring_view filter);

  Options options_;
  IndexedFile stock_;
  RowsInMemory no_rows_;
  std::optional<ProductInfo> info_;
  ListModel info_list_;
  Tab tab_ = Tab::kProducts;
  std::wstring search_text_;
  SearchField search_field_ = SearchField::kStockCode;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_PRODUCT_DIALOG_H_
