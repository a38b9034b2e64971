#include "simulator/standard_columns.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>

#include "frame/error.h"
#include "simulator/table_text.h"

namespace ard::simulator {
namespace {

constexpr std::string_view kCustomer =
    "ACCOUNT_REF:text(8)\tNAME:text(60)\tCONTACT_NAME:text(30)\t"
    "ADDRESS_1:text(60)\tADDRESS_2:text(60)\tADDRESS_3:text(60)\tADDRESS_4:text(60)\t"
    "ADDRESS_5:text(60)\t"
    "DEL_ADDRESS_1:text(60)\tDEL_ADDRESS_2:text(60)\tDEL_ADDRESS_3:text(60)\t"
    "DEL_ADDRESS_4:text(60)\tDEL_ADDRESS_5:text(60)\t"
    "TELEPHONE:text(30)\tBALANCE:double\tCREDIT_LIMIT:double\t"
    "ACCOUNT_ON_HOLD:boolean\tTERMS_AGREED_FLAG:boolean\tDELETED_FLAG:boolean\t"
    "DISCOUNT_RATE:double\tDISCOUNT_TYPE:integer16\tPRICE_LIST_REF:text(8)\t"
    "SETTLEMENT_DUE_DAYS:integer16\tSETTLEMENT_DISC_RATE:double\t"
    "DEF_TAX_CODE:integer16\tDEPT_NUMBER:integer16\tDEF_NOM_CODE:text(8)";

constexpr std::string_view kSupplier =
    "ACCOUNT_REF:text(8)\tNAME:text(60)\tCONTACT_NAME:text(30)\t"
    "ADDRESS_1:text(60)\tADDRESS_2:text(60)\tADDRESS_3:text(60)\tADDRESS_4:text(60)\t"
    "ADDRESS_5:text(60)\t"
    "TELEPHONE:text(30)\tBALANCE:double\tCREDIT_LIMIT:double\t"
    "ACCOUNT_ON_HOLD:boolean\tTERMS_AGREED_FLAG:boolean\tDELETED_FLAG:boolean\t"
    "DISCOUNT_RATE:double\tCURRENCY:integer16\t"
    "DEF_TAX_CODE:integer16\tDEPT_NUMBER:integer16\tDEF_NOM_CODE:text(8)";

constexpr std::string_view kNominal =
    "ACCOUNT_REF:text(8)\tNAME:text(60)\tACCOUNT_TYPE:integer8\tBALANCE:double\t"
    "DELETED_FLAG:boolean";

constexpr std::string_view kBank =
    "ACCOUNT_REF:text(8)\tNAME:text(60)\tBALANCE:double\tDELETED_FLAG:boolean";

constexpr std::string_view kSetup =
    "NAME:text(60)\tADDRESS_1:text(60)\tADDRESS_2:text(60)\tADDRESS_3:text(60)\t"
    "ADDRESS_4:text(60)\tADDRESS_5:text(60)\tTERMS_WARNING:boolean\tPRICING_SERVICE:boolean\t"
    "STOCK_CATEGORY:integer16\tSTOCK_DEPARTMENT:integer16\tSTOCK_TAXCODE:integer16\t"
    "STOCK_NOMINAL:text(8)\tSTOCK_UNITS:text(8)\tSTOCK_QTYDP:integer16\tSTOCK_UNITDP:integer16\t"
    "ADDRESS_PROMPT_1:text(30)\tADDRESS_PROMPT_2:text(30)\tADDRESS_PROMPT_3:text(30)\t"
    "ADDRESS_PROMPT_4:text(30)\tADDRESS_PROMPT_5:text(30)\tADDRESS_PROMPT_6:text(30)";

// ControlData adds the counts itself; the tax codes are added to this.
constexpr std::string_view kControl = "FINANCIAL_YEAR:integer16";

constexpr std::string_view kAccess =
    "NAME:text(30)\tPOP:integer8\tCUST_RECORD:integer8\tSUPP_RECORD:integer8\t"
    "NOM_RECORD:integer8\tBANK_RECORD:integer8\tPROD_RECORD:integer8\tINV_EDIT:integer8\t"
    "SOP_ENTRY:integer8\tPOP_ENTRY:integer8\tPASSWORD:text(30)";

constexpr std::string_view kQueue =
    "LOGON_NAME:text(30)\tSTATION_NAME:text(30)\tEMPTY_FLAG:boolean";

// The month buckets and the discount levels are added to these.
constexpr std::string_view kStock =
    "STOCK_CODE:text(30)\tDESCRIPTION:text(60)\tDEPT_NUMBER:integer16\tSTOCK_CAT:integer16\t"
    "TAX_CODE:integer16\tNOMINAL_CODE:text(8)\tUNIT_OF_SALE:text(8)\tLOCATION:text(16)\t"
    "PURCHASE_REF:text(8)\tSUPPLIER_PART_NUMBER:text(30)\t"
    "QTY_IN_STOCK:double\tQTY_ALLOCATED:double\tQTY_ON_ORDER:double\tQTY_REORDER_LEVEL:double\t"
    "QTY_REORDER:double\tQTY_LAST_ORDER:double\tQTY_LAST_STOCK_TAKE:double\tQTY_MAKEUP:double\t"
    "SALES_PRICE:double\tLAST_PURCHASE_PRICE:double\tAVERAGE_COST_PRICE:double\t"
    "LAST_PURCHASE_DATE:date\tLAST_SALE_DATE:date\tSTOCK_TAKE_DATE:date\t"
    "IGNORE_STK_LVL_FLAG:boolean\tDELETED_FLAG:boolean\tWEB_PUBLISH:boolean\t"
    "ASSEMBLY_LEVEL:integer16\tLINK_LEVEL:integer16\t"
    "NO_OF_TRAN:long\tFIRST_TRAN:long\tLAST_TRAN:long\t"
    "WEB_DESCRIPTION:text(200)\tCOMMODITY_CODE:text(16)\tEXTRA_TEXT:text(60)\tINACTIVE:integer8";

constexpr const wchar_t* kBucketFamilies[] = {
    L"QTY_SOLD",       L"SALES", L"PRIOR_YR_COST",   L"PRIOR_YR_QTY_SOLD",
    L"PRIOR_YR_SALES", L"COST",  L"BUDGET_QTY_SOLD", L"BUDGET_SALES"};
constexpr int kMonths = 12;
constexpr int kLevels = 10;
constexpr int kTaxCodes = 100;
constexpr int kTaxDescriptionLength = 30;

constexpr std::string_view kPrice =
    "TYPE:integer16\tEXT_REF:text(8)\tSTOCK_CODE:text(30)\tDISCOUNT_TYPE:integer16\t"
    "VALUE:double\tSTORED_PRICE:double";

constexpr std::string_view kStockTransaction =
    "STOCK_CODE:text(30)\tTYPE:integer16\tDATE:date\tREFERENCE:text(30)\tQUANTITY:double\t"
    "QTY_USED:double\tCOST_PRICE:double";

constexpr std::string_view kOrder =
    "ORDER_NUMBER:long\tACCOUNT_REF:text(8)\tNAME:text(60)\tORDER_DATE:date\tPOSTED_CODE:boolean\t"
    "DELETED_FLAG:boolean";

constexpr std::string_view kDeliveryAddress =
    "ACCOUNT_REF:text(8)\tADDRESS_REF:text(8)\tDESCRIPTION:text(60)\tNAME:text(60)\t"
    "ADDRESS_1:text(60)\tADDRESS_2:text(60)\tADDRESS_3:text(60)\tADDRESS_4:text(60)\t"
    "ADDRESS_5:text(60)\tCONTACT_NAME:text(30)\tTELEPHONE:text(30)\tFAX:text(30)\tEMAIL:text(60)\t"
    "REFERENCE:text(30)\tDEFAULT_REF:integer8";

constexpr std::string_view kNameOnly = "NAME:text(60)";

constexpr std::string_view kCurrency =
    "NAME:text(60)\tCODE:text(3)\tSYMBOL:text(3)\tEXCHANGE_RATE:double";

// Of each family: what was brought forward, the months to come, and the twelve months.
void AddBuckets(Columns& columns) {
  for (const std::wstring family : kBucketFamilies) {
    columns.Add({family + L"_BF", ColumnType::kDouble});
    columns.Add({family + L"_FUTURE", ColumnType::kDouble});
    for (int month = 1; month <= kMonths; ++month) {
      columns.Add({family + L"_MTH" + std::to_wstring(month), ColumnType::kDouble});
    }
  }
}

void AddStock(Columns& columns) {
  AddBuckets(columns);
  for (const wchar_t table : std::wstring(L"ABCDE")) {
    for (int level = 1; level <= kLevels; ++level) {
      const std::wstring name =
          std::wstring(L"DISC_") + table + L"_LEVEL_" + std::to_wstring(level);
      columns.Add({name + L"_QTY", ColumnType::kDouble});
      columns.Add({name + L"_RATE", ColumnType::kDouble});
    }
  }
}

void AddValueDiscounts(Columns& columns) {
  for (int level = 1; level <= kLevels; ++level) {
    columns.Add({L"SALES_AMOUNT_SOLD_" + std::to_wstring(level), ColumnType::kDouble});
    columns.Add({L"SALES_ADD_DISC_" + std::to_wstring(level), ColumnType::kDouble});
  }
}

void AddTaxCodes(Columns& columns) {
  for (int code = 0; code < kTaxCodes; ++code) {
    const std::wstring name = L"T" + std::to_wstring(code);
    columns.Add({name + L"_RATE", ColumnType::kDouble});
    columns.Add({name + L"_DESCRIPTION", ColumnType::kText, kTaxDescriptionLength});
  }
}

struct TableColumns {
  std::wstring_view table;
  std::string_view header;
  void (*add_more)(Columns& columns) = nullptr;
};
constexpr TableColumns kTables[] = {
    {L"SalesData", kCustomer},
    {L"PurchaseData", kSupplier},
    {L"NominalData", kNominal},
    {L"BankData", kBank},
    {L"SetupData", kSetup, AddValueDiscounts},
    {L"ControlData", kControl, AddTaxCodes},
    {L"AccessData", kAccess},
    {L"QueueData", kQueue},
    {L"StockData", kStock, AddStock},
    {L"PriceData", kPrice},
    {L"StockTransactionData", kStockTransaction},
    {L"SopData", kOrder},
    {L"PopData", kOrder},
    {L"SalesDeliveryData", kDeliveryAddress},
    {L"PurchaseDeliveryData", kDeliveryAddress},
    {L"CompanyDeliveryData", kDeliveryAddress},
    {L"StockCategory", kNameOnly},
    {L"DepartmentData", kNameOnly},
    {L"CurrencyData", kCurrency},
};

}  // namespace

const Columns& StandardColumns(std::wstring_view table) {
  static std::map<std::wstring_view, Columns> parsed;
  const auto known = std::find_if(std::begin(kTables), std::end(kTables),
                                  [&](const TableColumns& t) { return t.table == table; });
  if (known == std::end(kTables)) {
    throw Error(kErrorUnknownName,
                L"There are no standard columns for " + std::wstring(table) + L".");
  }
  const auto [entry, is_new] = parsed.try_emplace(known->table);
  if (is_new) {
    entry->second = ParseColumns(known->header, "standard columns");
    if (known->add_more) known->add_more(entry->second);
  }
  return entry->second;
}

}  // namespace ard::simulator
