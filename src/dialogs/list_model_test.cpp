#include "dialogs/list_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ard::dialogs {
namespace {

// Numbered rows, some of them deleted; remembers what was asked of it.
class NumberedRows : public RowSource {
 public:
  void LoadPage(std::int32_t first, std::int32_t last, std::vector<Row>& rows) override {
    pages.push_back({first, last});
    for (std::int32_t extra_row = 1 - ExtraRows(first); extra_row <= 0; ++extra_row) {
      rows.push_back({extra_row, L"extra", 0});
    }
    for (std::int32_t position = first; position <= last; ++position) {
      ++positions_read;
      if (!deleted.contains(position)) rows.push_back({position, std::to_wstring(position), 0});
      if (out_of_memory) throw std::bad_alloc();
    }
  }
  std::int32_t ExtraRows(std::int32_t first) const override {
    return std::max(extra + 1 - first, 0);
  }

  std::set<std::int32_t> deleted;
  std::int32_t extra = 0;
  bool out_of_memory = false;
  std::vector<std::pair<std::int32_t, std::int32_t>> pages;
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
  std::vector<std::int32_t> Shown() { return PositionsOf(list_.rows()); }

  // Presses keys, one after another: what is selected after each, and where the page starts.
  struct Stroke {
    void (ListModel::*key)(Pick);
    std::int32_t selected;
    std::int32_t top;
  };
  void Press(const std::vector<Stroke>& strokes) {
    for (const Stroke& stroke : strokes) {
      (list_.*stroke.key)(Pick::kOnly);
      EXPECT_EQ(Selected(), stroke.selected);
      EXPECT_EQ(list_.top(), stroke.top);
    }
  }

