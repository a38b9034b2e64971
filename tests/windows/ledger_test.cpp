// The customer list through the registered library, on ledgers of any size: opening it reads one
// page and takes the same time, however many accounts there are.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <vector>

#include "tests/windows/host.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using std::chrono::steady_clock;
using testing::CreateObject;
using testing::LateBound;

constexpr long kSizes[] = {1'000, 1'000'000, 10'000'000};
constexpr int kRounds = 9;
constexpr double kMostSlower = 1.2;

// One opening of the list, which a timer of the thread's own modal loop ends.
class Opening {
 public:
  explicit Opening(long accounts) {
    engine_.Ask(L"OpenSynthetic", accounts);
    current_ = this;
    customers_.Put(L"ArdWorkspace", engine_.Ask(L"Workspace"), DISPATCH_PROPERTYPUTREF);
    before_ = RecordsRead();
    start_ = steady_clock::now();
    timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Watch);
    customers_.Ask(L"FastList");
    KillTimer(nullptr, timer_);
    current_ = nullptr;
  }

  double milliseconds() const { return milliseconds_; }
  double records() const { return records_; }
  double open_files() const { return FromVariant(engine_.Ask(L"OpenFiles")).ToDouble(); }

 private:
  double RecordsRead() const { return FromVariant(engine_.Ask(L"RecordsRead")).ToDouble(); }

  // Once the page has been read, the list is given a while to read more, and then closed.
  static void CALLBACK Watch(HWND, UINT, UINT_PTR, DWORD) {
    Opening& opening = *current_;
    const double records = opening.RecordsRead() - opening.before_;
    // The first record is the company's count of accounts.
    if (records < 2) return;
    if (opening.ticks_++ == 0) {
      opening.milliseconds_ =
          std::chrono::duration<double, std::milli>(steady_clock::now() - opening.start_).count();
    }
    if (opening.ticks_ < 4) return;
    opening.records_ = records;
    PostMessageW(FindWindowW(nullptr, L"Select Customer"), WM_CLOSE, 0, 0);
  }

  static inline Opening* current_ = nullptr;

  LateBound engine_{CreateObject(L"ArdSimulator.Engine")};
  LateBound customers_{CreateObject(L"ArdObjects100.Customers")};
  double before_ = 0;
  steady_clock::time_point start_;
  UINT_PTR timer_ = 0;
  int ticks_ = 0;
  double milliseconds_ = 0;
  double records_ = 0;
};

class ComApartment : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(OleInitialize(nullptr), S_OK); }
  void TearDown() override { OleUninitialize(); }
};

TEST(LedgerOfAnySize, OpensWithOnePageInTheSameTime) {
  std::map<long, std::vector<double>> times;
  double page = 0;
  for (int round = 0; round < kRounds; ++round) {
    for (const long accounts : kSizes) {
      const Opening opening(accounts);
      if (page == 0) page = opening.records();
      EXPECT_EQ(opening.records(), page) << accounts;
      EXPECT_EQ(opening.open_files(), 0);
      times[accounts].push_back(opening.milliseconds());
    }
  }
  // The window shows some twenty rows; the count of accounts is one record more.
  EXPECT_GT(page, 10);
  EXPECT_LT(page, 40);
  for (auto& [accounts, list] : times) {
    std::nth_element(list.begin(), list.begin() + kRounds / 2, list.end());
    std::printf("%9ld accounts: %.0f records, %.1f ms to the first page (median of %d)\n", accounts,
                page, list[kRounds / 2], kRounds);
  }
  EXPECT_LE(times[kSizes[2]][kRounds / 2], kMostSlower * times[kSizes[0]][kRounds / 2]);
}

}  // namespace
}  // namespace ard::windows

int wmain(int count, wchar_t** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  ::testing::AddGlobalTestEnvironment(new ard::windows::ComApartment);
  return RUN_ALL_TESTS();
}
