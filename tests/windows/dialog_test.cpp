// The real windows, worked by keyboard and mouse.

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "dialogs/select_dialog.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_driver.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows {
namespace {

using dialogs::Row;
using testing::Click;
using testing::Drag;
using testing::Eventually;
using testing::Host;
using testing::Ink;
using testing::InkOf;
using testing::MiddleOf;
using testing::Press;
using testing::PressAll;
using testing::RectOf;
using testing::SizeOf;
using testing::TurnWheel;
using testing::Type;
using testing::View;

constexpr wchar_t kTitle[] = L"Select Customer";
constexpr std::int32_t kMany = 10'000'000;
constexpr int kEveryRed = 4;
constexpr int kEveryDeleted = 7;

// Accounts "1", "2" ... made up as they are asked for. Position 4, 8 ... is red, 7, 14 ... deleted.
class Ledger : public dialogs::RowSource {
 public:
  int pages = 0;
  std::int32_t first = 0;
  std::int32_t last = 0;
  int repeated = 0;  // the very page that had been asked for before
  bool fails = false;
  bool has_gaps = true;  // of deleted accounts

  void LoadPage(std::int32_t from, std::int32_t to, std::vector<Row>& rows) override {
    ++pages;
    if (from == first && to == last) ++repeated;
    first = from;
    last = to;
    if (fails) throw std::bad_alloc();
    for (std::int32_t i = from; i <= to; ++i) {
      if (has_gaps && i % kEveryDeleted == 0) continue;
      rows.push_back({i, std::to_wstring(i) + L"\tWWWW & Sons",
                      i % kEveryRed == 0 ? dialogs::kRed : dialogs::kDefaultColor});
    }
  }
};

class LedgerDialog : public Ledger, public dialogs::SelectDialog {
 public:
  explicit LedgerDialog(std::int32_t rows) : SelectDialog(L"frmTest", kTitle, *this) {
    list().AddColumn(L"A/C", 15);
    list().AddColumn(L"Name", 60);
    list().SetRowCount(rows);
    list().SelectItem(1);
  }

  std::wstring typed;
  bool accepts = true;

 protected:
  // A digit d goes to account d00.
  void TypeAhead(wchar_t key) override {
    typed += key;
    if (key >= L'1' && key <= L'9') list().SelectItem((key - L'0') * 100);
  }
  bool Accepts(const Row&) override { return accepts; }
};

class DialogTest : public ::testing::Test {
 protected:
  template <class Act>
  void Show(LedgerDialog& dialog, Act act) {
    host_.Drive(
        kTitle, [&] { environment_.Show(dialog); }, [&](HWND w) { act(View(w)); });
    EXPECT_FALSE(dialog.visible());
    EXPECT_EQ(dialog.repeated, 0);
  }

  Host host_;
  WindowsEnvironment environment_{GetModuleHandleW(nullptr)};
};

TEST_F(DialogTest, OpensWithOnePageOfALongList) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    EXPECT_EQ(dialog.pages, 1);
    EXPECT_EQ(dialog.first, 1);
    EXPECT_NEAR(dialog.last, 20, 2);
    EXPECT_EQ(view.rows(), dialog.last - dialog.last / kEveryDeleted);
    EXPECT_EQ(view.Cell(6, 0), L"8");
    EXPECT_EQ(view.Cell(6, 1), L"WWWW & Sons");
    EXPECT_EQ(view.Selected(), L"1");
    const SCROLLINFO scroll = view.Scroll();
    EXPECT_EQ(scroll.nMin, 1);
    EXPECT_EQ(scroll.nMax, kMany);
    EXPECT_EQ(scroll.nPos, 1);
    EXPECT_EQ(static_cast<int>(scroll.nPage), dialog.last);
    EXPECT_FALSE(GetWindowLongW(view.list, GWL_STYLE) & (WS_VSCROLL | WS_HSCROLL));
    HWND focus = nullptr;
    host_.Ask([&] { focus = GetFocus(); });
    EXPECT_EQ(focus, view.list);
    // Centred on its owner.
    EXPECT_NEAR(MiddleOf(view.dialog).x, MiddleOf(host_.window()).x, 2);
    EXPECT_NEAR(MiddleOf(view.dialog).y, MiddleOf(host_.window()).y, 2);
  });
}

