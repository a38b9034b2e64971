// What every dialog owes its user, whatever it is for: asked of all of them alike.

#include <gtest/gtest.h>

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
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_test.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the windows

class NoOwners : public dialogs::AddressOwners {
 public:
  bool IsValid(dialogs::AddressKind, const std::wstring& account) override {
    return account == L"A1";
  }
  std::wstring GetName(dialogs::AddressKind, const std::wstring&) override { return L"Cut & Shut"; }
  std::wstring Search(dialogs::AddressKind, const std::wstring&) override { return L""; }
};

class EveryDialogTest : public WindowTest {
 protected:
  EveryDialogTest() {
    simulator::CompanyBuilder builder;
    for (int i = 101; i <= 150; ++i) {
      builder.Nominal(std::to_wstring(i), L"NAME=An account");
      builder.Product(L"P" + std::to_wstring(i), L"DESCRIPTION=Bolt");
    }
    builder.Record(L"CompanyDeliveryData", L"ADDRESS_REF=1|DESCRIPTION=Works");
    builder.Record(L"SalesDeliveryData", L"ACCOUNT_REF=A1|ADDRESS_REF=1|DESCRIPTION=Yard");
    builder.Record(L"QueueData", L"LOGON_NAME=ANN|STATION_NAME=ONE");
    engine_ = builder.Build();
    context_.workspace = engine_->workspace();
    context_.app_name = L"Cut & Shut";
    const auto database =
        std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
    for (const wchar_t* command :
         {L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), Description VARCHAR(60))",
          L"INSERT INTO ProdInfoStockFields VALUES ('AX1', 'Zinc'), ('AX2', 'Brass')",
          L"CREATE TABLE CurrentUsers (ID INTEGER, UserName VARCHAR(30), UniqueID VARCHAR(30), "
          L"Product VARCHAR(30))",
          L"INSERT INTO CurrentUsers VALUES (1, 'ann', 'one', 'Cut & Shut')"}) {
      database->Execute(command);
    }
    context_.database = database;
  }

  // Opens each dialog in turn, and calls `act(window)` meanwhile.
  void ForEach(const std::function<void(HWND)>& act) {
    int opened = 0;
    const auto show = [&](auto& dialog) {
      const std::wstring title(dialog.caption());
      SCOPED_TRACE(ToUtf8(title));
      std::wstring& placement = placements_[++opened];
      if constexpr (requires { dialog.placement; }) dialog.placement = placement;
      Work(
          title.c_str(), [&] { environment_.Show(dialog); }, act);
      if constexpr (requires { dialog.placement; }) placement = dialog.placement;
    };
    dialogs::FastSelectDialog accounts(context_, accounts::kNominalList);
    accounts.Load(50);
    show(accounts);
    for (const int tab : {1, 2}) {
      dialogs::ProductDialog products(context_, {.special_rows = true});
      products.Load(50);
      products.PresetTab(tab);
      show(products);
    }
    NoOwners owners;
    dialogs::AddressDialog addresses(context_, owners);
    addresses.KindChange(dialogs::AddressKind::kCompany);
    show(addresses);
    dialogs::AddressDetails details(context_, {});
    show(static_cast<dialogs::FieldsDialog&>(details));
    dialogs::DiscountBreakdown discount(L"Table C", {5.0, 7.5, {}, {}}, 2);
    show(static_cast<dialogs::FieldsDialog&>(discount));
    for (const int tab : {1, 2}) {
      dialogs::UserListDialog users(context_, true);
      users.TabClick(static_cast<dialogs::UserListDialog::Tab>(tab));
      show(users);
    }
    dialogs::LogonDialog logon(context_, dialogs::LogonDialog::Form::kUserDetails,
                               [](const auto&, const auto&) { return true; });
    logon.SetCompany(L"Acme & Sons");
    show(logon);
    Work(
        L"Input", [&] { environment_.InputBox(L"A & B:", L"Input"); }, act);
  }

  static std::wstring Texts(HWND window) {
    std::wstring texts;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      texts += L"[" + TextOf(child) + L"]";
    }
    return texts;
  }
  // Its children, at any depth.
  static void Collect(HWND parent, std::vector<HWND>& controls) {
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
      controls.push_back(child);
      Collect(child, controls);
    }
  }
  static std::wstring ClassOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
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
  // The screen's row on which the letters of the control's text stand; 0 when it shows none.
  static LONG BaselineOf(HWND control) {
    SetText(control, L" ");
    const Picture blank = PictureOf(control);
    SetText(control, L"H");
    const Picture letter = PictureOf(control);
    for (int y = letter.height - 1; y >= 0; --y) {
      if (!letter.EqualsRow(blank, y)) return RectOf(control).top + y;
    }
    return 0;
  }

  std::unique_ptr<simulator::Simulator> engine_;
  std::map<int, std::wstring> placements_;  // by the number of the dialog
};

