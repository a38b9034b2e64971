#include "simulator/safe_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "simulator/simulator.h"
#include "testing/temporary_folder.h"

namespace ard::simulator {
namespace {

namespace fs = std::filesystem;

class SafeFileTest : public ::testing::Test {
 protected:
  void SetUp() override { ReplaceFile(table_, kBefore); }

  static constexpr const char* kBefore =
      "# mine\nACCOUNT_REF:text(8)\tNAME:text(30)\nA\tOld\n# end\n";
  const testing::TemporaryFolder folder_;
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
  const auto file = engine->workspace()->CreateDataFile(L"SalesData");
  ASSERT_TRUE(file->Open(engine::Mode::kAppend));
  file->GetFields()->Item(L"account_ref")->SetValue(L"B");
  EXPECT_TRUE(file->Write(2));
  EXPECT_EQ(ReadFile(table_),
            "# mine\nACCOUNT_REF:text(8)\tNAME:text(30)\nA\tNew\\tname\n# end\nB\tNew\\tname\n");
}

TEST_F(SafeFileTest, AWriteThatFailsLeavesTableAndMemoryAsTheyWere) {
  const auto engine = Simulator::Open(folder_);
  fs::create_directory(table_.string() + ".new");
  EXPECT_THROW(Rename(*engine, L"New"), Error);
  EXPECT_EQ(ReadFile(table_), kBefore);
  const auto record = engine->workspace()->CreateRecord(L"SalesRecord");
  EXPECT_EQ(record->GetFields()->Item(L"NAME")->GetValue().ToText().substr(0, 4), L"Old ");
}

}  // namespace
}  // namespace ard::simulator
