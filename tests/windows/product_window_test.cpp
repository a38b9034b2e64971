// The product dialog's window and the input box, worked by keyboard and mouse.

// clang-format off
#include <windows.h>  // before any other header of the system
#include <commctrl.h>
// clang-format on

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "database/seam.h"
#include "dialogs/product_dialog.h"
#include "frame/text.h"
#include "simulator/testing/company_builder.h"
#include "tests/windows/dialog_view.h"
#include "tests/windows/window_driver.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows {
namespace {

using dialogs::ProductDialog;
using testing::Click;
using testing::ClickWith;
using testing::Descendant;
using testing::Eventually;
using testing::MiddleOf;
using testing::Press;
using testing::PressAll;
using testing::RectOf;
using testing::SizeOf;
using testing::Type;
using testing::View;
using Tab = ProductDialog::Tab;

constexpr wchar_t kTitle[] = L"Select Product";

struct Record {
  std::wstring cells[2];
};

// Records in memory, filtered by a prefix and sorted by a field.
class Records : public database::RecordsetObject {
 public:
  explicit Records(std::vector<Record> all) : all_(all), shown_(std::move(all)) {}

  bool Bof() override { return shown_.empty(); }
  bool Eof() override { return row_ > shown_.size(); }
  void MoveNext() override { ++row_; }
  std::int32_t RecordCount() override { return static_cast<std::int32_t>(shown_.size()); }
  void SetAbsolutePosition(std::int32_t row) override { row_ = static_cast<std::size_t>(row); }
  void SetFilter(std::wstring_view filter) override {
    shown_ = all_;
    row_ = 1;
    if (filter.empty()) return;
    const std::size_t field = FieldIn(filter);
    const std::wstring_view prefix =
        filter.substr(filter.find(L'\'') + 1, filter.find(L'%') - filter.find(L'\'') - 1);
    std::erase_if(shown_, [&](const Record& record) {
      return !StartsWithIgnoreCase(record.cells[field], prefix);
    });
  }
  void SetSort(std::wstring_view sort) override {
    EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_WAIT));
    const std::size_t field = FieldIn(sort);
    const bool down = sort.ends_with(L"DESC");
    std::stable_sort(shown_.begin(), shown_.end(), [&](const Record& a, const Record& b) {
      return down ? b.cells[field] < a.cells[field] : a.cells[field] < b.cells[field];
    });
  }
  std::int32_t FieldCount() override { return 2; }
  std::wstring FieldName(std::int32_t field) override {
    return field == 0 ? L"StockCode" : L"Description";
  }
  std::int32_t GetFieldType(std::int32_t) override { return 202; }
  Value GetValue(std::int32_t field) override { return shown_[row_ - 1].cells[field]; }
  Value GetValue(std::wstring_view field) override {
    return shown_[row_ - 1].cells[FieldIn(field)];
  }
  void Delete() override {}
  void Close() override {}

 private:
  static std::size_t FieldIn(std::wstring_view text) {
    return text.find(L"StockCode") == std::wstring_view::npos ? 1 : 0;
  }

  std::vector<Record> all_;
  std::vector<Record> shown_;
  std::size_t row_ = 1;
};

class HostDatabase : public database::Connection {
 public:
  std::unique_ptr<database::RecordsetObject> Open(std::wstring_view, database::Cursor,
                                                  database::Lock) override {
    return std::make_unique<Records>(std::vector<Record>{
        {{L"AX1", L"Zinc"}, {L"AX2", L"Brass"}, {L"BX1", L"Anvil"}, {L"BX2", L"Bolt"}}});
  }
};

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

class ProductWindowTest : public ::testing::Test {
 protected:
  explicit ProductWindowTest(int products = kProducts) {
    simulator::CompanyBuilder builder;
    for (int i = 1; i <= products; ++i) builder.Product(Code(i));
    engine_ = builder.Build();
    context_.workspace = engine_->workspace();
    context_.database = std::make_shared<HostDatabase>();
  }

  std::unique_ptr<ProductDialog> Load(const ProductDialog::Options& options,
                                      std::int32_t products = kProducts) {
    auto dialog = std::make_unique<ProductDialog>(context_, options);
    dialog->Load(products);
    return dialog;
  }

