// What sessions at the prompt cannot say of a list: memory that runs out, scrolling, what is read,
// and all that a user may do, against a plain set of positions.
#include "dialogs/list_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace ard::dialogs {
namespace {

// Rows, some of them deleted; counts those that were asked of it.
class PlainRows : public RowSource {
 public:
  bool LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override {
    const auto add = [&](std::int32_t from, std::int32_t to) {
      for (std::int32_t position = from; position <= to; ++position) {
        if (!deleted.contains(position)) rows.push_back({position, text, 0});
      }
    };
    add(1 - ExtraRows(first), 0);
    add(first, last);
    positions_read += last - first + 1;
    if (out_of_memory) throw std::bad_alloc();
    return true;
  }
  std::int32_t ExtraRows(std::int32_t first) const override {
    return std::max(extra + 1 - first, 0);
  }

  std::set<std::int32_t> deleted;
  std::int32_t extra = 0;
  bool out_of_memory = false;
  std::wstring text;
  std::int64_t positions_read = 0;
};

class ListModelTest : public ::testing::Test {
 protected:
  void Start(std::int32_t count, std::int32_t page_size) {
    list_.SetPageSize(page_size);
    list_.SetRowCount(count);
  }
  std::int32_t Selected() { return list_.selected() ? list_.selected()->position : 0; }
  static std::vector<std::int32_t> PositionsOf(const std::vector<Row>& rows) {
    std::vector<std::int32_t> positions;
    for (const Row& row : rows) positions.push_back(row.position);
    return positions;
  }

