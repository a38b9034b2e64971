// How the engine finds records, and what it stands on then, as its document has it.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/simulator.h"
#include "simulator/testing/company_builder.h"

namespace ard::simulator {
namespace {

using engine::Match;
using engine::Mode;

std::wstring Ref(auto& object) {
  return std::wstring(Trimmed(object.GetFields()->Item(L"ACCOUNT_REF")->GetValue().ToText()));
}

class EngineTest : public ::testing::Test {
 protected:
  // In record order D, b, C (deleted), BA, \u00E9; in key order b, BA, C, D, \u00E9.
  void SetUp() override {
    engine_ = CompanyBuilder()
                  .Customer(L"D", L"NAME=Delta|BALANCE=1.5")
                  .Customer(L"b", L"NAME=Beta")
                  .Customer(L"C", L"NAME=Gamma|DELETED_FLAG=True")
                  .Customer(L"BA", L"NAME=Beta|BALANCE=1.5")
                  .Customer(L"\u00E9", L"NAME=Cafe")
                  .Build();
    workspace_ = engine_->workspace();
    file_ = workspace_->CreateDataFile(L"SalesData");
    EXPECT_TRUE(file_->Open(Mode::kQuery));
  }

  // By the index and by a record, which agree. The index stays where it stood.
  std::wstring Found(std::wstring_view key, Match match) {
    const auto index = workspace_->CreateIndex(L"SalesIndex");
    EXPECT_TRUE(index->Open(Mode::kRead));
    index->MoveTo(4);
    index->SetKey(key);
    const bool found = index->Find(match);
    file_->Read(index->RecordNumber());
    const auto record = workspace_->CreateRecord(L"SalesRecord");
    record->GetFields()->Item(L"ACCOUNT_REF")->SetValue(key);
    EXPECT_EQ(record->Find(match), found);
    EXPECT_EQ(Ref(*file_), found ? Ref(*record) : L"D");
    return found ? Ref(*file_) : L"";
  }

  std::unique_ptr<Simulator> engine_;
  std::shared_ptr<engine::Workspace> workspace_;
  std::unique_ptr<engine::DataFileObject> file_;
};

TEST_F(EngineTest, FindsKeys) {
  const struct {
    std::wstring key;
    std::wstring exact;
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
    EXPECT_EQ(Found(c.key, Match::kExact), c.exact) << ToUtf8(c.key);
    EXPECT_EQ(Found(c.key, Match::kPartial), c.partial) << ToUtf8(c.key);
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
    std::wstring found;
    bool more = file_->FindFirst(c.field, c.value);
    for (; more; more = file_->FindNext(c.field, c.value)) found += Ref(*file_) + L" ";
    EXPECT_EQ(found, c.found) << ToUtf8(c.field + L" " + c.value.ToText());
  }
  EXPECT_FALSE(file_->FindFirst(L"NAME", L"none"));
  EXPECT_EQ(Ref(*file_), L"C") << "where it stood";
  EXPECT_THROW(file_->FindFirst(L"NO_SUCH", L"x"), Error);
  EXPECT_THROW(file_->FindFirst(L"BALANCE", L"x"), Error);
}

}  // namespace
}  // namespace ard::simulator
