#include "dialogs/fast_select.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "simulator/testing/company_builder.h"
#include "testing/scripted_environment.h"

namespace ard::dialogs {
namespace {

using simulator::CompanyBuilder;
using simulator::Simulator;
using testing::Message;

class FastSelectTest : public ::testing::Test {
 protected:
  void Open(CompanyBuilder& builder) {
    engine_ = builder.Build();
    context_.workspace = engine_->workspace();
    context_.app_name = L"Manufacturing";
  }

  // Shows the form; `script` sees the dialog. Returns the picked reference, and checks that
  // nothing was left open.
  std::wstring Pick(const FastSelectForm& form, testing::ScriptedEnvironment::Script script,
                    std::optional<std::wstring_view> criteria = std::nullopt) {
    environment_.Answer(std::move(script));
    const std::optional<Row> row = FastSelect(context_, form, criteria);
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
    return row ? std::wstring(Trimmed(row->Cell(1))) : std::wstring();
  }

  void ExpectPick(const wchar_t* acc_ref, const FastSelectForm& form,
                  testing::ScriptedEnvironment::Script script,
                  std::optional<std::wstring_view> criteria = std::nullopt) {
    EXPECT_EQ(Pick(form, std::move(script), criteria), acc_ref);
  }

  static std::vector<std::wstring> Shown(SelectDialog& dialog) {
    std::vector<std::wstring> refs;
    for (const Row& row : dialog.list().rows()) refs.emplace_back(Trimmed(row.Cell(1)));
    return refs;
  }