  template <class Act>
  void Show(ProductDialog& dialog, Act act) {
    host_.Activate();
    host_.Drive(
        kTitle, [&] { environment_.Show(dialog); }, act);
    EXPECT_FALSE(dialog.visible());
  }

  HWND FocusWindow() const {
    HWND focus = nullptr;
    host_.Ask([&] { focus = GetFocus(); });
    return focus;
  }

  testing::Host host_;
  WindowsEnvironment environment_{GetModuleHandleW(nullptr)};
  std::unique_ptr<simulator::Simulator> engine_;
  Context context_{environment_};
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

TEST_F(ProductWindowTest, OpensOnTheSecondPageWhenPreset) {
  const auto dialog = Load({});
  dialog->FilterBy(L"bx");
  dialog->PresetSearchField(1);
  dialog->PresetTab(2);
  Show(*dialog, [&](HWND window) {
    const View view(window);
    const Bar bar(window);
    EXPECT_EQ(SendMessageW(Descendant(window, WC_TABCONTROLW), TCM_GETCURSEL, 0, 0), 1);
    EXPECT_EQ(Codes(view), L"BX1 BX2");
    EXPECT_EQ(testing::TextOf(bar.text), L"bx");
    EXPECT_EQ(testing::TextOf(bar.field), L"Description");
    EXPECT_EQ(FocusWindow(), bar.text);
    EXPECT_FALSE(IsWindowEnabled(view.ok)) << "nothing is selected";
  });
  EXPECT_EQ(dialog->search_text(), L"bx") << "it was only shown";
}

TEST_F(ProductWindowTest, SearchesByKeyboardAlone) {
  const auto dialog = Load({});
  dialog->PresetTab(2);
  Show(*dialog, [&](HWND window) {
    const View view(window);
    const Bar bar(window);
    struct Step {
      const char* name;
      std::function<void()> act;
      const wchar_t* codes;
      HWND focus;
    };
    const Step steps[] = {
        {"Enter", [] { Type(L"b"), Press({VK_RETURN}); }, L"BX1 BX2", bar.text},
        {"typed only", [] { Type(L"x2"); }, L"BX1 BX2", bar.text},
        {"Search",
         [] {
           Press({VK_MENU, 'S'});
         },
         L"BX2", nullptr},
        {"back to the text",
         [] {
           Press({VK_MENU, 'F'}), Type(L"b");
         },
         L"BX2", bar.text},
        {"field",
         [] {
           Press({VK_MENU, 'I'}), Press({VK_DOWN});
         },
         L"AX2 BX2", bar.field},
        {"Clear",
         [] {
           Press({VK_MENU, 'C'});
         },
         L"AX1 AX2 BX1 BX2", nullptr},
        {"all",
         [] {
           Press({VK_MENU, 'F'}), Press({VK_RETURN});
         },
         L"AX1 AX2 BX1 BX2", bar.text},
        {"to the list", [] { Press({VK_DOWN}); }, L"AX1 AX2 BX1 BX2", view.list},
    };
    for (const Step& step : steps) {
      SCOPED_TRACE(step.name);
      step.act();
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(Codes(view), step.codes);
      EXPECT_TRUE(!step.focus || FocusWindow() == step.focus);
    }
    EXPECT_EQ(testing::TextOf(bar.text), L"");
    EXPECT_EQ(view.Selected(), L"AX1");
    PressAll({VK_DOWN, VK_RETURN});
    EXPECT_TRUE(Eventually([&] { return !IsWindow(window); }));
  });
  EXPECT_TRUE(dialog->result());
  EXPECT_EQ(Selected(*dialog), L"AX2");
  EXPECT_EQ(dialog->search_field(), ProductDialog::SearchField::kDescription);
}

TEST_F(ProductWindowTest, TabsSwitchByKeysAndMouse) {
  const auto dialog = Load({});
  Show(*dialog, [&](HWND window) {
    const View stock(window);
    const HWND tabs = Descendant(window, WC_TABCONTROLW);
    RECT first = {};
    SendMessageW(tabs, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
    POINT first_tab = {(first.left + first.right) / 2, (first.top + first.bottom) / 2};
    ClientToScreen(tabs, &first_tab);
    EXPECT_EQ(FocusWindow(), stock.list);
    Press({VK_CONTROL, VK_TAB});
    ASSERT_TRUE(host_.Settle());
    const View info(window);
    const Bar bar(window);
    EXPECT_NE(info.list, stock.list);
    EXPECT_EQ(dialog->tab(), Tab::kProductInfo);
    EXPECT_EQ(FocusWindow(), bar.text);
    EXPECT_FALSE(IsWindowEnabled(info.ok));
    // Once around. OK, disabled, is left out.
    const HWND stops[] = {
        bar.field, GetWindow(bar.field, GW_HWNDNEXT), nullptr, info.list, info.cancel, tabs,
        bar.text};
    for (const HWND stop : stops) {
      Press({VK_TAB});
      ASSERT_TRUE(host_.Settle());
      EXPECT_TRUE(!stop || FocusWindow() == stop) << stop;
    }
    Press({VK_CONTROL, VK_NEXT});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(FocusWindow(), stock.list);
    EXPECT_EQ(stock.Selected(), L"P01") << "as it was";
    EXPECT_TRUE(IsWindowEnabled(info.ok));
    Press({VK_SHIFT, VK_TAB});
    Press({VK_RIGHT});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(FocusWindow(), bar.text);
    Click(first_tab);
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(FocusWindow(), stock.list);
    EXPECT_EQ(SendMessageW(tabs, TCM_GETCURSEL, 0, 0), 0);
    // The first page has neither search nor sorting.
    Press({VK_MENU, 'C'});
    Click(stock.HeaderPoint(0));
    Type(L"p");
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog->result());
  EXPECT_EQ(Selected(*dialog), L"P01");
}

TEST_F(ProductWindowTest, AHeaderSortsBothWaysAndShowsIt) {
  const auto dialog = Load({});
  dialog->PresetTab(2);
  Show(*dialog, [&](HWND window) {
    const View view(window);
    const auto arrow = [&](int column) {
      HDITEMW item = {};
      item.mask = HDI_FORMAT;
      SendMessageW(view.Header(), HDM_GETITEMW, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(&item));
      return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
    };
    struct Step {
      int column;
      const wchar_t* codes;
      int arrows[2];
    };
    const Step steps[] = {{1, L"BX1 BX2 AX2 AX1", {0, HDF_SORTUP}},
                          {1, L"AX1 AX2 BX2 BX1", {0, HDF_SORTDOWN}},
                          {0, L"AX1 AX2 BX1 BX2", {HDF_SORTUP, 0}}};
    for (const Step& step : steps) {
      // Not twice in the same place, which would be a double-click.
      POINT point = view.HeaderPoint(step.column);
      if (step.arrows[1] == HDF_SORTDOWN) point.x += 30;
      Click(point);
      ASSERT_TRUE(host_.Settle());
      EXPECT_EQ(Codes(view), step.codes);
      EXPECT_EQ(arrow(0), step.arrows[0]);
      EXPECT_EQ(arrow(1), step.arrows[1]);
      EXPECT_EQ(view.Selected(), Codes(view).substr(0, 3));
    }
    Press({VK_CONTROL, VK_MENU, '2'});  // AltGr+2 is a character
    Press({VK_CONTROL, '1'});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(Codes(view), L"BX2 BX1 AX2 AX1");
    EXPECT_EQ(arrow(0), HDF_SORTDOWN);
  });
}

TEST_F(ProductWindowTest, PicksSeveralByKeyboardOverAPageBorder) {
  const auto dialog = Load({.multiple = true});
  int page = 0;
  Show(*dialog, [&](HWND window) {
    const View view(window);
    page = static_cast<int>(view.Scroll().nPage);
    PressAll({VK_DOWN});
    Press({VK_SHIFT, VK_DOWN});
    Press({VK_CONTROL, VK_DOWN});
    Press({VK_CONTROL, VK_DOWN});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"P02 P03");
    EXPECT_EQ(view.Cursor(), L"P05");
    Press({VK_SPACE});
    Press({VK_CONTROL, VK_UP});
    Press({VK_CONTROL, VK_UP});
    Press({VK_CONTROL, VK_SPACE});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), L"P02 P05");
    EXPECT_EQ(view.Cursor(), L"P03");
    // To the next page, where none is selected, and one there.
    Press({VK_CONTROL, VK_END});
    Press({VK_SPACE});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(view.Selected(), Code(kProducts));
    EXPECT_TRUE(IsWindowEnabled(view.ok));
    Press({VK_RETURN});
  });
  EXPECT_TRUE(dialog->result());
  EXPECT_EQ(Selected(*dialog), L"P02 P05 P60");

