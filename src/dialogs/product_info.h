// The host's own product-information records as the rows of a list.
#ifndef ARD_DIALOGS_PRODUCT_INFO_H_
#define ARD_DIALOGS_PRODUCT_INFO_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "database/recordset.h"
#include "dialogs/list_model.h"
#include "frame/context.h"

namespace ard::dialogs {

inline constexpr std::wstring_view kProductInfoQuery =
    L"SELECT StockCode,Description FROM ProdInfoStockFields ORDER BY StockCode";

// A row is the fields of a record, in their order. Dates show as 2006-10-13, Booleans as Yes or No,
// everything else as its text, nothing for Null.
class ProductInfo : public RowSource {
 public:
  explicit ProductInfo(const Context& context) : recordset_(context) {}

  // Opens the query as a static, read-only recordset, whose fields are the list's columns. When it
  // cannot be opened there are no rows.
  void Open(ListModel& list, std::wstring_view query = kProductInfoQuery);
  std::int32_t RecordCount() { return recordset_.RecordCount(); }

  bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override;

  void SetFilter(std::wstring_view filter) { recordset_.SetFilter(filter); }
  // False when the records cannot be sorted so; they keep the order they had.
  bool Sort(std::size_t column, SortOrder order);

 private:
  struct Field {
    std::wstring name;
    std::int32_t type;
  };

  std::wstring RowText();
  std::wstring CellText(std::int32_t field);

  database::Recordset recordset_;
  std::vector<Field> fields_;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_PRODUCT_INFO_H_
