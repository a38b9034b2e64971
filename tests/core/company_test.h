// The frame of a test on a company: objects that use its engine, a user who answers their dialogs,
// and the check that nothing is left open.
#ifndef ARD_TESTS_CORE_COMPANY_TEST_H_
#define ARD_TESTS_CORE_COMPANY_TEST_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "frame/text.h"
#include "simulator/testing/company_builder.h"
#include "tests/core/scripted_environment.h"

namespace ard::testing {

using Texts = std::vector<std::wstring>;

class CompanyTest : public ::testing::Test {
 protected:
  // Lets the objects work on this company.
  template <class... Objects>
  void Open(simulator::CompanyBuilder& company, Objects&... objects) {
    ExpectNothingOpen();
    engine_ = company.Build();
    (Use(objects.context()), ...);
  }
  void Use(Context& context) {
    context.workspace = engine_->workspace();
    context.app_name = L"Manufacturing";
  }
  void TearDown() override { ExpectNothingOpen(); }
  void ExpectNothingOpen() const {
    if (!engine_) return;
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }

  // Keeps what the trace notes from now on of steps that begin so, each as "step: text".
  void KeepNotes(std::string begins = "") {
    environment_.trace().Attach([this, begins = "\tnote\t" + begins](std::string_view line) {
      const std::size_t note = line.find(begins);
      if (note == line.npos) return;
      std::wstring text = FromUtf8(line.substr(note + 6));
      notes_.push_back(text.replace(text.find(L'\t'), 1, L": "));
    });
  }

  // Answers the next list: notes what it shows in `listed_`, selects item `position`, confirms.
  void Choose(std::int32_t position) {
    environment_.Answer([=, this](dialogs::SelectDialog& dialog) {
      dialog.list().SetPageSize(20);
      listed_ = dialog.caption() + L": " + dialog.list().columns()[0].header;
      for (const dialogs::Row& row : dialog.list().rows()) listed_ += L"|" + row.text;
      std::erase(listed_, L' ');
      dialog.list().SelectItem(position);
      dialog.Ok();
    });
  }
  // The first cells of the page shown.
  static Texts Keys(dialogs::ListModel& list) {
    Texts keys;
    for (const dialogs::Row& row : list.rows()) keys.emplace_back(Trimmed(row.Cell(1)));
    return keys;
  }
  // That of the selected row; "-" when none is selected.
  static std::wstring Selected(dialogs::ListModel& list) {
    return list.selected() ? std::wstring(Trimmed(list.selected()->Cell(1))) : L"-";
  }

  ScriptedEnvironment environment_;
  std::shared_ptr<simulator::Simulator> engine_;
  // "Caption:Header|cell\tcell|...", without blanks.
  std::wstring listed_;
  Texts notes_;
};

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_COMPANY_TEST_H_