TEST_F(EveryDialogTest, ALineOfControlsHasOneBaselineAndOneHeight) {
  const std::set<std::wstring> boxes = {WC_EDITW, WC_COMBOBOXW};
  for (const UINT dpi : {96U, 144U, 192U}) {
    SCOPED_TRACE(dpi);
    int lines_with_boxes = 0;
    ForEach([&](HWND window) {
      RECT suggested = {0, 0, 1270, 1000};
      host_.Ask([&] {
        SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                     reinterpret_cast<LPARAM>(&suggested));
      });
      struct Control {
        std::wstring text;
        LONG baseline;
        LONG height;
        bool box;
      };
      std::map<LONG, std::vector<Control>> lines;  // by the middle of the line
      std::vector<HWND> controls;
      Collect(window, controls);
      for (const HWND control : controls) {
        const std::wstring name = ClassOf(control);
        if (!IsWindowVisible(control) ||
            !(name == WC_STATICW || name == WC_BUTTONW || boxes.contains(name))) {
          continue;
        }
        const RECT rect = RectOf(control);
        Control found = {TextOf(control), 0, rect.bottom - rect.top, boxes.contains(name)};
        host_.Ask([&] { found.baseline = BaselineOf(control); });
        if (found.baseline != 0) lines[(rect.top + rect.bottom) / 2 / 4].push_back(found);
      }
      for (const auto& [middle, line] : lines) {
        for (const Control& control : line) {
          SCOPED_TRACE(ToUtf8(line.front().text + L" / " + control.text));
          EXPECT_EQ(control.baseline, line.front().baseline);
          EXPECT_NEAR(control.height, line.front().height, 2);
          lines_with_boxes += control.box && line.size() > 1;
        }
      }
      // Nothing is cut off at the smallest size.
      if (!(GetWindowLongW(window, GWL_STYLE) & WS_THICKFRAME)) return;
      Resize(window, {10, 10});
      EXPECT_TRUE(host_.Settle());
      for (const HWND control : controls) {
        if (!IsWindowVisible(control) || SizeOf(control).cy > 100) continue;
        const RECT inner = RectOf(control);
        const RECT outer = RectOf(GetParent(control));
        EXPECT_LE(inner.right, outer.right) << ToUtf8(TextOf(control));
        EXPECT_LE(inner.bottom, outer.bottom) << ToUtf8(TextOf(control));
      }
    });
    EXPECT_EQ(lines_with_boxes, 2 + 2 + 11 + 5 + 2) << "boxes that share their line";
  }
}

// Compared with the same dialog as it is when it opens in that size.
TEST_F(EveryDialogTest, ResizingLeavesNothingBehindAndIsRemembered) {
  const auto is_resizable = [](HWND window) {
    return (GetWindowLongW(window, GWL_STYLE) & WS_THICKFRAME) != 0;
  };
  for (const int change : {60, -90, 140}) {
    std::vector<RECT> places;
    std::vector<Picture> pictures;
    const auto look = [&](HWND window) {
      EXPECT_TRUE(host_.Settle());
      places.push_back(RectOf(window));
      host_.Ask([&] { pictures.push_back(PictureOf(window)); });
    };
    placements_.clear();
    ForEach([&](HWND window) {
      if (!is_resizable(window)) return;
      const SIZE opened = SizeOf(window);
      Resize(window, {opened.cx + change, opened.cy + change});
      look(window);
    });
    std::size_t next = 0;
    ForEach([&](HWND window) {
      if (!is_resizable(window)) return;
      const RECT place = places.at(next);
      const Picture picture = pictures.at(next++);
      look(window);
      EXPECT_TRUE(EqualRect(&place, &places.back()));
      EXPECT_TRUE(picture == pictures.back()) << change;
    });
    EXPECT_EQ(next, 8U);
  }
  // Not where there is no monitor any more.
  for (auto& [dialog, placement] : placements_) placement.replace(0, placement.find(L' '), L"9000");
  ForEach([&](HWND window) { EXPECT_LT(RectOf(window).left, 2000); });
}

