// The engine's objects: what each operation answers, and what it leaves current.
#include <gtest/gtest.h>

#include <functional>
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
using engine::RecordObject;
using engine::Workspace;
using Transactions = engine::TransactionsObject;
using Operations = std::vector<std::function<void()>>;

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
        .Product(L"NUT")
        .Setup({{L"PRICING_SERVICE", true}})
        .Record(L"AccessData", {{L"NAME", L"Ann"}, {L"POP", 1}})
        .Bank(L"1200")
        .Control({{L"NO_OF_BANK", 0}, {L"NO_OF_NOMINAL", 7}});
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
  std::unique_ptr<IndexObject> OpenIndex(std::wstring_view name = L"SalesIndex") {
    auto index = workspace_->CreateIndex(name);
    EXPECT_TRUE(index->Open(Mode::kRead));
    return index;
  }
  // The record that has the key; 0 when none has.
  static std::int32_t RecordOf(IndexObject& index, std::wstring_view key) {
    index.SetKey(key);
    return index.Find(Match::kExact) ? index.RecordNumber() : 0;
  }
  static std::wstring Text(auto& object, std::wstring_view field) {
    return std::wstring(Trimmed(object.GetFields()->Item(field)->GetValue().ToText()));
  }
  static std::wstring Ref(auto& object) { return Text(object, L"ACCOUNT_REF"); }
  static void Set(auto& object, std::wstring_view field, const Value& value) {
    object.GetFields()->Item(field)->SetValue(value);
  }
  // Adds the calls of members without parameters.
  template <class Object, class... Members>
  static void Add(Operations& operations, Object& object, Members... members) {
    (operations.push_back([&object, members] { (object.*members)(); }), ...);
  }
  // All that takes an open file, and an open index.
  static Operations TakingOpenFiles(DataFileObject& file, IndexObject& index) {
    Operations operations = {[&] { file.Read(1); },
                             [&] { file.Write(1); },
                             [&] { file.FindFirst(L"NAME", L"*"); },
                             [&] { file.FindNext(L"NAME", L"*"); },
                             [&] { index.SetKey(L"C"); },
                             [&] { index.Find(Match::kPartial); },
                             [&] { index.MoveTo(2); }};
    Add(operations, file, &DataFileObject::Count, &DataFileObject::GetFields,
        &DataFileObject::Close);
    Add(operations, index, &IndexObject::MoveNext, &IndexObject::MoveFirst,
        &IndexObject::RecordNumber, &IndexObject::Position, &IndexObject::Close);
    return operations;
  }

  std::unique_ptr<Simulator> engine_;
  std::shared_ptr<engine::Workspace> workspace_;
};

TEST_F(EngineTest, KnowsItsObjectsByNameAndKind) {
  workspace_->CreateDataFile(L"StockCategory");
  workspace_->CreateIndex(L"PopIndex");
  workspace_->CreateRecord(L"CompanyDeliveryRecord");
  EXPECT_THROW(workspace_->CreateDataFile(L"SalesIndex"), Error);
  EXPECT_THROW(workspace_->CreateIndex(L"SalesRecord"), Error);
  EXPECT_THROW(workspace_->CreateRecord(L"Pricing"), Error);
  EXPECT_THROW(workspace_->CreateDataFile(L""), Error);
  EXPECT_EQ(engine_->LastError()->Number(), kErrorUnknownName);
  EXPECT_EQ(engine_->LastError()->Text(), L"The engine has no object .");
}

TEST_F(EngineTest, AMissingFileCannotBeOpenedAndHoldsNothing) {
  EXPECT_FALSE(workspace_->CreateDataFile(L"PriceData")->Open(Mode::kRead));
  EXPECT_FALSE(workspace_->CreateIndex(L"PriceIndex")->Open(Mode::kRead));
  const auto record = workspace_->CreateRecord(L"PriceRecord");
  EXPECT_FALSE(record->Find(Match::kExact));
  EXPECT_THROW(record->MoveFirst(), Error);
  EXPECT_THROW(Set(*record, L"STOCK_CODE", L"A"), Error);
}

TEST_F(EngineTest, FilesWorkOnlyWhileTheyAreOpen) {
  const auto file = workspace_->CreateDataFile(L"SalesData");
  const auto index = workspace_->CreateIndex(L"SalesIndex");
  const Operations operations = TakingOpenFiles(*file, *index);
  const auto all_throw = [&] {
    for (std::size_t i = 0; i < operations.size(); ++i) EXPECT_THROW(operations[i](), Error) << i;
  };
  all_throw();
  file->Open(Mode::kRead);
  index->Open(Mode::kRead);
  EXPECT_THROW(file->Open(Mode::kRead), Error);
  EXPECT_EQ(engine_->counters().open_files, 2);
  const auto name = file->GetFields()->Item(L"NAME");
  file->Close();
  index->Close();
  all_throw();
  EXPECT_THROW(name->GetValue(), Error);
}

