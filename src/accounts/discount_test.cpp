#include <cmath>
#include <fstream>

#include "accounts/customers.h"
#include "tests/core/company_test.h"
#include "tests/core/temporary_folder.h"

namespace ard::accounts {
namespace {

using simulator::CompanyBuilder;

class DiscountTest : public testing::CompanyTest {
 protected:
  Customers customers_{environment_};
};

TEST_F(DiscountTest, AddsTheLevelReachedToTheAccountsRate) {
  CompanyBuilder company;
  for (std::int16_t type = 0; type <= 7; ++type) {
    company.Customer(L"TYPE" + std::to_wstring(type),
                     {{L"DISCOUNT_TYPE", type}, {L"DISCOUNT_RATE", 5.1}});
  }
  company.Customer(L"THIRD", {{L"DISCOUNT_RATE", 100.0 / 3}})
      .Customer(L"SINGLE", {{L"DISCOUNT_RATE", double{12.35f}}})
      // A higher level may ask for less, or give less.
      .Setup(
          L"SALES_AMOUNT_SOLD_1=1000|SALES_ADD_DISC_1=40|SALES_AMOUNT_SOLD_3=435|"
          L"SALES_ADD_DISC_3=3|SALES_AMOUNT_SOLD_4=-1|SALES_ADD_DISC_4=99|"
          L"SALES_AMOUNT_SOLD_5=500|SALES_ADD_DISC_5=10.2")
      .Product(L"BOLT",
               L"DISC_A_LEVEL_1_QTY=10|DISC_A_LEVEL_1_RATE=1|DISC_B_LEVEL_10_QTY=1|"
               L"DISC_B_LEVEL_10_RATE=2.5|DISC_C_LEVEL_2_QTY=50|DISC_C_LEVEL_2_RATE=20|"
               L"DISC_C_LEVEL_5_QTY=80|DISC_C_LEVEL_5_RATE=7|DISC_C_LEVEL_6_QTY=101|"
               L"DISC_C_LEVEL_6_RATE=30|DISC_E_LEVEL_1_QTY=0|DISC_E_LEVEL_1_RATE=50");
  Open(company, customers_);
  const struct {
    const wchar_t* acc_ref;
    const wchar_t* product;
    double quantity;
    double price;
    double percentage;
    std::wstring fields;  // of the breakdown, for 20 % on the screen
  } cases[] = {
      {L"TYPE0", L"BOLT", 100, 100, 5.1, L"5.10,,,14.90,"},
      {L"TYPE1", L"BOLT", 100, 4.34, 5.1, L"5.10,,,14.90,"},
      {L"TYPE1", L"BOLT", 100, 4.35, 8.1, L"5.10,,3.00,11.90,"},  // 435, but for the noise
      {L"TYPE1", L"?", 1000, 1, 15.3, L"5.10,,10.20,4.70,"},
      {L"TYPE2", L"BOLT", 10, 1, 6.1, L"5.10,1.00,,13.90,Table A"},
      {L"TYPE2", L"BOLT", -100, 1, 5.1, L"5.10,,,14.90,Table A"},
      {L"TYPE3", L"BOLT", 5, 1, 7.6, L"5.10,2.50,,12.40,Table B"},
      {L"TYPE4", L"BOLT", 100, 1, 12.1, L"5.10,7.00,,7.90,Table C"},
      {L"TYPE4", L"BOLT", 60, 1, 25.1, L"5.10,20.00,,-5.10,Table C"},
      {L"TYPE5", L"BOLT", 100, 1, 5.1, L"5.10,,,14.90,Table D"},
      {L"TYPE6", L"BOLT", 100, 1, 5.1, L"5.10,,,14.90,Table E"},
      {L"TYPE2", L"BOLT", std::nan(""), 1, 5.1, L"5.10,,,14.90,Table A"},
      {L"?", L"BOLT", 100, 1, 0, L",,,20.00,"},
      // What is not added stays what it is.
      {L"THIRD", L"BOLT", 1, 1, 100.0 / 3, L"33.33,,,-13.33,"},
      {L"SINGLE", L"BOLT", 1, 1, 12.350000381469727, L"12.35,,,7.65,"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(customers_.GetDiscPercent(c.acc_ref, c.product, c.quantity, c.price), c.percentage)
        << c.fields.c_str();
    std::wstring fields;
    environment_.AnswerFields([&](dialogs::FieldsDialog& dialog) {
      const auto& lines = dialog.lines();
      for (std::size_t i = 1; i < lines.size(); ++i) fields += lines[i].text + L',';
      fields += lines[0].text;
    });
    customers_.ShowDiscBDown(c.acc_ref, c.product, c.quantity, c.price, 20, 2);
    EXPECT_EQ(fields, c.fields);
  }
}

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
}

}  // namespace
}  // namespace ard::accounts
