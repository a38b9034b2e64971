// The list of a selection dialog, without its window: columns, a row count, one page of rows at a
// time, a cursor and the selection. A presentation sets the page size, forwards keys, wheel and
// clicks, and draws `rows()`.
//
// Rows come from a source, page by page. A page covers the positions [top, top + page_size - 1];
// it may come up short, since a deleted entry keeps its position but yields no row. Nothing is
// read until a page is asked for, so that a list of any length opens at once.
#ifndef ARD_DIALOGS_LIST_MODEL_H_
#define ARD_DIALOGS_LIST_MODEL_H_

#include <cstddef>
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

enum class SortOrder { kNone = 0, kAscending = 1, kDescending = 2 };

struct Column {
  std::wstring header;
  int width;  // in average characters
  SortOrder sort = SortOrder::kNone;
};

// Room for the text of most rows, to be reserved before it is put together.
inline constexpr std::size_t kRowLength = 80;

struct Row {
  std::int32_t position = 0;  // from 1, in the order of the list; below 0 for an extra row
  std::wstring text;          // the cells, separated by TABs
  Color color = kDefaultColor;

  // The text of cell `number`, from 1; "" when the row has no such cell.
  std::wstring_view Cell(int number) const;
};

class RowSource {
 public:
  virtual ~RowSource() = default;
  // Appends the rows of positions first..last, in order, after the extra rows of a page that starts
  // at `first`. Rows that cannot be read are left out.
  virtual void LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) = 0;
  // How many extra rows, beyond the positions, stand on top of a page that starts at `first`. Their
  // positions are negative and end with -1; the page at 1 has all of them, the one at 2 all but
  // the first, and so on.
  virtual std::int32_t ExtraRows(std::int32_t) const { return 0; }
};

// What moving the cursor does to the selection of a list with multiple selection. In one with
// single selection, the row at the cursor is what is selected.
enum class Pick {
  kOnly,    // the row at the cursor, and no other (a plain key or click)
  kExtend,  // all rows from the last one picked alone to the cursor (with Shift)
  kToggle,  // the row at the cursor in or out, the others as they are (with Ctrl)
  kNone,    // the cursor moves, the selection stays (arrow keys with Ctrl)
};

class ListModel {
 public:
  // `source` must outlive the list.
  explicit ListModel(RowSource& source) : source_(source) {}

  void AddColumn(std::wstring header, int width);
  const std::vector<Column>& columns() const { return columns_; }
  // Shows in the header of column `index`, from 0, that the rows are sorted by it.
  void ShowSort(std::size_t index, SortOrder order);

  // Switches to multiple selection.
  void SetMultiple() { multiple_ = true; }
  bool multiple() const { return multiple_; }

  // Sets the number of positions and starts over: cursor on none, page from the top, unread.
  void SetRowCount(std::int32_t count);
  std::int32_t row_count() const { return row_count_; }

  // How many rows the presentation shows at once (at least 1).
  void SetPageSize(std::int32_t size);
  std::int32_t page_size() const { return page_size_; }

  // The page shown: its first position, and its rows (read from the source when needed).
  std::int32_t top() const { return top_; }
  // The top of the page that ends with the last position.
  std::int32_t LastTop() const { return TopToEndWith(row_count_); }
  const std::vector<Row>& rows();

  // Makes item `position` the selected one and brings it into view. A position outside the list
  // is ignored; when its entry is deleted, nothing is selected.
  void SelectItem(std::int32_t position);
  // The same for the first row of all, an extra row if there is one.
  void SelectFirst();
  // Moves the cursor to row `index` (from 0) of the page shown.
  void SelectRow(std::size_t index, Pick pick = Pick::kOnly);
  // Takes the row at the cursor in or out of a multiple selection.
  void Toggle() { Mark(Pick::kToggle); }

  // The row at the cursor, also while another page is shown.
  const std::optional<Row>& selected();
  bool IsCursor(const Row& row) { return selected() && selected()->position == row.position; }
  bool IsSelected(const Row& row);
  bool HasSelection();
  // All selected rows in the order of the list, read from the source.
  std::vector<Row> SelectedRows();

  // Scrolling leaves the selection alone.
  void ScrollTo(std::int32_t top);
  void ScrollBy(std::int32_t rows);

  // Cursor keys.
  void LineUp(Pick pick = Pick::kOnly);
  void LineDown(Pick pick = Pick::kOnly);
  void PageUp(Pick pick = Pick::kOnly);
  void PageDown(Pick pick = Pick::kOnly);
  void Home(Pick pick = Pick::kOnly);
  void End(Pick pick = Pick::kOnly);

 private:
  // Positions from..to, both included.
  struct Range {
    std::int32_t from;
    std::int32_t to;
    bool Contains(std::int32_t position) const { return from <= position && position <= to; }
  };

  void MoveUp();
  void MoveDown();
  void MovePageUp();
  void MovePageDown();
  void MoveHome();
  void MoveEnd();
  // Puts the cursor on a position whose row is still to be read.
  void MoveTo(std::int32_t position);
  void MoveToRow(std::size_t index);

  // Updates a multiple selection after a move of the cursor.
  void Mark(Pick pick);
  void ToggleCursor();

  // How many positions the page at `top` shows: as many rows as are not taken by extra rows.
  std::int32_t Reach(std::int32_t top) const;
  bool IsInView(std::int32_t position) const;
  // The top of the page that ends with `position`.
  std::int32_t TopToEndWith(std::int32_t position) const;
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
  std::int32_t cursor_ = 0;      // the position last moved to, whether or not it yields a row
  bool resolved_ = true;         // whether selected_ is the row at cursor_
  std::optional<Row> selected_;  // the row at the cursor

  bool multiple_ = false;
  std::vector<Range> picked_;  // ascending, without overlap
  std::int32_t anchor_ = 0;    // the position last picked alone
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_LIST_MODEL_H_