  testing::ScriptedEnvironment environment_;
  Context context_{environment_};
  std::unique_ptr<Simulator> engine_;
};

using Refs = std::vector<std::wstring>;

TEST_F(FastSelectTest, ListsLiveAccountsInKeyOrderAndReturnsTheChosenOne) {
  CompanyBuilder builder;
  builder.Customer(L"C3", {{L"NAME", L"Three"}})
      .Customer(L"a1", {{L"NAME", L"One"}})
      .Customer(L"B2", {{L"NAME", L"Two"}, {L"DELETED_FLAG", true}});
  Open(builder);
  ExpectPick(L"C3", kFastSelectCust, [](SelectDialog& dialog) {
    EXPECT_EQ(dialog.form(), L"frmFastSelectCust");
    EXPECT_EQ(dialog.list().row_count(), 3);  // deleted ones count
    EXPECT_EQ(Shown(dialog), (Refs{L"a1", L"C3"}));
    EXPECT_EQ(Trimmed(dialog.list().rows()[1].Cell(2)), L"Three");
    EXPECT_EQ(dialog.list().rows()[1].position, 3);
    EXPECT_EQ(dialog.list().selected()->position, 1);
    dialog.list().SelectItem(3);
    dialog.KeyPress(kEnterKey);
    EXPECT_FALSE(dialog.visible());
    EXPECT_TRUE(dialog.result());
  });
}

TEST_F(FastSelectTest, CancelCloseBoxAndNoSelectionGiveNothing) {
  CompanyBuilder builder;
  builder.Customer(L"A1", {{L"DELETED_FLAG", true}}).Customer(L"A2");
  Open(builder);
  ExpectPick(L"", kFastSelectCust, [](SelectDialog& dialog) { dialog.Cancel(); });
  ExpectPick(L"", kFastSelectCust, [](SelectDialog& dialog) { dialog.CloseBox(); });
  ExpectPick(L"", kFastSelectCust, [](SelectDialog& dialog) {
    // Item 1 is deleted, so nothing is selected and nothing confirms.
    EXPECT_FALSE(dialog.ok_enabled());
    dialog.KeyPress(kEnterKey);
    dialog.DoubleClick();
    EXPECT_TRUE(dialog.visible());
  });
}

TEST_F(FastSelectTest, RedRowsAreThoseOverAPositiveLimit) {
  CompanyBuilder builder;
  builder.Customer(L"A", {{L"BALANCE", 100.01}, {L"CREDIT_LIMIT", 100.0}})
      .Customer(L"B", {{L"BALANCE", 100.0}, {L"CREDIT_LIMIT", 100.0}})
      .Customer(L"C", {{L"BALANCE", 5000.0}, {L"CREDIT_LIMIT", 0.0}})
      .Customer(L"D", {{L"BALANCE", 0.1 + 0.2}, {L"CREDIT_LIMIT", 0.3}})
      .Customer(L"E", {{L"BALANCE", 5000.0}, {L"CREDIT_LIMIT", -1.0}});
  for (const wchar_t* ref : {L"A", L"B"}) {
    builder.Supplier(ref, {{L"BALANCE", ref[0] == L'A' ? 2.0 : 1.0}, {L"CREDIT_LIMIT", 1.0}});
    builder.Nominal(ref);
  }
  Open(builder);
  const auto reds = [&](const FastSelectForm& form) {
    std::wstring red;
    Pick(form, [&](SelectDialog& dialog) {
      for (const Row& row : dialog.list().rows()) red += row.color == kRed ? L'r' : L'-';
    });
    return red;
  };
  EXPECT_EQ(reds(kFastSelectCust), L"r----");
  EXPECT_EQ(reds(kFastSelectSupp), L"r-");
  EXPECT_EQ(reds(kFastSelectNom), L"--");
}

TEST_F(FastSelectTest, TypeAheadGoesToTheFirstReferenceWithThatCharacter) {
  CompanyBuilder builder;
  builder.Customer(L"BAD1").Customer(L"ABC1").Customer(L"BAB1").Customer(L"ÉCL1");
  builder.Customer(L"*ST1").Customer(L"DEL1", {{L"DELETED_FLAG", true}});
  Open(builder);
  Pick(kFastSelectCust, [](SelectDialog& dialog) {
    const auto after = [&](wchar_t key) {
      dialog.KeyPress(key);
      const std::optional<Row>& row = dialog.list().selected();
      return row ? std::wstring(Trimmed(row->Cell(1))) : L"(none)";
    };
    EXPECT_EQ(after(L'b'), L"BAB1");
    EXPECT_EQ(after(L'B'), L"BAB1");  // each key searches on its own, from the first reference
    EXPECT_EQ(after(L'x'), L"BAB1");  // none starts with it: the selection stays
    EXPECT_EQ(after(L'\b'), L"BAB1");
    EXPECT_EQ(after(L'é'), L"ÉCL1");
    EXPECT_EQ(after(L'*'), L"*ST1");
    EXPECT_EQ(after(L'a'), L"ABC1");
    EXPECT_EQ(after(L'd'), L"(none)");
    EXPECT_FALSE(dialog.ok_enabled());
  });
}

TEST_F(FastSelectTest, CriteriaPutTheMatchNearTheTopOfThePage) {
  CompanyBuilder builder;
  for (int i = 100; i < 200; ++i) builder.Customer(L"C" + std::to_wstring(i));
  Open(builder);
  const struct {
    const wchar_t* criteria;
    const wchar_t* selected;
    std::int32_t top;
  } cases[] = {{L"C130", L"C130", 31},  // exact
               {L"c14*", L"C140", 41},  // a pattern
               {L"C195", L"C195", 88},  // near the end: no row twelve further down
               {L"ZZZ*", L"C100", 1},   // no match: where a file stands when just opened
               {L"", L"C100", 1}};
  for (const auto& c : cases) {
    Pick(
        kFastSelectCust,
        [&](SelectDialog& dialog) {
          EXPECT_EQ(Trimmed(dialog.list().selected()->Cell(1)), c.selected) << c.criteria;
          if (std::wstring_view(c.selected) == L"C195") return;
          EXPECT_EQ(dialog.list().top(), c.top) << c.criteria;
        },
        c.criteria);
  }
}

TEST_F(FastSelectTest, TheRowCountIsTheCompanysWhateverTheFileHolds) {
  const struct {
    bool control;
    std::int32_t count;
    std::size_t rows;
  } cases[] = {{true, 0, 0}, {true, 2, 2}, {true, 50, 3}, {false, 0, 0}};
  for (const auto& c : cases) {
    CompanyBuilder builder;
    builder.Customer(L"A1").Customer(L"A2").Customer(L"A3");
    if (c.control) {
      builder.Control({{L"NO_OF_SALES", c.count}});
    } else {
      builder.Without(L"ControlData");
    }
    Open(builder);
    Pick(kFastSelectCust, [&](SelectDialog& dialog) {
      EXPECT_EQ(dialog.list().row_count(), c.count);
      EXPECT_EQ(dialog.list().rows().size(), c.rows);
      EXPECT_EQ(dialog.ok_enabled(), c.rows > 0);
    });
  }
}

TEST_F(FastSelectTest, AMissingFileShowsAnEmptyListAndNoWorkspaceToo) {
  CompanyBuilder builder;
  builder.Control({{L"NO_OF_SALES", 3}}).Without(L"SalesData");
  Open(builder);
  const auto nothing = [](SelectDialog& dialog) {
    EXPECT_TRUE(dialog.list().rows().empty());
    dialog.KeyPress(L'A');
    dialog.KeyPress(kEnterKey);
    EXPECT_TRUE(dialog.visible());
  };
  ExpectPick(L"", kFastSelectCust, nothing);
  context_.workspace = nullptr;
  ExpectPick(L"", kFastSelectCust, nothing, L"A*");
  EXPECT_EQ(environment_.dialogs_shown(), 2);
  EXPECT_TRUE(environment_.messages().empty());
}

TEST_F(FastSelectTest, NominalAcceptsPostingAccountsOnly) {
  CompanyBuilder builder;
  builder.Nominal(L"1001", {{L"ACCOUNT_TYPE", std::uint8_t{1}}})
      .Nominal(L"1100", {{L"ACCOUNT_TYPE", std::uint8_t{2}}})
      .Nominal(L"1200", {{L"ACCOUNT_TYPE", std::uint8_t{0}}});
  Open(builder);
  const Message refusal{Icon::kStop, L"Entry to a major Control Account is not permitted",
                        L"Select Nominal Code"};
  ExpectPick(L"1001", kFastSelectNom, [](SelectDialog& dialog) {
    dialog.list().SelectItem(2);
    dialog.Ok();
    dialog.list().SelectItem(3);
    dialog.KeyPress(kEnterKey);
    EXPECT_TRUE(dialog.visible());
    dialog.list().SelectItem(1);
    dialog.DoubleClick();
    EXPECT_FALSE(dialog.visible());
  });
  EXPECT_EQ(environment_.messages(), (std::vector{refusal, refusal}));
  ExpectPick(L"", kFastSelectNom, [](SelectDialog& dialog) {
    dialog.list().SelectItem(2);
    dialog.Ok();
    dialog.Cancel();
    EXPECT_FALSE(dialog.visible());
  });
}

TEST_F(FastSelectTest, BankListsTheFirstTwelveDeletedOnesIncluded) {
  CompanyBuilder builder;
  for (int i = 34; i >= 20; --i) {
    builder.Bank(std::to_wstring(i), {{L"DELETED_FLAG", i == 21}});
  }
  Open(builder);
  ExpectPick(L"31", kFastSelectBank, [](SelectDialog& dialog) {
    EXPECT_EQ(dialog.list().row_count(), 12);
    EXPECT_EQ(Trimmed(dialog.list().rows()[1].Cell(1)), L"21");
    dialog.KeyPress(L'3');  // item 11
    EXPECT_EQ(Trimmed(dialog.list().selected()->Cell(1)), L"30");
    dialog.list().End();
    dialog.Ok();
  });
}

TEST(SelectRecordTest, ShowsTheRowsThatItWasGiven) {
  SelectRecordDialog dialog(L"Select Bank Account");
  EXPECT_EQ(dialog.form(), L"frmSelectRecord");
  EXPECT_FALSE(dialog.ok_enabled());
  for (const auto* row : {L"1200\tCurrent", L"1210\tDeposit"}) dialog.AddRow(row);
  dialog.list().SelectItem(2);
  dialog.KeyPress(L'1');  // no type-ahead here
  EXPECT_EQ(dialog.list().selected()->Cell(2), L"Deposit");
  dialog.DoubleClick();
  EXPECT_TRUE(dialog.result());
}

// A ledger of any size opens alike: nothing is read before the first page, then one page.
TEST_F(FastSelectTest, OpeningCostsTheSameWhateverTheLedgersSize) {
  std::vector<std::int64_t> operations;
  for (const std::int32_t accounts : {1'000, 1'000'000, 10'000'000}) {
    engine_ = Simulator::OpenSynthetic(accounts);
    context_.workspace = engine_->workspace();
    Pick(kFastSelectCust, [&](SelectDialog& dialog) {
      EXPECT_EQ(dialog.list().row_count(), accounts);
      dialog.list().SetPageSize(20);
      EXPECT_EQ(engine_->records_read(), 1);  // ControlData's
      dialog.list().rows();
      EXPECT_EQ(engine_->records_read(), 1 + 20);
      operations.push_back(engine_->operations());
      dialog.list().End();
      EXPECT_EQ(engine_->records_read(), 1 + 20 + 20);
    });
  }
  EXPECT_EQ(operations, std::vector<std::int64_t>(3, operations.front()));
}

}  // namespace
}  // namespace ard::dialogs
