// The window of a list, worked by keyboard and mouse: moving in it, every way out of it, what it
// shows of a long one, at any size, in any colours.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "dialogs/select_dialog.h"
#include "tests/windows/window_test.h"
#include "windows/dialogs/contrast.h"
// After windows.h.
#include <oleacc.h>

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the windows

constexpr std::int32_t kMany = 10'000'000;
const std::wstring kName = std::wstring(50, L'W') + L" & Sons";  // no column is as wide

// Accounts "1", "2" ... made up as they are asked for. Position 4, 8 ... is red, 700, 1400 ... was
// deleted.
class LedgerDialog : public dialogs::RowSource, public dialogs::SelectDialog {
 public:
  explicit LedgerDialog(std::int32_t rows = kMany)
      : SelectDialog(L"frmTest", L"Select Customer", *this) {
    list().SetName(L"customers");
    list().AddColumn(L"A/C", 15);
    list().AddColumn(L"Name", 60);
    list().SetRowCount(rows);
    list().SelectFirst();
  }

  int pages = 0;
  std::int32_t first = 0;
  std::int32_t last = 0;
  bool fails = false;
  std::int32_t deleted = 0;  // at the beginning
  std::wstring name = kName;
  std::wstring typed;

 protected:
  // A digit d goes to account d00.
  void TypeAhead(wchar_t key) override {
    typed += key;
    if (key >= L'1' && key <= L'9') list().SelectItem((key - L'0') * 100);
  }

 private:
  bool LoadPage(std::int32_t from, std::int32_t to, std::vector<dialogs::Row>& rows) override {
    EXPECT_FALSE(from == first && to == last) << "read once more";
    ++pages;
    first = last = 0;
    if (fails) throw std::bad_alloc();
    first = from;
    last = to;
    for (std::int32_t i = from; i <= to; ++i) {
      if (i % 700 == 0 || i <= deleted) continue;
      // The engine pads its texts.
      rows.push_back({i, std::to_wstring(i) + L"   \t" + name + L"       ",
                      i % 4 == 0 ? dialogs::kRed : dialogs::kDefaultColor});
    }
    return true;
  }
};

class ListWindowTest : public WindowTest {};

TEST_F(ListWindowTest, OpensWithOnePageOfALongList) {
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    EXPECT_EQ(dialog.pages, 1);
    EXPECT_NEAR(dialog.last, 20, 2);
    EXPECT_EQ(ListView_GetItemCount(view.list), dialog.last);
    EXPECT_EQ(view.Cell(7, 0) + L"," + view.Cell(7, 1), L"8," + kName);
    EXPECT_EQ(view.Selected(), L"1");
    const SCROLLINFO scroll = view.Scroll();
    EXPECT_TRUE(scroll.nMin == 1 && scroll.nMax == kMany && scroll.nPos == 1);
    EXPECT_EQ(static_cast<int>(scroll.nPage), dialog.last);
    EXPECT_FALSE(GetWindowLongW(view.list, GWL_STYLE) & (WS_VSCROLL | WS_HSCROLL));
    EXPECT_EQ(FocusWindow(), view.list);
    // Centred on its owner.
    EXPECT_NEAR(MiddleOf(view.window).x, MiddleOf(host_).x, 2);
    EXPECT_NEAR(MiddleOf(view.window).y, MiddleOf(host_).y, 2);
  });
}

TEST_F(ListWindowTest, LooksOnForTheRowThatItOpensOnUntilTheUserScrolls) {
  for (const bool scrolls : {false, true}) {
    LedgerDialog dialog;
    dialog.deleted = scrolls ? kMany : 5000;
    Show(dialog, [&](const View& view) {
      if (scrolls) SendMessageW(view.frame, WM_VSCROLL, SB_PAGEDOWN, 0);
      const int pages = dialog.pages;
      if (scrolls) {
        Sleep(60);
        EXPECT_EQ(dialog.pages, pages);
        return;
      }
      EXPECT_TRUE(Eventually([&] { return view.Selected() == L"5001"; }));
      EXPECT_TRUE(IsWindowEnabled(view.ok));
    });
  }
}

