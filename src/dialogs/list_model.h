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
  int width;    // in average characters
  bool number;  // not text
  SortOrder sort = SortOrder::kNone;
};

// Room for the text of most rows, to be reserved before it is put together.
inline constexpr std::size_t kRowLength = 80;

struct Row {
  std::int32_t position = 0;  // from 1, in the order of the list; up to 0 for an extra row
  std::wstring text;          // the cells, separated by TABs
  Color color = kDefaultColor;

  // The text of cell `number`, from 1; "" when the row has no such cell.
  std::wstring_view Cell(int number) const;
};

class RowSource {
 public:
  virtual ~RowSource() = default;
  // Appends the rows of positions first..last, in order, after the extra rows of a page that starts
  // at `first`. Rows that cannot be read are left out; false when nothing can be, not even that an
  // entry is deleted.
  virtual bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) = 0;
  // How many extra rows, beyond the positions, stand on top of a page that starts at `first`. Their
  // own positions end with 0, so that none is left out before 1; the page at 1 has all of them, the
  // one at 2 all but the first, and so on.
  virtual std::int32_t ExtraRows(std::int32_t) const { return 0; }
};

// What moving the cursor does to the selection of a list with multiple selection. In one with
// single selection, each selects the row at the cursor alone.
enum class Pick {
  kOnly,    // the row at the cursor, and no other (a plain key or click)
  kExtend,  // all rows from the last one picked alone to the cursor (with Shift)
  kToggle,  // the row at the cursor in or out, the others as they are (with Ctrl)
  kNone,    // the cursor moves, the selection stays (arrow keys with Ctrl)
};

// Whether the rows of a list have been asked for, and whether they could be read.
enum class Reading { kNotYet, kFailed, kDone };

class ListModel {
 public:
  // `source` must outlive the list.
  explicit ListModel(RowSource& source) : source_(source) {}

  void AddColumn(std::wstring header, int width, bool number = false);
  const std::vector<Column>& columns() const { return columns_; }
  // Shows in the header of column `index`, from 0, that the rows are sorted by it.
  void ShowSort(std::size_t index, SortOrder order);

  // What the rows are, in the plural: "customers".
  void SetName(std::wstring_view name) { name_ = name; }
  // What a screen reader says: "Customers", and of a row "A1, Ann Ltd, row 3 of 140, over its
  // limit", by its place in the whole list.
  std::wstring Title() const;
  std::wstring Spoken(const Row& row) const;
  void SetReading(Reading reading) { reading_ = reading; }
  // Why there are no rows, for the user; "" when that needs no words.
  std::wstring WhyEmpty() const;

  // Switches to multiple selection.
  void SetMultiple() { multiple_ = true; }
  bool multiple() const { return multiple_; }

  // Sets the number of positions and starts over: the cursor on the first row, nothing selected,
  // the page from the top, unread.
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
  // Selects item `position`. When its entry is deleted, selects the next row if that is near and
  // begins with `prefix`, in any case; otherwise nothing changes.
  void SelectFrom(std::int32_t position, std::wstring_view prefix);
  // Starts over with the first row of all selected, an extra row if there is one. When the first
  // page comes to be read, deleted entries are stepped over, as by Home; where there are too many
  // for that, the list is `looking`, and Home goes on, until a row is found, the user scrolls or a
  // page cannot be read.
  void SelectFirst();
  bool looking() const {
    return opening_ == Opening::kLooking && sought_ && sought_->next <= row_count_;
  }
  // Selects the row at the cursor. False when there is none, or it is selected.
  bool SelectCursor();
  // Moves the cursor to row `index` (from 0) of the page shown.
  void SelectRow(std::size_t index, Pick pick = Pick::kOnly);
  // Takes the row at the cursor in or out of a multiple selection.
  void Toggle() { Mark(Pick::kToggle); }

