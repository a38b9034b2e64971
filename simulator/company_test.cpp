#include "simulator/company.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "simulator/company_error.h"
#include "simulator/simulator.h"

namespace ard::simulator {
namespace {

namespace fs = std::filesystem;

class DemoCompanyTest : public ::testing::Test {
 protected:
  Table& Find(const wchar_t* table) { return *company_->Find(table); }
  Value Cell(const wchar_t* table, std::int32_t record, std::wstring_view field) {
    return Find(table).Cell(record, Find(table).columns().Require(field));
  }
  bool Has(const wchar_t* table, const Value& key) {
    return Find(table).FindKey(key.ToText(), engine::Match::kExact) != 0;
  }

  const std::unique_ptr<Company> company_ = Company::Load(ARD_DEMO_COMPANY);
};

// What the tables say about one another agrees.
TEST_F(DemoCompanyTest, KeepsItsStock) {
  std::map<std::wstring, double> left;  // of what the transactions brought in
  for (std::int32_t i = 1; i <= Find(L"StockTransactionData").size(); ++i) {
    const auto of = [&](std::wstring_view field) {
      return Cell(L"StockTransactionData", i, field);
    };
    const bool brings_in = of(L"TYPE").ToLong() % 2 != 0;
    left[of(L"STOCK_CODE").ToText()] +=
        brings_in ? of(L"QUANTITY").ToDouble() - of(L"QTY_USED").ToDouble() : 0;
  }
  int over_allocated = 0, uncounted = 0, deleted = 0;
  std::set<std::wstring> initials;
  const std::int32_t products = Find(L"StockData").size();
  for (std::int32_t i = 1; i <= products; ++i) {
    const auto of = [&](std::wstring_view field) { return Cell(L"StockData", i, field); };
    const std::wstring code = of(L"STOCK_CODE").ToText();
    const double quantity = of(L"QTY_IN_STOCK").ToDouble();
    const Value supplier = of(L"PURCHASE_REF");
    EXPECT_TRUE(supplier.is_empty() || Has(L"PurchaseData", supplier)) << i;
    EXPECT_TRUE(Has(L"NominalData", of(L"NOMINAL_CODE"))) << i;
    EXPECT_LE(of(L"STOCK_CAT").ToLong(), Find(L"StockCategory").size()) << i;
    if (left.contains(code)) {
      EXPECT_NEAR(left[code], quantity, 1e-6) << i;
    }
    left.erase(code);
    over_allocated += of(L"QTY_ALLOCATED").ToDouble() > quantity;
    uncounted += of(L"IGNORE_STK_LVL_FLAG").ToBoolean();
    deleted += of(L"DELETED_FLAG").ToBoolean();
    initials.insert(code.substr(0, 1));
  }
  EXPECT_TRUE(left.empty());  // no transactions of unknown products
  EXPECT_GE(products, 220);
  EXPECT_GE(initials.size(), 20u);
  for (const int found : {over_allocated, uncounted, deleted}) EXPECT_GE(found, 5);
  for (std::int32_t i = 1; i <= Find(L"PriceData").size(); ++i) {
    EXPECT_TRUE(Has(L"StockData", Cell(L"PriceData", i, L"STOCK_CODE"))) << i;
  }
  EXPECT_EQ(Cell(L"ControlData", 1, L"NO_OF_STOCK"), Value(products));
}

TEST(CompanyTest, RefusesFoldersThatAreNoCompany) {
  std::string name = (fs::temp_directory_path() / "ard_simulator_XXXXXX").string();
  const fs::path folder = mkdtemp(name.data());
  EXPECT_THROW(Simulator::Open(folder / "nowhere"), CompanyError);
  EXPECT_NO_THROW(Simulator::Open(folder));
  std::ofstream(folder / "notes.txt") << "not a table";
  std::ofstream(folder / "BankData.table.new") << "half a ta";
  EXPECT_NO_THROW(Simulator::Open(folder));
  std::ofstream(folder / "SaleData.table") << "ACCOUNT_REF:text(8)\n";
  try {
    Simulator::Open(folder);
    ADD_FAILURE() << "no error";
  } catch (const CompanyError& error) {
    EXPECT_STREQ(error.what(), "SaleData.table: the engine has no data file of this name");
  }
  fs::remove_all(folder);
}

}  // namespace
}  // namespace ard::simulator