TEST_F(ListWindowTest, KeysMoveAndPageAndCharactersGoToTheModel) {
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    const auto select = [&] {
      return view.Selected() + (IsWindowEnabled(view.ok) ? L"" : L"none");
    };
    const int page = dialog.last;
    Walk(select, {{L"{Down}", L"2"},
                  {L"{Up}", L"1"},
                  {L"{PgDn}", std::to_wstring(page)},
                  {L"{PgDn}", std::to_wstring(2 * page)},
                  {L"{End}", std::to_wstring(kMany)},
                  {L"{PgUp}", std::to_wstring(kMany - page + 1)},
                  {L"{Home}", L"1"}});
    EXPECT_EQ(dialog.pages, 4);
    Walk(select, {{L"é*{9}{Space}{Ctrl+A}{Back}", L"900"},
                  {L"{7}", L"none"},  // deleted; the focus stays where keys are heard
                  {L"{3}", L"300"}});
    EXPECT_EQ(dialog.typed, L"é*9 73");
    EXPECT_EQ(dialog.pages, 7);
    // Of what fails, nothing is left.
    dialog.fails = true;
    Keys(L"{End}{PgDn}{Down}");
    PostMessageW(view.frame, WM_VSCROLL, SB_PAGEUP, 0);
    TurnWheel(view.list, -WHEEL_DELTA);
    dialog.fails = false;
    Walk(select, {{L"{Home}", L"1"}});
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
}

TEST_F(ListWindowTest, EveryWayOutEndsAsItShould) {
  const struct {
    const wchar_t* keys;
    bool result;
  } endings[] = {{L"{Tab}{Enter}", true},
                 {L"{Tab}{Tab}{Enter}", false},
                 {L"{Tab}{Tab}{Tab}{Enter}", true},  // back in the list
                 {L"{Shift+Tab}{Space}", false},
                 {L"{Alt+F4}", false},
                 {L"{Double+Row2}", true},
                 {L"{Double+Row9}", true},  // below the rows
                 {L"{OK}", true},
                 {L"{Cancel}", false}};
  for (const auto& ending : endings) {
    SCOPED_TRACE(ending.keys);
    LedgerDialog dialog(5);
    Show(dialog, [&](const View& view) {
      Keys(ending.keys);
      ExpectClosed(view);
    });
    EXPECT_EQ(dialog.result(), ending.result);
    EXPECT_EQ(dialog.pages, 1);
  }
}

TEST_F(ListWindowTest, EndsWhenAnotherThreadClosesItItsOwnQuitsOrItsOwnerGoes) {
  const auto end = [&](const std::function<void(HWND)>& act) {
    LedgerDialog dialog;
    Drive(
        dialog.caption(), [&] { environment_.Show(dialog); },
        [&](const View& view) {
          act(view.window);
          ExpectClosed(view);
        });
    EXPECT_FALSE(dialog.visible() || dialog.result());
  };
  end([](HWND window) { SendMessageW(window, WM_CLOSE, 0, 0); });
  end([&](HWND) { Ask([] { PostQuitMessage(5); }); });
  MSG message = {};
  EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0)) << "the host's own loop must end, too";
  EXPECT_EQ(message.wParam, 5U);
  end([&](HWND) { Ask([&] { DestroyWindow(host_); }); });
}

