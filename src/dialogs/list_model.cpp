#include "dialogs/list_model.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>

#include "frame/text.h"

namespace ard::dialogs {
namespace {

// How many pages one key press looks through for a row, beyond those that it goes to.
constexpr int kPagesSought = 16;

}  // namespace

std::wstring_view Row::Cell(int number) const {
  std::wstring_view rest = text;
  for (; number > 1; --number) {
    const std::size_t tab = rest.find(L'\t');
    if (tab == std::wstring_view::npos) return {};
    rest.remove_prefix(tab + 1);
  }
  return rest.substr(0, rest.find(L'\t'));
}

void ListModel::AddColumn(std::wstring header, int width, bool number) {
  columns_.push_back({std::move(header), width, number});
}

std::wstring ListModel::Title() const {
  return UpperCase(name_.substr(0, 1)) + name_.substr(std::min<std::size_t>(name_.size(), 1));
}

std::wstring ListModel::Spoken(const Row& row) const {
  std::wstring spoken;
  for (int cell = 1; cell <= static_cast<int>(columns_.size()); ++cell) {
    const std::wstring_view text = Trimmed(row.Cell(cell));
    if (!text.empty()) spoken.append(text).append(L", ");
  }
  const std::int32_t extra = source_.ExtraRows(1);
  spoken += L"row " + std::to_wstring(row.position + extra) + L" of " +
            std::to_wstring(row_count_ + extra);
  if (row.color == kRed) spoken += L", over its limit";
  return spoken;
}

std::wstring ListModel::WhyEmpty() const {
  if (reading_ == Reading::kFailed) return L"The list could not be read.";
  if (reading_ == Reading::kNotYet || row_count_ > 0) return {};
  return L"There are no " + name_ + L".";
}

void ListModel::ShowSort(std::size_t index, SortOrder order) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].sort = i == index ? order : SortOrder::kNone;
  }
}

void ListModel::SetRowCount(std::int32_t count) {
  // Some below the largest number, so that positions after the last one are numbers too.
  row_count_ = std::clamp(count, 0, std::numeric_limits<std::int32_t>::max() - 8);
  top_ = 1;
  cursor_ = anchor_ = 1 - source_.ExtraRows(1);
  loaded_ = resolved_ = false;
  opening_ = Opening::kDone;
  sought_.reset();
  picked_.clear();
  has_selection_.reset();
}

void ListModel::SetPageSize(std::int32_t size) {
  size = std::max(size, 1);
  if (size == page_size_) return;
  const bool cursor_in_view = IsInView(cursor_);
  page_size_ = size;
  loaded_ = false;
  SetTop(top_);
  if (cursor_in_view) BringIntoView(cursor_);
}

const std::vector<Row>& ListModel::rows() {
  Open();
  Load();
  return rows_;
}

void ListModel::SelectItem(std::int32_t position) {
  if (position < 1 || position > row_count_) return;
  MoveTo(position);
  Mark(Pick::kOnly);
}

void ListModel::SelectFrom(std::int32_t position, std::wstring_view prefix) {
  if (position < 1 || position > row_count_) return;
  Open();
  const std::int32_t top = top_;
  BringIntoView(position);
  std::optional<std::size_t> row = RowFrom(position);
  if (!row) {
    SetTop(position);
    row = RowFrom(position);
  }
  if (row && (rows_[*row].position == position ||
              EqualsIgnoreCase(Trimmed(rows_[*row].text).substr(0, prefix.size()), prefix))) {
    return SelectRow(*row);
  }
  SetTop(top);
}

void ListModel::SelectFirst() {
  SetRowCount(row_count_);
  Mark(Pick::kOnly);
  opening_ = Opening::kUnread;
}

bool ListModel::SelectCursor() {
  if (selected() || !AtCursor()) return false;
  Mark(Pick::kOnly);
  return true;
}

void ListModel::SelectRow(std::size_t index, Pick pick) {
  if (MoveToRow(index)) Mark(pick);
}

const std::optional<Row>& ListModel::selected() {
  static const std::optional<Row> kNone;
  Open();
  return IsPicked(cursor_) ? AtCursor() : kNone;
}

bool ListModel::HasSelection() {
  if (!multiple_) return selected().has_value();
  if (!has_selection_) has_selection_ = FindSelection();
  return *has_selection_;
}

std::vector<Row> ListModel::SelectedRows() {
  std::vector<Row> result;
  if (!multiple_) {
    if (selected()) result.push_back(*selected());
    return result;
  }
  Open();
  for (const Range& range : picked_) {
    Read(range, [&](Row& row) {
      result.push_back(std::move(row));
      return true;
    });
  }
  return result;
}

