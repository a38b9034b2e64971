// What is stored in a company's files, and two engines on one company, which are as strange to one
// another as two processes are.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/catalogue.h"
#include "simulator/company_share.h"
#include "simulator/safe_file.h"
#include "simulator/simulator.h"
#include "tests/core/temporary_folder.h"

namespace ard::simulator {
namespace {

namespace fs = std::filesystem;
using engine::Match;
using engine::Mode;

constexpr std::int32_t kChanged = 1103;

Value Get(auto& object, std::wstring_view field) {
  return object.GetFields()->Item(field)->GetValue();
}
void Set(auto& object, std::wstring_view field, const Value& value) {
  object.GetFields()->Item(field)->SetValue(value);
}

class SharingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ReplaceFile(stock_, kHeader + "BOLT\t1\nNUT\t2\n# end\n");
    ReplaceFile(folder_ / "QueueData.table",
                "LOGON_NAME:text(9)\tEMPTY_FLAG:boolean\nMANAGER\tno\nGONE\tyes\n");
    ReplaceFile(folder_ / "AccessData.table", "NAME:text(9)\nANN\nBOB\nEVE\n");
    ours_ = Simulator::Open(folder_);
    theirs_ = Simulator::Open(folder_);
  }
  // A record of the stock file that stands on a product.
  static std::unique_ptr<engine::RecordObject> Product(Simulator& engine, std::wstring_view code) {
    auto record = engine.workspace()->CreateRecord(L"StockRecord");
    Set(*record, L"STOCK_CODE", code);
    EXPECT_TRUE(record->Find(Match::kExact));
    return record;
  }
  static std::unique_ptr<engine::DataFileObject> File(Simulator& engine, std::wstring_view name,
                                                      Mode mode = Mode::kAppend) {
    auto file = engine.workspace()->CreateDataFile(name);
    EXPECT_TRUE(file->Open(mode));
    return file;
  }
  static bool Change(Simulator& engine, std::wstring_view code, double quantity) {
    const auto product = Product(engine, code);
    product->Edit();
    Set(*product, L"QTY", quantity);
    return product->Update();
  }
  static bool Add(Simulator& engine, std::wstring_view code, double quantity) {
    const auto product = engine.workspace()->CreateRecord(L"StockRecord");
    product->AddNew();
    Set(*product, L"STOCK_CODE", code);
    Set(*product, L"QTY", quantity);
    return product->Update();
  }
  // Who is logged on, slot by slot, as an engine shows it.
  static std::wstring Queue(Simulator& engine) {
    const auto queue = File(engine, L"QueueData", Mode::kRead);
    std::wstring users;
    for (std::int32_t slot = 1; queue->Read(slot); ++slot) {
      users += Get(*queue, L"EMPTY_FLAG").ToBoolean()
                   ? L"-"
                   : Trimmed(Get(*queue, L"LOGON_NAME").ToText());
      users += L' ';
    }
    return users;
  }
  bool Logon(Simulator& engine, std::wstring_view user) {
    return engine.workspace()->Connect(folder_.wstring(), user, L"", L"");
  }
  // Another process, which ends in the middle of what it does.
  static void Killed(const std::function<void()>& action) {
    const pid_t process = fork();
    if (process == 0) {
      action();
      raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status));
  }
  std::string Stock() const { return ReadFile(stock_).substr(kHeader.size()); }

  const std::size_t kStock = LookUp(L"StockData").table;
  const std::string kHeader = "# mine\nSTOCK_CODE:text(8)\tQTY:double\n";
  const testing::TemporaryFolder folder_;
  const fs::path stock_ = folder_ / "StockData.table";
  std::unique_ptr<Simulator> ours_, theirs_;
};

