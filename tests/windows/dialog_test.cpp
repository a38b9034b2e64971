// The real windows, worked by keyboard and mouse.

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
#include <oleacc.h>
// clang-format on

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "dialogs/select_dialog.h"
#include "frame/text.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_test.h"
#include "windows/dialogs/contrast.h"

namespace ard::windows {
namespace {

using dialogs::Row;
using testing::Click;
using testing::Drag;
using testing::Eventually;
using testing::MiddleOf;
using testing::RectOf;
using testing::SizeOf;
using testing::TurnWheel;
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
  int repeated = 0;  // the very page that had been read before
  bool fails = false;
  bool has_gaps = true;  // of deleted accounts

  void LoadPage(std::int32_t from, std::int32_t to, std::vector<Row>& rows) override {
    ++pages;
    if (from == first && to == last) ++repeated;
    first = last = 0;
    if (fails) throw std::bad_alloc();
    first = from;
    last = to;
    for (std::int32_t i = from; i <= to; ++i) {
      if (has_gaps && i % kEveryDeleted == 0) continue;
      // The engine pads its texts.
      rows.push_back({i, std::to_wstring(i) + L"   \tWWWW & Sons       ",
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

 protected:
  // A digit d goes to account d00.
  void TypeAhead(wchar_t key) override {
    typed += key;
    if (key >= L'1' && key <= L'9') list().SelectItem((key - L'0') * 100);
  }
};

class DialogTest : public testing::WindowTest {
 protected:
  template <class Act>
  void Show(LedgerDialog& dialog, Act act) {
    WindowTest::Show(kTitle, dialog, [&](HWND window) { act(View(window)); });
    EXPECT_EQ(dialog.repeated, 0);
  }
  // In circumstances of its own: the host is left as it is.
  void ShowAsIs(LedgerDialog& dialog, const std::function<void()>& act) {
    host_.Drive(
        kTitle, [&] { environment_.Show(dialog); }, [&](HWND) { act(); });
    EXPECT_FALSE(dialog.visible());
  }
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
    EXPECT_EQ(FocusWindow(), view.list);
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
    const struct {
      const wchar_t* key;
      std::int32_t selected;
      int pages;  // read for it
    } steps[] = {{L"{Down}", 2, 0},
                 {L"{Up}", 1, 0},
                 {L"{Up}", 1, 0},
                 {L"{PgDn}", page, 0},
                 {L"{PgDn}", 2 * page, 1},
                 {L"{Down}", 2 * page + 1, 1},
                 {L"{End}", kMany, 1},
                 {L"{Down}", kMany, 0},
                 {L"{PgUp}", kMany - page + 1, 0},
                 {L"{PgUp}", kMany - 2 * page + 1, 1},
                 {L"{Up}", kMany - 2 * page, 1},
                 {L"{Home}", 1, 1}};
    for (const auto& step : steps) {
      SCOPED_TRACE(ToUtf8(step.key));
      const int before = dialog.pages;
      Keys(step.key);
      EXPECT_EQ(view.Selected(), std::to_wstring(step.selected));
      EXPECT_EQ(dialog.pages - before, step.pages);
    }
  });
}

TEST_F(DialogTest, CharactersGoToTheModel) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    Keys(L"é*{9}{Space}{Ctrl+A}{Back}");
    EXPECT_EQ(dialog.typed, L"é*9 ");
    EXPECT_EQ(view.Selected(), L"900");
    EXPECT_EQ(dialog.pages, 2);
    EXPECT_TRUE(IsWindowEnabled(view.ok));
    Keys(L"{7}");  // deleted: nothing is selected, and the focus stays where keys are heard
    EXPECT_EQ(view.Selected(), L"");
    EXPECT_FALSE(IsWindowEnabled(view.ok));
    Keys(L"{3}");
    EXPECT_EQ(view.Selected(), L"300");
    EXPECT_TRUE(IsWindowEnabled(view.ok));
  });
}