void ListModel::ScrollTo(std::int32_t top) {
  // What was selected is read while its page is still the one shown.
  selected();
  opening_ = Opening::kDone;
  SetTop(top);
}

void ListModel::ScrollBy(std::int32_t rows) {
  ScrollTo(
      static_cast<std::int32_t>(std::clamp<std::int64_t>(std::int64_t{top_} + rows, 1, LastTop())));
}

void ListModel::LineUp(Pick pick) { Press(&ListModel::MoveUp, &ListModel::SeekUp, pick); }
void ListModel::LineDown(Pick pick) { Press(&ListModel::MoveDown, &ListModel::SeekDown, pick); }
void ListModel::PageUp(Pick pick) { Press(&ListModel::MovePageUp, &ListModel::SeekUp, pick); }
void ListModel::PageDown(Pick pick) { Press(&ListModel::MovePageDown, &ListModel::SeekDown, pick); }
void ListModel::Home(Pick pick) { Press(&ListModel::MoveHome, &ListModel::SeekDown, pick); }
void ListModel::End(Pick pick) { Press(&ListModel::MoveEnd, &ListModel::SeekUp, pick); }

void ListModel::Press(bool (ListModel::*move)(), bool (ListModel::*seek)(std::int32_t), Pick pick) {
  if (row_count_ == 0) return;
  Open();
  BringIntoView(cursor_);
  const std::int32_t top = top_;
  const bool again = sought_ && sought_->move == move;
  if (!(again ? (this->*seek)(sought_->next) : (this->*move)())) {
    SetTop(top);
    sought_->move = move;
  }
  BringIntoView(cursor_);
  Mark(pick);
}

bool ListModel::MoveUp() {
  if (SelectLastUpTo(cursor_ - 1)) return true;
  SetTop(top_ - 1);
  return SelectLastUpTo(cursor_ - 1) || SeekUp(top_ - 1);
}

bool ListModel::MoveDown() {
  if (SelectFirstFrom(cursor_ + 1)) return true;
  SetTop(top_ + 1);
  return SelectFirstFrom(cursor_ + 1) || SeekDown(top_ + Reach(top_));
}

bool ListModel::MovePageUp() {
  // First to the top of the page shown, then a page further.
  if (rows().empty() || rows_.front().position >= cursor_) SetTop(top_ - page_size_);
  return MoveToRow(0) || SeekUp(top_ - 1);
}

bool ListModel::MovePageDown() {
  if (rows().empty() || rows_.back().position <= cursor_) SetTop(top_ + Reach(top_));
  return SelectLastUpTo(row_count_) || SeekDown(top_ + Reach(top_));
}

bool ListModel::MoveHome() {
  SetTop(1);
  return MoveToRow(0) || SeekDown(top_ + Reach(top_));
}

bool ListModel::MoveEnd() {
  SetTop(LastTop());
  return SelectLastUpTo(row_count_) || SeekUp(top_ - 1);
}

bool ListModel::SeekUp(std::int32_t target) {
  for (int pages = 0; pages < kPagesSought && target >= 1; ++pages) {
    SetTop(TopToEndWith(target));
    if (SelectLastUpTo(target)) return true;
    target = top_ - 1;
  }
  sought_ = {target, nullptr};
  return false;
}

bool ListModel::SeekDown(std::int32_t target) {
  for (int pages = 0; pages < kPagesSought && target <= row_count_; ++pages) {
    if (!readable_ && opening_ == Opening::kLooking) {
      opening_ = Opening::kDone;
      break;
    }
    SetTop(target);
    if (SelectFirstFrom(target)) return true;
    target = top_ + Reach(top_);
  }
  sought_ = {target, nullptr};
  return false;
}

void ListModel::MoveTo(std::int32_t position) {
  cursor_ = position;
  resolved_ = false;
  opening_ = Opening::kDone;
  sought_.reset();
  BringIntoView(position);
}

bool ListModel::MoveToRow(std::size_t index) {
  if (index >= rows().size()) return false;
  at_cursor_ = Row(rows_[index]);
  cursor_ = at_cursor_->position;
  resolved_ = true;
  opening_ = Opening::kDone;
  sought_.reset();
  return true;
}

void ListModel::Open() {
  if (opening_ != Opening::kUnread) return;
  opening_ = Opening::kLooking;
  Home();
}

void ListModel::Mark(Pick pick) {
  if (row_count_ == 0) return;
  has_selection_.reset();
  switch (multiple_ ? pick : Pick::kOnly) {
    case Pick::kOnly:
      anchor_ = cursor_;
      picked_ = {{cursor_, cursor_}};
      break;
    case Pick::kExtend:
      picked_ = {{std::min(anchor_, cursor_), std::max(anchor_, cursor_)}};
      break;
    case Pick::kToggle:
      if (AtCursor()) ToggleCursor();
      break;
    case Pick::kNone:
      break;
  }
}

