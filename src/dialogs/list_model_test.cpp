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
    for (std::int32_t position = first; position <= last; ++position) {
      if (!deleted.contains(position)) rows.push_back({position, std::to_wstring(position), 0});
      if (out_of_memory) throw std::bad_alloc();
    }
  }

  std::set<std::int32_t> deleted;
  bool out_of_memory = false;
  std::vector<std::pair<std::int32_t, std::int32_t>> pages;
};

class ListModelTest : public ::testing::Test {
 protected:
  void Start(std::int32_t count, std::int32_t page_size) {
    list_.SetPageSize(page_size);
    list_.SetRowCount(count);
  }
  std::int32_t Selected() { return list_.selected() ? list_.selected()->position : 0; }
  std::vector<std::int32_t> Shown() {
    std::vector<std::int32_t> positions;
    for (const Row& row : list_.rows()) positions.push_back(row.position);
    return positions;
  }

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

TEST_F(ListModelTest, APageComesUpShortWhereEntriesAreDeleted) {
  source_.deleted = {1, 3, 4};
  Start(6, 5);
  EXPECT_EQ(Shown(), (Positions{2, 5}));
  // 3 is deleted, 7 not in the list.
  for (const auto& [item, selected] : {std::pair(3, 0), {5, 5}, {7, 5}}) {
    list_.SelectItem(item);
    EXPECT_EQ(Selected(), selected);
  }
}

TEST_F(ListModelTest, SelectingAnItemScrollsJustEnough) {
  Start(100, 10);
  for (const auto& [item, top] :
       {std::pair(10, 1), {11, 2}, {50, 41}, {41, 41}, {40, 40}, {100, 91}, {1, 1}}) {
    list_.SelectItem(item);
    EXPECT_EQ(list_.top(), top) << item;
    EXPECT_EQ(Selected(), item);
  }
}

TEST_F(ListModelTest, TheSelectionSurvivesScrolling) {
  Start(100, 10);
  list_.SelectItem(5);
  list_.ScrollTo(60);  // before the page of item 5 was ever drawn
  EXPECT_EQ(Shown().front(), 60);
  EXPECT_EQ(Selected(), 5);
  list_.ScrollTo(60);
  Press({{kDown, 6, 5}});  // brings the selection back into view first
}

TEST_F(ListModelTest, CursorKeys) {
  Start(25, 10);
  Press({{kUp, 0, 1},
         {kDown, 1, 1},
         {kPageDown, 10, 1},
         {kPageDown, 20, 11},
         {kPageDown, 25, 16},
         {kDown, 25, 16},
         {kPageUp, 16, 16},
         {kPageUp, 6, 6},
         {kUp, 5, 5},
         {kEnd, 25, 16},
         {kHome, 1, 1}});
  source_.deleted = {11, 12, 13};
  Start(30, 10);
  list_.SelectItem(10);
  Press({{kDown, 14, 11}, {kUp, 10, 10}});
}

// Everything deleted but the ends: each key press reads a few pages, and gets there.
TEST_F(ListModelTest, LongDeletedStretchesAreCrossedInBoundedSteps) {
  for (std::int32_t position = 2; position < 1000; ++position) source_.deleted.insert(position);
  Start(1000, 10);
  list_.SelectItem(1);
  int presses = 0;
  while (Selected() != 1000 && presses < 200) {
    const std::size_t before = source_.pages.size();
    list_.LineDown();
    ++presses;
    EXPECT_LE(source_.pages.size() - before, 3u);
  }
  EXPECT_EQ(Selected(), 1000);
  while (Selected() != 1 && presses < 400) {
    list_.LineUp();
    ++presses;
  }
  EXPECT_EQ(Selected(), 1);
}

TEST_F(ListModelTest, HugeLists) {
  Start(std::numeric_limits<std::int32_t>::max(), 10);
  for (const auto key : {kEnd, kPageDown, kDown}) (list_.*key)(Pick::kOnly);
  EXPECT_EQ(Selected(), list_.row_count());
}

// Whatever the user does, the page shown is the right one, and what is picked is what a plain set
// of positions would hold.
TEST_F(ListModelTest, RandomWalkKeepsItsInvariants) {
  list_.SetMultiple();
  std::mt19937 random(20061013);
  const auto upto = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int round = 0; round < 100; ++round) {
    source_.deleted.clear();
    const std::int32_t count = upto(round % 2 ? 60 : 200);
    for (int i = 0; i < count / 3; ++i) source_.deleted.insert(1 + upto(count));
    Start(count, 1 + upto(15));
    std::set<std::int32_t> expected;
    std::int32_t anchor = 0;
    for (int step = 0; step < 150; ++step) {
      Pick pick = static_cast<Pick>(upto(4));
      const std::int32_t item = upto(count + 10) - 5;
      const std::size_t row = static_cast<std::size_t>(upto(16));
      bool moved = true;
      switch (upto(8)) {
        case 0:
          moved = item >= 1 && item <= count;
          pick = Pick::kOnly;
          list_.SelectItem(item);
          break;
        case 1:
          moved = row < list_.rows().size();
          list_.SelectRow(row, pick);
          break;
        case 2:
          moved = false;
          list_.ScrollBy(upto(41) - 20);
          break;
        case 3:
          moved = false;
          list_.SetPageSize(upto(20));
          break;
        default:
          (list_.*kKeys[upto(std::size(kKeys))])(pick);
      }
      ASSERT_GE(list_.top(), 1);
      ASSERT_LE(list_.top(), std::max(1, count - list_.page_size() + 1));
      Positions page;
      for (std::int32_t p = list_.top(); p < list_.top() + list_.page_size() && p <= count; ++p) {
        if (!source_.deleted.contains(p)) page.push_back(p);
      }
      ASSERT_EQ(Shown(), page);

      const std::int32_t cursor = Selected();
      ASSERT_FALSE(source_.deleted.contains(cursor));
      ASSERT_LE(cursor, count);
      if (cursor == 0) {  // it stands on a deleted entry: start over from a known state
        list_.SetRowCount(count);
        expected.clear();
        anchor = 0;
        continue;
      }
      if (moved) {
        if (pick == Pick::kOnly) expected = {cursor};
        if (pick == Pick::kToggle && !expected.erase(cursor)) expected.insert(cursor);
        const bool anchors = pick == Pick::kOnly || pick == Pick::kToggle;
        if (anchors || (pick == Pick::kExtend && anchor == 0)) anchor = cursor;
        if (pick == Pick::kExtend) {
          expected.clear();
          for (std::int32_t p = std::min(anchor, cursor); p <= std::max(anchor, cursor); ++p) {
            if (!source_.deleted.contains(p)) expected.insert(p);
          }
        }
      }
      Positions picked;
      for (const Row& picked_row : list_.SelectedRows()) picked.push_back(picked_row.position);
      ASSERT_EQ(picked, Positions(expected.begin(), expected.end()));  // in the order of the list
      // Of a stretch, deleted entries alone may be left.
      ASSERT_TRUE(list_.HasSelection() || expected.empty());
      for (const Row& shown : list_.rows()) {
        ASSERT_EQ(list_.IsSelected(shown), expected.contains(shown.position));
      }
    }
  }
}

}  // namespace
}  // namespace ard::dialogs