  const auto range = Load({.multiple = true});
  Show(*range, [&](HWND window) {
    PressAll({VK_NEXT, VK_UP});
    Press({VK_SHIFT, VK_DOWN});
    Press({VK_SHIFT, VK_DOWN});
    ASSERT_TRUE(host_.Settle());
    EXPECT_EQ(View(window).Scroll().nPos, 2);
    Press({VK_RETURN});
  });
  EXPECT_EQ(Selected(*range), Code(page - 1) + L' ' + Code(page) + L' ' + Code(page + 1));
}

TEST_F(ProductWindowTest, PicksSeveralByMouse) {
  const auto dialog = Load({.multiple = true});
  Show(*dialog, [&](HWND window) {
    const View view(window);
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
    // As assistive technology does it.
    LVITEMW state = {};
    state.state = state.stateMask = LVIS_SELECTED;
    SendMessageW(view.list, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&state));
    expect(L"P01 P06 P08");
    state.state = 0;
    SendMessageW(view.list, LVM_SETITEMSTATE, 5, reinterpret_cast<LPARAM>(&state));
    expect(L"P01 P08");
    Press({VK_RETURN});
  });
  EXPECT_EQ(Selected(*dialog), L"P01 P08");
}

TEST_F(ProductWindowTest, SpecialRowsStandOnTopInBlue) {
  const auto dialog = Load({.special_rows = true});
  Show(*dialog, [&](HWND window) {
    const View view(window);
    const auto page = static_cast<int>(view.Scroll().nPage);
    EXPECT_EQ(view.Selected(), L"S1");
    EXPECT_EQ(view.rows(), page);
    EXPECT_EQ(view.Cell(3, 0), L"P01");
    constexpr int kEnough = 60;
    const auto ink = [&](int row) {
      testing::Ink seen;
      host_.Ask([&] { seen = testing::InkOf(view, row); });
      return seen;
    };
    ASSERT_TRUE(Eventually([&] { return ink(1).any > kEnough; }));
    EXPECT_GT(ink(1).blue, kEnough);
    EXPECT_LT(ink(3).blue, ink(3).any / 2 + 1);
    EXPECT_NE(ink(0).background, ink(1).background);
    EXPECT_GT(ink(0).any, kEnough) << "readable when selected";
    // They scroll away like any others.
    for (int top = 2; top <= 5; ++top) {
      SendMessageW(view.frame, WM_VSCROLL, SB_LINEDOWN, 0);
      EXPECT_EQ(view.rows(), page);
      EXPECT_EQ(view.Scroll().nPos, top);
      EXPECT_EQ(view.Cell(0, 0), top <= 3 ? L"S" + std::to_wstring(top) : Code(top));
    }
  });
}