TEST_F(DialogTest, EveryWayOutEndsAsItShould) {
  const auto keys = [](const wchar_t* text) { return [=](const View&) { testing::Keys(text); }; };
  const struct {
    const char* name;
    bool result;
    std::function<void(const View&)> act;
  } endings[] = {
      {"Enter", true, keys(L"{Enter}")},
      {"Enter on OK", true, keys(L"{Tab}{Enter}")},
      {"blank on OK", true, keys(L"{Tab}{Space}")},
      {"Enter on Cancel", false, keys(L"{Tab}{Tab}{Enter}")},
      {"back in the list", true, keys(L"{Tab}{Tab}{Tab}{Enter}")},
      {"Cancel by going backwards", false, keys(L"{Shift+Tab}{Space}")},
      {"Esc", false, keys(L"{Esc}")},
      {"Alt+F4", false, keys(L"{Alt+F4}")},
      {"double-click", true, [](const View& v) { Click(v.RowPoint(2), 2); }},
      {"double-click below the rows", true, [](const View& v) { Click(v.RowPoint(v.rows()), 2); }},
      {"click on OK", true, [](const View& v) { Click(MiddleOf(v.ok)); }},
      {"click on Cancel", false, [](const View& v) { Click(MiddleOf(v.cancel)); }},
      {"close box", false,
       [](const View& v) { PostMessageW(v.dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }},
      {"closed by another thread", false,
       [](const View& v) { SendMessageW(v.dialog, WM_CLOSE, 0, 0); }},
  };
  for (const auto& ending : endings) {
    SCOPED_TRACE(ending.name);
    LedgerDialog dialog(kMany);
    Show(dialog, [&](const View& view) {
      ending.act(view);
      ExpectClosed(view.dialog);
    });
    EXPECT_EQ(dialog.result(), ending.result);
    EXPECT_EQ(dialog.pages, 1);
  }
}

TEST_F(DialogTest, EndsWhenItsThreadQuitsOrItsOwnerGoes) {
  LedgerDialog quit(kMany);
  ShowAsIs(quit, [&] { host_.Ask([] { PostQuitMessage(5); }); });
  EXPECT_FALSE(quit.result());
  MSG message = {};
  EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0)) << "the host's own loop must end, too";
  EXPECT_EQ(message.wParam, 5U);

  LedgerDialog orphan(kMany);
  ShowAsIs(orphan, [&] { host_.Ask([&] { DestroyWindow(host_.window()); }); });
  EXPECT_FALSE(orphan.result());
}

