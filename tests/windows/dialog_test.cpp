// The windows of the dialogs, each with what is its own, and all of them with what every dialog
// owes its user.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "accounts/ledger_accounts.h"
#include "accounts/nominal_bank.h"
#include "dialogs/address_dialog.h"
#include "dialogs/discount_breakdown.h"
#include "dialogs/fast_select.h"
#include "dialogs/logon_dialog.h"
#include "dialogs/product_dialog.h"
#include "dialogs/user_list_dialog.h"
#include "frame/text.h"
#include "host_database/odbc_connection.h"
#include "simulator/testing/company_builder.h"
#include "tests/windows/window_test.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the windows
using dialogs::LogonDialog;
using dialogs::ProductDialog;
using dialogs::UserListDialog;

constexpr int kProducts = 60;  // P10 ... P69

class NoOwners : public dialogs::AddressOwners {
 public:
  bool IsValid(dialogs::AddressKind, const std::wstring& account) override {
    return account == L"A1";
  }
  std::wstring GetName(dialogs::AddressKind, const std::wstring&) override { return L"Cut & Shut"; }
  std::wstring Search(dialogs::AddressKind, const std::wstring&) override { return L""; }
};

class DialogTest : public WindowTest {
 protected:
  DialogTest() {
    simulator::CompanyBuilder builder;
    for (int i = 10; i < 10 + kProducts; ++i) {
      builder.Nominal(std::to_wstring(i), L"NAME=An account");
      builder.Product(L"P" + std::to_wstring(i), L"DESCRIPTION=Bolt");
    }
    builder.Record(L"CompanyDeliveryData", L"ADDRESS_REF=1|DESCRIPTION=Works");
    builder.Record(L"SalesDeliveryData", L"ACCOUNT_REF=A1|ADDRESS_REF=1|DESCRIPTION=Yard");
    builder.Columns(L"SetupData", L"TERMS_WARNING:boolean\tADDRESS_PROMPT_1:text(1000)");
    builder.Setup({{L"ADDRESS_PROMPT_1", std::wstring(1000, L'W')}});
    builder.Record(L"QueueData", L"LOGON_NAME=ANN|STATION_NAME=ONE");
    engine_ = builder.Build();
    context_.workspace = engine_->workspace();
    context_.app_name = L"Cut & Shut";
    const auto database =
        std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
    for (const wchar_t* command :
         {L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), Description VARCHAR(60))",
          L"INSERT INTO ProdInfoStockFields VALUES ('AX1', 'Zinc'), ('AX2', 'Brass'), "
          L"('BX1', 'Anvil'), ('BX2', 'Bolt')",
          L"CREATE TABLE CurrentUsers (ID INTEGER, UserName VARCHAR(30), UniqueID VARCHAR(30), "
          L"Product VARCHAR(30))",
          L"INSERT INTO CurrentUsers VALUES (1, 'ann', 'one', 'Cut & Shut')"}) {
      database->Execute(command);
    }
    context_.database = database;
  }

  std::unique_ptr<ProductDialog> Products(const ProductDialog::Options& options, int page = 1,
                                          int products = kProducts) {
    auto dialog = std::make_unique<ProductDialog>(context_, options);
    dialog->Load(products);
    dialog->PresetTab(page);
    return dialog;
  }
  std::unique_ptr<LogonDialog> Logon(LogonDialog::Form form) {
    auto dialog = std::make_unique<LogonDialog>(context_, form,
                                                [](const auto&, const auto&) { return true; });
    dialog->SetCompany(L"Acme & Sons");
    dialog->SetName(L"Ann");
    return dialog;
  }

  // Opens each dialog in turn, and calls `act` meanwhile.
  void ForEach(const Act& act) {
    int opened = 0;
    const auto show = [&](auto& dialog) {
      std::wstring& placement = placements_[++opened];
      if constexpr (requires { dialog.placement; }) dialog.placement = placement;
      Show(dialog, act);
      if constexpr (requires { dialog.placement; }) placement = dialog.placement;
    };
    dialogs::FastSelectDialog accounts(context_, accounts::kNominalList);
    accounts.Load(50);
    show(accounts);
    for (const int tab : {1, 2}) show(*Products({.special_rows = true}, tab));
    NoOwners owners;
    dialogs::AddressDialog addresses(context_, owners);
    addresses.KindChange(dialogs::AddressKind::kCompany);
    show(addresses);
    dialogs::AddressDetails details(context_, {});
    show(static_cast<dialogs::FieldsDialog&>(details));
    dialogs::DiscountBreakdown discount(L"Table C", {5.0, 7.5, {}, {}}, 2);
    show(static_cast<dialogs::FieldsDialog&>(discount));
    for (const int tab : {1, 2}) {
      UserListDialog users(context_, true);
      users.TabClick(static_cast<UserListDialog::Tab>(tab));
      show(users);
    }
    show(*Logon(LogonDialog::Form::kUserDetails));
    Work(
        L"Input", [&] { environment_.InputBox(L"A & B:", L"Input"); }, act);
  }

  static bool IsResizable(const View& view) {
    return (GetWindowLongW(view.window, GWL_STYLE) & WS_THICKFRAME) != 0;
  }
  static void ExpectAllToBeSeen(const View& view) {
    RECT screen = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    std::vector<HWND> windows = Descendants(view.window);
    windows.push_back(view.window);
    for (const HWND window : windows) {
      if (!IsWindowVisible(window) || (window != view.window && SizeOf(window).cy > 100)) continue;
      EXPECT_GE(SizeOf(window).cy, ClassOf(window) == WC_EDITW ? 18 : 0) << "it can be read";
      const RECT inner = RectOf(window);
      const RECT outer = window == view.window ? screen : RectOf(GetParent(window));
      RECT both = {};
      EXPECT_TRUE(UnionRect(&both, &inner, &outer) && EqualRect(&both, &outer))
          << ToUtf8(TextOf(window));
    }
  }
  static void Resize(HWND window, LONG width, LONG height) {
    SetWindowPos(window, nullptr, 0, 0, static_cast<int>(width), static_cast<int>(height),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  static void SetText(HWND control, const wchar_t* text) {
    if (ClassOf(control) == WC_COMBOBOXW) {
      SendMessageW(control, CB_RESETCONTENT, 0, 0);
      SendMessageW(control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
      SendMessageW(control, CB_SETCURSEL, 0, 0);
    } else {
      if (ClassOf(control) == WC_EDITW) SendMessageW(control, EM_SETPASSWORDCHAR, 0, 0);
      SetWindowTextW(control, text);
    }
  }
  // Not every control has a font.
  static LONG FontHeightIn(const std::vector<HWND>& controls) {
    LONG height = 0;
    for (const HWND control : controls) {
      const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
      LOGFONTW about = {};
      GetObjectW(font, sizeof(about), &about);
      height = std::max(height, -about.lfHeight);
    }
    return height;
  }
  // The screen's row on which the letters of the control's text stand; 0 when it shows none.
  LONG BaselineOf(HWND control) const {
    const std::wstring text = TextOf(control);
    SetText(control, L" ");
    const Picture blank = PictureOf(control);
    SetText(control, L"H");
    const Picture letter = PictureOf(control);
    SetText(control, text.c_str());
    std::size_t pixel = letter.pixels.size();
    while (pixel > 0 && letter.pixels[pixel - 1] == blank.pixels[pixel - 1]) --pixel;
    return pixel == 0 ? 0 : RectOf(control).top + static_cast<LONG>(pixel - 1) / letter.width;
  }

  std::unique_ptr<simulator::Simulator> engine_;
  std::map<int, std::wstring> placements_;  // by the number of the dialog
};

TEST_F(DialogTest, ControlsStandInLinesAtEveryDpiNothingIsCutOffAndWhatIsHiddenIsDisabled) {
  const std::set<std::wstring> boxes = {WC_EDITW, WC_COMBOBOXW};
  const std::set<std::wstring> with_text = {WC_STATICW, WC_BUTTONW, WC_EDITW, WC_COMBOBOXW};
  int lines_with_boxes = 0;
  ForEach([&](const View& view) {
    const std::vector<HWND> controls = Descendants(view.window);
    const LONG usual = FontHeightIn(controls);
    for (const HWND control : controls) {
      if (ClassOf(control) == UPDOWN_CLASSW) continue;  // the tab strip's own
      const auto style = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
      EXPECT_TRUE((style & WS_VISIBLE) || (style & WS_DISABLED)) << ToUtf8(TextOf(control));
    }
    const auto change_dpi = [&](UINT dpi) {
      RECT suggested = {0, 0, 10, 10};
      SendMessageW(view.window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                   reinterpret_cast<LPARAM>(&suggested));
    };
    for (const UINT dpi : {96U, 144U, 192U, 288U}) {
      SCOPED_TRACE(dpi);
      change_dpi(dpi);
      if (IsResizable(view)) ExpectAllToBeSeen(view);
      Resize(view.window, 1270, 1000);
      struct Control {
        std::wstring text;
        LONG baseline;
        LONG height;
      };
      std::map<LONG, std::vector<Control>> lines;  // by the middle of the line
      for (const HWND control : controls) {
        if (!IsWindowVisible(control) || !with_text.contains(ClassOf(control))) continue;
        LONG baseline = 0;
        Ask([&] { baseline = BaselineOf(control); });  // in one step: there are many
        if (baseline == 0) continue;
        std::vector<Control>& line = lines[MiddleOf(control).y / 4];
        line.push_back({TextOf(control), baseline, SizeOf(control).cy});
        SCOPED_TRACE(ToUtf8(line.front().text + L" / " + line.back().text));
        EXPECT_EQ(baseline, line.front().baseline);
        EXPECT_NEAR(line.back().height, line.front().height, 2);
        lines_with_boxes += boxes.contains(ClassOf(control)) && line.size() > 1;
      }
    }
    // Too large for the screen at 960 DPI; not at those that it has once it is moved there.
    change_dpi(960);
    EXPECT_LT(FontHeightIn(controls), 10 * usual);
    SendMessageW(view.window, WM_EXITSIZEMOVE, 0, 0);
    EXPECT_EQ(FontHeightIn(controls), usual);
    for (const UINT change : {UINT{SPI_SETNONCLIENTMETRICS}, UINT{SPI_SETWORKAREA}}) {
      SetWindowPos(view.window, nullptr, 1200, 950, 10, 10, SWP_NOZORDER | SWP_NOACTIVATE);
      SendMessageW(view.window, WM_SETTINGCHANGE, WPARAM{change}, 0);
      ExpectAllToBeSeen(view);
    }
  });
  EXPECT_EQ(lines_with_boxes, 4 * (2 + 2 + 11 + 5 + 2)) << "boxes that share their line";
}

// Compared with the same dialog as it is when it opens in that size.
TEST_F(DialogTest, ResizingLeavesNothingBehindAndIsRemembered) {
  for (const int change : {-90, 140}) {
    std::vector<std::pair<RECT, Picture>> looks;
    placements_.clear();
    ForEach([&](const View& view) {
      if (!IsResizable(view)) return;
      const SIZE opened = SizeOf(view.window);
      Resize(view.window, opened.cx + change, opened.cy + change);
      Settle();
      looks.emplace_back(RectOf(view.window), PictureOf(view.window));
    });
    std::size_t next = 0;
    ForEach([&](const View& view) {
      if (!IsResizable(view)) return;
      const auto& [place, picture] = looks.at(next++);
      const RECT opened = RectOf(view.window);
      EXPECT_TRUE(EqualRect(&place, &opened));
      EXPECT_TRUE(picture == PictureOf(view.window)) << change;
    });
    EXPECT_EQ(next, 8U);
  }
  // Not where there is no monitor any more, nor smaller than it has to be by now.
  for (const wchar_t* corner : {L"9000 80 400 300 96 ", L"1200 950 9 9 96 "}) {
    for (auto& [dialog, placement] : placements_) {
      std::size_t widths = 0;
      for (int i = 0; i < 5; ++i) widths = placement.find(L' ', widths) + 1;
      placement.replace(0, widths, corner);
    }
    ForEach(ExpectAllToBeSeen);
  }
}

TEST_F(DialogTest, ProductsAreSearchedByKeyboardAlone) {
  const auto dialog = Products({.multiple = true}, 2);
  Show(*dialog, [&](const View& view) {
    Walk([&] { return view.Rows(); }, {{L"b{Enter}", L"BX1 BX2"},
                                       {L"x2", L"BX1 BX2"},  // typed only
                                       {L"{Alt+S}", L"BX2"},
                                       {L"{Alt+F}b{Alt+I}{Down}", L"AX2 BX2"},
                                       {L"{Alt+C}", L"AX1 AX2 BX1 BX2"},
                                       {L"{Alt+F}{Enter}{Down}", L"AX1 AX2 BX1 BX2"}});
    EXPECT_EQ(FocusWindow(), view.list);
    EXPECT_EQ(view.Selected(), L"AX1");
    Keys(L"{Ctrl+Down}{Alt+F}{Down}");
    EXPECT_EQ(view.Selected(), L"AX1") << "and not the row at the cursor";
    Keys(L"{Down}{Enter}");
    ExpectClosed(view);
  });
  EXPECT_EQ(Trimmed(dialog->list().selected()->Cell(1)), L"BX1");
}

TEST_F(DialogTest, TabsSwitchByKeysAndMouse) {
  constexpr int kFew = 18;
  const auto dialog = Products({.special_rows = true}, 1, kFew);
  Show(*dialog, [&](const View& stock) {
    EXPECT_GT(stock.Scroll().nMax, kFew) << "special rows make it scroll";
    const HWND tabs = Descendant(stock.window, WC_TABCONTROLW);
    EXPECT_EQ(FocusWindow(), stock.list);
    Keys(L"{Home}{Ctrl+Tab}");
    const View info(stock.window);
    const HWND text = Descendant(stock.window, WC_EDITW);
    const HWND field = Descendant(stock.window, WC_COMBOBOXW);
    EXPECT_NE(info.list, stock.list);
    EXPECT_EQ(dialog->tab(), ProductDialog::Tab::kProductInfo);
    EXPECT_EQ(FocusWindow(), text);
    EXPECT_FALSE(IsWindowEnabled(info.ok));
    const HWND search = GetWindow(field, GW_HWNDNEXT);
    const HWND clear = GetWindow(search, GW_HWNDNEXT);
    const HWND cancel = GetDlgItem(info.window, IDCANCEL);
    // Once around first, where OK, disabled, is left out.
    const std::pair<const wchar_t*, HWND> stops[] = {
        {L"{Tab}", field},       {L"{Tab}", search},           {L"{Tab}", clear},
        {L"{Tab}", info.list},   {L"{Tab}", cancel},           {L"{Tab}", tabs},
        {L"{Tab}", text},        {L"{Ctrl+PgDn}", stock.list}, {L"{Shift+Tab}{Right}", text},
        {L"{Tab0}", stock.list}, {L"{Ctrl+PgUp}", text},       {L"{Ctrl+Shift+Tab}", stock.list}};
    for (const auto& [keys, stop] : stops) {
      Keys(keys);
      EXPECT_EQ(FocusWindow(), stop) << ToUtf8(keys);
    }
    EXPECT_TRUE(IsWindowEnabled(info.ok));
  });
}

TEST_F(DialogTest, TheUserListNamesTheHostAndDeletesOnItsPageOnly) {
  UserListDialog users(context_, true);
  Show(users, [&](const View& view) {
    wchar_t text[64] = {};
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = 64;
    Ask([&] { TabCtrl_GetItem(Descendant(view.window, WC_TABCONTROLW), 1, &item); });
    EXPECT_STREQ(text, L"Cut && Shut") << "an ampersand is one";
    const HWND button = FindWindowExW(view.window, nullptr, nullptr, L"&Delete");
    EXPECT_FALSE(IsWindowVisible(button));
    Keys(L"{Ctrl+Tab}");
    EXPECT_TRUE(IsWindowVisible(button));
    const View host(view.window);
    EXPECT_LE(RectOf(host.frame).bottom, RectOf(button).top);
    Walk([&] { return host.Selected(); }, {{L"a", L""}, {L"{Space}", L"ANN"}});
    Keys(L"{Alt+D}");
    EXPECT_EQ(host.Rows(), L"");
  });
}

TEST_F(DialogTest, WithoutProductInformationThereIsOneTab) {
  Show(*Products({.product_info = false}), [&](const View& view) {
    const HWND tabs = Descendant(view.window, WC_TABCONTROLW);
    EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 1);
    EXPECT_EQ(Descendant(view.window, WC_EDITW), nullptr);
    Keys(L"{Shift+Tab}{Right}{Ctrl+Tab}");
    EXPECT_EQ(FocusWindow(), tabs);
  });
}

TEST_F(DialogTest, AHeaderSortsBothWaysAndShowsIt) {
  Show(*Products({}, 2), [&](const View& view) {
    // The codes, and the arrows of the two columns.
    const auto shown = [&] {
      std::wstring text = view.Rows();
      for (const int column : {0, 1}) {
        HDITEMW item = {};
        item.mask = HDI_FORMAT;
        Header_GetItem(view.Header(), column, &item);
        text += item.fmt & HDF_SORTUP ? L" up" : item.fmt & HDF_SORTDOWN ? L" down" : L" -";
      }
      return text;
    };
    Walk(shown, {{L"{Header1}", L"BX1 BX2 AX2 AX1 - up"},
                 {L"{Ctrl+2}", L"AX1 AX2 BX2 BX1 - down"},
                 {L"{Header0}", L"AX1 AX2 BX1 BX2 up -"},
                 {L"{Ctrl+Alt+2}{Ctrl+1}", L"BX2 BX1 AX2 AX1 down -"}});  // AltGr+2 is a character
  });
}

TEST_F(DialogTest, PicksSeveralByMouseAndOverAPageBorder) {
  const auto dialog = Products({.multiple = true});
  Show(*dialog, [&](const View& view) {
    const auto selected = [&] { return view.Selected(); };
    Walk(selected, {{L"{Row2}{Ctrl+Row5}", L"P12 P15"},
                    {L"{Shift+Row7}", L"P15 P16 P17"},
                    {L"{Ctrl+Row6}", L"P15 P17"}});
    // As assistive technology selects a row, or does not.
    ListView_SetItemState(view.list, 0, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(selected(), L"P10 P15 P17");
    ListView_SetItemState(view.list, 5, 0, LVIS_SELECTED);
    EXPECT_EQ(selected(), L"P10 P17");
    // To the last page, where none is selected, and one there.
    Walk(selected, {{L"{Ctrl+End}{Space}", L"P69"}});
    Keys(L"{Enter}");
  });
  EXPECT_EQ(dialog->list().SelectedRows().size(), 3U);
}

// An account with an address, and one that is not known.
TEST_F(DialogTest, AnAccountIsActedOnByTheClickThatNeedsIt) {
  NoOwners owners;
  dialogs::AddressDialog dialog(context_, owners);
  Show(dialog, [&](const View& view) {
    const HWND account = Descendant(view.window, WC_EDITW);
    Keys(L"?{Tab}{Tab}");  // past the look-up button
    EXPECT_EQ(FocusWindow(), account);
    EXPECT_EQ(SendMessageW(account, EM_GETSEL, 0, 0), MAKELRESULT(0, 1)) << "to be typed over";
    Keys(L"A1{OK}");
    ExpectClosed(view);
  });
  EXPECT_TRUE(dialog.result());
}

TEST_F(DialogTest, TheLogonShowsWhatItsFormHasAndHidesThePassword) {
  const std::wstring buttons = L"[OK][Cancel]";
  const std::wstring details = L"[&Remember my user name]" + buttons + L"[&Help]";
  const struct {
    LogonDialog::Form form;
    const wchar_t* app;
    std::wstring texts;
  } cases[] = {
      {LogonDialog::Form::kUserDetails, L"Manufacturing",
       L"[Company:][Acme & Sons][][User &name:][Ann][&Password:][]" + details},
      {LogonDialog::Form::kUserDetails, L"Multi", L"[User &name:][Ann][&Password:][]" + details},
      {LogonDialog::Form::kCompanyPassword, L"Manufacturing", L"[&Password:][]" + buttons}};
  for (const auto& c : cases) {
    context_.app_name = c.app;
    Show(*Logon(c.form), [&](const View& view) {
      std::wstring texts;
      for (const HWND control : Descendants(view.window)) texts += L"[" + TextOf(control) + L"]";
      EXPECT_EQ(texts, L"[Welcome to " + context_.app_name + L".]" + c.texts);
      EXPECT_TRUE(GetWindowLongW(FocusWindow(), GWL_STYLE) & ES_PASSWORD);
    });
  }
}

TEST_F(DialogTest, TheInputBoxReturnsWhatWasConfirmedAndGrowsWithItsPrompt) {
  const std::wstring prompt = std::wstring(300, L'W') + L"\r\n\r\nA & B";
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"Brass é & co{Enter}", L"Brass é & co"},
      {L"x{Tab}{Enter}", L"x"},
      {L"x{Esc}", L""},
      {L"x{Tab}{Tab}{Enter}", L""},
      {L"x{Alt+F4}", L""}};
  for (const auto& [keys, expected] : cases) {
    std::wstring answer = L"?";
    Work(
        L"Input", [&] { answer = environment_.InputBox(prompt, L"Input"); },
        [&, keys = keys](const View& view) {
          const HWND label = Descendant(view.window, WC_STATICW);
          const HWND text = Descendant(view.window, WC_EDITW);
          EXPECT_EQ(TextOf(label).substr(0, 200), prompt.substr(0, 200));
          EXPECT_LE(RectOf(label).bottom, RectOf(text).top);
          EXPECT_GT(SizeOf(label).cy, 3 * SizeOf(text).cy);
          Keys(keys);
          ExpectClosed(view);
        });
    EXPECT_EQ(answer, expected);
  }
}