TEST_F(ProductWindowTest, SpecialRowsMakeAListOfOnePageScroll) {
  const auto probe = Load({});
  int page = 0;
  Show(*probe, [&](HWND window) { page = static_cast<int>(View(window).Scroll().nPage); });
  const auto dialog = Load({.special_rows = true}, page);
  Show(*dialog, [&](HWND window) {
    const View view(window);
    EXPECT_EQ(view.Cell(view.rows() - 1, 0), Code(page - 3));
    SendMessageW(view.frame, WM_VSCROLL, SB_BOTTOM, 0);
    EXPECT_EQ(view.Cell(view.rows() - 1, 0), Code(page));
    const SCROLLINFO scroll = view.Scroll();
    EXPECT_EQ(scroll.nPos, 3);
    EXPECT_EQ(scroll.nMax - static_cast<int>(scroll.nPage) + 1, 3) << "the lowest";
  });
}

TEST_F(ProductWindowTest, WithoutProductInformationItIsOneList) {
  const auto dialog = Load({.product_info = false});
  Show(*dialog, [&](HWND window) {
    EXPECT_FALSE(Descendant(window, WC_TABCONTROLW));
    EXPECT_FALSE(Descendant(window, WC_EDITW));
    PressAll({VK_DOWN, VK_RETURN});
  });
  EXPECT_EQ(Selected(*dialog), L"P02");
}