TEST_F(SharingTest, WhatOthersHaveStoredIsThereAtTheNextRead) {
  const auto file = File(*ours_, L"StockData");
  const auto control = File(*ours_, L"ControlData");
  const auto record = Product(*ours_, L"BOLT");
  const auto index = ours_->workspace()->CreateIndex(L"StockIndex");
  ASSERT_TRUE(index->Open(Mode::kRead));
  index->MoveTo(2);
  ASSERT_EQ(index->RecordNumber(), 2);

  // Each reads what has been stored since the one before.
  double stored = 1;
  const auto changes = [&](std::wstring_view code) { return Change(*theirs_, code, ++stored); };
  EXPECT_TRUE(changes(L"BOLT") && file->Read(1) && Get(*file, L"QTY") == Value(stored));
  EXPECT_TRUE(changes(L"NUT") && file->FindFirst(L"QTY", stored));
  EXPECT_TRUE(changes(L"NUT") && !file->FindNext(L"QTY", stored - 1));
  EXPECT_TRUE(changes(L"NUT") && record->MoveNext() && Get(*record, L"QTY") == Value(stored));
  record->MoveFirst();
  EXPECT_TRUE(changes(L"BOLT") && record->Find(Match::kExact) &&
              Get(*record, L"QTY") == Value(stored));

  // An entry that comes before the one on which the index stands.
  EXPECT_TRUE(Add(*theirs_, L"CAP", 9));
  EXPECT_EQ(index->Position(), 3);
  EXPECT_EQ(index->RecordNumber(), 2);
  EXPECT_FALSE(index->MoveNext());
  index->MoveTo(2);
  EXPECT_EQ(index->RecordNumber(), 3);
  EXPECT_EQ(file->Count(), 3);
  EXPECT_TRUE(control->Read(1) && Get(*control, L"NO_OF_STOCK") == Value(3));
  EXPECT_EQ(Stock(), "BOLT\t6\nNUT\t5\n# end\nCAP\t9\n");
}

TEST_F(SharingTest, ARecordThatOthersHaveChangedIsNotStored) {
  // Since Edit: `Write` does not wait for who edits.
  const auto product = Product(*ours_, L"BOLT");
  product->Edit();
  Set(*product, L"QTY", 5);
  const auto file = File(*theirs_, L"StockData");
  Set(*file, L"QTY", 7);
  EXPECT_TRUE(file->Write(1));
  EXPECT_FALSE(product->Update());
  EXPECT_EQ(ours_->LastError()->Number(), kChanged);
  EXPECT_EQ(ours_->LastError()->Text(), L"Another user has changed the record since it was read.");
  EXPECT_TRUE(product->Find(Match::kExact));
  EXPECT_EQ(ours_->LastError()->Number(), 0);
  // Since it was read, and before Edit.
  EXPECT_TRUE(Change(*theirs_, L"BOLT", 8));
  EXPECT_THROW(product->Edit(), Error);
  EXPECT_EQ(ours_->LastError()->Number(), kChanged);
  // By `Write`, too: also one that appends, when the number is that of another's new record.
  EXPECT_TRUE(Add(*ours_, L"CAP", 9));
  for (const std::int32_t record : {1, 3}) {
    Set(*file, L"STOCK_CODE", L"NEW");
    EXPECT_EQ(file->Write(record), record == 1) << "read before, or appended by others since";
    EXPECT_EQ(theirs_->LastError()->Number(), record == 1 ? 0 : kChanged);
  }
}