  NumberedRows source_;
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

TEST(RowTest, CellsAreSeparatedByTabs) {
  const Row row{1, L"ABC001\tABC Ltd\t\tlast", 0};
  EXPECT_EQ(row.Cell(1), L"ABC001");
  EXPECT_EQ(row.Cell(3), L"");
  EXPECT_EQ(row.Cell(4), L"last");
  EXPECT_EQ(row.Cell(5), L"");
}

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

TEST_F(ListModelTest, SelectingAnItemScrollsJustEnough) {
  Start(100, 10);
  for (const auto& [item, top] :
       {std::pair(10, 1), {11, 2}, {50, 41}, {41, 41}, {40, 40}, {100, 91}, {1, 1}}) {
    list_.SelectItem(item);
    EXPECT_EQ(list_.top(), top) << item;
    EXPECT_EQ(Selected(), item);
  }
  // So does another size, for a cursor that is shown.
  list_.SelectItem(10);
  list_.SetPageSize(5);
  EXPECT_EQ(list_.top(), 6);
  list_.ScrollTo(60);
  list_.SetPageSize(20);
  EXPECT_EQ(list_.top(), 60);
}

TEST_F(ListModelTest, TheSelectionSurvivesScrolling) {
  Start(100, 10);
  for (const Stroke& stroke : std::vector<Stroke>{{kDown, 6, 5},
                                                  {kUp, 4, 4},
                                                  {kPageDown, 14, 5},
                                                  {kPageUp, 1, 1},
                                                  {kHome, 1, 1},
                                                  {kEnd, 100, 91}}) {
    list_.SelectItem(5);
    list_.ScrollTo(60);  // before the page of item 5 was ever drawn
    EXPECT_EQ(Shown().front(), 60);
    EXPECT_EQ(Selected(), 5);
    list_.ScrollTo(60);
    Press({stroke});  // a key brings the selection back into view first
  }
}

TEST_F(ListModelTest, CursorKeys) {
  Start(25, 10);
  Press({{kUp, 1, 1},
         {kPageDown, 10, 1},
         {kPageDown, 20, 11},
         {kPageDown, 25, 16},
         {kDown, 25, 16},
         {kPageUp, 16, 16},
         {kPageUp, 6, 6},
         {kUp, 5, 5},
         {kEnd, 25, 16},
         {kUp, 24, 16},
         {kHome, 1, 1}});
  list_.SelectItem(11);
  list_.SelectItem(2);
  Press({{kUp, 1, 1}});
  list_.SelectItem(24);
  Press({{kDown, 25, 16}});
  // A line further, one page is read.
  Start(25, 10);
  list_.SelectItem(10);
  EXPECT_EQ(Selected(), 10);
  source_.pages.clear();
  Press({{kDown, 11, 2}});
  EXPECT_EQ(source_.pages, (std::vector<std::pair<std::int32_t, std::int32_t>>{{2, 11}}));
  source_.deleted = {11, 12, 13};
  Start(30, 10);
  list_.SelectItem(10);
  Press({{kDown, 14, 11}, {kUp, 10, 10}});
  source_.deleted = {1, 2};
  Start(30, 10);
  list_.SelectItem(3);
  Press({{kUp, 3, 1}});
  // A page without a live row: the cursor goes to its last position.
  for (int position = 11; position <= 20; ++position) source_.deleted.insert(position);
  Start(30, 10);
  list_.SelectItem(10);
  Press({{kPageDown, 0, 11}});
  EXPECT_TRUE(list_.IsCursor({20, L"", 0}));
  Press({{kPageDown, 30, 21}, {kPageUp, 21, 21}, {kPageUp, 0, 11}});
  EXPECT_TRUE(list_.IsCursor({11, L"", 0}));
  for (int position = 21; position <= 30; ++position) source_.deleted.insert(position);
  Start(40, 10);
  list_.SelectItem(10);
  Press({{kDown, 0, 11}});
  EXPECT_TRUE(list_.IsCursor({20, L"", 0}));
  list_.SelectItem(31);
  Press({{kUp, 0, 12}});
  EXPECT_TRUE(list_.IsCursor({12, L"", 0}));
}

// The cursor stands on the first row, as in any list view, and whatever moves it selects.
TEST_F(ListModelTest, NothingIsSelectedBeforeAKeyIsPressed) {
  const struct {
    void (ListModel::*key)(Pick);
    std::int32_t selected;
  } cases[] = {{kUp, 1}, {kDown, 2}, {kPageUp, 1}, {kPageDown, 10}, {kHome, 1}, {kEnd, 25}};
  for (const auto& c : cases) {
    for (const std::int32_t count : {25, 1}) {
      Start(count, 10);
      EXPECT_TRUE(list_.IsCursor(list_.rows()[0]));
      EXPECT_FALSE(list_.HasSelection());
      EXPECT_EQ(Selected(), 0);
      (list_.*c.key)(Pick::kOnly);
      EXPECT_EQ(Selected(), std::min(c.selected, count));
      EXPECT_TRUE(list_.HasSelection());
    }
  }
  Start(25, 10);
  list_.ScrollTo(12);
  EXPECT_EQ(Shown().front(), 12);
  EXPECT_TRUE(list_.SelectCursor());
  EXPECT_EQ(Selected(), 1);
  EXPECT_FALSE(list_.SelectCursor());
}

TEST_F(ListModelTest, OpeningHomeAndEndStepOverDeletedEntries) {
  using Pages = std::vector<std::pair<std::int32_t, std::int32_t>>;
  const Pages both_ways = {{1, 10}, {11, 20}, {21, 30}, {11, 20}, {1, 10}, {11, 20}};
  for (int position = 1; position <= 30; ++position) source_.deleted.insert(position);
  for (const std::int32_t live : {0, 14}) {
    source_.deleted.erase(live);
    source_.pages.clear();
    Start(30, 10);
    list_.SelectFirst();
    EXPECT_EQ(source_.pages, Pages());  // nothing is read before the first page
    EXPECT_EQ(Shown(), live ? Positions{live} : Positions());
    EXPECT_EQ(Selected(), live);
    EXPECT_EQ(list_.HasSelection(), live != 0);
    Press({{kEnd, live, 11}, {kHome, live, 11}});
    EXPECT_EQ(source_.pages, both_ways);
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

// Everything deleted but the ends: each key press reads a few pages, and gets there.
TEST_F(ListModelTest, LongDeletedStretchesAreCrossedInBoundedSteps) {
  for (std::int32_t position = 2; position < 1000; ++position) source_.deleted.insert(position);
  Start(1000, 10);
  list_.SelectItem(1);
  for (const auto& [key, end] : {std::pair(kDown, 1000), {kUp, 1}}) {
    for (int presses = 0; Selected() != end && presses < 200; ++presses) {
      const std::size_t before = source_.pages.size();
      (list_.*key)(Pick::kOnly);
      EXPECT_LE(source_.pages.size() - before, 3u);
    }
    EXPECT_EQ(Selected(), end);
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
      bool moved = true;
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
      }
      const Positions shown = PositionsOf(list.rows());
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