TEST_F(DialogTest, KeysMoveAndPageOneReadAtATime) {
  LedgerDialog dialog(kMany);
  dialog.has_gaps = false;
  Show(dialog, [&](const View& view) {
    const int page = dialog.last;
    struct Step {
      WORD key;
      std::int32_t selected;
      int pages;  // read for it
    };
    const Step steps[] = {{VK_DOWN, 2, 0},
                          {VK_UP, 1, 0},
                          {VK_UP, 1, 0},
                          {VK_NEXT, page, 0},
                          {VK_NEXT, 2 * page, 1},
                          {VK_DOWN, 2 * page + 1, 1},
                          {VK_END, kMany, 1},
                          {VK_DOWN, kMany, 0},
                          {VK_PRIOR, kMany - page + 1, 0},
                          {VK_PRIOR, kMany - 2 * page + 1, 1},
                          {VK_UP, kMany - 2 * page, 1},
                          {VK_HOME, 1, 1}};
    for (const Step& step : steps) {
      const int before = dialog.pages;
      Press({step.key});
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(view.Selected(), std::to_wstring(step.selected)) << "key " << step.key;
      EXPECT_EQ(dialog.pages - before, step.pages) << "key " << step.key;
    }
  });
}

TEST_F(DialogTest, CharactersGoToTheModel) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    Type(L"é*");
    Press({'9'});
    Press({VK_SPACE});
    Press({VK_CONTROL, 'A'});
    Press({VK_BACK});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(dialog.typed, L"é*9 ");
    EXPECT_EQ(view.Selected(), L"900");
    EXPECT_EQ(dialog.pages, 2);
    // A deleted entry: nothing is selected, and the focus stays where keys are heard.
    EXPECT_TRUE(IsWindowEnabled(view.ok));
    Press({'7'});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"");
    EXPECT_FALSE(IsWindowEnabled(view.ok));
    Press({'3'});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"300");
    EXPECT_TRUE(IsWindowEnabled(view.ok));
  });
}