TEST_F(DialogTest, ProgressShowsAfterAMomentAndIsCancelled) {
  constexpr wchar_t kReading[] = L"Reading bank accounts";
  int done = 0;
  const auto work = [&] {
    const ULONGLONG start = GetTickCount64();
    const auto progress = environment_.ShowProgress(kReading, 1'000'000);
    while (progress->Advance()) {
      ++done;
      const bool shown = FindWindowW(nullptr, kReading) != nullptr;
      EXPECT_TRUE(!shown || GetTickCount64() - start >= 500);
      Sleep(1);
    }
  };
  Work(kReading, work, [&](const View& view) {
    Keys(L"{Esc}");
    ExpectClosed(view);
  });
  EXPECT_GT(done, 0);
}

TEST_F(DialogTest, AQuestionIsAnsweredByAKey) {
  for (const auto& [key, choice] :
       {std::pair{L"{A}", Choice::kAbort}, {L"{R}", Choice::kRetry}, {L"{I}", Choice::kIgnore}}) {
    std::optional<Choice> chosen;
    Drive(
        L"A question",
        [&] { chosen = environment_.AskWhatToDo(L"What?\r\n\r\nAnd why?", L"A question"); },
        [&, key = key](const View& box) {
          EXPECT_EQ(TextOf(GetDlgItem(box.window, 0xFFFF)), L"What?\r\n\r\nAnd why?");
          Keys(key);
        });
    EXPECT_EQ(chosen, choice);
  }
}

}  // namespace
}  // namespace ard::windows