  PlainRows source_;
  ListModel list_{source_};
};

constexpr auto kUp = &ListModel::LineUp;
constexpr auto kDown = &ListModel::LineDown;
constexpr auto kPageUp = &ListModel::PageUp;
constexpr auto kPageDown = &ListModel::PageDown;
constexpr auto kHome = &ListModel::Home;
constexpr auto kEnd = &ListModel::End;
constexpr decltype(kUp) kKeys[] = {kUp, kDown, kPageUp, kPageDown, kDown, kHome, kEnd};

using Positions = std::vector<std::int32_t>;

TEST_F(ListModelTest, APageThatMemoryRanOutInIsReadAgain) {
  Start(30, 5);
  list_.SelectItem(3);
  EXPECT_EQ(Selected(), 3);
  list_.SelectItem(12);
  source_.out_of_memory = true;
  EXPECT_THROW(Selected(), std::bad_alloc);
  source_.out_of_memory = false;
  EXPECT_EQ(Selected(), 12);
}

// A key brings it back into view first.
TEST_F(ListModelTest, WhereNothingIsLeftTheSelectionStays) {
  source_.deleted = {1, 2, 11, 12};
  for (const std::int32_t page_size : {2, 3, 20}) {
    Start(12, page_size);
    for (const auto key : {&ListModel::LineUp, &ListModel::PageUp, &ListModel::Home}) {
      list_.SelectItem(3);
      list_.ScrollTo(3);
      (list_.*key)(Pick::kOnly);
      EXPECT_EQ(Selected(), 3) << page_size;
    }
    for (const auto key : {&ListModel::LineDown, &ListModel::PageDown, &ListModel::End}) {
      list_.SelectItem(10);
      list_.ScrollTo(10 - page_size + 1);
      (list_.*key)(Pick::kOnly);
      EXPECT_EQ(Selected(), 10) << page_size;
    }
  }
}

// A key that has further to go than one press may look leaves a row selected and in view meanwhile.
TEST_F(ListModelTest, AStretchOfDeletedEntriesNeverCostsTheSelection) {
  Start(2000, 10);
  for (const std::int32_t gap : {21, 150, 400}) {
    source_.deleted.clear();
    for (std::int32_t i = 1; i <= gap; ++i) source_.deleted.insert({i, 800 + i, 2001 - i});
    list_.SelectFirst();
    EXPECT_EQ(Selected(), gap > 170 ? 0 : gap + 1);
    if (list_.looking()) list_.LineDown();  // which gets no further
    for (int step = 0; list_.looking(); ++step) {
      ASSERT_LE(step, gap / 160 + 1);
      list_.Home();
    }
    ASSERT_EQ(Selected(), gap + 1);
    for (const auto& [from, key, to] : {std::tuple(800, kHome, gap + 1),
                                        {800, kEnd, 2000 - gap},
                                        {800, kDown, 801 + gap},
                                        {800, kPageDown, 801 + gap},
                                        {801 + gap, kUp, 800},
                                        {801 + gap, kPageUp, 800}}) {
      list_.SelectItem(from);
      for (int presses = 1; Selected() != to; ++presses) {
        ASSERT_LE(presses, gap / 160 + 1) << gap << ", " << to;
        const std::int64_t before = source_.positions_read;
        (list_.*key)(Pick::kOnly);
        ASSERT_TRUE(Selected() == to || Selected() == from) << Selected();
        ASSERT_TRUE(
            std::ranges::any_of(list_.rows(), [&](auto& row) { return list_.IsCursor(row); }));
        ASSERT_LE(source_.positions_read - before, 19 * 10);
      }
    }
  }
}

TEST_F(ListModelTest, TheSelectionSurvivesScrolling) {
  Start(100, 10);
  for (const auto& [key, selected, top] : {std::tuple(kDown, 6, 5),
                                           {kUp, 4, 4},
                                           {kPageDown, 14, 5},
                                           {kPageUp, 1, 1},
                                           {kHome, 1, 1},
                                           {kEnd, 100, 91}}) {
    list_.SelectItem(5);
    list_.ScrollTo(60);  // before the page of item 5 was ever drawn
    EXPECT_EQ(list_.rows().front().position, 60);
    EXPECT_EQ(Selected(), 5);
    list_.ScrollTo(60);
    (list_.*key)(Pick::kOnly);
    EXPECT_EQ(Selected(), selected);
    EXPECT_EQ(list_.top(), top);
  }
  // What is there now is what is selected, once it is shown; where nothing is, what has been there.
  list_.SelectItem(5);
  list_.ScrollTo(60);
  source_.text = L"another's";
  EXPECT_EQ(list_.selected()->text, L"");
  for (const bool deleted : {false, true}) {
    list_.ScrollTo(60);
    if (deleted) source_.deleted = {5};
    list_.ScrollTo(3);
    EXPECT_EQ(list_.rows().size(), deleted ? 9 : 10);
    EXPECT_EQ(list_.selected()->text, L"another's");
  }
}

// Only as much is read as it takes to come upon a live row, and that but once.
TEST_F(ListModelTest, WhetherAnyRowIsSelectedIsFoundOutInBoundedSteps) {
  for (std::int32_t position = 2; position < 5000; ++position) source_.deleted.insert(position);
  list_.SetMultiple();
  Start(10'000'000, 10);
  list_.SelectFirst();
  list_.End(Pick::kExtend);
  const auto read_for = [&](bool expected) {
    const std::int64_t before = source_.positions_read;
    EXPECT_EQ(list_.HasSelection(), expected);
    return source_.positions_read - before;
  };
  EXPECT_EQ(read_for(true), 0);  // all of the list: the row at the cursor will do
  list_.Toggle();
  EXPECT_EQ(read_for(true), 0);  // and now another one of the page shown
  for (const auto& [to, found] : {std::pair(4000, false), {8000, true}}) {
    list_.SelectItem(to);
    list_.Home(Pick::kExtend);
    list_.Toggle();
    EXPECT_NEAR(static_cast<double>(read_for(found)), to < 5000 ? to : 5000, 64);
    EXPECT_EQ(read_for(found), 0);
  }
}

TEST_F(ListModelTest, HugeLists) {
  Start(std::numeric_limits<std::int32_t>::max(), 10);
  for (const auto key : {kEnd, kPageDown, kDown}) (list_.*key)(Pick::kOnly);
  EXPECT_EQ(Selected(), list_.row_count());
  EXPECT_EQ(list_.row_count(), std::numeric_limits<std::int32_t>::max() - 8) << "room behind it";
}

// Whatever the user does, the page shown is the right one, and what is picked is what a plain set
// of positions would hold.
TEST_F(ListModelTest, RandomWalkKeepsItsInvariants) {
  std::mt19937 random(20061013);
  const auto upto = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 150; ++round) {
    source_.deleted.clear();
    source_.extra = round % 2 ? 3 : 0;
    const std::int32_t count = upto(round % 3 ? 60 : 200);
    for (int i = upto(2 * count + 1); i > 0; --i) source_.deleted.insert(1 + upto(count));
    ListModel list(source_);
    const bool multiple = round % 4 != 0;
    if (multiple) list.SetMultiple();
    list.SetRowCount(count);
    const std::int32_t first = 1 - source_.extra;
    const auto is_live = [&](std::int32_t p) { return count > 0 && !source_.deleted.contains(p); };
    std::set<std::int32_t> expected;
    std::int32_t anchor = first;
    for (int step = 0; step < 150; ++step) {
      Pick pick = static_cast<Pick>(upto(4));
      const std::int32_t item = upto(count + 10) - 5;
      const std::size_t row = static_cast<std::size_t>(upto(16));
      const std::int64_t read_before = source_.positions_read;
      bool moved = true;
      const bool was_selected = list.selected().has_value();
      switch (upto(10)) {
        case 0:
          moved = item >= 1 && item <= count;
          pick = Pick::kOnly;
          list.SelectItem(item);
          break;
        case 1:
          moved = row < list.rows().size();
          list.SelectRow(row, pick);
          break;
        case 2: {
          moved = false;
          const std::int32_t wanted = list.top() + upto(41) - 20;
          list.ScrollBy(wanted - list.top());
          ASSERT_EQ(list.top(), std::clamp(wanted, 1, list.LastTop()));
          break;
        }
        case 3:
          moved = false;
          list.SetPageSize(item);
          ASSERT_EQ(list.page_size(), std::max(item, 1));
          break;
        case 4:
          pick = Pick::kOnly;
          list.SelectFirst();
          break;
        case 5:
          pick = Pick::kOnly;
          moved = list.SelectCursor();
          break;
        default:
          (list.*kKeys[upto(std::size(kKeys))])(pick);
          ASSERT_TRUE(pick != Pick::kOnly || list.selected() || !was_selected);
      }
      const Positions shown = PositionsOf(list.rows());
      ASSERT_LE(source_.positions_read - read_before, 19 * list.page_size());
      const auto reach = [&](std::int32_t top) {
        return std::max(list.page_size() - source_.ExtraRows(top), 1);
      };
      const std::int32_t top = list.top();
      // The page above would show the last row, too.
      ASSERT_TRUE(top == 1 || (top > 1 && top - 1 + reach(top - 1) <= count));
      Positions page;
      for (std::int32_t p = 1 - source_.ExtraRows(top); p <= 0; ++p) page.push_back(p);
      for (std::int32_t p = top; p < top + reach(top); ++p) page.push_back(p);
      std::erase_if(page, [&](std::int32_t p) { return !is_live(p) || p > count; });
      ASSERT_EQ(shown, page);

      std::int32_t cursor = first;
      while (!list.IsCursor({cursor, L"", 0})) ASSERT_LE(++cursor, count);
      if (moved && count > 0) {
        if (!multiple) pick = Pick::kOnly;
        if (pick == Pick::kExtend || pick == Pick::kOnly) expected.clear();
        if (pick == Pick::kOnly || (pick == Pick::kToggle && is_live(cursor))) anchor = cursor;
        if (pick == Pick::kToggle && is_live(cursor)) {
          if (!expected.erase(cursor)) expected.insert(cursor);
        } else if (pick == Pick::kOnly || pick == Pick::kExtend) {
          for (std::int32_t p = std::min(anchor, cursor); p <= std::max(anchor, cursor); ++p) {
            if (is_live(p)) expected.insert(p);
          }
        }
      }
      ASSERT_EQ(list.HasSelection(), !expected.empty());
      ASSERT_EQ(list.selected().has_value(), expected.contains(cursor));
      // In the order of the list.
      ASSERT_EQ(PositionsOf(list.SelectedRows()), Positions(expected.begin(), expected.end()));
      for (const Row& shown_row : list.rows()) {
        ASSERT_EQ(list.IsSelected(shown_row), expected.contains(shown_row.position));
        const std::int32_t place = shown_row.position + source_.extra;
        ASSERT_EQ(list.Spoken(shown_row), L"row " + std::to_wstring(place) + L" of " +
                                              std::to_wstring(count + source_.extra));
      }
    }
  }
}

}  // namespace
}  // namespace ard::dialogs