TEST_F(DialogTest, EveryWayOutEndsAsItShould) {
  struct Ending {
    const char* name;
    bool result;
    std::function<void(const View&)> act;
  };
  const Ending endings[] = {
      {"Enter", true, [](const View&) { Press({VK_RETURN}); }},
      {"Enter on OK", true, [](const View&) { Press({VK_TAB}), Press({VK_RETURN}); }},
      {"blank on OK", true, [](const View&) { Press({VK_TAB}), Press({VK_SPACE}); }},
      {"Enter on Cancel", false,
       [](const View&) { Press({VK_TAB}), Press({VK_TAB}), Press({VK_RETURN}); }},
      {"back in the list", true,
       [](const View&) { Press({VK_TAB}), Press({VK_TAB}), Press({VK_TAB}), Press({VK_RETURN}); }},
      {"Cancel by going backwards", false,
       [](const View&) {
         Press({VK_SHIFT, VK_TAB}), Press({VK_SPACE});
       }},
      {"Esc", false, [](const View&) { Press({VK_ESCAPE}); }},
      {"Alt+F4", false,
       [](const View&) {
         Press({VK_MENU, VK_F4});
       }},
      {"double-click", true, [](const View& v) { Click(v.RowPoint(2), 2); }},
      {"click on OK", true, [](const View& v) { Click(MiddleOf(v.ok)); }},
      {"click on Cancel", false, [](const View& v) { Click(MiddleOf(v.cancel)); }},
      {"close box", false,
       [](const View& v) { PostMessageW(v.dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }},
      {"closed by another thread", false,
       [](const View& v) { SendMessageW(v.dialog, WM_CLOSE, 0, 0); }},
  };
  for (const Ending& ending : endings) {
    SCOPED_TRACE(ending.name);
    host_.Activate();
    LedgerDialog dialog(kMany);
    Show(dialog, [&](const View& view) {
      EXPECT_FALSE(IsWindowEnabled(host_.window()));
      ending.act(view);
      EXPECT_TRUE(Eventually([&] { return !IsWindow(view.dialog); }));
    });
    EXPECT_EQ(dialog.result(), ending.result);
    EXPECT_EQ(dialog.pages, 1);
    EXPECT_TRUE(IsWindowEnabled(host_.window()));
    EXPECT_TRUE(host_.focus_returned());
  }
}

TEST_F(DialogTest, EndsWhenItsThreadQuitsOrItsOwnerGoes) {
  LedgerDialog quit(kMany);
  Show(quit, [&](const View&) { host_.Ask([] { PostQuitMessage(5); }); });
  EXPECT_FALSE(quit.result());
  MSG message = {};
  EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0)) << "the host's own loop must end, too";
  EXPECT_EQ(message.wParam, 5U);

  LedgerDialog orphan(kMany);
  Show(orphan, [&](const View&) { host_.Ask([&] { DestroyWindow(host_.window()); }); });
  EXPECT_FALSE(orphan.result());
}

TEST_F(DialogTest, WithoutARowThereIsNoOk) {
  LedgerDialog dialog(0);
  Show(dialog, [&](const View& view) {
    EXPECT_EQ(view.rows(), 0);
    EXPECT_FALSE(IsWindowEnabled(view.ok));
    PressAll({VK_DOWN, VK_UP, VK_NEXT, VK_PRIOR, VK_END, VK_HOME, VK_RETURN});
    Click(MiddleOf(view.list), 2);
    TurnWheel(MiddleOf(view.list), -WHEEL_DELTA);
    ASSERT_TRUE(host_.Settle());
    EXPECT_TRUE(IsWindowVisible(view.dialog));
    EXPECT_EQ(dialog.pages, 0);
    Press({VK_TAB});
    Press({VK_SPACE});
    EXPECT_TRUE(Eventually([&] { return !IsWindow(view.dialog); })) << "Cancel is next to the list";
  });
  EXPECT_FALSE(dialog.result());
}

TEST_F(DialogTest, RefusedRowKeepsTheDialogOpen) {
  LedgerDialog dialog(kMany);
  dialog.accepts = false;
  Show(dialog, [&](const View& view) {
    Press({VK_RETURN});
    Click(MiddleOf(view.ok));
    Click(view.RowPoint(3), 2);
    ASSERT_TRUE(host_.Settle());
    EXPECT_TRUE(IsWindowVisible(view.dialog));
  });
  EXPECT_FALSE(dialog.result());
}

TEST_F(DialogTest, ClickSelectsAndBlankSpaceDoesNot) {
  LedgerDialog dialog(5);
  Show(dialog, [&](const View& view) {
    Click(view.RowPoint(3));
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"4");
    Click(view.RowPoint(8));
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"4");
    Press({VK_UP});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"3");
    // As assistive technology does it.
    LVITEMW state = {};
    state.state = state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(view.list, LVM_SETITEMSTATE, 1, reinterpret_cast<LPARAM>(&state));
    EXPECT_EQ(view.Selected(), L"2");
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(dialog.list().selected()->position, 2);
}