TEST_F(DialogTest, ClickSelectsAndBlankSpaceDoesNot) {
  LedgerDialog dialog(5);
  Show(dialog, [&](const View& view) {
    ClickOn(view.RowPoint(3));
    EXPECT_EQ(view.Selected(), L"4");
    ClickOn(view.RowPoint(8));
    ClickOn(view.HeaderPoint(0), 2);
    EXPECT_EQ(view.Selected(), L"4");
    Keys(L"{Up}");
    EXPECT_EQ(view.Selected(), L"3");
    view.SetState(1, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(view.Selected(), L"2");
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(dialog.list().selected()->position, 2);
}

TEST_F(DialogTest, TheSimpleListOpensMidScreenWithTheCursorOnARowNotSelected) {
  dialogs::SelectRecordDialog dialog(kTitle);
  dialog.list().AddColumn(L"A/C", 15);
  for (const wchar_t* row : {L"1", L"2"}) dialog.AddRow(row);
  WindowTest::Show(kTitle, dialog, [&](HWND window) {
    const View view(window);
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_NEAR(MiddleOf(window).x, (work.left + work.right) / 2, 1);
    EXPECT_NEAR(MiddleOf(window).y, (work.top + work.bottom) / 2, 1);
    EXPECT_EQ(SendMessageW(view.list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED), 0);
    ClickOn(view.RowPoint(3), 2);
    Keys(L"{Enter}");
    EXPECT_EQ(view.Selected(), L"");
    EXPECT_FALSE(IsWindowEnabled(view.ok));
    Keys(L"{Space}");
    EXPECT_EQ(view.Selected(), L"1");
    Keys(L"{Down}{Enter}");
    ExpectClosed(window);
  });
  EXPECT_EQ(dialog.list().selected()->position, 2);
}

TEST_F(DialogTest, WheelScrollsByTheSystemsLines) {
  UINT lines = 0;
  ASSERT_TRUE(SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0));
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const auto step = static_cast<int>(lines);
    const int page = dialog.last;
    const struct {
      int delta;
      int top;
      int pages;
    } turns[] = {{-WHEEL_DELTA, 1 + step, 2},
                 // A finer wheel: its turns add up.
                 {-WHEEL_DELTA / 6, 1 + step, 2},
                 {-WHEEL_DELTA / 6, 2 + step, 3},
                 {2 * WHEEL_DELTA, 1, 4},
                 {WHEEL_DELTA, 1, 4},
                 {-100 * WHEEL_DELTA, 1 + 100 * step, 5}};
    for (const auto& turn : turns) {
      TurnWheel(MiddleOf(view.list), turn.delta);
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(view.Scroll().nPos, turn.top);
      EXPECT_EQ(dialog.pages, turn.pages);
    }
    EXPECT_EQ(view.Selected(), L"") << "it has scrolled out of view";
    EXPECT_TRUE(IsWindowEnabled(view.ok));
    // From a button with the focus, too.
    Keys(L"{Tab}");
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

    const struct {
      const char* name;
      std::function<void()> act;
      std::int32_t top;
      bool one_page;
    } steps[] = {
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
    for (const auto& step : steps) {
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
    Keys(L"{Enter}");
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
    const auto resize = [&](LONG width, LONG tall) {
      testing::Resize(view.dialog, {width, tall});
      EXPECT_TRUE(host_.Settle());
      EXPECT_FALSE(GetWindowLongW(view.list, GWL_STYLE) & WS_VSCROLL);
      EXPECT_EQ(static_cast<int>(view.Scroll().nPage), dialog.last - dialog.first + 1);
    };
    resize(opened.cx + 100, opened.cy + 5 * height);
    EXPECT_EQ(dialog.last, page + 5);
    EXPECT_EQ(SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 0, 0) +
                  SendMessageW(view.list, LVM_GETCOLUMNWIDTH, 1, 0),
              SizeOf(view.list).cx)
        << "no more and no less";
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

TEST_F(DialogTest, RedRowsAreRedAndReadableInAnyPalette) {
  constexpr int kBlackRow = 4;  // position 5
  constexpr int kRedRow = 3;    // position 4
  EXPECT_NEAR(Contrast(RGB(255, 0, 0), RGB(255, 255, 255)), 4.0, 0.01);
  EXPECT_NEAR(Contrast(RGB(0, 0, 0), RGB(255, 255, 255)), 21, 0.01);
  int elements[] = {COLOR_WINDOW, COLOR_WINDOWTEXT, COLOR_HIGHLIGHT, COLOR_HIGHLIGHTTEXT,
                    COLOR_BTNFACE};
  constexpr int kCount = std::size(elements);
  COLORREF usual[kCount] = {};
  for (int i = 0; i < kCount; ++i) usual[i] = GetSysColor(elements[i]);
  const COLORREF dark[kCount] = {0, 0xFFFFFF, 0x00FFFF, 0, 0};
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const auto ink = [&](int row) { return testing::InkOf(host_, view, row); };
    for (const COLORREF* palette : std::initializer_list<const COLORREF*>{usual, dark, usual}) {
      ClickOn(view.RowPoint(0));
      SetSysColors(kCount, elements, palette);
      ASSERT_TRUE(host_.Settle());
      const testing::Ink black = ink(kBlackRow);
      EXPECT_EQ(black.background, palette[0]);
      EXPECT_EQ(black.text, palette[1]);
      EXPECT_EQ(ink(kRedRow).text, RGB(255, 0, 0)) << "visible enough as it is";
      ClickOn(view.RowPoint(kRedRow));
      for (const bool active : {true, false}) {
        const testing::Ink red = ink(kRedRow);
        const COLORREF own = active ? red.background : red.text;
        EXPECT_GT(GetRValue(own), 180);
        EXPECT_LT(GetGValue(own) + GetBValue(own), active ? 20 : 60);
        EXPECT_GE(Contrast(red.background, red.text), 4.5);
        EXPECT_NE(own, black.background);
        Keys(L"{Tab}");
      }
    }
  });
}

TEST_F(DialogTest, ACellThatIsCutShowsItsWholeTextToThePointer) {
  dialogs::SelectRecordDialog dialog(kTitle);
  dialog.list().AddColumn(L"A/C", 15);
  dialog.list().AddColumn(L"Name", 60);
  const std::wstring name(60, L'W');
  dialog.AddRow(L"1\t" + name + L" & Sons   ");
  WindowTest::Show(kTitle, dialog, [&](HWND window) {
    const View view(window);
    POINT point = view.HeaderPoint(1);
    point.y = view.RowPoint(0).y;
    const auto shown = [&] {
      SetCursorPos(static_cast<int>(point.x++), static_cast<int>(point.y));
      const HWND tip = FindWindowW(TOOLTIPS_CLASSW, nullptr);
      return tip && IsWindowVisible(tip) ? testing::TextOf(tip) : L"";
    };
    EXPECT_TRUE(Eventually([&] {
      const std::wstring text = shown();
      Sleep(1000);
      return text == name + L" & Sons";
    }));
  });
}

// As a reader in another program asks.
std::wstring SpokenName(HWND window, LONG child) {
  void* object = nullptr;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             &object);
  if (!object) return L"nothing";
  auto* accessible = static_cast<IAccessible*>(object);
  VARIANT which = {};
  which.vt = VT_I4;
  which.lVal = child;
  BSTR name = nullptr;
  accessible->get_accName(which, &name);
  std::wstring text = name ? name : L"";
  SysFreeString(name);
  accessible->Release();
  return text;
}

TEST_F(DialogTest, AReaderHearsNamesAndPlacesInTheWholeList) {
  LedgerDialog dialog(kMany);
  dialog.list().SetName(L"customers");
  Show(dialog, [&](const View& view) {
    Keys(L"{9}");
    host_.Ask([&] {
      EXPECT_EQ(SpokenName(view.list, CHILDID_SELF), L"Customers");
      EXPECT_EQ(testing::TextOf(view.list), L"Customers");
      const LRESULT row =
          SendMessageW(view.list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
      EXPECT_EQ(SpokenName(view.list, static_cast<LONG>(row) + 1),
                L"900, WWWW & Sons, row 900 of 10000000, over its limit");
    });
  });
}

TEST_F(DialogTest, AnEmptyListSaysWhyInGrey) {
  for (const auto reading : {dialogs::Reading::kDone, dialogs::Reading::kNotYet}) {
    LedgerDialog dialog(0);
    dialog.list().SetReading(reading);
    Show(dialog, [&](const View& view) {
      testing::Picture picture;
      host_.Ask([&] { picture = testing::PictureOf(view.list); });
      EXPECT_EQ(
          std::count(picture.pixels.begin(), picture.pixels.end(), GetSysColor(COLOR_GRAYTEXT)) > 5,
          reading == dialogs::Reading::kDone);
    });
  }
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
    Keys(L"{End}{PgDn}{Down}");
    PostMessageW(view.frame, WM_VSCROLL, SB_PAGEUP, 0);
    TurnWheel(MiddleOf(view.list), -WHEEL_DELTA);
    ASSERT_TRUE(host_.Settle());
    dialog.fails = false;
    Keys(L"{Home}");
    EXPECT_EQ(view.Selected(), L"1");
    Keys(L"{Enter}");
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
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View&) { EXPECT_FALSE(IsWindowEnabled(palette)); });
  EXPECT_TRUE(IsWindowEnabled(palette));
  EXPECT_FALSE(IsWindowEnabled(disabled));
  DestroyWindow(palette);
  DestroyWindow(disabled);
}

TEST_F(DialogTest, OpensWithoutAnOwner) {
  SetActiveWindow(nullptr);
  ShowWindow(host_.window(), SW_HIDE);
  LedgerDialog dialog(kMany);
  ShowAsIs(dialog, [&] {
    EXPECT_EQ(GetWindow(FindWindowW(nullptr, kTitle), GW_OWNER), nullptr);
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
}

}  // namespace
}  // namespace ard::windows
