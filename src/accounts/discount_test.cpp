#include <fstream>
#include <limits>

#include "accounts/customers.h"
#include "tests/core/company_test.h"
#include "tests/core/temporary_folder.h"

namespace ard::accounts {
namespace {

class DiscountTest : public testing::CompanyTest {
 protected:
  Customers customers_{environment_};
};

TEST_F(DiscountTest, ALevelThatTheEngineDoesNotHaveIsNoFailure) {
  const testing::TemporaryFolder folder;
  std::ofstream(folder / "SalesData.table")
      << "ACCOUNT_REF:text(8)\tDISCOUNT_RATE:double\tDISCOUNT_TYPE:integer16\nABC\t5\t2\n";
  std::ofstream(folder / "StockData.table")
      << "STOCK_CODE:text(8)\tDISC_A_LEVEL_2_QTY:double\tDISC_A_LEVEL_2_RATE:double\nBOLT\t1\t2\n";
  engine_ = simulator::Simulator::Open(folder);
  Use(customers_.context());
  int notes = 0;
  environment_.trace().Attach([&](std::string_view line) {
    EXPECT_EQ(line.find("\tskip\t"), line.npos) << line;
    if (line.ends_with("\tThere is no field DISC_A_LEVEL_3_QTY.")) ++notes;
  });
  EXPECT_EQ(customers_.GetDiscPercent(L"ABC", L"BOLT", 1, 1), 7);
  EXPECT_EQ(notes, 1);
  const double no_number = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(customers_.GetDiscPercent(L"ABC", L"BOLT", no_number, 1), 5);
}

}  // namespace
}  // namespace ard::accounts