void ListModel::ToggleCursor() {
  anchor_ = cursor_;
  const auto next = std::find_if(picked_.begin(), picked_.end(),
                                 [&](const Range& range) { return range.to >= cursor_; });
  if (next == picked_.end() || cursor_ < next->from) {
    picked_.insert(next, {cursor_, cursor_});
    return;
  }
  // Out of a range: what is left of it before and after.
  const Range range = *next;
  auto place = picked_.erase(next);
  if (cursor_ < range.to) place = picked_.insert(place, {cursor_ + 1, range.to});
  if (range.from < cursor_) picked_.insert(place, {range.from, cursor_ - 1});
}

bool ListModel::IsPicked(std::int32_t position) const {
  return std::any_of(picked_.begin(), picked_.end(),
                     [&](const Range& range) { return range.Contains(position); });
}

bool ListModel::FindSelection() {
  // What is shown need not be read for it.
  if (selected()) return true;
  for (const Row& row : rows()) {
    if (IsSelected(row)) return true;
  }
  return std::any_of(picked_.begin(), picked_.end(), [&](const Range& range) {
    const bool is_shown = IsInView(range.from) && IsInView(range.to);
    return !is_shown && !Read(range, [](const Row&) { return false; });
  });
}

template <class Take>
bool ListModel::Read(const Range& range, Take take) {
  constexpr std::int32_t kMost = 64;  // at a time
  std::vector<Row> rows;
  Range rest = range;
  for (std::int32_t count = 1;; count = std::min(2 * count, kMost)) {
    // Extra rows come with the page that starts at the first position.
    const std::int32_t first = std::max(rest.from, 1);
    const std::int32_t last = rest.to - first < count ? rest.to : first + count - 1;
    rows.clear();
    source_.LoadPage(first, std::max(last, first), rows);
    for (Row& row : rows) {
      if (rest.Contains(row.position) && !take(row)) return false;
    }
    if (last >= rest.to) return true;
    rest.from = last + 1;
  }
}

std::int32_t ListModel::Reach(std::int32_t top) const {
  return std::max(page_size_ - source_.ExtraRows(top), 1);
}

bool ListModel::IsInView(std::int32_t position) const {
  if (position > 0) return position >= top_ && position - top_ < Reach(top_);
  return position > -source_.ExtraRows(top_);
}

std::int32_t ListModel::TopToEndWith(std::int32_t position) const {
  std::int32_t top = std::max(position - page_size_ + 1, 1);
  while (position - top >= Reach(top)) ++top;
  return top;
}

void ListModel::BringIntoView(std::int32_t position) {
  if (IsInView(position)) return;
  SetTop(position < top_ ? position : TopToEndWith(position));
}

void ListModel::SetTop(std::int32_t top) {
  top = std::clamp(top, 1, LastTop());
  if (top == top_) return;
  top_ = top;
  loaded_ = false;
}

void ListModel::Load() {
  if (!loaded_) {
    rows_.clear();
    const std::int32_t reach = Reach(top_);
    const std::int32_t last = row_count_ - top_ < reach ? row_count_ : top_ + reach - 1;
    readable_ = last >= top_ && source_.LoadPage(top_, last, rows_);
    loaded_ = true;
  } else if (resolved_) {
    return;
  }
  if (!IsInView(cursor_)) return;
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.position == cursor_; });
  if (row != rows_.end()) {
    // Another than it was, perhaps, by somebody else: what is shown as selected is what comes back.
    at_cursor_ = *row;
  } else if (!resolved_) {
    at_cursor_.reset();
  }
  resolved_ = true;
}

const std::optional<Row>& ListModel::AtCursor() {
  Open();
  if (!resolved_) {
    BringIntoView(cursor_);
    Load();
  }
  return at_cursor_;
}

std::optional<std::size_t> ListModel::RowFrom(std::int32_t position) {
  const std::vector<Row>& page = rows();
  const auto row =
      std::find_if(page.begin(), page.end(), [&](const Row& r) { return r.position >= position; });
  if (row == page.end()) return std::nullopt;
  return static_cast<std::size_t>(row - page.begin());
}

bool ListModel::SelectFirstFrom(std::int32_t position) {
  const std::optional<std::size_t> row = RowFrom(position);
  return row && MoveToRow(*row);
}

bool ListModel::SelectLastUpTo(std::int32_t position) {
  const std::vector<Row>& page = rows();
  const auto row = std::find_if(page.rbegin(), page.rend(),
                                [&](const Row& r) { return r.position <= position; });
  return row != page.rend() && MoveToRow(static_cast<std::size_t>(page.rend() - row) - 1);
}

}  // namespace ard::dialogs
