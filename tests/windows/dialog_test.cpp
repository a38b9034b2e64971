// The real windows, worked by keyboard and mouse: moving in a list, and every way out of a dialog.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "frame/text.h"
#include "tests/windows/ledger_dialog.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the windows

class DialogTest : public LedgerDialogTest {};

TEST_F(DialogTest, OpensWithOnePageOfALongList) {
  LedgerDialog dialog(kMany);
  Show(dialog, [&](const View& view) {
    EXPECT_EQ(dialog.pages, 1);
    EXPECT_NEAR(dialog.last, 20, 2);
    EXPECT_EQ(view.rows(), dialog.last - dialog.last / kEveryDeleted);
    EXPECT_EQ(view.Cell(6, 0) + L"," + view.Cell(6, 1), L"8,WWWW & Sons");
    EXPECT_EQ(view.Selected(), L"1");
    const SCROLLINFO scroll = view.Scroll();
    EXPECT_TRUE(scroll.nMin == 1 && scroll.nMax == kMany && scroll.nPos == 1);
    EXPECT_EQ(static_cast<int>(scroll.nPage), dialog.last);
    EXPECT_FALSE(GetWindowLongW(view.list, GWL_STYLE) & (WS_VSCROLL | WS_HSCROLL));
    EXPECT_EQ(FocusWindow(), view.list);
    // Centred on its owner.
    EXPECT_NEAR(MiddleOf(view.dialog).x, MiddleOf(host_.window()).x, 2);
    EXPECT_NEAR(MiddleOf(view.dialog).y, MiddleOf(host_.window()).y, 2);
  });
}

TEST_F(DialogTest, KeysMoveAndPage) {
  LedgerDialog dialog(kMany);
  dialog.has_gaps = false;
  Show(dialog, [&](const View& view) {
    const int page = dialog.last;
    const std::pair<const wchar_t*, std::int32_t> steps[] = {
        {L"{Down}", 2},        {L"{Up}", 1},      {L"{PgDn}", page},
        {L"{PgDn}", 2 * page}, {L"{End}", kMany}, {L"{PgUp}", kMany - page + 1},
        {L"{Home}", 1}};
    for (const auto& [key, selected] : steps) {
      Keys(key);
      EXPECT_EQ(view.Selected(), std::to_wstring(selected)) << ToUtf8(key);
    }
    EXPECT_EQ(dialog.pages, 4);
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
      {"Enter on OK", true, keys(L"{Tab}{Enter}")},
      {"Enter on Cancel", false, keys(L"{Tab}{Tab}{Enter}")},
      {"back in the list", true, keys(L"{Tab}{Tab}{Tab}{Enter}")},
      {"Cancel by going backwards", false, keys(L"{Shift+Tab}{Space}")},
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
    EXPECT_EQ(ListView_GetNextItem(view.list, -1, LVNI_FOCUSED), 0);
    ClickOn(view.RowPoint(3), 2);
    Keys(L"{Enter}");
    EXPECT_FALSE(IsWindowEnabled(view.ok));
    Keys(L"{Space}{Enter}");
    ExpectClosed(window);
  });
  EXPECT_EQ(dialog.list().selected()->position, 1);
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
