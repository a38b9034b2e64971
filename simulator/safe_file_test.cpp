#include "simulator/safe_file.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>

#include "simulator/simulator.h"

namespace ard::simulator {
namespace {

namespace fs = std::filesystem;

class SafeFileTest : public ::testing::Test {
 protected:
  void SetUp() override { ReplaceFile(table_, kBefore); }
  void TearDown() override { fs::remove_all(folder_); }

  static constexpr const char* kBefore =
      "# mine\nACCOUNT_REF:text(8)\tNAME:text(30)\nA\tOld\n# end\n";
  static fs::path MakeFolder() {
    std::string name = (fs::temp_directory_path() / "ard_simulator_XXXXXX").string();
    return mkdtemp(name.data());
  }

  const fs::path folder_ = MakeFolder();
  const fs::path table_ = folder_ / "SalesData.table";
};

// Sets the name of the only customer through the engine.
bool Rename(Simulator& engine, std::wstring_view name) {
  const auto record = engine.workspace()->CreateRecord(L"SalesRecord");
  record->Edit();
  record->GetFields()->Item(L"NAME")->SetValue(name);
  return record->Update();
}

TEST_F(SafeFileTest, AStoredRecordChangesItsLineOnly) {
  const auto engine = Simulator::Open(folder_);
  EXPECT_TRUE(Rename(*engine, L"New\tname"));
  EXPECT_EQ(ReadFile(table_), "# mine\nACCOUNT_REF:text(8)\tNAME:text(30)\nA\tNew\\tname\n# end\n");

  const auto file = engine->workspace()->CreateDataFile(L"SalesData");
  ASSERT_TRUE(file->Open(engine::Mode::kAppend));
  file->GetFields()->Item(L"account_ref")->SetValue(L"B");
  EXPECT_TRUE(file->Write(2));
  EXPECT_EQ(ReadFile(table_),
            "# mine\nACCOUNT_REF:text(8)\tNAME:text(30)\nA\tNew\\tname\n# end\nB\tNew\\tname\n");
}

TEST_F(SafeFileTest, ACrashBetweenTheTwoStepsLeavesTheOldTable) {
  WriteAside(table_, "ACCOUNT_REF:te");
  EXPECT_EQ(ReadFile(table_), kBefore);
  EXPECT_TRUE(Rename(*Simulator::Open(folder_), L"After the crash"));
  EXPECT_NE(ReadFile(table_).find("After the crash"), std::string::npos);
}

TEST_F(SafeFileTest, AWriteThatFailsLeavesTableAndMemoryAsTheyWere) {
  const auto engine = Simulator::Open(folder_);
  fs::create_directory(table_.string() + ".new");
  EXPECT_THROW(Rename(*engine, L"New"), Error);
  EXPECT_EQ(ReadFile(table_), kBefore);
  const auto record = engine->workspace()->CreateRecord(L"SalesRecord");
  EXPECT_EQ(record->GetFields()->Item(L"NAME")->GetValue().ToText().substr(0, 4), L"Old ");
}

// A process that does nothing but write is killed at any moment: the table is one of those written.
TEST_F(SafeFileTest, AKilledWriterLeavesAWholeTable) {
  const std::string a = kBefore + std::string(50'000, '#') + "\n";
  const std::string b = "# b\n" + a;
  int replaced = 0;
  for (int run = 0; run < 8; ++run) {
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
      for (;;) {
        ReplaceFile(table_, b);
        ReplaceFile(table_, a);
      }
    }
    // A busy machine may take its time to start the first writer.
    for (int wait = 0; replaced == 0 && wait < 10'000 && ReadFile(table_) == kBefore; ++wait) {
      usleep(1000);
    }
    usleep(3000 + static_cast<useconds_t>(run) * 977);
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    const std::string found = ReadFile(table_);
    replaced += found != kBefore;
    ASSERT_TRUE(found == a || found == b || (replaced == 0 && found == kBefore)) << found.size();
    ASSERT_NO_THROW(Simulator::Open(folder_));
  }
  EXPECT_GT(replaced, 0);
}

}  // namespace
}  // namespace ard::simulator
