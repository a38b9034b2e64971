#include "dialogs/list_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <set>
#include <string>

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

  NumberedRows source_;
  ListModel list_{source_};
};

using Positions = std::vector<std::int32_t>;

TEST(RowTest, CellsAreSeparatedByTabs) {
  const Row row{1, L"ABC001\tABC Ltd\t\tlast", 0};
  EXPECT_EQ(row.Cell(1), L"ABC001");
  EXPECT_EQ(row.Cell(2), L"ABC Ltd");
  EXPECT_EQ(row.Cell(3), L"");
  EXPECT_EQ(row.Cell(4), L"last");
  EXPECT_EQ(row.Cell(5), L"");
}

TEST_F(ListModelTest, ReadsNothingBeforeAPageIsAskedForAndThenOnePage) {
  Start(1'000'000'000, 20);
  list_.SelectItem(1);
  list_.SetPageSize(25);
  EXPECT_TRUE(source_.pages.empty());
  list_.rows();
  EXPECT_EQ(Selected(), 1);
  list_.rows();
  ASSERT_EQ(source_.pages.size(), 1u);
  EXPECT_EQ(source_.pages[0], std::make_pair(1, 25));
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
  list_.SelectItem(3);
  EXPECT_EQ(Selected(), 0);
  list_.SelectItem(5);
  EXPECT_EQ(Selected(), 5);
  list_.SelectItem(7);  // not in the list
  EXPECT_EQ(Selected(), 5);
  list_.SelectRow(0);
  EXPECT_EQ(Selected(), 2);
  list_.SelectRow(2);
  EXPECT_EQ(Selected(), 2);
}

TEST_F(ListModelTest, SelectingAnItemScrollsJustEnough) {
  Start(100, 10);
  const struct {
    std::int32_t item;
    std::int32_t top;
  } steps[] = {{10, 1}, {11, 2}, {50, 41}, {41, 41}, {40, 40}, {100, 91}, {1, 1}};
  for (const auto& step : steps) {
    list_.SelectItem(step.item);
    EXPECT_EQ(list_.top(), step.top) << step.item;
    EXPECT_EQ(Selected(), step.item);
  }
}

TEST_F(ListModelTest, TheSelectionSurvivesScrolling) {
  Start(100, 10);
  list_.SelectItem(5);
  list_.ScrollTo(60);  // before the page of item 5 was ever drawn
  EXPECT_EQ(Shown().front(), 60);
  EXPECT_EQ(Selected(), 5);
  list_.ScrollBy(1000);
  EXPECT_EQ(list_.top(), 91);
  list_.ScrollBy(std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(list_.top(), 1);
  list_.ScrollTo(60);
  list_.LineDown();  // brings the selection back into view first
  EXPECT_EQ(Selected(), 6);
  EXPECT_EQ(list_.top(), 5);
}

TEST_F(ListModelTest, CursorKeys) {
  Start(25, 10);
  list_.LineUp();
  EXPECT_EQ(Selected(), 0);
  list_.LineDown();
  EXPECT_EQ(Selected(), 1);
  list_.PageDown();
  EXPECT_EQ(Selected(), 10);
  list_.PageDown();
  EXPECT_EQ(Selected(), 20);
  list_.PageDown();
  list_.PageDown();
  EXPECT_EQ(Selected(), 25);
  EXPECT_EQ(list_.top(), 16);
  list_.LineDown();
  EXPECT_EQ(Selected(), 25);
  list_.PageUp();
  EXPECT_EQ(Selected(), 16);
  list_.PageUp();
  EXPECT_EQ(Selected(), 6);
  list_.LineUp();
  EXPECT_EQ(Selected(), 5);
  EXPECT_EQ(list_.top(), 5);
  list_.End();
  EXPECT_EQ(Selected(), 25);
  list_.Home();
  EXPECT_EQ(Selected(), 1);
}

TEST_F(ListModelTest, LineKeysStepOverDeletedEntriesBeyondThePage) {
  source_.deleted = {11, 12, 13};
  Start(30, 10);
  list_.SelectItem(10);
  list_.LineDown();
  EXPECT_EQ(Selected(), 14);
  EXPECT_EQ(list_.top(), 11);
  list_.LineUp();
  EXPECT_EQ(Selected(), 10);
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

TEST_F(ListModelTest, EmptyAndHugeLists) {
  Start(0, 10);
  list_.SelectItem(1);
  list_.Home();
  list_.End();
  list_.PageDown();
  list_.PageUp();
  list_.LineDown();
  list_.LineUp();
  list_.ScrollBy(5);
  EXPECT_EQ(Shown(), Positions());
  EXPECT_EQ(Selected(), 0);
  EXPECT_TRUE(source_.pages.empty());

  Start(std::numeric_limits<std::int32_t>::max(), 10);
  list_.End();
  list_.PageDown();
  list_.LineDown();
  EXPECT_EQ(Selected(), list_.row_count());
  Start(-5, 10);
  EXPECT_EQ(list_.row_count(), 0);
}

TEST_F(ListModelTest, AChangedPageSizeKeepsTheCursorInView) {
  Start(100, 20);
  list_.SelectItem(20);
  list_.SetPageSize(5);
  EXPECT_EQ(list_.top(), 16);
  EXPECT_EQ(Selected(), 20);
  list_.ScrollTo(96);
  list_.SetPageSize(50);
  EXPECT_EQ(list_.top(), 51);  // no blank space below the last row
  EXPECT_EQ(Selected(), 20);
}

// A multiple selection is what a plain set of positions would hold.
TEST_F(ListModelTest, MultipleSelectionIsASetOfPositions) {
  list_.SetMultiple();
  std::mt19937 random(19991231);
  const auto upto = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  constexpr void (ListModel::*kMoves[])(Pick) = {
      &ListModel::LineUp,   &ListModel::LineDown, &ListModel::PageUp, &ListModel::PageDown,
      &ListModel::LineDown, &ListModel::Home,     &ListModel::End};
  for (int round = 0; round < 50; ++round) {
    source_.deleted.clear();
    const std::int32_t count = 1 + upto(200);
    for (int i = 0; i < count / 3; ++i) source_.deleted.insert(1 + upto(count));
    Start(count, 1 + upto(15));
    std::set<std::int32_t> expected;
    std::int32_t anchor = 0;
    for (int step = 0; step < 100; ++step) {
      const auto pick = static_cast<Pick>(upto(4));
      if (upto(3) > 0) {
        (list_.*kMoves[upto(std::size(kMoves))])(pick);
      } else if (list_.rows().empty()) {
        continue;
      } else {
        list_.SelectRow(static_cast<std::size_t>(upto(static_cast<int>(list_.rows().size()))),
                        pick);
      }
      const std::int32_t cursor = Selected();
      if (cursor == 0) {  // it stands on a deleted entry: start over from a known state
        list_.SetRowCount(count);
        expected.clear();
        anchor = 0;
        continue;
      }
      if (pick == Pick::kOnly) expected = {cursor};
      if (pick == Pick::kToggle && !expected.erase(cursor)) expected.insert(cursor);
      if (pick == Pick::kOnly || pick == Pick::kToggle) anchor = cursor;
      if (pick == Pick::kExtend) {
        if (anchor == 0) anchor = cursor;
        expected.clear();
        for (std::int32_t p = std::min(anchor, cursor); p <= std::max(anchor, cursor); ++p) {
          if (!source_.deleted.contains(p)) expected.insert(p);
        }
      }
      std::set<std::int32_t> picked;
      std::int32_t last = 0;
      for (const Row& row : list_.SelectedRows()) {
        ASSERT_GT(row.position, last);  // in the order of the list
        picked.insert(last = row.position);
      }
      ASSERT_EQ(picked, expected);
      ASSERT_EQ(list_.HasSelection(), !expected.empty());
      for (const Row& row : list_.rows()) {
        ASSERT_EQ(list_.IsSelected(row), expected.contains(row.position));
      }
    }
  }
}

}  // namespace
}  // namespace ard::dialogs