TEST_F(SharingTest, AllThatBothStoreIsKept) {
  const auto ours = Product(*ours_, L"BOLT");
  const auto theirs = Product(*theirs_, L"NUT");
  ours->Edit();
  theirs->Edit();
  Set(*ours, L"QTY", 3);
  Set(*theirs, L"QTY", 4);
  const auto added = ours_->workspace()->CreateRecord(L"StockRecord");
  added->AddNew();
  Set(*added, L"STOCK_CODE", L"CAP");
  EXPECT_TRUE(theirs->Update() && ours->Update());
  EXPECT_TRUE(Add(*theirs_, L"PIN", 5));
  EXPECT_FALSE(Add(*ours_, L"pin", 6)) << "the key is taken";
  EXPECT_TRUE(added->Update());
  EXPECT_EQ(Stock(), "BOLT\t3\nNUT\t4\n# end\nPIN\t5\nCAP\t\n");
  // What an editor has saved is not written over, either.
  ReplaceFile(stock_, kHeader + "BOLT\t10\nNUT\t4\n# new\n");
  EXPECT_TRUE(Change(*theirs_, L"NUT", 11));
  EXPECT_EQ(Stock(), "BOLT\t10\nNUT\t11\n# new\n");
  EXPECT_FALSE(Product(*ours_, L"NUT")->MoveNext()) << "PIN has gone";
  for (const auto& [file, problem] :
       {std::pair(kHeader + "BOLT\tlots\n",
                  L"3:6: QTY takes a number, such as 1250.5, not \"lots\""),
        std::pair(kHeader.substr(0, 7) + "QTY:double\tSTOCK_CODE:text(8)\n2\tBOLT\n",
                  L"2:1: these are not the columns with which the company was opened")}) {
    ReplaceFile(stock_, file);
    for (Simulator* engine : {ours_.get(), theirs_.get(), ours_.get()}) {
      EXPECT_THROW(Change(*engine, L"BOLT", 1), Error);
      EXPECT_EQ(engine->LastError()->Text(), std::wstring(L"StockData.table:") + problem);
    }
    EXPECT_EQ(ReadFile(stock_), file);
  }
}

TEST_F(SharingTest, WhoEndsInTheMiddleBlocksNobody) {
  Killed([&] {
    const auto theirs = Simulator::Open(folder_);
    const auto product = Product(*theirs, L"BOLT");
    product->Edit();
    const CompanyShare::Turn turn(CompanyShare::Open(folder_).release(), kStock,
                                  SharedFile::Sharing::kNone);
    WriteAside(stock_, "half a ta");
    raise(SIGKILL);
  });
  EXPECT_TRUE(CompanyShare::Open(folder_)->TryHold(kStock, 1));
  EXPECT_TRUE(Change(*ours_, L"BOLT", 3));
  // Between the steps of storing.
  Killed([&] {
    CompanyShare* const share = CompanyShare::Open(folder_).release();
    const CompanyShare::Turn turn(share, kStock, SharedFile::Sharing::kNone);
    share->CountStore(kStock);
    ReplaceFile(stock_, kHeader + "BOLT\t4\n");
    raise(SIGKILL);
  });
  EXPECT_EQ(Get(*Product(*ours_, L"BOLT"), L"QTY"), Value(4.0));
}

TEST_F(SharingTest, AllLogonsAreInTheQueueOfAll) {
  const std::string file = ReadFile(folder_ / "QueueData.table");
  EXPECT_EQ(Queue(*ours_), L"MANAGER - ");
  EXPECT_TRUE(Logon(*theirs_, L"Ann") && Logon(*ours_, L"bob"));
  for (Simulator* engine : {ours_.get(), theirs_.get()}) {
    EXPECT_EQ(Queue(*engine), L"MANAGER ANN BOB ");
  }
  EXPECT_TRUE(Logon(*theirs_, L"Eve"));  // in place of Ann
  EXPECT_EQ(Queue(*ours_), L"MANAGER EVE BOB ");
  ours_->workspace()->Disconnect();
  EXPECT_EQ(Queue(*theirs_), L"MANAGER EVE - ");
  Killed([&] {
    const auto third = Simulator::Open(folder_);
    EXPECT_TRUE(Logon(*third, L"ann"));
    EXPECT_EQ(Queue(*ours_), L"MANAGER EVE ANN ");
  });
  EXPECT_EQ(Queue(*ours_), L"MANAGER EVE - ");
  theirs_.reset();
  EXPECT_EQ(Queue(*ours_), L"MANAGER - - ");
  EXPECT_TRUE(Logon(*ours_, L"ann"));
  EXPECT_EQ(Queue(*ours_), L"MANAGER ANN - ");
  EXPECT_EQ(ReadFile(folder_ / "QueueData.table"), file);
}

}  // namespace
}  // namespace ard::simulator