// An account with an address, and one that is not known.
TEST_F(EveryDialogTest, AnAccountIsActedOnByTheClickThatNeedsIt) {
  NoOwners owners;
  dialogs::AddressDialog dialog(context_, owners);
  WindowTest::Show(dialog.caption().c_str(), dialog, [&](HWND window) {
    const HWND account = Descendant(window, WC_EDITW);
    Keys(L"?{Tab}{Tab}");  // past the look-up button
    EXPECT_EQ(FocusWindow(), account);
    EXPECT_EQ(SendMessageW(account, EM_GETSEL, 0, 0), MAKELRESULT(0, 1)) << "to be typed over";
    Keys(L"A1");
    ClickOn(MiddleOf(GetDlgItem(window, IDOK)));
    ExpectClosed(window);
  });
  EXPECT_TRUE(dialog.result());
}

TEST_F(EveryDialogTest, WhatIsHiddenIsDisabledAndAnAmpersandIsOne) {
  ForEach([&](HWND window) {
    std::vector<HWND> controls;
    Collect(window, controls);
    for (const HWND control : controls) {
      if (ClassOf(control) == UPDOWN_CLASSW) continue;  // the tab strip's own
      const auto style = static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE));
      EXPECT_TRUE((style & WS_VISIBLE) || (style & WS_DISABLED)) << ToUtf8(TextOf(control));
      if (ClassOf(control) != WC_TABCONTROLW || TextOf(window) != L"User List") continue;
      wchar_t text[64] = {};
      TCITEMW item = {};
      item.mask = TCIF_TEXT;
      item.pszText = text;
      item.cchTextMax = 64;
      host_.Ask([&] { SendMessageW(control, TCM_GETITEMW, 1, reinterpret_cast<LPARAM>(&item)); });
      EXPECT_STREQ(text, L"Cut && Shut");
    }
  });
}

TEST_F(EveryDialogTest, ProgressShowsAfterAMomentAndIsCancelled) {
  constexpr wchar_t kReading[] = L"Reading bank accounts";
  int done = 0;
  Work(
      kReading,
      [&] {
        const ULONGLONG start = GetTickCount64();
        const auto progress = environment_.ShowProgress(kReading, 1'000'000);
        while (progress->Advance()) {
          ++done;
          const bool shown = FindWindowW(nullptr, kReading) != nullptr;
          EXPECT_TRUE(!shown || GetTickCount64() - start >= 500);
          Sleep(1);
        }
      },
      [&](HWND window) {
        Keys(L"{Esc}");
        ExpectClosed(window);
      });
  EXPECT_GT(done, 0);
  EXPECT_TRUE(host_.focus_returned());
}

TEST_F(EveryDialogTest, TheLogonShowsWhatItsFormHasAndHidesThePassword) {
  const std::wstring buttons = L"[OK][Cancel]";
  const std::wstring details = L"[&Remember my user name]" + buttons + L"[&Help]";
  const struct {
    dialogs::LogonDialog::Form form;
    const wchar_t* title;
    const wchar_t* app;
    std::wstring texts;
  } cases[] = {
      {dialogs::LogonDialog::Form::kUserDetails, L"Logon", L"Manufacturing",
       L"[Company:][Acme & Sons][][User &name:][Ann][&Password:][]" + details},
      {dialogs::LogonDialog::Form::kUserDetails, L"Logon", L"Multi",
       L"[User &name:][Ann][&Password:][]" + details},
      {dialogs::LogonDialog::Form::kCompanyPassword, L"Company Password", L"Manufacturing",
       L"[&Password:][]" + buttons},
  };
  for (const auto& c : cases) {
    context_.app_name = c.app;
    dialogs::LogonDialog dialog(context_, c.form, [](const auto&, const auto&) { return true; });
    dialog.SetCompany(L"Acme & Sons");
    dialog.SetName(L"Ann");
    WindowTest::Show(c.title, dialog, [&](HWND window) {
      EXPECT_EQ(Texts(window), L"[Welcome to " + context_.app_name + L".]" + c.texts);
      EXPECT_TRUE(GetWindowLongW(FocusWindow(), GWL_STYLE) & ES_PASSWORD);
    });
  }
}

TEST_F(EveryDialogTest, AQuestionIsAnsweredByAKey) {
  const struct {
    const wchar_t* key;
    Choice choice;
  } cases[] = {{L"{A}", Choice::kAbort}, {L"{R}", Choice::kRetry}, {L"{I}", Choice::kIgnore}};
  for (const auto& c : cases) {
    std::optional<Choice> chosen;
    Work(
        L"A question",
        [&] { chosen = environment_.AskWhatToDo(L"What?\r\n\r\nAnd why?", L"A question"); },
        [&](HWND box) {
          EXPECT_EQ(TextOf(GetDlgItem(box, 0xFFFF)), L"What?\r\n\r\nAnd why?");
          Keys(c.key);
        });
    EXPECT_EQ(chosen, c.choice);
  }
}

}  // namespace
}  // namespace ard::windows