TEST_F(DialogTest, WheelScrollsByTheSystemsLines) {
  UINT lines = 0;
  ASSERT_TRUE(SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0));
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const auto step = static_cast<int>(lines);
    const int page = dialog.last;
    struct Turn {
      int delta;
      int top;
      int pages;
    };
    const Turn turns[] = {{-WHEEL_DELTA, 1 + step, 2},
                          // A finer wheel: its turns add up.
                          {-WHEEL_DELTA / 6, 1 + step, 2},
                          {-WHEEL_DELTA / 6, 2 + step, 3},
                          {2 * WHEEL_DELTA, 1, 4},
                          {WHEEL_DELTA, 1, 4},
                          {-100 * WHEEL_DELTA, 1 + 100 * step, 5}};
    for (const Turn& turn : turns) {
      TurnWheel(MiddleOf(view.list), turn.delta);
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(view.Scroll().nPos, turn.top);
      EXPECT_EQ(dialog.pages, turn.pages);
    }
    EXPECT_EQ(view.Selected(), L"") << "it has scrolled out of view";
    EXPECT_TRUE(IsWindowEnabled(view.ok));
    // From a button with the focus, too.
    Press({VK_TAB});
    TurnWheel(MiddleOf(view.ok), -WHEEL_DELTA);
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Scroll().nPos, 1 + 101 * step);
    EXPECT_EQ(dialog.last - dialog.first + 1, page);
  });
  EXPECT_EQ(dialog.list().selected()->position, 1);
}

TEST_F(DialogTest, ScrollBarReachesEveryRow) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const int page = dialog.last;
    SCROLLBARINFO bar = {};
    bar.cbSize = sizeof(bar);
    ASSERT_TRUE(GetScrollBarInfo(view.frame, OBJID_VSCROLL, &bar));
    const LONG x = (bar.rcScrollBar.left + bar.rcScrollBar.right) / 2;
    // The thumb is still at the top, next to the arrow.
    const LONG arrow = bar.xyThumbTop;
    const POINT up = {x, bar.rcScrollBar.top + arrow / 2};
    const POINT down = {x, bar.rcScrollBar.bottom - arrow / 2};
    const POINT below_thumb = {x, down.y - arrow};
    const POINT thumb = {x, bar.rcScrollBar.top + (bar.xyThumbTop + bar.xyThumbBottom) / 2};

    struct Step {
      const char* name;
      std::function<void()> act;
      std::int32_t top;
      bool one_page;
    };
    const Step steps[] = {
        {"arrow", [&] { Click(down); }, 2, true},
        {"below the thumb", [&] { Click(below_thumb); }, 2 + page, true},
        {"arrow up", [&] { Click(up); }, 1 + page, true},
        {"to the end", [&] { Drag(thumb, down); }, kMany - page + 1, false},
        {"past the end", [&] { Click(down); }, kMany - page + 1, false},
        {"line up", [&] { Click(up); }, kMany - page, true},
        {"top", [&] { PostMessageW(view.frame, WM_VSCROLL, SB_TOP, 0); }, 1, true},
        {"bottom", [&] { PostMessageW(view.frame, WM_VSCROLL, SB_BOTTOM, 0); }, kMany - page + 1,
         true},
    };
    for (const Step& step : steps) {
      SCOPED_TRACE(step.name);
      const int before = dialog.pages;
      step.act();
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(view.Scroll().nPos, step.top);
      EXPECT_EQ(dialog.first, step.top);
      EXPECT_EQ(dialog.last, step.top + page - 1);
      EXPECT_TRUE(!step.one_page || dialog.pages - before == 1) << dialog.pages - before;
    }
    // The selection has stayed where it was.
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(dialog.list().selected()->position, 1);
}

