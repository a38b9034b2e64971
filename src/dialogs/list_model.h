// The list of a selection dialog, without its window: columns, a row count, one page of rows at a
// time, a cursor and the selection. A presentation sets the page size, forwards keys, wheel and
// clicks, and draws `rows()`.
//
// Rows come from a source, page by page. A page covers the positions [top, top + page_size - 1];
// it may come up short, since a deleted entry keeps its position but yields no row. Nothing is
// read until a page is asked for, so that a list of any length opens at once.
#ifndef ARD_DIALOGS_LIST_MODEL_H_
#define ARD_DIALOGS_LIST_MODEL_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ard::dialogs {

// 0x00BBGGRR, as automation carries colours.
using Color = std::uint32_t;
inline constexpr Color kDefaultColor = 0;
inline constexpr Color kRed = 255;

struct Column {
  std::wstring header;
  int width;  // in average characters
};

struct Row {
  std::int32_t position = 0;  // from 1, in the order of the list
  std::wstring text;          // the cells, separated by TABs
  Color color = kDefaultColor;

  // The text of cell `number`, from 1; "" when the row has no such cell.
  std::wstring_view Cell(int number) const;
};

class RowSource {
 public:
  virtual ~RowSource() = default;
  // Appends the rows of positions first..last, in order. Rows that cannot be read are left out.
  virtual void LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) = 0;
};

class ListModel {
 public:
  // `source` must outlive the list.
  explicit ListModel(RowSource& source) : source_(source) {}

  void AddColumn(std::wstring header, int width);
  const std::vector<Column>& columns() const { return columns_; }

  // Sets the number of positions and starts over: cursor on none, page from the top, unread.
  void SetRowCount(std::int32_t count);
  std::int32_t row_count() const { return row_count_; }

  // How many rows the presentation shows at once (at least 1).
  void SetPageSize(std::int32_t size);
  std::int32_t page_size() const { return page_size_; }

  // The page shown: its first position, and its rows (read from the source when needed).
  std::int32_t top() const { return top_; }
  const std::vector<Row>& rows();

  // Makes item `position` the selected one and brings it into view. A position outside the list
  // is ignored; when its entry is deleted, nothing is selected.
  void SelectItem(std::int32_t position);
  // Selects row `index` (from 0) of the page shown.
  void SelectRow(std::size_t index);

  // The selected row, also while another page is shown.
  const std::optional<Row>& selected();
  bool IsSelected(const Row& row) { return selected() && selected()->position == row.position; }

  // Scrolling leaves the selection alone.
  void ScrollTo(std::int32_t top);
  void ScrollBy(std::int32_t rows);

  // Cursor keys.
  void LineUp();
  void LineDown();
  void PageUp();
  void PageDown();
  void Home();
  void End();

 private:
  std::int32_t LastTop() const;
  void BringIntoView(std::int32_t position);
  void SetTop(std::int32_t top);
  void Load();
  bool SelectFirstFrom(std::int32_t position);
  bool SelectLastUpTo(std::int32_t position);

  RowSource& source_;
  std::vector<Column> columns_;
  std::int32_t row_count_ = 0;
  // Until a presentation says how much it shows, a page ends twelve rows below the item that was
  // selected before it: a list positioned on item p by selecting p + 12 and then p has p on top.
  std::int32_t page_size_ = 13;
  std::int32_t top_ = 1;
  std::vector<Row> rows_;
  bool loaded_ = false;
  std::int32_t cursor_ = 0;  // the position last moved to, whether or not it yields a row
  bool resolved_ = true;     // whether selected_ is the row at cursor_
  std::optional<Row> selected_;
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_LIST_MODEL_H_
