#include "simulator/shared_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/simulator.h"
#include "testing/temporary_folder.h"

namespace ard::simulator {
namespace {

class SharedFileTest : public ::testing::Test {
 protected:
  SharedFileTest() {
    std::ofstream(folder_ / "queue.dta") << "queue";
    std::ofstream(folder_ / "BankData.table") << "ACCOUNT_REF:text(8)\n";
  }

  bool CanRead(const wchar_t* name) const {
    try {
      TryToRead(FromUtf8(folder_.string()) + name);
      return true;
    } catch (const Error& error) {
      EXPECT_TRUE(error.text().starts_with(std::wstring(name + 1) + L": "));
      return false;
    }
  }

  const testing::TemporaryFolder folder_;
};

TEST_F(SharedFileTest, AFileIsReadUnlessSomeoneHoldsIt) {
  EXPECT_TRUE(CanRead(L"\\queue.dta"));
  EXPECT_FALSE(CanRead(L"\\other.dta"));
  const std::shared_ptr<Simulator> engine = Simulator::Open(folder_);
  engine->HoldExclusively(true);
  EXPECT_FALSE(CanRead(L"\\queue.dta"));
  for (const auto& each : {engine, std::shared_ptr(Simulator::Open(folder_))}) {
    EXPECT_FALSE(each->workspace()->Connect(L"", L"manager", L"", L""));
    EXPECT_EQ(each->LastError()->Number(), 1102);
  }
  EXPECT_THROW(HeldFile(folder_ / "queue.dta"), Error);
  engine->HoldExclusively(false);
  EXPECT_TRUE(CanRead(L"\\queue.dta"));
  EXPECT_TRUE(engine->workspace()->Connect(L"", L"manager", L"", L""));
}

}  // namespace
}  // namespace ard::simulator