TEST_F(DialogTest, ResizingShowsMoreOrFewerRows) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const SIZE opened = SizeOf(view.dialog);
    const int page = dialog.last;
    const RECT row = view.RowRect(0);
    const LONG height = row.bottom - row.top;
    // From the lower right corners of list and button to that of the window.
    const auto distances = [&] {
      const RECT window = RectOf(view.dialog);
      const RECT list = RectOf(view.frame);
      const RECT button = RectOf(view.cancel);
      return std::vector<LONG>{window.right - list.right, window.bottom - list.bottom,
                               window.right - button.right, window.bottom - button.bottom};
    };
    const std::vector<LONG> at_first = distances();
    const auto resize = [&](LONG width, LONG tall) {
      SetWindowPos(view.dialog, nullptr, 0, 0, static_cast<int>(width), static_cast<int>(tall),
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      EXPECT_TRUE(host_.Settle());
      EXPECT_EQ(distances(), at_first);
      EXPECT_FALSE(GetWindowLongW(view.list, GWL_STYLE) & WS_VSCROLL);
      EXPECT_EQ(static_cast<int>(view.Scroll().nPage), dialog.last - dialog.first + 1);
    };
    resize(opened.cx + 100, opened.cy + 5 * height);
    EXPECT_EQ(dialog.last, page + 5);
    EXPECT_EQ(SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 0, 0) +
                  SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 1, 0),
              SizeOf(view.list).cx)
        << "the last column takes the rest";
    resize(opened.cx + 100, opened.cy);
    EXPECT_EQ(dialog.last, page);
    // There is a smallest size, at which everything is still there.
    resize(10, 10);
    EXPECT_GE(dialog.last, 3);
    EXPECT_GT(RectOf(view.ok).left, RectOf(view.dialog).left);
  });
}

TEST_F(DialogTest, ADraggedColumnLeavesTheRestToTheLast) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const HWND header = view.Header();
    RECT first = {};
    SendMessageW(header, HDM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
    POINT divider = {first.right, (first.top + first.bottom) / 2};
    ClientToScreen(header, &divider);
    Drag(divider, {divider.x + 50, divider.y});
    ASSERT_TRUE(host_.Settle());
    const LRESULT width = SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 0, 0);
    EXPECT_NEAR(static_cast<int>(width), static_cast<int>(first.right) + 50, 3);
    EXPECT_EQ(width + SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 1, 0), SizeOf(view.list).cx);
    EXPECT_EQ(dialog.pages, 1);
  });
}

TEST_F(DialogTest, RedRowsAreRedAndStayReadable) {
  constexpr int kBlackRow = 4;  // position 5
  constexpr int kRedRow = 3;    // position 4
  constexpr int kEnough = 60;
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    ASSERT_TRUE(Eventually([&] {
      Ink drawn;
      host_.Ask([&] { drawn = InkOf(view, kBlackRow); });
      return drawn.any > kEnough;
    }));
    Ink black, red, selected, unfocused;
    host_.Ask([&] {
      black = InkOf(view, kBlackRow);
      red = InkOf(view, kRedRow);
    });
    EXPECT_LT(black.red, black.any / 4);
    EXPECT_GT(red.red, kEnough);
    Click(view.RowPoint(kRedRow));
    ASSERT_TRUE(host_.Settle());
    host_.Ask([&] { selected = InkOf(view, kRedRow); });
    EXPECT_GT(selected.any, kEnough);
    EXPECT_NE(selected.background, black.background);
    Press({VK_TAB});
    ASSERT_TRUE(host_.Settle());
    host_.Ask([&] { unfocused = InkOf(view, kRedRow); });
    EXPECT_GT(unfocused.any, kEnough);
    EXPECT_NE(unfocused.background, black.background) << "still to be seen as selected";
  });
}

