// How the window of a list looks: what it shows of a long one, at any size, in any colours.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <string>

#include "tests/windows/ledger_dialog.h"
#include "windows/dialogs/contrast.h"
// After windows.h.
#include <oleacc.h>

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the windows

class ListWindowTest : public LedgerDialogTest {};

TEST_F(ListWindowTest, WheelScrollsByTheSystemsLines) {
  UINT lines = 0;
  ASSERT_TRUE(SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0));
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const auto step = static_cast<int>(lines);
    const auto turn = [&](HWND window, int delta) {
      TurnWheel(MiddleOf(window), delta);
      EXPECT_TRUE(host_.Settle());
      return view.Scroll().nPos;
    };
    EXPECT_EQ(turn(view.list, -WHEEL_DELTA), 1 + step);
    // A finer wheel: its turns add up.
    EXPECT_EQ(turn(view.list, -WHEEL_DELTA / 6), 1 + step);
    EXPECT_EQ(turn(view.list, -WHEEL_DELTA / 6), 2 + step);
    EXPECT_EQ(turn(view.list, 2 * WHEEL_DELTA), 1);
    EXPECT_EQ(turn(view.list, -100 * WHEEL_DELTA), 1 + 100 * step);
    EXPECT_EQ(dialog.pages, 5);
    EXPECT_EQ(view.Selected(), L"") << "it has scrolled out of view";
    EXPECT_TRUE(IsWindowEnabled(view.ok));
    // From a button with the focus, too.
    Keys(L"{Tab}");
    EXPECT_EQ(turn(view.ok, -WHEEL_DELTA), 1 + 101 * step);
  });
  EXPECT_EQ(dialog.list().selected()->position, 1);
}

TEST_F(ListWindowTest, ScrollBarReachesEveryRow) {
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

    const auto scroll = [&](WORD code) { PostMessageW(view.frame, WM_VSCROLL, code, 0); };
    const struct {
      const char* name;
      std::function<void()> act;
      std::int32_t top;
    } steps[] = {
        {"arrow", [&] { Click(down); }, 2},
        {"below the thumb", [&] { Click(below_thumb); }, 2 + page},
        {"arrow up", [&] { Click(up); }, 1 + page},
        {"to the end", [&] { Drag(thumb, down); }, kMany - page + 1},
        {"past the end", [&] { Click(down); }, kMany - page + 1},
        {"line up", [&] { Click(up); }, kMany - page},
        {"top", [&] { scroll(SB_TOP); }, 1},
        {"bottom", [&] { scroll(SB_BOTTOM); }, kMany - page + 1},
    };
    for (const auto& step : steps) {
      step.act();
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(view.Scroll().nPos, step.top) << step.name;
      EXPECT_EQ(dialog.last, step.top + page - 1) << step.name;
    }
    // The selection has stayed where it was.
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(dialog.list().selected()->position, 1);
}

TEST_F(ListWindowTest, ADraggedColumnLeavesTheRestToTheLast) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const HWND header = view.Header();
    RECT first = {};
    Header_GetItemRect(header, 0, &first);
    POINT divider = {first.right, (first.top + first.bottom) / 2};
    ClientToScreen(header, &divider);
    Drag(divider, {divider.x + 50, divider.y});
    ASSERT_TRUE(host_.Settle());
    const int width = ListView_GetColumnWidth(view.list, 0);
    EXPECT_NEAR(width, static_cast<int>(first.right) + 50, 3);
    EXPECT_EQ(width + ListView_GetColumnWidth(view.list, 1), SizeOf(view.list).cx);
    EXPECT_EQ(dialog.pages, 1);
  });
}

TEST_F(ListWindowTest, RedRowsAreRedAndReadableInAnyPalette) {
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
    const auto ink = [&](int row) { return InkOf(host_, view, row); };
    for (const COLORREF* palette : std::initializer_list<const COLORREF*>{usual, dark, usual}) {
      ClickOn(view.RowPoint(0));
      SetSysColors(kCount, elements, palette);
      ASSERT_TRUE(host_.Settle());
      const Ink black = ink(kBlackRow);
      EXPECT_EQ(black.background, palette[0]);
      EXPECT_EQ(black.text, palette[1]);
      EXPECT_EQ(ink(kRedRow).text, RGB(255, 0, 0)) << "visible enough as it is";
      ClickOn(view.RowPoint(kRedRow));
      for (const bool active : {true, false}) {
        const Ink red = ink(kRedRow);
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

TEST_F(ListWindowTest, ACellThatIsCutShowsItsWholeTextToThePointer) {
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
      return tip && IsWindowVisible(tip) ? TextOf(tip) : L"";
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

TEST_F(ListWindowTest, AReaderHearsNamesAndPlacesInTheWholeList) {
  LedgerDialog dialog(kMany);
  dialog.list().SetName(L"customers");
  Show(dialog, [&](const View& view) {
    Keys(L"{9}");
    host_.Ask([&] {
      EXPECT_EQ(SpokenName(view.list, CHILDID_SELF), L"Customers");
      EXPECT_EQ(TextOf(view.list), L"Customers");
      const int row = ListView_GetNextItem(view.list, -1, LVNI_SELECTED);
      EXPECT_EQ(SpokenName(view.list, row + 1),
                L"900, WWWW & Sons, row 900 of 10000000, over its limit");
    });
  });
}

TEST_F(ListWindowTest, AnEmptyListSaysWhyInGrey) {
  for (const auto reading : {dialogs::Reading::kDone, dialogs::Reading::kNotYet}) {
    LedgerDialog dialog(0);
    dialog.list().SetReading(reading);
    Show(dialog, [&](const View& view) {
      Picture picture;
      host_.Ask([&] { picture = PictureOf(view.list); });
      EXPECT_EQ(
          std::count(picture.pixels.begin(), picture.pixels.end(), GetSysColor(COLOR_GRAYTEXT)) > 5,
          reading == dialogs::Reading::kDone);
    });
  }
}

TEST_F(ListWindowTest, FollowsTheDpiOfItsScreen) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    const auto font_height = [&] {
      LOGFONTW font = {};
      GetObjectW(reinterpret_cast<HFONT>(SendMessageW(view.list, WM_GETFONT, 0, 0)), sizeof(font),
                 &font);
      return std::abs(font.lfHeight);
    };
    const auto column_width = [&] {
      return static_cast<double>(ListView_GetColumnWidth(view.list, 0));
    };
    const auto button = static_cast<double>(SizeOf(view.ok).cy);
    const double height = font_height();
    const double column = column_width();
    constexpr UINT kDpi = 144;
    RECT suggested = {20, 20, 920, 720};
    SendMessageW(view.dialog, WM_DPICHANGED, MAKEWPARAM(kDpi, kDpi),
                 reinterpret_cast<LPARAM>(&suggested));
    ASSERT_TRUE(host_.Settle());
    EXPECT_TRUE(EqualRect(&suggested, std::array{RectOf(view.dialog)}.data()));
    EXPECT_NEAR(font_height() / height, 1.5, 0.1);
    EXPECT_NEAR(SizeOf(view.ok).cy / button, 1.5, 0.2);
    EXPECT_NEAR(column_width() / column, 1.5, 0.2);
    const RECT first = view.RowRect(0);
    const LONG row = first.bottom - first.top;
    const LONG rest = SizeOf(view.list).cy - first.top - row * dialog.last;
    EXPECT_GE(rest, 0) << "a page is what is wholly visible";
    EXPECT_LT(rest, row);
  });
}

}  // namespace
}  // namespace ard::windows
