#include "products/products.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <cstdlib>

#include "simulator/safe_file.h"
#include "tests/core/company_test.h"
#include "tests/core/temporary_folder.h"

namespace ard::products {
namespace {

using simulator::CompanyBuilder;
using simulator::Simulator;

class ProductsTest : public testing::CompanyTest {
 protected:
  void Open(CompanyBuilder& company) { CompanyTest::Open(company, products_); }

  Products products_{environment_};
};

TEST_F(ProductsTest, ASetUpThatCannotBeReadHasNoDefaults) {
  CompanyBuilder builder;
  Open(builder.Setup(L"STOCK_CATEGORY=4"));
  std::string categories;
  // No set-up, not opened, not read; nothing fails.
  for (const std::int64_t failing : {2, 3, 4, 0}) {
    const std::wstring code = L"NEW" + std::to_wstring(failing);
    engine_->faults().FailFrom(failing, false);
    products_.CreateNewProduct(code, L"New");
    EXPECT_TRUE(products_.IsValid(code));
    categories += std::to_string(products_.GetCategory(code));
  }
  EXPECT_EQ(categories, "0004");
}

TEST_F(ProductsTest, ACrashAnywhereLeavesTheWholeCopyOrNone) {
  const testing::TemporaryFolder folder;
  const std::string before =
      "STOCK_CODE:text(8)\tDESCRIPTION:text(20)\tSALES_PRICE:double\tQTY_IN_STOCK:double\t"
      "LAST_SALE_DATE:date\nOLD\tOld one\t12.5\t7\t2026-01-02\n";
  const std::string after = before + "NEW\tNew one\t12.5\t0\t\n";
  int left_out = 0;
  for (std::int64_t n = 1;; ++n) {
    simulator::ReplaceFile(folder / "StockData.table", before);
    const pid_t host = fork();
    if (host == 0) {
      const auto engine = Simulator::Open(folder);
      products_.context().workspace = engine->workspace();
      engine->faults().CrashAt(n);
      _exit(products_.CopyProduct(L"OLD", L"NEW", L"New one") ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    const std::string found = simulator::ReadFile(folder / "StockData.table");
    ASSERT_EQ(found, status == 0 || found != before ? after : before) << n;
    left_out += found == before;
    if (status == 0) break;
  }
  EXPECT_GT(left_out, 100);
}

// ARD_ALLOCATIONS says how many each makes.
TEST_F(ProductsTest, FourHostsAllocateWithoutLosingAny) {
  const char* const given = std::getenv("ARD_ALLOCATIONS");
  const int each = given != nullptr ? std::stoi(given) : 25;
  const testing::TemporaryFolder folder;
  const auto stock = [](int allocated) {
    return "STOCK_CODE:text(8)\tQTY_IN_STOCK:double\tQTY_ALLOCATED:double\n"
           "NUT\t5\t2\nBOLT\t123456\t" +
           std::to_string(allocated) + "\nPIN\t5\t3\n";
  };
  simulator::ReplaceFile(folder / "StockData.table", stock(0));

  // How many each has been told that it has made. The first goes on until it is killed.
  constexpr int kHosts = 4;
  void* const shared = mmap(nullptr, kHosts * sizeof(int), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  auto* const made = static_cast<std::atomic<int>*>(shared);
  pid_t hosts[kHosts];
  for (int i = 0; i < kHosts; ++i) {
    hosts[i] = fork();
    if (hosts[i] != 0) continue;
    const auto engine = Simulator::Open(folder);
    products_.context().workspace = engine->workspace();
    while (i == 0 || made[i] < each) {
      const bool answer = products_.UpdateAllocQty(L"BOLT", 1);
      if (engine->LastError()->Number() != 0) continue;  // another was faster: once more
      if (!answer) _exit(1);
      ++made[i];
    }
    _exit(0);
  }
  while (made[0] < each / 2) usleep(1000);
  kill(hosts[0], SIGKILL);
  int total = 0;
  for (int i = 0; i < kHosts; ++i) {
    int status = -1;
    ASSERT_EQ(waitpid(hosts[i], &status, 0), hosts[i]);
    EXPECT_EQ(status, i == 0 ? SIGKILL : 0);
    total += made[i];
  }
  // What it had stored when it was killed, it may not have been told.
  const std::string found = simulator::ReadFile(folder / "StockData.table");
  EXPECT_TRUE(found == stock(total) || found == stock(total + 1)) << total << "\n" << found;
  munmap(shared, kHosts * sizeof(int));
}

TEST_F(ProductsTest, WhatIsNoNumberIsNotAllocated) {
  CompanyBuilder builder;
  Open(builder.Product(L"TEN", L"QTY_IN_STOCK=10|QTY_ALLOCATED=7"));
  for (const double quantity : {std::nan(""), -HUGE_VAL, HUGE_VAL}) {
    EXPECT_FALSE(products_.UpdateAllocQty(L"TEN", quantity)) << quantity;
  }
  EXPECT_EQ(products_.GetFreeStock(L"TEN"), 3);
  EXPECT_EQ(products_.GetAveragePrice(nullptr), 0);
}

}  // namespace
}  // namespace ard::products