TEST_F(DialogTest, FollowsTheDpiOfItsScreen) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const auto font_height = [&] {
      LOGFONTW font = {};
      GetObjectW(reinterpret_cast<HFONT>(SendMessageW(view.list, WM_GETFONT, 0, 0)), sizeof(font),
                 &font);
      return std::abs(font.lfHeight);
    };
    const SIZE button = SizeOf(view.ok);
    const auto height = static_cast<double>(font_height());
    const LRESULT column = SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 0, 0);
    constexpr UINT kDpi = 144;
    RECT suggested = {20, 20, 920, 720};
    SendMessageW(view.dialog, WM_DPICHANGED, MAKEWPARAM(kDpi, kDpi),
                 reinterpret_cast<LPARAM>(&suggested));
    ASSERT_TRUE(host_.Settle());
    EXPECT_TRUE(EqualRect(&suggested, std::array{RectOf(view.dialog)}.data()));
    EXPECT_NEAR(font_height() / height, 1.5, 0.1);
    EXPECT_NEAR(SizeOf(view.ok).cx / static_cast<double>(button.cx), 1.5, 0.2);
    EXPECT_NEAR(SizeOf(view.ok).cy / static_cast<double>(button.cy), 1.5, 0.2);
    EXPECT_NEAR(static_cast<double>(SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 0, 0)) /
                    static_cast<double>(column),
                1.5, 0.2);
    const RECT first = view.RowRect(0);
    const LONG row = first.bottom - first.top;
    const LONG rest = SizeOf(view.list).cy - first.top - row * dialog.last;
    EXPECT_GE(rest, 0) << "a page is what is wholly visible";
    EXPECT_LT(rest, row);
  });
}

TEST_F(DialogTest, AFailingHandlerChangesNothing) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    dialog.fails = true;
    PressAll({VK_END, VK_NEXT, VK_DOWN});
    PostMessageW(view.frame, WM_VSCROLL, SB_PAGEUP, 0);
    TurnWheel(MiddleOf(view.list), -WHEEL_DELTA);
    ASSERT_TRUE(host_.Settle());
    dialog.fails = false;
    Press({VK_HOME});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"1");
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog.result());
}

TEST_F(DialogTest, AllWindowsOfTheHostAreDisabledAndTheDisabledStaySo) {
  const auto create = [](DWORD style) {
    return CreateWindowW(L"STATIC", L"", WS_POPUP | WS_VISIBLE | style, 0, 0, 20, 20, nullptr,
                         nullptr, nullptr, nullptr);
  };
  const HWND palette = create(0);
  const HWND disabled = create(WS_DISABLED);
  host_.Activate();
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    EXPECT_EQ(GetWindow(view.dialog, GW_OWNER), host_.window());
    EXPECT_FALSE(IsWindowEnabled(palette));
  });
  EXPECT_TRUE(IsWindowEnabled(palette));
  EXPECT_FALSE(IsWindowEnabled(disabled));
  DestroyWindow(palette);
  DestroyWindow(disabled);
}

TEST_F(DialogTest, OpensWithoutAnOwner) {
  SetActiveWindow(nullptr);
  ShowWindow(host_.window(), SW_HIDE);
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    EXPECT_EQ(GetWindow(view.dialog, GW_OWNER), nullptr);
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog.result());
}

TEST_F(DialogTest, MessagesBelongToTheActiveWindow) {
  for (const Icon icon : {Icon::kExclamation, Icon::kStop}) {
    host_.Activate();
    host_.Drive(
        L"Title", [&] { environment_.ShowMessage(icon, L"First.\r\n\r\nSecond.", L"Title"); },
        [&](HWND box) {
          EXPECT_EQ(GetWindow(box, GW_OWNER), host_.window());
          EXPECT_FALSE(IsWindowEnabled(host_.window()));
          EXPECT_EQ(testing::TextOf(GetDlgItem(box, 0xFFFF)), L"First.\r\n\r\nSecond.");
          Press({VK_RETURN});
        });
    EXPECT_TRUE(IsWindowEnabled(host_.window()));
  }
}

TEST_F(DialogTest, LeavesNothingBehind) {
  testing::ExpectNothingLeftBehind([&] {
    LedgerDialog dialog(kMany);
    std::thread closer([] { testing::CloseWhenSeen(kTitle); });
    environment_.Show(dialog);
    closer.join();
  });
}

}  // namespace
}  // namespace ard::windows