  // The row at the cursor, if it is selected; also while another page is shown.
  const std::optional<Row>& selected();
  bool IsCursor(const Row& row) const { return row.position == cursor_; }
  bool IsSelected(const Row& row) const { return IsPicked(row.position); }
  // Whether any row is selected: one that is there, not only positions of deleted entries. Of a
  // multiple selection, no more is read than it takes to come upon the first such row.
  bool HasSelection();
  // All selected rows in the order of the list, read from the source.
  std::vector<Row> SelectedRows();

  // Scrolling leaves the selection alone.
  void ScrollTo(std::int32_t top);
  void ScrollBy(std::int32_t rows);

  // Cursor keys. They step over deleted entries; where there are too many for one press, or nothing
  // is left, the cursor and the page stay, and the same key goes on from there.
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

  // Where a key that came upon deleted entries only looks next, when it is pressed again.
  struct Sought {
    std::int32_t next;
    bool (ListModel::*move)();
  };

  // Whether the first row is still to be selected.
  enum class Opening { kDone, kUnread, kLooking };

  // Makes what `move` does of the cursor the selection, or what `seek` does where `move` got stuck.
  void Press(bool (ListModel::*move)(), bool (ListModel::*seek)(std::int32_t), Pick pick);
  // Put the cursor on a row; false when they come upon none.
  bool MoveUp();
  bool MoveDown();
  bool MovePageUp();
  bool MovePageDown();
  bool MoveHome();
  bool MoveEnd();
  bool MoveToRow(std::size_t index);
  // Look for a row page by page, up or down from `target`.
  bool SeekUp(std::int32_t target);
  bool SeekDown(std::int32_t target);
  // Puts the cursor on a position whose row is still to be read.
  void MoveTo(std::int32_t position);
  // Before anything is read: does what SelectFirst has left to do.
  void Open();

  // Updates a multiple selection after a move of the cursor.
  void Mark(Pick pick);
  void ToggleCursor();
  bool IsPicked(std::int32_t position) const;
  bool FindSelection();
  // Hands the rows of the range to `take` until it returns false; whether it never did.
  template <class Take>
  bool Read(const Range& range, Take take);

  // How many positions the page at `top` shows: as many rows as are not taken by extra rows.
  std::int32_t Reach(std::int32_t top) const;
  bool IsInView(std::int32_t position) const;
  // The top of the page that ends with `position`.
  std::int32_t TopToEndWith(std::int32_t position) const;
  void BringIntoView(std::int32_t position);
  void SetTop(std::int32_t top);
  void Load();
  const std::optional<Row>& AtCursor();
  std::optional<std::size_t> RowFrom(std::int32_t position);  // of the page shown
  bool SelectFirstFrom(std::int32_t position);
  bool SelectLastUpTo(std::int32_t position);

  RowSource& source_;
  std::vector<Column> columns_;
  std::wstring name_ = L"rows";
  Reading reading_ = Reading::kDone;
  std::int32_t row_count_ = 0;
  // Until a presentation says how much it shows, a page ends twelve rows below the item that was
  // selected before it: a list positioned on item p by selecting p + 12 and then p has p on top.
  std::int32_t page_size_ = 13;
  std::int32_t top_ = 1;
  std::vector<Row> rows_;
  bool loaded_ = false;
  bool readable_ = true;          // whether anything of the page could be read
  std::int32_t cursor_ = 1;       // the position last moved to, whether or not it yields a row
  bool resolved_ = false;         // whether at_cursor_ is the row at cursor_
  std::optional<Row> at_cursor_;  // the row at the cursor
  Opening opening_ = Opening::kDone;
  std::optional<Sought> sought_;  // until the cursor moves

  bool multiple_ = false;
  std::vector<Range> picked_;          // what is selected: ascending, without overlap
  std::int32_t anchor_ = 1;            // the position last picked alone
  std::optional<bool> has_selection_;  // of a multiple selection, once it has been found out
};

}  // namespace ard::dialogs

#endif  // ARD_DIALOGS_LIST_MODEL_H_
