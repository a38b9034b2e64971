#include "simulator/standard_columns.h"

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
    "ADDRESS_4:text(60)\tADDRESS_5:text(60)\tTERMS_WARNING:boolean";

// ControlData adds the counts itself.
constexpr std::string_view kControl = "FINANCIAL_YEAR:integer16";

constexpr std::string_view kAccess =
    "NAME:text(30)\tPOP:integer8\tCUST_RECORD:integer8\tSUPP_RECORD:integer8\t"
    "NOM_RECORD:integer8\tBANK_RECORD:integer8\tPROD_RECORD:integer8\tINV_EDIT:integer8\t"
    "SOP_ENTRY:integer8\tPOP_ENTRY:integer8";

constexpr std::string_view kQueue =
    "LOGON_NAME:text(30)\tSTATION_NAME:text(30)\tEMPTY_FLAG:boolean";

struct TableColumns {
  std::wstring_view table;
  std::string_view header;
};
constexpr TableColumns kTables[] = {
    {L"SalesData", kCustomer}, {L"PurchaseData", kSupplier}, {L"NominalData", kNominal},
    {L"BankData", kBank},      {L"SetupData", kSetup},       {L"ControlData", kControl},
    {L"AccessData", kAccess},  {L"QueueData", kQueue},
};

}  // namespace

Columns StandardColumns(std::wstring_view table) {
  for (const TableColumns& known : kTables) {
    if (known.table == table) return ParseColumns(known.header, "standard columns");
  }
  throw Error(kErrorUnknownName,
              L"There are no standard columns for " + std::wstring(table) + L".");
}

}  // namespace ard::simulator
