#include "simulator/testing/company_builder.h"
#include "tests/core/members.h"

namespace ard::testing {

std::unique_ptr<simulator::Simulator> MembersCompany() {
  simulator::CompanyBuilder company;
  company
      .Customer(L"ABC001",
                L"NAME=ABC Ltd|CONTACT_NAME=Ann|ADDRESS_1=Road 1|ADDRESS_5=Town|"
                L"DEL_ADDRESS_1=Yard 2|DEL_ADDRESS_5=City|TELEPHONE=0123|"
                L"SETTLEMENT_DUE_DAYS=30|SETTLEMENT_DISC_RATE=2.5|DEF_TAX_CODE=1|"
                L"DEPT_NUMBER=3|DEF_NOM_CODE=4000|DISCOUNT_RATE=5|DISCOUNT_TYPE=4")
      .Customer(L"VALUE", L"DISCOUNT_TYPE=1")
      .Customer(L"BAD001", L"DELETED_FLAG=True")
      .Customer(L"HOLD", L"ACCOUNT_ON_HOLD=True")
      .Customer(L"WORST",
                L"ACCOUNT_ON_HOLD=True|BALANCE=11|CREDIT_LIMIT=10|TERMS_AGREED_FLAG=False");
  for (const wchar_t* ref : {L"CAD001", L"CAD002", L"TAB001", L"TAB002", L"TAB003"}) {
    company.Customer(ref);
  }
  company
      .Setup(
          L"STOCK_QTYDP=2|STOCK_UNITDP=0|SALES_AMOUNT_SOLD_2=10|SALES_ADD_DISC_2=4|"
          L"ADDRESS_PROMPT_1=Street")
      .Control(L"T1_RATE=17.5|T1_DESCRIPTION=Standard")
      .Record(L"StockCategory", L"NAME=Bolts")
      .Record(L"StockCategory", L"NAME=Nuts")
      .Record(L"DepartmentData", L"NAME=Works")
      .Record(L"SopData", L"ORDER_NUMBER=1|ACCOUNT_REF=ABC001|NAME=First")
      .Record(L"SopData", L"ORDER_NUMBER=2")
      .Record(L"PopData",
              L"ORDER_NUMBER=7|ACCOUNT_REF=SUP001|ORDER_DATE=2023-03-15|POSTED_CODE=True")
      .Record(L"PopData", L"ORDER_NUMBER=8|DELETED_FLAG=True")
      .Record(L"SalesDeliveryData", L"ACCOUNT_REF=ABC001|ADDRESS_REF=1")
      .Record(L"SalesDeliveryData", L"ACCOUNT_REF=WORST|ADDRESS_REF=1")
      .Record(L"PurchaseDeliveryData",
              L"ACCOUNT_REF=SUP001|ADDRESS_REF=1|ADDRESS_1=Gate 3|ADDRESS_5=Port|"
              L"CONTACT_NAME=Sue|DEFAULT_REF=1|DESCRIPTION=Works|EMAIL=s@x|FAX=02|"
              L"NAME=Supply|REFERENCE=R7|TELEPHONE=01")
      .Record(L"CompanyDeliveryData", L"ADDRESS_REF=1|DESCRIPTION=Yard");
  company
      .Supplier(L"SUP001",
                L"NAME=Supply|CONTACT_NAME=Sue|DEF_NOM_CODE=5000|DEF_TAX_CODE=1|"
                L"DEPT_NUMBER=2|DISCOUNT_RATE=2.5")
      .Supplier(L"WOOD", L"BALANCE=11|CREDIT_LIMIT=10");
  company.Nominal(L"1001").Nominal(L"2100", L"ACCOUNT_TYPE=2");
  company.Bank(L"1200").Bank(L"1210").Bank(L"2220");
  company
      .Product(L"BOLT",
               L"DESCRIPTION=Bolt|DEPT_NUMBER=3|STOCK_CAT=7|LOCATION=A1|"
               L"PURCHASE_REF=SUP001|SUPPLIER_PART_NUMBER=P9|UNIT_OF_SALE=Each|"
               L"QTY_IN_STOCK=5|QTY_ALLOCATED=7|QTY_ON_ORDER=2.5|QTY_REORDER_LEVEL=4|"
               L"QTY_REORDER=20|SALES_PRICE=50|LAST_PURCHASE_PRICE=20|"
               L"LAST_PURCHASE_DATE=2023-03-15|DISC_C_LEVEL_3_QTY=8|DISC_C_LEVEL_3_RATE=2|"
               L"DISC_C_LEVEL_7_QTY=10|DISC_C_LEVEL_7_RATE=7.5")
      .Product(L"NUT", L"IGNORE_STK_LVL_FLAG=True")
      .Product(L"BAD", L"DELETED_FLAG=True");
  for (const wchar_t* code : {L"NAIL", L"SCREW", L"STUD", L"SPRING"}) company.Product(code);
  for (const auto type : {std::int16_t{1}, std::int16_t{2}, std::int16_t{5}}) {
    company.Record(
        L"StockTransactionData",
        {{L"STOCK_CODE", L"BOLT"}, {L"TYPE", type}, {L"QUANTITY", 10.0}, {L"COST_PRICE", 2.0}});
  }
  company.Record(L"PriceData", L"TYPE=76|EXT_REF=TRADE|STOCK_CODE=BOLT|DISCOUNT_TYPE=3|VALUE=7")
      .Record(L"PriceData", L"TYPE=83|EXT_REF=ABC001|STOCK_CODE=BOLT|DISCOUNT_TYPE=2|VALUE=10")
      .Record(L"CurrencyData", L"EXCHANGE_RATE=1.5");
  company.Record(L"AccessData", {{L"NAME", L"ANN"}, {L"PASSWORD", kPassword}})
      .Record(L"AccessData", L"NAME=EVE|BANK_RECORD=1|POP=1")
      .Record(L"AccessData", L"NAME= Odd")
      .Record(L"QueueData", L"LOGON_NAME=ANN|STATION_NAME=PC1")
      .Record(L"QueueData", L"LOGON_NAME=OLD|EMPTY_FLAG=True")
      .Record(L"QueueData", L"LOGON_NAME=BOB|STATION_NAME=PC2");
  return company.Build();
}

const std::vector<std::wstring>& MembersDatabaseCommands() {
  static const std::vector<std::wstring> commands = {
      L"CREATE TABLE ProdInfoStockFields (StockCode VARCHAR(30), Description VARCHAR(60))",
      L"INSERT INTO ProdInfoStockFields VALUES ('BOLT', 'Best')",
      L"INSERT INTO ProdInfoStockFields VALUES ('NUT', 'Better')",
      L"INSERT INTO ProdInfoStockFields VALUES ('NAIL', 'Brass')",
      L"CREATE TABLE AccessRights (ID INTEGER, UserName VARCHAR(30))",
      L"INSERT INTO AccessRights VALUES (1, 'ANN')",
      L"CREATE TABLE CurrentUsers (ID INTEGER, Product VARCHAR(30), UserName VARCHAR(30), "
      L"UniqueID VARCHAR(30))"};
  return commands;
}

std::shared_ptr<host_database::OdbcConnection> MembersDatabase() {
  const auto database = std::make_shared<host_database::OdbcConnection>(kMembersConnection);
  for (const std::wstring& command : MembersDatabaseCommands()) database->Execute(command);
  return database;
}

}  // namespace ard::testing