TEST_F(EngineTest, FieldsFollowTheCurrentRecord) {
  const auto file = OpenFile(L"SalesData");
  const auto fields = file->GetFields();
  const auto name = fields->Item(L"name");
  EXPECT_EQ(name->GetValue(), Value(L"Delta" + std::wstring(55, L' ')));  // the first, padded
  EXPECT_TRUE(file->Read(2));
  EXPECT_EQ(Trimmed(name->GetValue().ToText()), L"Beta");
  EXPECT_EQ(fields->Item(L"BALANCE")->GetValue(), Value(0.0));
  EXPECT_EQ(fields->Item(L"DELETED_FLAG")->GetValue(), Value(false));
  for (const std::int32_t none : {0, 6, -1}) EXPECT_FALSE(file->Read(none));
  EXPECT_EQ(Ref(*file), L"b");

  EXPECT_EQ(fields->Item(1)->Name(), L"ACCOUNT_REF");
  EXPECT_EQ(fields->Item(1)->Type(), 12);
  EXPECT_EQ(fields->Item(fields->Count())->Name(), L"DEF_NOM_CODE");
  EXPECT_THROW(fields->Item(0), Error);
  EXPECT_THROW(fields->Item(fields->Count() + 1), Error);
  EXPECT_THROW(fields->Item(L"NAMES"), Error);
  EXPECT_THROW(fields->Item(L"BALANCE")->SetValue(L"a lot"), Error);
}

TEST_F(EngineTest, AnIndexWalksAllEntriesInKeyOrder) {
  const auto index = OpenIndex();
  EXPECT_EQ(index->RecordNumber(), 2);
  std::vector<std::int32_t> records;
  index->MoveFirst();
  do records.push_back(index->RecordNumber());
  while (index->MoveNext());
  EXPECT_EQ(records, (std::vector<std::int32_t>{2, 4, 3, 1, 5}));
  EXPECT_THROW(index->RecordNumber(), Error);
  for (const std::int32_t outside : {0, -1, 6}) {
    index->MoveTo(3);
    EXPECT_EQ(index->RecordNumber(), 3);
    index->MoveTo(outside);
    EXPECT_THROW(index->RecordNumber(), Error) << outside;
    EXPECT_THROW(index->Position(), Error) << outside;
    EXPECT_THROW(index->MoveNext(), Error) << outside;
  }
}

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
      {L" BA", L"", L""},
      {L"C", L"C", L"C"},  // deleted, and still there
      {L"\u00C9", L"\u00E9", L"\u00E9"},
      {L"", L"", L"b"},
      {L"BAA", L"", L""},
      {L"B*", L"", L""},
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

TEST_F(EngineTest, AFailingFindLeavesABlankRecordWithItsKey) {
  const auto record = workspace_->CreateRecord(L"SalesRecord");
  EXPECT_EQ(Ref(*record), L"D");  // a new record object stands on the first record
  Set(*record, L"Account_Ref", L"BA");
  EXPECT_TRUE(record->Find(Match::kExact));
  EXPECT_EQ(Text(*record, L"BALANCE"), L"1.5");
  Set(*record, L"ACCOUNT_REF", L"nobody");
  EXPECT_FALSE(record->Find(Match::kExact));
  EXPECT_EQ(Ref(*record), L"nobody");
  EXPECT_EQ(Text(*record, L"BALANCE"), L"0");
  EXPECT_FALSE(record->GetFields()->Item(L"TERMS_AGREED_FLAG")->GetValue().ToBoolean());
  EXPECT_FALSE(record->MoveNext());
}

