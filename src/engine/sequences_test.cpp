// The order in which the engine is asked: hosts' engines and their logs see it.
#include <gtest/gtest.h>

#include "accounts/customers.h"
#include "products/products.h"
#include "testing/company_test.h"
#include "testing/recording_workspace.h"

namespace ard::engine {
namespace {

using simulator::CompanyBuilder;
using testing::Texts;

// Tells when it is asked for a recordset, and has none.
class NoDatabase : public database::Connection {
 public:
  explicit NoDatabase(Texts& asked) : asked_(asked) {}
  std::unique_ptr<database::RecordsetObject> Open(std::wstring_view, database::Cursor,
                                                  database::Lock) override {
    asked_.push_back(L"Recordset.Open");
    throw Error(kErrorFailed, L"No database.");
  }

 private:
  Texts& asked_;
};

class SequencesTest : public testing::CompanyTest {
 protected:
  void Open(CompanyBuilder& company) {
    CompanyTest::Open(company, customers_, products_);
    for (Context* context : {&customers_.context(), &products_.context()}) {
      context->workspace = testing::Recorded(engine_->workspace(), recording_);
    }
    products_.context().database = std::make_shared<NoDatabase>(recording_.operations);
  }

  // What has been asked since, in short: Create X; X.Read(1); X.FIELD for the reading of a field,
  // and X.FIELD = 1. What was read in between of the fields does not count.
  std::wstring Asked() {
    std::wstring text;
    for (std::wstring line : std::exchange(recording_.operations, {})) {
      const std::wstring_view kCreate = L"Workspace.CreateRecordObject(\"";
      const std::size_t field = line.find(L".Fields");
      if (line.starts_with(kCreate)) {
        line = L"Create " + line.substr(kCreate.size(), line.size() - kCreate.size() - 2);
      } else if (field != line.npos) {
        const std::size_t value = line.find(L"\").Value");
        if (value == line.npos) continue;
        line.erase(value, 8).erase(field + 1, 8);
      }
      text += line + L"; ";
    }
    std::erase(text, L' ');
    return text;
  }