TEST_F(ProductWindowTest, NothingIsCutOffAtTheSmallestSizeOrAHigherDpi) {
  const auto dialog = Load({});
  dialog->PresetTab(2);
  Show(*dialog, [&](HWND window) {
    const View view(window);
    const auto expect_inside = [&] {
      ASSERT_TRUE(host_.Settle());
      const Bar bar(window);
      const RECT page = RectOf(Descendant(window, WC_TABCONTROLW));
      for (HWND control = bar.text; control; control = GetWindow(control, GW_HWNDNEXT)) {
        EXPECT_LT(RectOf(control).right, page.right);
        EXPECT_GT(SizeOf(control).cx, 10);
        EXPECT_LE(RectOf(control).bottom, RectOf(GetParent(control)).bottom);
      }
      EXPECT_GT(RectOf(view.frame).top, RectOf(bar.text).bottom);
      EXPECT_LT(RectOf(view.frame).bottom, page.bottom);
      EXPECT_GE(view.Scroll().nPage, 2U);
    };
    SetWindowPos(window, nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    expect_inside();
    RECT suggested = {20, 20, 1000, 720};
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested));
    expect_inside();
  });
}

TEST_F(ProductWindowTest, LeavesNothingBehind) {
  testing::ExpectNothingLeftBehind([&] {
    const auto dialog = Load({});
    dialog->PresetTab(2);
    std::thread closer([] { testing::CloseWhenSeen(kTitle); });
    environment_.Show(*dialog);
    closer.join();
  });
}

TEST_F(ProductWindowTest, TheInputBoxReturnsWhatWasConfirmed) {
  struct Case {
    const char* name;
    std::function<void(HWND)> act;
    const wchar_t* answer;
  };
  const Case cases[] = {
      {"Enter", [](HWND) { Type(L"Brass é & co"), Press({VK_RETURN}); }, L"Brass é & co"},
      {"nothing", [](HWND) { Press({VK_RETURN}); }, L""},
      {"OK", [](HWND w) { Type(L"x"), Click(MiddleOf(GetDlgItem(w, IDOK))); }, L"x"},
      {"Esc", [](HWND) { Type(L"x"), Press({VK_ESCAPE}); }, L""},
      {"Cancel",
       [](HWND) {
         Type(L"x"), PressAll({VK_TAB, VK_TAB, VK_RETURN});
       },
       L""},
      {"close box", [](HWND w) { Type(L"x"), PostMessageW(w, WM_SYSCOMMAND, SC_CLOSE, 0); }, L""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    host_.Activate();
    std::wstring answer = L"?";
    host_.Drive(
        L"Input", [&] { answer = environment_.InputBox(L"A & B:", L"Input"); },
        [&](HWND window) {
          EXPECT_EQ(GetWindow(window, GW_OWNER), host_.window());
          EXPECT_FALSE(IsWindowEnabled(host_.window()));
          c.act(window);
          EXPECT_TRUE(Eventually([&] { return !IsWindow(window); }));
        });
    EXPECT_EQ(answer, c.answer);
    EXPECT_TRUE(host_.focus_returned());
  }
}

TEST_F(ProductWindowTest, TheInputBoxGrowsWithItsPrompt) {
  LONG heights[2] = {};
  const std::wstring prompts[] = {L"Short.", std::wstring(300, L'W') + L"\r\n\r\nEnd"};
  for (int i = 0; i < 2; ++i) {
    host_.Activate();
    host_.Drive(
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