TEST_F(EngineTest, RecordsAreWalkedInRecordOrder) {
  const auto record = workspace_->CreateRecord(L"SalesRecord");
  std::wstring walked;
  do walked += Ref(*record) + L" ";
  while (record->MoveNext());
  EXPECT_EQ(walked, L"D b C BA \u00E9 ");
  EXPECT_EQ(Ref(*record), L"");
  record->MoveFirst();
  EXPECT_EQ(Ref(*record), L"D");

  const auto empty = workspace_->CreateRecord(L"PurchaseRecord");
  empty->MoveFirst();
  EXPECT_EQ(Ref(*empty), L"");
  EXPECT_FALSE(empty->MoveNext());
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
      {L"ACCOUNT_REF", L"b *", L""},
      {L"ACCOUNT_REF", L"\u00C9*", L"\u00E9 "},
      {L"ACCOUNT_REF", L"", L""},
      {L"NAME", L"beta", L"b BA "},  // record order
      {L"NAME", L"*", L"D b C BA \u00E9 "},
      {L"BALANCE", L"1.50", L"D BA "},
      {L"BALANCE", 1.5, L"D BA "},
      {L"BALANCE", L"1*", L"D BA "},
      {L"DELETED_FLAG", true, L"C "},
      {L"PRICE_LIST_REF", L"", L"D b C BA \u00E9 "},
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

TEST_F(EngineTest, KeysThatAreNumbersAreFoundByTheirFirstDigits) {
  CompanyBuilder builder;
  for (const int number : {400, 7, 41, -42, 4, 39, 1'999'999'999}) {
    builder.Record(L"SopData", {{L"ORDER_NUMBER", number}});
  }
  const auto engine = builder.Build();
  const auto file = engine->workspace()->CreateDataFile(L"SopData");
  ASSERT_TRUE(file->Open(Mode::kRead));
  const std::pair<std::wstring, std::wstring> cases[] = {{L"4*", L"4 41 400 "},
                                                         {L"40*", L"400 "},
                                                         {L"1*", L"1999999999 "},
                                                         {L"0*", L""},
                                                         {L"b*", L""},
                                                         {L"-4*", L"-42 "},
                                                         {L"*", L"-42 4 7 39 41 400 1999999999 "}};
  for (const auto& [pattern, numbers] : cases) {
    std::wstring found;
    for (bool more = file->FindFirst(L"ORDER_NUMBER", pattern); more;
         more = file->FindNext(L"ORDER_NUMBER", pattern)) {
      found += Text(*file, L"ORDER_NUMBER") + L" ";
    }
    EXPECT_EQ(found, numbers) << ToUtf8(pattern);
  }
}

TEST_F(EngineTest, AppendsRecords) {
  const auto reader = OpenFile(L"AccessData");
  EXPECT_THROW(reader->Write(2), Error);
  const auto file = OpenFile(L"AccessData", Mode::kAppend);
  Set(*file, L"NAME", L"Bob");
  Set(*file, L"POP", 0);
  EXPECT_FALSE(file->Write(3));
  EXPECT_FALSE(file->Write(0));
  EXPECT_TRUE(file->Write(2));
  EXPECT_EQ(reader->Count(), 2);
  EXPECT_EQ(Text(*file, L"NAME"), L"Bob");
  EXPECT_TRUE(file->Read(1));
  EXPECT_EQ(Text(*file, L"POP"), L"1");

  const auto sales = OpenFile(L"SalesData", Mode::kAppend);
  EXPECT_FALSE(sales->Write(6));  // its key is that of record 1
  Set(*sales, L"ACCOUNT_REF", L"TOO LONG BY FAR");
  EXPECT_THROW(sales->Write(6), Error);
  EXPECT_EQ(sales->Count(), 5);
}

TEST_F(EngineTest, AddsAndEditsRecords) {
  const auto record = workspace_->CreateRecord(L"SalesRecord");
  EXPECT_THROW(record->Update(), Error);
  record->AddNew();
  EXPECT_EQ(Text(*record, L"BALANCE"), L"0");
  EXPECT_FALSE(record->Update());  // no key
  Set(*record, L"ACCOUNT_REF", L"ba");
  EXPECT_FALSE(record->Update());  // another's key
  Set(*record, L"ACCOUNT_REF", L"AA  ");
  Set(*record, L"NAME", L"New");
  record->SetExtraText(L"");
  EXPECT_TRUE(record->Update());
  EXPECT_THROW(record->Update(), Error);

  record->Edit();
  Set(*record, L"ACCOUNT_REF", L"ZZ");
  EXPECT_TRUE(record->Update());
  const auto index = OpenIndex();
  EXPECT_EQ(index->RecordNumber(), 2);  // AA has gone from the front
  EXPECT_EQ(RecordOf(*index, L"ZZ"), 6);
  EXPECT_EQ(index->Position(), 5);  // before \u00C9

  EXPECT_FALSE(record->MoveNext());
  EXPECT_THROW(record->Edit(), Error);
}

TEST_F(EngineTest, CountsAreThoseOfTheTablesUnlessStated) {
  const auto control = OpenFile(L"ControlData");
  EXPECT_EQ(Text(*control, L"NO_OF_SALES"), L"5");
  EXPECT_EQ(Text(*control, L"NO_OF_STOCK"), L"1");
  EXPECT_EQ(Text(*control, L"NO_OF_BANK"), L"0");
  EXPECT_EQ(Text(*control, L"NO_OF_NOMINAL"), L"7");
}

TEST_F(EngineTest, KeysThatAreNumbersSortAsNumbers) {
  engine_->company().Parse(L"SopData", "ORDER_NUMBER:long\n10\n9\n-1\n", "SopData");
  const auto order = OpenIndex(L"SopIndex");
  EXPECT_EQ(order->RecordNumber(), 3);
  EXPECT_EQ(RecordOf(*order, L"9"), 2);
  EXPECT_EQ(order->Position(), 2);
  const auto record = workspace_->CreateRecord(L"SopRecord");
  Set(*record, L"Order_Number", 10);
  EXPECT_TRUE(record->Find(Match::kExact));
}

TEST_F(EngineTest, LogsOnWhoeverHasAccessDataAndGivesTheirPassword) {
  engine_->company().Parse(
      L"AccessData", "NAME:text(30)\tPASSWORD:text(30)\nANN\t\nBOB\tSecret\n\t\n", "AccessData");
  const struct {
    const wchar_t* user;
    const wchar_t* password;
    bool admitted;
  } cases[] = {{L"manager", L"", true},   {L" ANN", L"", true},       {L"ann", L"x", false},
               {L"BOB", L"Secret", true}, {L"BOB", L"secret", false}, {L"BOB", L"", false},
               {L"", L"", false},         {L"Eve", L"", false}};
  bool refused = false;
  for (const auto& c : cases) {
    EXPECT_EQ(workspace_->Connect(L"C:\\Data", c.user, c.password, L"id"), c.admitted) << c.user;
    refused = refused || !c.admitted;
    EXPECT_EQ(engine_->user().empty(), !c.admitted) << c.user;
    EXPECT_EQ(engine_->LastError()->Number(), refused ? 1101 : 0);
    workspace_->Disconnect();
    EXPECT_EQ(engine_->user(), L"");
  }
  EXPECT_EQ(engine_->disconnects(), 8);
  EXPECT_FALSE(workspace_->ConnectNT(L"", L"Eve", L"", L""));
  EXPECT_TRUE(workspace_->ConnectNT(L"", L"Bob", L"", L""));
  EXPECT_TRUE(workspace_->Connect(L"", L"bob", L"", L"")) << "Windows vouches for them";
  EXPECT_FALSE(workspace_->Connect(L"", L"ann", L"x", L""));
  workspace_->Disconnect();
  EXPECT_FALSE(workspace_->Connect(L"", L"bob", L"", L""));
}

TEST_F(EngineTest, AUserTakesASlotOfTheLogonQueue) {
  engine_->company().Parse(L"QueueData",
                           "LOGON_NAME:text(30)\tSTATION_NAME:text(30)\tEMPTY_FLAG:boolean\n"
                           "EVE\tPC-1\tno\nGONE\tPC-2\tyes\n",
                           "QueueData");
  const Table& queue = *engine_->company().Find(L"QueueData");
  const auto names = [&] {
    std::wstring all;
    for (std::int32_t slot = 1; slot <= queue.size(); ++slot) {
      all += queue.Cell(slot, 0).ToText() + (queue.Cell(slot, 2).ToBoolean() ? L"- " : L" ");
    }
    return all;
  };
  EXPECT_TRUE(workspace_->Connect(L"", L"manager", L"", L""));
  EXPECT_EQ(names(), L"EVE MANAGER ");
  EXPECT_TRUE(workspace_->Connect(L"", L"manager", L"", L""));
  EXPECT_EQ(names(), L"EVE MANAGER ") << "not twice";
  workspace_->Disconnect();
  EXPECT_EQ(names(), L"EVE - ");
  engine_->company().Parse(L"QueueData", "LOGON_NAME:text(30)\nEVE\n", "QueueData");
  EXPECT_TRUE(workspace_->Connect(L"", L"manager", L"", L""));
  EXPECT_EQ(engine_->company().Find(L"QueueData")->size(), 2);
}

TEST_F(EngineTest, CountsWhatLivesAndWhatIsOpen) {
  const auto before = engine_->operations();
  {
    const auto file = OpenFile(L"SalesData");
    const auto fields = file->GetFields();
    const auto field = fields->Item(1);
    EXPECT_EQ(engine_->counters().living_objects, 3);
    EXPECT_EQ(engine_->counters().open_files, 1);
    EXPECT_TRUE(file->Read(2));
    EXPECT_FALSE(file->Read(9));
  }
  EXPECT_EQ(engine_->operations() - before, 6);
  EXPECT_EQ(engine_->records_read(), 1);
}

TEST_F(EngineTest, ObjectsOutliveTheirEngine) {
  auto file = OpenFile(L"SalesData");
  const auto field = file->GetFields()->Item(L"NAME");
  std::shared_ptr<engine::Workspace> workspace = std::move(workspace_);
  engine_.reset();
  EXPECT_TRUE(file->Read(4));
  EXPECT_EQ(Trimmed(field->GetValue().ToText()), L"Beta");
  EXPECT_NO_THROW(workspace->CreateIndex(L"SalesIndex"));
  file.reset();
  EXPECT_THROW(field->GetValue(), Error);
  SetUp();
}

// Each operation of each object asks the plan, first of all: told to fail, it changes nothing.
TEST_F(EngineTest, EveryOperationCanBeMadeToFail) {
  const auto file = OpenFile(L"SalesData", Mode::kAppend);
  const auto index = OpenIndex();
  const auto record = workspace_->CreateRecord(L"SalesRecord");
  const auto fields = record->GetFields();
  const auto field = fields->Item(L"ACCOUNT_REF");
  const auto error = engine_->LastError();
  const auto stock = workspace_->CreateRecord(L"StockRecord");
  const auto list = stock->Transactions();
  const auto pricing = workspace_->CreatePricing();
  Operations operations = TakingOpenFiles(*file, *index);
  Add(operations, *workspace_, &Workspace::CreatePricing, &Workspace::Disconnect,
      &Workspace::Version);
  Add(operations, *engine_, &Simulator::LastError);
  Add(operations, *error, &engine::EngineError::Number, &engine::EngineError::Text);
  Add(operations, *stock, &RecordObject::GetFields, &RecordObject::MoveFirst,
      &RecordObject::MoveNext, &RecordObject::AddNew, &RecordObject::Edit, &RecordObject::Update,
      &RecordObject::Transactions);
  Add(operations, *list, &Transactions::Count, &Transactions::GetFields, &Transactions::MoveFirst,
      &Transactions::MoveNext);
  Add(operations, *fields, &engine::Fields::Count);
  Add(operations, *field, &engine::Field::Name, &engine::Field::Type, &engine::Field::GetValue);
  for (const auto& operation :
       Operations{[&] { workspace_->CreateDataFile(L"SalesData"); },
                  [&] { workspace_->CreateIndex(L"SalesIndex"); },
                  [&] { workspace_->CreateRecord(L"SalesRecord"); },
                  [&] { workspace_->Connect(L"", L"", L"", L""); },
                  [&] { workspace_->ConnectNT(L"", L"", L"", L""); },
                  [&] { file->Open(Mode::kRead); }, [&] { index->Open(Mode::kRead); },
                  [&] { record->Find(Match::kPartial); }, [&] { record->SetExtraText(L""); },
                  [&] { fields->Item(L"NAME"); }, [&] { fields->Item(1); },
                  [&] { field->SetValue(L"x"); }, [&] { pricing->CustomerUnitPrice(L"D", L"NUT"); },
                  [&] { pricing->SupplierUnitPrice(L"NUT", L"D"); }}) {
    operations.push_back(operation);
  }
  FaultPlan& faults = engine_->faults();
  for (std::size_t i = 0; i < operations.size(); ++i) {
    faults.FailFrom(1, false);
    EXPECT_THROW(operations[i](), Error) << i;
    EXPECT_EQ(faults.failed(), 1) << i;
    EXPECT_EQ(faults.operations(), 1) << i;
  }
  faults.Reset();
  EXPECT_EQ(engine_->LastError()->Text(), L"The operation failed as requested.");
  EXPECT_EQ(engine_->counters().open_files, 2);  // the closes failed
  EXPECT_EQ(index->Position(), 1);
  EXPECT_EQ(Ref(*file), L"D");
  EXPECT_EQ(Ref(*record), L"D");
  EXPECT_EQ(Text(*stock, L"STOCK_CODE"), L"NUT");

  faults.FailFrom(2, true);
  EXPECT_EQ(file->Count(), 5);
  for (int i = 0; i < 3; ++i) EXPECT_THROW(file->Count(), Error);
  faults.Reset();
}

}  // namespace
}  // namespace ard::simulator
