#include "products/products.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <utility>

#include "simulator/safe_file.h"
#include "tests/core/company_test.h"
#include "tests/core/temporary_folder.h"

namespace ard::products {
namespace {

using simulator::CompanyBuilder;
using simulator::Simulator;
using testing::Texts;

class ProductsTest : public testing::CompanyTest {
 protected:
  void Open(CompanyBuilder& company) { CompanyTest::Open(company, products_); }
  void TearDown() override {
    CompanyTest::TearDown();
    EXPECT_EQ(environment_.TakeMessages(), Texts{});
  }

  Products products_{environment_};
};

// The last operations are those of the entry's type and value.
TEST_F(ProductsTest, AnEntryThatCannotBeReadLeavesTheSellingPrice) {
  CompanyBuilder builder;
  builder.Product(L"BOLT", L"SALES_PRICE=50")
      .Record(L"PriceData", L"TYPE=83|EXT_REF=ABC|STOCK_CODE=BOLT|VALUE=4");
  Open(builder);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 4);
  const std::int64_t operations = engine_->operations();
  for (const int before_last : {0, 2}) {
    engine_->faults().FailFrom(operations - before_last, false);
    EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 50) << before_last;
  }
}

TEST_F(ProductsTest, ASetUpThatCannotBeReadHasNoDefaults) {
  CompanyBuilder builder;
  Open(builder.Setup(L"STOCK_CATEGORY=4"));
  int unread = 0;
  environment_.trace().Attach(
      [&](std::string_view line) { unread += line.find("\tskip\tSetupData.Read\t") != line.npos; });
  for (std::int64_t n = 1; unread == 0 && n < 20; ++n) {
    engine_->faults().FailFrom(n, false);
    products_.CreateNewProduct(L"NEW" + std::to_wstring(n), L"New");
    EXPECT_TRUE(unread == 0 || products_.GetCategory(L"NEW" + std::to_wstring(n)) == 0);
  }
  EXPECT_EQ(unread, 1);
}

TEST_F(ProductsTest, APricingServiceThatFailsHasNoPrice) {
  CompanyBuilder builder;
  Open(builder.Product(L"BOLT", L"SALES_PRICE=50").Setup(L"PRICING_SERVICE=True"));
  std::string steps;
  environment_.trace().Attach([&](std::string_view line) {
    const std::size_t skip = line.find("\tskip\t");
    if (skip != line.npos) steps.append(line.substr(skip + 6, 26)).append("|");
  });
  engine_->faults().FailFrom(2, false);
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 0);
  engine_->faults().FailFrom(2, false);
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"SUP"), 0);
  EXPECT_EQ(steps, "Pricing.CustomerUnitPrice\t|Pricing.SupplierUnitPrice\t|");
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