  accounts::Customers customers_{environment_};
  products::Products products_{environment_};
  testing::Recording recording_;
};

TEST_F(SequencesTest, AChoiceIsCheckedWhileItsListIsOpen) {
  CompanyBuilder company;
  company.Customer(L"ABC").Customer(L"OVER", L"BALANCE=2|CREDIT_LIMIT=1");
  Open(company);
  environment_.Answer([](dialogs::SelectDialog& dialog) { dialog.Ok(); });
  EXPECT_EQ(customers_.List(L"O*"), L"OVER");
  EXPECT_EQ(Asked(),
            L"CreateControlData;ControlData.Open(64);ControlData.Read(1);ControlData.NO_OF_SALES;"
            L"ControlData.Close;"
            L"CreateSalesData;CreateSalesIndex;SalesData.Open(64);SalesIndex.Open(64);"
            L"CreateSalesData;SalesData.Open(0);SalesData.FindFirst(\"ACCOUNT_REF\",\"O*\");"
            L"SalesData.ACCOUNT_REF;SalesIndex.Key=\"OVER\";SalesIndex.Find(False);"
            L"SalesIndex.Position;SalesData.Close;"
            L"SalesIndex.MoveTo(1);SalesIndex.RecordNumber;SalesData.Read(1);"
            L"SalesData.DELETED_FLAG;SalesData.ACCOUNT_REF;SalesData.NAME;SalesData.CREDIT_LIMIT;"
            L"SalesIndex.MoveNext;SalesIndex.RecordNumber;SalesData.Read(2);"
            L"SalesData.DELETED_FLAG;SalesData.ACCOUNT_REF;SalesData.NAME;SalesData.CREDIT_LIMIT;"
            L"SalesData.BALANCE;SalesIndex.MoveNext;"
            L"CreateSalesRecord;SalesRecord.ACCOUNT_REF=\"OVER\";SalesRecord.Find(False);"
            L"SalesRecord.ACCOUNT_ON_HOLD;SalesRecord.TERMS_AGREED_FLAG;"
            L"CreateSetupData;SetupData.Open(64);SetupData.Read(1);SetupData.TERMS_WARNING;"
            L"SetupData.Close;SalesData.Close;SalesIndex.Close;");
  EXPECT_TRUE(customers_.IsValid(L"OVER"));
  EXPECT_EQ(Asked(),
            L"CreateSalesRecord;SalesRecord.ACCOUNT_REF=\"OVER\";SalesRecord.Find(False);"
            L"SalesRecord.ACCOUNT_ON_HOLD;SalesRecord.CREDIT_LIMIT;SalesRecord.BALANCE;"
            L"SalesRecord.TERMS_AGREED_FLAG;"
            L"CreateSetupData;SetupData.Open(64);SetupData.Read(1);SetupData.TERMS_WARNING;"
            L"SetupData.Close;");
}

TEST_F(SequencesTest, ProductsAreLookedUpAndPricedStepByStep) {
  CompanyBuilder company;
  company.Customer(L"ABC").Product(L"BOLT", L"SALES_PRICE=5").Supplier(L"SUP");
  company
      .Record(L"PriceData",
              {{L"TYPE", std::int16_t{1}}, {L"EXT_REF", L"OTHER"}, {L"STOCK_CODE", L"BOLT"}})
      .Record(L"PriceData", {{L"TYPE", std::int16_t{83}},
                             {L"EXT_REF", L"ABC"},
                             {L"STOCK_CODE", L"BOLT"},
                             {L"VALUE", 4.0}})
      .Record(L"PriceData", {{L"TYPE", std::int16_t{85}},
                             {L"EXT_REF", L"SUP"},
                             {L"STOCK_CODE", L"BOLT"},
                             {L"STORED_PRICE", 3.0}});
  Open(company);
  const std::wstring files =
      L"CreateStockIndex;CreateStockData;StockIndex.Open(0);StockData.Open(0);";
  EXPECT_TRUE(products_.IsValid(L"BOLT"));
  EXPECT_EQ(Asked(), files +
                         L"StockIndex.Key=\"BOLT\";StockIndex.Find(False);"
                         L"StockIndex.Close;StockData.Close;");
  EXPECT_EQ(products_.GetSellPrice(L"BOLT"), 5);
  EXPECT_EQ(Asked(), files +
                         L"StockIndex.Key=\"BOLT\";StockIndex.Find(False);"
                         L"StockIndex.RecordNumber;StockData.Read(1);StockData.SALES_PRICE;"
                         L"StockIndex.Close;StockData.Close;");
  EXPECT_EQ(products_.GetSpecialPrice(L"BOLT", L"ABC"), 4);
  EXPECT_EQ(Asked(),
            L"CreatePricing;CreateStockRecord;StockRecord.STOCK_CODE=\"BOLT\";"
            L"StockRecord.Find(False);StockRecord.SALES_PRICE;StockRecord.LAST_PURCHASE_PRICE;"
            L"CreatePriceRecord;CreateSalesRecord;"
            L"PriceRecord.Stock_Code;PriceRecord.Type;SalesRecord.ACCOUNT_REF=\"ABC\";"
            L"SalesRecord.Find(False);SalesRecord.Price_List_Ref;PriceRecord.Ext_Ref;"
            L"PriceRecord.MoveNext;PriceRecord.Stock_Code;PriceRecord.Type;PriceRecord.Ext_Ref;"
            L"PriceRecord.Discount_Type;PriceRecord.Value;");
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"SUP"), 3);
  EXPECT_EQ(Asked(),
            L"CreatePricing;CreatePriceIndex;CreatePriceData;PriceIndex.Open(64);"
            L"PriceData.Open(64);PriceIndex.Key=\"USUPBOLT\";PriceIndex.Find(False);"
            L"PriceIndex.RecordNumber;PriceData.Read(3);PriceData.STORED_PRICE;PriceData.Close;"
            L"PriceIndex.Close;");
  environment_.Answer([](dialogs::SelectDialog& dialog) { dialog.Cancel(); });
  EXPECT_EQ(products_.List(L""), L"");
  EXPECT_EQ(Asked(),
            L"CreateControlData;ControlData.Open(64);ControlData.Read(1);ControlData.NO_OF_STOCK;"
            L"ControlData.Close;"
            L"CreateStockData;CreateStockIndex;StockData.Open(64);StockIndex.Open(64);"
            L"Recordset.Open;"
            L"CreateStockData;StockData.Open(0);StockData.FindFirst(\"STOCK_CODE\",\"*\");"
            L"StockData.STOCK_CODE;StockIndex.Key=\"BOLT\";StockIndex.Find(False);"
            L"StockIndex.Position;StockData.Close;StockData.Close;StockIndex.Close;");
}

// A file that the engine has not refuses to open.
TEST_F(SequencesTest, AFileThatRefusedToOpenIsUsedNoFurther) {
  CompanyBuilder company;
  company.Customer(L"ABC").Without(L"StockData").Without(L"PriceData");
  Open(company);
  EXPECT_EQ(products_.GetDesc(L"BOLT"), L"");
  EXPECT_EQ(Asked(), L"CreateStockIndex;CreateStockData;StockIndex.Open(0);StockData.Open(0);");
  EXPECT_EQ(products_.GetSupplierPrice(L"BOLT", L"ABC"), 0);
  EXPECT_EQ(Asked().find(L"PriceIndex.Key"), std::wstring::npos);
}

}  // namespace
}  // namespace ard::engine
