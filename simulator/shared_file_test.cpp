#include "simulator/shared_file.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "frame/error.h"
#include "frame/text.h"
#include "simulator/simulator.h"

namespace ard::simulator {
namespace {

class SharedFileTest : public ::testing::Test {
 protected:
  SharedFileTest() {
    std::filesystem::create_directories(folder_);
    std::ofstream(folder_ / "queue.dta") << "queue";
    std::ofstream(folder_ / "BankData.table") << "ACCOUNT_REF:text(8)\n";
  }
  ~SharedFileTest() override { std::filesystem::remove_all(folder_); }

  bool CanRead(const wchar_t* name) const {
    try {
      TryToRead(FromUtf8(folder_.string()) + name);
      return true;
    } catch (const Error& error) {
      EXPECT_TRUE(error.text().starts_with(std::wstring(name + 1) + L": "));
      return false;
    }
  }

  std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("shared file test " + std::to_string(getpid()));
};

TEST_F(SharedFileTest, AFileIsReadUnlessSomeoneHoldsIt) {
  EXPECT_TRUE(CanRead(L"\\queue.dta"));
  EXPECT_FALSE(CanRead(L"\\other.dta"));
  const std::unique_ptr<Simulator> engine = Simulator::Open(folder_);
  engine->HoldExclusively(true);
  EXPECT_FALSE(CanRead(L"\\queue.dta"));
  EXPECT_FALSE(engine->workspace()->Connect(L"", L"manager", L"", L""));
  EXPECT_EQ(engine->LastError()->Number(), 1102);
  EXPECT_THROW(HeldFile(folder_ / "queue.dta"), Error);
  engine->HoldExclusively(false);
  EXPECT_TRUE(CanRead(L"\\queue.dta"));
  EXPECT_TRUE(engine->workspace()->Connect(L"", L"manager", L"", L""));
}

TEST_F(SharedFileTest, AnotherProcessMayBeTheOne) {
  int held[2];
  int done[2];
  ASSERT_EQ(pipe(held), 0);
  ASSERT_EQ(pipe(done), 0);
  const pid_t child = fork();
  char byte = 0;
  if (child == 0) {
    close(done[1]);
    std::optional<HeldFile> file(folder_ / "queue.dta");
    const bool told = write(held[1], "h", 1) == 1 && read(done[0], &byte, 1) == 0;
    _exit(told ? 0 : 1);
  }
  ASSERT_EQ(read(held[0], &byte, 1), 1);
  EXPECT_FALSE(CanRead(L"\\queue.dta"));
  const std::unique_ptr<Simulator> engine = Simulator::Open(folder_);
  EXPECT_FALSE(engine->workspace()->Connect(L"", L"manager", L"", L""));
  close(done[1]);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(CanRead(L"\\queue.dta"));
  for (const int end : {held[0], held[1], done[0]}) close(end);
}

}  // namespace
}  // namespace ard::simulator
