// The product dialog's window and the input box, worked by keyboard and mouse.

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "dialogs/product_dialog.h"
#include "frame/text.h"
#include "host_database/odbc_connection.h"
#include "simulator/testing/company_builder.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_test.h"

namespace ard::windows {
namespace {

using dialogs::ProductDialog;
using testing::Click;
using testing::ClickWith;
using testing::Descendant;
using testing::MiddleOf;
using testing::RectOf;
using testing::SizeOf;
using testing::View;
using Tab = ProductDialog::Tab;

constexpr wchar_t kTitle[] = L"Select Product";

// The stock file: P01, P02 ... P60.
constexpr int kProducts = 60;
std::wstring Code(int number) { return (number < 10 ? L"P0" : L"P") + std::to_wstring(number); }

// The second page's controls.
struct Bar {
  explicit Bar(HWND window)
      : text(Descendant(window, WC_EDITW)), field(Descendant(window, WC_COMBOBOXW)) {}
  HWND text;
  HWND field;
};

class ProductWindowTest : public testing::WindowTest {
 protected:
  ProductWindowTest() {
    simulator::CompanyBuilder builder;
    for (int i = 1; i <= kProducts; ++i) builder.Product(Code(i));
    engine_ = builder.Build();
    context_.workspace = engine_->workspace();
    const auto database =
        std::make_shared<host_database::OdbcConnection>(L"Driver=SQLite3;Database=:memory:");
    database->Execute(
        L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), Description VARCHAR(60))");
    database->Execute(
        L"INSERT INTO ProdInfoStockFields VALUES ('AX1', 'Zinc'), ('AX2', 'Brass'), "
        L"('BX1', 'Anvil'), ('BX2', 'Bolt')");
    context_.database = database;
  }

  std::unique_ptr<ProductDialog> Load(const ProductDialog::Options& options, int page = 1,
                                      std::int32_t products = kProducts) {
    auto dialog = std::make_unique<ProductDialog>(context_, options);
    dialog->Load(products);
    dialog->PresetTab(page);
    return dialog;
  }
  template <class Act>
  void Show(ProductDialog& dialog, Act act) {
    WindowTest::Show(kTitle, dialog, [&](HWND window) { act(View(window)); });
  }