TEST_F(ListWindowTest, ClickSelectsAndBlankSpaceDoesNot) {
  LedgerDialog dialog(5);
  Show(dialog, [&](const View& view) {
    Walk([&] { return view.Selected(); },
         {{L"{Row3}", L"4"}, {L"{Row8}{Double+Header0}", L"4"}, {L"{Up}", L"3"}});
    ListView_SetItemState(view.list, 1, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(view.Selected(), L"2");
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(dialog.list().selected()->position, 2);
}

TEST_F(ListWindowTest, TheSimpleListOpensMidScreenWithTheCursorOnARowNotSelected) {
  dialogs::SelectRecordDialog dialog(L"Simple");
  dialog.list().AddColumn(L"A/C", 15);
  for (const wchar_t* row : {L"1", L"2"}) dialog.AddRow(row);
  Show(dialog, [&](const View& view) {
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    EXPECT_NEAR(MiddleOf(view.window).x, (work.left + work.right) / 2, 1);
    EXPECT_NEAR(MiddleOf(view.window).y, (work.top + work.bottom) / 2, 1);
    EXPECT_EQ(ListView_GetNextItem(view.list, -1, LVNI_FOCUSED), 0);
    Keys(L"{Double+Row3}{Enter}");
    EXPECT_FALSE(IsWindowEnabled(view.ok));
    Keys(L"{Space}{Enter}");
    ExpectClosed(view);
  });
  EXPECT_EQ(dialog.list().selected()->position, 1);
}

TEST_F(ListWindowTest, AllWindowsOfTheHostAreDisabledAndTheDisabledStaySo) {
  const auto create = [](DWORD style) {
    return CreateWindowW(L"STATIC", L"", WS_POPUP | WS_VISIBLE | style, 0, 0, 20, 20, nullptr,
                         nullptr, nullptr, nullptr);
  };
  const HWND palette = create(0);
  const HWND disabled = create(WS_DISABLED);
  LedgerDialog dialog;
  Show(dialog, [&](const View&) { EXPECT_FALSE(IsWindowEnabled(palette)); });
  EXPECT_TRUE(IsWindowEnabled(palette));
  EXPECT_FALSE(IsWindowEnabled(disabled));
  DestroyWindow(palette);
  DestroyWindow(disabled);
}

TEST_F(ListWindowTest, TheActiveWindowOfAThreadThatSharesItsInputIsDisabledLikeOnesOwn) {
  std::atomic<HWND> other = nullptr;
  std::thread thread([&] {
    other = CreateWindowW(L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 90, 90, nullptr, nullptr,
                          nullptr, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  });
  EXPECT_TRUE(Eventually([&] { return other.load() != nullptr; }));
  const DWORD id = GetWindowThreadProcessId(other, nullptr);
  EXPECT_TRUE(AttachThreadInput(GetCurrentThreadId(), id, TRUE));
  LedgerDialog dialog;
  const auto open = [&] {
    SetActiveWindow(other);
    environment_.Show(dialog);
  };
  Drive(dialog.caption(), open, [&](const View& view) {
    EXPECT_EQ(GetWindow(view.window, GW_OWNER), other);
    EXPECT_FALSE(IsWindowEnabled(other));
  });
  EXPECT_TRUE(IsWindowEnabled(other));
  AttachThreadInput(GetCurrentThreadId(), id, FALSE);
  PostThreadMessageW(id, WM_QUIT, 0, 0);
  thread.join();
}

TEST_F(ListWindowTest, OpensWithoutAnOwner) {
  LedgerDialog dialog;
  const auto open = [&] {
    SetActiveWindow(nullptr);
    ShowWindow(host_, SW_HIDE);
    environment_.Show(dialog);
  };
  Drive(dialog.caption(), open, [&](const View& view) {
    EXPECT_EQ(GetWindow(view.window, GW_OWNER), nullptr);
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
}

TEST_F(ListWindowTest, ScrollsToEveryRow) {
  UINT lines = 0;
  ASSERT_TRUE(SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0));
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    const int page = dialog.last;
    const int end = kMany - page + 1;
    const auto at = [&](std::int32_t top, int step) {
      EXPECT_EQ(view.Scroll().nPos, top) << step;
      EXPECT_EQ(dialog.last, top + page - 1) << step;
    };
    const struct {
      int code;
      std::int32_t top;
    } steps[] = {{SB_LINEDOWN, 2}, {SB_PAGEDOWN, 2 + page}, {SB_LINEUP, 1 + page}, {SB_PAGEUP, 1},
                 {SB_BOTTOM, end}, {SB_PAGEDOWN, end},      {SB_LINEUP, end - 1},  {SB_TOP, 1}};
    for (const auto& [code, top] : steps) {
      SendMessageW(view.frame, WM_VSCROLL, static_cast<WPARAM>(code), 0);
      at(top, code);
    }
    // By the wheel: a finer one's turns add up, as long as they go the same way.
    const auto step = static_cast<int>(lines);
    const struct {
      int delta;
      std::int32_t top;
    } turns[] = {{-WHEEL_DELTA, 1 + step},     {-WHEEL_DELTA / 6, 1 + step},
                 {-WHEEL_DELTA / 6, 2 + step}, {-WHEEL_DELTA / 6, 2 + step},
                 {WHEEL_DELTA / 6, 2 + step},  {WHEEL_DELTA / 6, 1 + step},
                 {2 * WHEEL_DELTA, 1},         {-100 * WHEEL_DELTA, 1 + 100 * step}};
    for (const auto& [delta, top] : turns) {
      TurnWheel(view.list, delta);
      at(top, delta);
    }
    EXPECT_EQ(view.Selected(), L"") << "it has scrolled out of view";
    Keys(L"{Tab}");
    TurnWheel(view.ok, -WHEEL_DELTA);  // from a button with the focus, too
    at(1 + 101 * step, step);

    SCROLLBARINFO bar = {};
    bar.cbSize = sizeof(bar);
    ASSERT_TRUE(GetScrollBarInfo(view.frame, OBJID_VSCROLL, &bar));
    const LONG x = (bar.rcScrollBar.left + bar.rcScrollBar.right) / 2;
    Drag({x, bar.rcScrollBar.top + (bar.xyThumbTop + bar.xyThumbBottom) / 2},
         {x, bar.rcScrollBar.bottom - bar.dxyLineButton / 2});
    at(end, SB_THUMBTRACK);
    // The selection has stayed where it was.
    Keys(L"{Enter}");
  });
  EXPECT_TRUE(dialog.result());
  EXPECT_EQ(dialog.list().selected()->position, 1);
}

TEST_F(ListWindowTest, ADraggedColumnIsRememberedAndLeavesTheRestToTheLast) {
  const auto drag = [&](const View& view, LONG by) {
    RECT first = {};
    Header_GetItemRect(view.Header(), 0, &first);
    POINT divider = {first.right, (first.top + first.bottom) / 2};
    ClientToScreen(view.Header(), &divider);
    Drag(divider, {divider.x + by, divider.y});
    const int rest = ListView_GetColumnWidth(view.list, 1);
    EXPECT_EQ(ListView_GetColumnWidth(view.list, 0) + rest, SizeOf(view.list).cx);
    EXPECT_GT(rest, 30) << "some it keeps";
  };
  int width = 0;
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    const int before = ListView_GetColumnWidth(view.list, 0);
    drag(view, 50);
    width = ListView_GetColumnWidth(view.list, 0);
    EXPECT_NEAR(width, before + 50, 3);
    EXPECT_EQ(dialog.pages, 1);
  });
  LedgerDialog again;
  again.placement = dialog.placement;
  Show(again, [&](const View& view) {
    EXPECT_EQ(ListView_GetColumnWidth(view.list, 0), width);
    drag(view, 600);
  });
}

WNDPROC list_procedure;
int new_colors = 0;  // how often the list view has been told of them
LRESULT CALLBACK CountNewColors(HWND list, UINT message, WPARAM wparam, LPARAM lparam) {
  new_colors += message == WM_SYSCOLORCHANGE;
  return CallWindowProcW(list_procedure, list, message, wparam, lparam);
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
  struct Ink {
    COLORREF background;
    COLORREF text;  // what differs most
  };
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    list_procedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(view.list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(CountNewColors)));
    const auto ink_of = [&](int row) {
      const Picture picture = PictureOf(view.list);
      const RECT rect = view.RowRect(row);
      const auto at = [&](LONG x, LONG y) {
        const COLORREF pixel = picture.pixels[static_cast<std::size_t>(y * picture.width + x)];
        return RGB(GetBValue(pixel), GetGValue(pixel), GetRValue(pixel));
      };
      const COLORREF background = at(rect.right - 4, rect.top + 3);
      Ink ink = {background, background};
      for (LONG y = rect.top + 3; y < rect.bottom - 3; ++y) {
        for (LONG x = rect.left + 4; x < rect.left + 200; ++x) {
          if (Contrast(at(x, y), background) > Contrast(ink.text, background)) ink.text = at(x, y);
        }
      }
      return ink;
    };
    for (const COLORREF* palette : std::initializer_list<const COLORREF*>{usual, dark, usual}) {
      Keys(L"{Row0}");
      new_colors = 0;
      SetSysColors(kCount, elements, palette);
      Settle();
      EXPECT_EQ(new_colors, 1) << "the system tells the windows of the screen only";
      const Ink black = ink_of(kBlackRow);
      EXPECT_EQ(black.background, palette[0]);
      EXPECT_EQ(black.text, palette[1]);
      EXPECT_EQ(ink_of(kRedRow).text, RGB(255, 0, 0)) << "visible enough as it is";
      Keys(L"{Row3}");
      for (const bool active : {true, false}) {
        const Ink red = ink_of(kRedRow);
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
  LedgerDialog dialog;
  for (int i = 0; i < 3; ++i) dialog.name += L' ' + kName;
  Show(dialog, [&](const View& view) {
    POINT point = {view.Place(L"Header1").x, view.Place(L"Row0").y};
    // Each move makes the tip wait anew, so a slow machine is left in peace longer each time.
    int polls = 0;
    int next_move = 0;
    EXPECT_TRUE(Eventually([&] {
      if (polls++ == next_move) {
        next_move = 2 * next_move + 100;
        SetCursorPos(static_cast<int>(point.x++), static_cast<int>(point.y));
      }
      const HWND tip = FindWindowW(TOOLTIPS_CLASSW, nullptr);
      return tip && IsWindowVisible(tip) && TextOf(tip) == dialog.name &&
             SizeOf(tip).cx < GetSystemMetrics(SM_CXSCREEN);
    }));
  });
}

// As a reader in another program asks.
std::wstring SpokenName(HWND window, LONG child) {
  IAccessible* accessible = nullptr;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             reinterpret_cast<void**>(&accessible));
  if (!accessible) return L"nothing";
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
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    Keys(L"{9}");
    Ask([&] {
      EXPECT_EQ(SpokenName(view.list, CHILDID_SELF), L"Customers");
      EXPECT_EQ(TextOf(view.list), L"Customers");
      const int row = ListView_GetNextItem(view.list, -1, LVNI_SELECTED);
      EXPECT_EQ(SpokenName(view.list, row + 1),
                L"900, " + kName + L", row 900 of 10000000, over its limit");
    });
  });
}

