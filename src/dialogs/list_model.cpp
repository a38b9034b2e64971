#include "dialogs/list_model.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

namespace ard::dialogs {

std::wstring_view Row::Cell(int number) const {
  std::wstring_view rest = text;
  for (; number > 1; --number) {
    const std::size_t tab = rest.find(L'\t');
    if (tab == std::wstring_view::npos) return {};
    rest.remove_prefix(tab + 1);
  }
  return rest.substr(0, rest.find(L'\t'));
}

void ListModel::AddColumn(std::wstring header, int width) {
  columns_.push_back({std::move(header), width});
}

void ListModel::SetRowCount(std::int32_t count) {
  // One below the largest number, so that the position after the last one is a number too.
  row_count_ = std::clamp(count, 0, std::numeric_limits<std::int32_t>::max() - 1);
  top_ = 1;
  cursor_ = 0;
  loaded_ = false;
  resolved_ = true;
  selected_.reset();
}

void ListModel::SetPageSize(std::int32_t size) {
  size = std::max(size, 1);
  if (size == page_size_) return;
  const bool cursor_in_view = cursor_ >= top_ && cursor_ < top_ + page_size_;
  page_size_ = size;
  loaded_ = false;
  SetTop(top_);
  if (cursor_in_view) BringIntoView(cursor_);
}

const std::vector<Row>& ListModel::rows() {
  Load();
  return rows_;
}

void ListModel::SelectItem(std::int32_t position) {
  if (position < 1 || position > row_count_) return;
  cursor_ = position;
  resolved_ = false;
  BringIntoView(position);
}

void ListModel::SelectRow(std::size_t index) {
  if (index >= rows().size()) return;
  selected_ = rows_[index];
  cursor_ = selected_->position;
  resolved_ = true;
}

const std::optional<Row>& ListModel::selected() {
  if (!resolved_) {
    BringIntoView(cursor_);
    Load();
  }
  return selected_;
}

void ListModel::ScrollTo(std::int32_t top) {
  // What was selected is read while its page is still the one shown.
  selected();
  SetTop(top);
}

void ListModel::ScrollBy(std::int32_t rows) {
  ScrollTo(
      static_cast<std::int32_t>(std::clamp<std::int64_t>(std::int64_t{top_} + rows, 1, LastTop())));
}

void ListModel::LineUp() {
  BringIntoView(std::max(cursor_, 1));
  if (SelectLastUpTo(cursor_ - 1) || top_ <= 1) return;
  const std::int32_t target = top_ - 1;
  SetTop(target);
  if (SelectLastUpTo(target)) return;
  // A deleted entry: look for the next live one a page at a time, one page a key press.
  SetTop(target - page_size_ + 1);
  if (!SelectLastUpTo(target)) SelectItem(top_);
}

void ListModel::LineDown() {
  if (cursor_ > 0) BringIntoView(cursor_);
  if (SelectFirstFrom(cursor_ + 1)) return;
  const std::int32_t target = top_ + page_size_;
  if (target > row_count_) return;
  SetTop(top_ + 1);
  if (SelectFirstFrom(target)) return;
  // As in LineUp.
  SetTop(target);
  if (!SelectFirstFrom(target)) SelectItem(std::min(top_ + page_size_ - 1, row_count_));
}

void ListModel::PageUp() {
  if (row_count_ == 0) return;
  if (cursor_ > 0) BringIntoView(cursor_);
  // First to the top of the page shown, then a page further.
  if (!rows().empty() && rows_.front().position < cursor_) return SelectRow(0);
  SetTop(top_ - page_size_);
  if (!SelectFirstFrom(top_)) SelectItem(top_);
}

void ListModel::PageDown() {
  if (row_count_ == 0) return;
  if (cursor_ > 0) BringIntoView(cursor_);
  if (!rows().empty() && rows_.back().position > cursor_) return SelectRow(rows_.size() - 1);
  SetTop(top_ + page_size_);
  const std::int32_t last = std::min(top_ + page_size_ - 1, row_count_);
  if (!SelectLastUpTo(last)) SelectItem(last);
}

void ListModel::Home() {
  if (row_count_ == 0) return;
  SetTop(1);
  if (!SelectFirstFrom(1)) SelectItem(1);
}

void ListModel::End() {
  if (row_count_ == 0) return;
  SetTop(LastTop());
  if (!SelectLastUpTo(row_count_)) SelectItem(row_count_);
}

std::int32_t ListModel::LastTop() const { return std::max(row_count_ - page_size_ + 1, 1); }

void ListModel::BringIntoView(std::int32_t position) {
  if (position < top_) {
    SetTop(position);
  } else if (position - top_ >= page_size_) {
    SetTop(position - page_size_ + 1);
  }
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
    loaded_ = true;
    const std::int32_t last = row_count_ - top_ < page_size_ ? row_count_ : top_ + page_size_ - 1;
    if (last >= top_) source_.LoadPage(top_, last, rows_);
  }
  if (resolved_ || cursor_ < top_ || cursor_ - top_ >= page_size_) return;
  resolved_ = true;
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.position == cursor_; });
  selected_ = row == rows_.end() ? std::nullopt : std::optional(*row);
}

bool ListModel::SelectFirstFrom(std::int32_t position) {
  const std::vector<Row>& page = rows();
  const auto row =
      std::find_if(page.begin(), page.end(), [&](const Row& r) { return r.position >= position; });
  if (row == page.end()) return false;
  SelectRow(static_cast<std::size_t>(row - page.begin()));
  return true;
}

bool ListModel::SelectLastUpTo(std::int32_t position) {
  const std::vector<Row>& page = rows();
  const auto row = std::find_if(page.rbegin(), page.rend(),
                                [&](const Row& r) { return r.position <= position; });
  if (row == page.rend()) return false;
  SelectRow(static_cast<std::size_t>(page.rend() - row) - 1);
  return true;
}

}  // namespace ard::dialogs
