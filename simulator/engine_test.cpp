// The engine's objects: what each operation answers, and what it leaves current.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/company.h"
#include "simulator/simulator.h"
#include "simulator/testing/company_builder.h"

namespace ard::simulator {
namespace {

using engine::DataFileObject;
using engine::IndexObject;
using engine::Match;
using engine::Mode;

class EngineTest : public ::testing::Test {
 protected:
  // In record order D, B, C (deleted), BA, \u00C9; in key order B, BA, C, D, \u00C9.
  void SetUp() override {
    CompanyBuilder builder;
    builder.Customer(L"D", {{L"NAME", L"Delta"}, {L"BALANCE", 1.5}})
        .Customer(L"b", {{L"NAME", L"Beta"}})
        .Customer(L"C", {{L"NAME", L"Gamma"}, {L"DELETED_FLAG", true}})
        .Customer(L"BA", {{L"NAME", L"Beta"}, {L"BALANCE", 1.5}})
        .Customer(L"\u00E9", {{L"NAME", L"Cafe"}})
        .Record(L"AccessData", {{L"NAME", L"Ann"}, {L"POP", 1}});
    engine_ = builder.Build();
    workspace_ = engine_->workspace();
  }
  void TearDown() override {
    EXPECT_EQ(engine_->counters().open_files, 0);
    EXPECT_EQ(engine_->counters().living_objects, 0);
  }

  std::unique_ptr<DataFileObject> OpenFile(std::wstring_view name, Mode mode = Mode::kRead) {
    auto file = workspace_->CreateDataFile(name);
    EXPECT_TRUE(file->Open(mode));
    return file;
  }
  std::unique_ptr<IndexObject> OpenIndex() {
    auto index = workspace_->CreateIndex(L"SalesIndex");
    EXPECT_TRUE(index->Open(Mode::kRead));
    return index;
  }
  static std::wstring Text(auto& object, std::wstring_view field) {
    return std::wstring(Trimmed(object.GetFields()->Item(field)->GetValue().ToText()));
  }
  static std::wstring Ref(auto& object) { return Text(object, L"ACCOUNT_REF"); }
  static void Set(auto& object, std::wstring_view field, const Value& value) {
    object.GetFields()->Item(field)->SetValue(value);
  }

  std::unique_ptr<Simulator> engine_;
  std::shared_ptr<engine::Workspace> workspace_;
};

TEST_F(EngineTest, FindsKeys) {
  const auto index = OpenIndex();
  const auto record = workspace_->CreateRecord(L"SalesRecord");
  const struct {
    std::wstring key;
    std::wstring exact;  // "" when nothing is found
    std::wstring partial;
  } cases[] = {
      {L"B", L"b", L"b"},
      {L"ba", L"BA", L"BA"},
      {L"BA      ", L"BA", L""},  // as the field holds it, with its padding
      {L"BA ", L"", L""},
      {L"C", L"C", L"C"},  // deleted, and still there
      {L"\u00C9", L"\u00E9", L"\u00E9"},
      {L"", L"", L"b"},
      {L"A", L"", L""},
  };
  for (const auto& c : cases) {
    for (const Match match : {Match::kExact, Match::kPartial}) {
      const std::wstring& expected = match == Match::kExact ? c.exact : c.partial;
      SCOPED_TRACE(ToUtf8(c.key) + (match == Match::kExact ? " exact" : " partial"));
      index->MoveTo(4);
      index->SetKey(c.key);
      ASSERT_EQ(index->Find(match), !expected.empty());
      const auto file = OpenFile(L"SalesData");
      file->Read(index->RecordNumber());
      EXPECT_EQ(Ref(*file), expected.empty() ? L"D" : expected);  // else where it stood

      Set(*record, L"ACCOUNT_REF", c.key);
      ASSERT_EQ(record->Find(match), !expected.empty());
      if (!expected.empty()) {
        EXPECT_EQ(Ref(*record), expected);
      }
    }
  }
}

TEST_F(EngineTest, FindFirstAndNextFollowTheOrderOfTheirField) {
  const struct {
    std::wstring field;
    Value value;
    std::wstring found;
  } cases[] = {
      {L"ACCOUNT_REF", L"B*", L"b BA "},  // key order
      {L"account_ref", L"*", L"b BA C D \u00E9 "},
      {L"ACCOUNT_REF", L"b  ", L"b "},
      {L"NAME", L"beta", L"b BA "},  // record order
      {L"NAME", L"*", L"D b C BA \u00E9 "},
      {L"BALANCE", L"1.50", L"D BA "},
      {L"BALANCE", L"1*", L"D BA "},
      {L"DELETED_FLAG", true, L"C "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.field + L" " + c.value.ToText()));
    const auto file = OpenFile(L"SalesData", Mode::kQuery);
    std::wstring found;
    bool more = file->FindFirst(c.field, c.value);
    if (!more) {
      EXPECT_EQ(Ref(*file), L"D");  // where it stood
    }
    for (; more; more = file->FindNext(c.field, c.value)) found += Ref(*file) + L" ";
    EXPECT_EQ(found, c.found);
    EXPECT_FALSE(file->FindNext(c.field, c.value));
  }
  const auto file = OpenFile(L"SalesData");
  EXPECT_THROW(file->FindFirst(L"NO_SUCH", L"x"), Error);
  EXPECT_THROW(file->FindFirst(L"BALANCE", L"x"), Error);
}

}  // namespace
}  // namespace ard::simulator