  std::unique_ptr<simulator::Simulator> engine_;
};

// The first cells of the rows in view.
std::wstring Codes(const View& view) {
  std::wstring codes;
  for (int i = 0; i < view.rows(); ++i) codes += (i ? L" " : L"") + view.Cell(i, 0);
  return codes;
}

std::wstring Selected(ProductDialog& dialog) {
  std::wstring codes;
  for (const dialogs::Row& row : dialog.list().SelectedRows()) {
    if (!codes.empty()) codes += L' ';
    codes += Trimmed(row.Cell(1));
  }
  return codes;
}

TEST_F(ProductWindowTest, SearchesByKeyboardAlone) {
  const auto dialog = Load({}, 2);
  Show(*dialog, [&](const View& view) {
    const Bar bar(view.dialog);
    const struct {
      const wchar_t* keys;
      const wchar_t* codes;
      HWND focus;
    } steps[] = {
        {L"b{Enter}", L"BX1 BX2", bar.text},
        {L"x2", L"BX1 BX2", bar.text},  // typed only
        {L"{Alt+S}", L"BX2", nullptr},
        {L"{Alt+F}b", L"BX2", bar.text},
        {L"{Alt+I}{Down}", L"AX2 BX2", bar.field},
        {L"{Alt+C}", L"AX1 AX2 BX1 BX2", nullptr},
        {L"{Alt+F}{Enter}", L"AX1 AX2 BX1 BX2", bar.text},
        {L"{Down}", L"AX1 AX2 BX1 BX2", view.list},
    };
    for (const auto& step : steps) {
      SCOPED_TRACE(ToUtf8(step.keys));
      Keys(step.keys);
      EXPECT_EQ(Codes(view), step.codes);
      EXPECT_TRUE(!step.focus || FocusWindow() == step.focus);
    }
    EXPECT_EQ(testing::TextOf(bar.text), L"");
    EXPECT_EQ(view.Selected(), L"AX1");
    Keys(L"{Down}{Enter}");
    ExpectClosed(view.dialog);
  });
  EXPECT_TRUE(dialog->result());
  EXPECT_EQ(Selected(*dialog), L"AX2");
  EXPECT_EQ(dialog->search_field(), ProductDialog::SearchField::kDescription);
}

TEST_F(ProductWindowTest, TabsSwitchByKeysAndMouse) {
  const auto dialog = Load({});
  Show(*dialog, [&](const View& stock) {
    const HWND tabs = Descendant(stock.dialog, WC_TABCONTROLW);
    RECT first = {};
    SendMessageW(tabs, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
    POINT first_tab = {(first.left + first.right) / 2, (first.top + first.bottom) / 2};
    ClientToScreen(tabs, &first_tab);
    EXPECT_EQ(FocusWindow(), stock.list);
    Keys(L"{Ctrl+Tab}");
    const View info(stock.dialog);
    const Bar bar(stock.dialog);
    EXPECT_NE(info.list, stock.list);
    EXPECT_EQ(dialog->tab(), Tab::kProductInfo);
    EXPECT_EQ(FocusWindow(), bar.text);
    EXPECT_FALSE(IsWindowEnabled(info.ok));
    // Once around. OK, disabled, is left out.
    const HWND stops[] = {
        bar.field, GetWindow(bar.field, GW_HWNDNEXT), nullptr, info.list, info.cancel, tabs,
        bar.text};
    for (const HWND stop : stops) {
      Keys(L"{Tab}");
      EXPECT_TRUE(!stop || FocusWindow() == stop) << stop;
    }
    Keys(L"{Ctrl+PgDn}");
    EXPECT_EQ(FocusWindow(), stock.list);
    EXPECT_EQ(stock.Selected(), L"P01") << "as it was";
    EXPECT_TRUE(IsWindowEnabled(info.ok));
    Keys(L"{Shift+Tab}{Right}");
    EXPECT_EQ(FocusWindow(), bar.text);
    ClickOn(first_tab);
    EXPECT_EQ(FocusWindow(), stock.list);
  });
}

TEST_F(ProductWindowTest, WithoutProductInformationThereIsOneTab) {
  const auto dialog = Load({.product_info = false});
  Show(*dialog, [&](const View& view) {
    const HWND tabs = Descendant(view.dialog, WC_TABCONTROLW);
    EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 1);
    EXPECT_EQ(Descendant(view.dialog, WC_EDITW), nullptr);
    Keys(L"{Shift+Tab}{Right}{Ctrl+Tab}");
    EXPECT_EQ(FocusWindow(), tabs);
    Keys(L"{Tab}{Down}{Enter}");
    ExpectClosed(view.dialog);
  });
  EXPECT_EQ(Selected(*dialog), L"P02");
}

TEST_F(ProductWindowTest, AHeaderSortsBothWaysAndShowsIt) {
  const auto dialog = Load({}, 2);
  Show(*dialog, [&](const View& view) {
    const auto arrow = [&](int column) {
      HDITEMW item = {};
      item.mask = HDI_FORMAT;
      SendMessageW(view.Header(), HDM_GETITEMW, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(&item));
      return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    };
    const struct {
      int column;
      const wchar_t* codes;
      int arrows[2];
    } steps[] = {{1, L"BX1 BX2 AX2 AX1", {0, HDF_SORTUP}},
                 {1, L"AX1 AX2 BX2 BX1", {0, HDF_SORTDOWN}},
                 {0, L"AX1 AX2 BX1 BX2", {HDF_SORTUP, 0}}};
    for (const auto& step : steps) {
      // Not twice in the same place, which would be a double-click.
      POINT point = view.HeaderPoint(step.column);
      if (step.arrows[1] == HDF_SORTDOWN) point.x += 30;
      ClickOn(point);
      EXPECT_EQ(Codes(view), step.codes);
      EXPECT_EQ(arrow(0), step.arrows[0]);
      EXPECT_EQ(arrow(1), step.arrows[1]);
      EXPECT_EQ(view.Selected(), Codes(view).substr(0, 3));
    }
    Keys(L"{Ctrl+Alt+2}{Ctrl+1}");  // AltGr+2 is a character
    EXPECT_EQ(Codes(view), L"BX2 BX1 AX2 AX1");
    EXPECT_EQ(arrow(0), HDF_SORTDOWN);
  });
}

TEST_F(ProductWindowTest, PicksSeveralByMouseAndOverAPageBorder) {
  const auto dialog = Load({.multiple = true});
  Show(*dialog, [&](const View& view) {
    const auto expect = [&](const wchar_t* selected) {
      EXPECT_TRUE(host_.Settle());
      EXPECT_EQ(view.Selected(), selected);
    };
    Click(view.RowPoint(2));
    ClickWith(VK_CONTROL, view.RowPoint(5));
    expect(L"P03 P06");
    ClickWith(VK_SHIFT, view.RowPoint(7));
    expect(L"P06 P07 P08");
    ClickWith(VK_CONTROL, view.RowPoint(6));
    expect(L"P06 P08");
    view.SetState(0, LVIS_SELECTED, LVIS_SELECTED);
    expect(L"P01 P06 P08");
    view.SetState(5, 0, LVIS_SELECTED);
    expect(L"P01 P08");
    // To the last page, where none is selected, and one there.
    Keys(L"{Ctrl+End}{Space}");
    EXPECT_EQ(view.Selected(), Code(kProducts));
    Keys(L"{Enter}");
  });
  EXPECT_EQ(Selected(*dialog), L"P01 P08 P60");
}

TEST_F(ProductWindowTest, SpecialRowsStandOnTopAndScrollAway) {
  const auto dialog = Load({.special_rows = true});
  int page = 0;
  Show(*dialog, [&](const View& view) {
    page = static_cast<int>(view.Scroll().nPage);
    EXPECT_EQ(view.Selected(), L"S1");
    EXPECT_EQ(view.rows(), page);
    EXPECT_EQ(view.Cell(3, 0), L"P01");
    for (int top = 2; top <= 5; ++top) {
      SendMessageW(view.frame, WM_VSCROLL, SB_LINEDOWN, 0);
      EXPECT_EQ(view.rows(), page);
      EXPECT_EQ(view.Scroll().nPos, top);
    }
  });

  // They make a list of one page scroll.
  const auto full = Load({.special_rows = true}, 1, page);
  Show(*full, [&](const View& view) {
    SendMessageW(view.frame, WM_VSCROLL, SB_BOTTOM, 0);
    EXPECT_EQ(view.Cell(view.rows() - 1, 0), Code(page));
    EXPECT_EQ(view.Scroll().nPos, 3);
  });
}

TEST_F(ProductWindowTest, TheInputBoxReturnsWhatWasConfirmed) {
  const struct {
    const wchar_t* keys;
    UINT command;  // that follows them, if any
    const wchar_t* answer;
  } cases[] = {{L"Brass é & co{Enter}", 0, L"Brass é & co"},
               {L"x{Tab}{Enter}", 0, L"x"},
               {L"x{Esc}", 0, L""},
               {L"x{Tab}{Tab}{Enter}", 0, L""},
               {L"x", SC_CLOSE, L""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.keys));
    std::wstring answer = L"?";
    Work(
        L"Input", [&] { answer = environment_.InputBox(L"A & B:", L"Input"); },
        [&](HWND window) {
          Keys(c.keys);
          if (c.command) PostMessageW(window, WM_SYSCOMMAND, c.command, 0);
          ExpectClosed(window);
        });
    EXPECT_EQ(answer, c.answer);
    EXPECT_TRUE(host_.focus_returned());
  }
}

TEST_F(ProductWindowTest, TheInputBoxGrowsWithItsPrompt) {
  LONG heights[2] = {};
  const std::wstring prompts[] = {L"Short.", std::wstring(300, L'W') + L"\r\n\r\nEnd"};
  for (int i = 0; i < 2; ++i) {
    Work(
        L"Input", [&] { environment_.InputBox(prompts[i], L"Input"); },
        [&](HWND window) {
          const HWND prompt = Descendant(window, WC_STATICW);
          heights[i] = SizeOf(prompt).cy;
          EXPECT_EQ(testing::TextOf(prompt).substr(0, 200), prompts[i].substr(0, 200));
          EXPECT_LE(RectOf(prompt).bottom, RectOf(Descendant(window, WC_EDITW)).top);
        });
  }
  EXPECT_GT(heights[1], 5 * heights[0]);
}

}  // namespace
}  // namespace ard::windows