TEST_F(ListWindowTest, AnEmptyListSaysWhyInGrey) {
  for (const auto reading : {dialogs::Reading::kDone, dialogs::Reading::kNotYet}) {
    LedgerDialog dialog(0);
    dialog.list().SetReading(reading);
    Show(dialog, [&](const View& view) {
      const auto pixels = PictureOf(view.list).pixels;
      EXPECT_EQ(std::count(pixels.begin(), pixels.end(), GetSysColor(COLOR_GRAYTEXT)) > 5,
                reading == dialogs::Reading::kDone);
    });
  }
}

TEST_F(ListWindowTest, FollowsTheDpiOfItsScreen) {
  LedgerDialog dialog;
  Show(dialog, [&](const View& view) {
    const auto measures = [&] {
      LOGFONTW font = {};
      GetObjectW(reinterpret_cast<HFONT>(SendMessageW(view.list, WM_GETFONT, 0, 0)), sizeof(font),
                 &font);
      return std::vector<double>{static_cast<double>(font.lfHeight),
                                 static_cast<double>(SizeOf(view.ok).cy),
                                 static_cast<double>(ListView_GetColumnWidth(view.list, 0))};
    };
    const std::vector<double> before = measures();
    RECT suggested = {20, 20, 920, 720};
    SendMessageW(view.window, WM_DPICHANGED, MAKEWPARAM(144, 144),
                 reinterpret_cast<LPARAM>(&suggested));
    Settle();
    const RECT place = RectOf(view.window);
    EXPECT_TRUE(EqualRect(&place, &suggested));
    const std::vector<double> after = measures();
    for (std::size_t i = 0; i < after.size(); ++i) {
      EXPECT_NEAR(after[i] / before[i], 1.5, 0.2) << i;
    }
    const RECT row = view.RowRect(0);
    const LONG rest = SizeOf(view.list).cy - row.top - (row.bottom - row.top) * dialog.last;
    EXPECT_GE(rest, 0) << "a page is what is wholly visible";
    EXPECT_LT(rest, row.bottom - row.top);
  });
}

}  // namespace
}  // namespace ard::windows
