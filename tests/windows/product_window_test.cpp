// The product dialog's window and the input box, worked by keyboard and mouse.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "dialogs/product_dialog.h"
#include "frame/text.h"
#include "host_database/odbc_connection.h"
#include "simulator/testing/company_builder.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_test.h"

namespace ard::windows {
namespace {

using dialogs::ProductDialog;
using namespace testing;  // NOLINT(google-build-using-namespace): the windows
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

class ProductWindowTest : public WindowTest {
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
    const std::pair<const wchar_t*, const wchar_t*> steps[] = {
        {L"b{Enter}", L"BX1 BX2"},
        {L"x2", L"BX1 BX2"},  // typed only
        {L"{Alt+S}", L"BX2"},
        {L"{Alt+F}b{Alt+I}{Down}", L"AX2 BX2"},
        {L"{Alt+C}", L"AX1 AX2 BX1 BX2"},
        {L"{Alt+F}{Enter}{Down}", L"AX1 AX2 BX1 BX2"},
    };
    for (const auto& [keys, codes] : steps) {
      Keys(keys);
      EXPECT_EQ(Codes(view), codes) << ToUtf8(keys);
    }
    EXPECT_EQ(FocusWindow(), view.list);
    EXPECT_EQ(view.Selected(), L"AX1");
    Keys(L"{Down}{Enter}");
    ExpectClosed(view.dialog);
  });
  EXPECT_EQ(Selected(*dialog), L"AX2");
}

TEST_F(ProductWindowTest, TabsSwitchByKeysAndMouse) {
  const auto dialog = Load({});
  Show(*dialog, [&](const View& stock) {
    const HWND tabs = Descendant(stock.dialog, WC_TABCONTROLW);
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
    const RECT strip = RectOf(tabs);
    ClickOn({strip.left + 20, strip.top + 10});
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
  });
}

TEST_F(ProductWindowTest, AHeaderSortsBothWaysAndShowsIt) {
  const auto dialog = Load({}, 2);
  Show(*dialog, [&](const View& view) {
    // The codes, and the arrows of the two columns.
    const auto shown = [&] {
      std::wstring text = Codes(view);
      for (const int column : {0, 1}) {
        HDITEMW item = {};
        item.mask = HDI_FORMAT;
        Header_GetItem(view.Header(), column, &item);
        text += item.fmt & HDF_SORTUP ? L" up" : item.fmt & HDF_SORTDOWN ? L" down" : L" -";
      }
      return text;
    };
    POINT header = view.HeaderPoint(1);
    ClickOn(header);
    EXPECT_EQ(shown(), L"BX1 BX2 AX2 AX1 - up");
    header.x += 30;  // in the same place it would be a double-click
    ClickOn(header);
    EXPECT_EQ(shown(), L"AX1 AX2 BX2 BX1 - down");
    EXPECT_EQ(view.Selected(), L"AX1");
    ClickOn(view.HeaderPoint(0));
    EXPECT_EQ(shown(), L"AX1 AX2 BX1 BX2 up -");
    Keys(L"{Ctrl+Alt+2}{Ctrl+1}");  // AltGr+2 is a character
    EXPECT_EQ(shown(), L"BX2 BX1 AX2 AX1 down -");
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

// They make a list of one page scroll.
TEST_F(ProductWindowTest, SpecialRowsStandOnTopAndScrollAway) {
  int page = 0;
  Show(*Load({}), [&](const View& view) { page = view.rows(); });
  const auto dialog = Load({.special_rows = true}, 1, page);
  Show(*dialog, [&](const View& view) {
    EXPECT_EQ(view.rows(), page);
    EXPECT_EQ(view.Cell(3, 0), L"P01");
    SendMessageW(view.frame, WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_EQ(view.rows(), page);
    EXPECT_EQ(view.Cell(2, 0), L"P02");
    SendMessageW(view.frame, WM_VSCROLL, SB_BOTTOM, 0);
    EXPECT_EQ(view.Cell(view.rows() - 1, 0), Code(page));
    EXPECT_EQ(view.Scroll().nPos, 3);
  });
}

TEST_F(ProductWindowTest, TheInputBoxReturnsWhatWasConfirmed) {
  const struct {
    const wchar_t* keys;
    const wchar_t* answer;
  } cases[] = {{L"Brass é & co{Enter}", L"Brass é & co"},
               {L"x{Tab}{Enter}", L"x"},
               {L"x{Esc}", L""},
               {L"x{Tab}{Tab}{Enter}", L""},
               {L"x{Alt+F4}", L""}};
  for (const auto& c : cases) {
    std::wstring answer = L"?";
    Work(
        L"Input", [&] { answer = environment_.InputBox(L"A & B:", L"Input"); },
        [&](HWND window) {
          Keys(c.keys);
          ExpectClosed(window);
        });
    EXPECT_EQ(answer, c.answer);
  }
}

TEST_F(ProductWindowTest, TheInputBoxGrowsWithItsPrompt) {
  const std::wstring prompt = std::wstring(300, L'W') + L"\r\n\r\nEnd";
  Work(
      L"Input", [&] { environment_.InputBox(prompt, L"Input"); },
      [&](HWND window) {
        const HWND label = Descendant(window, WC_STATICW);
        const HWND text = Descendant(window, WC_EDITW);
        EXPECT_EQ(TextOf(label).substr(0, 200), prompt.substr(0, 200));
        EXPECT_LE(RectOf(label).bottom, RectOf(text).top);
        EXPECT_GT(SizeOf(label).cy, 3 * SizeOf(text).cy);
      });
}

}  // namespace
}  // namespace ard::windows
