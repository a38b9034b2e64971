#include "simulator/catalogue.h"

namespace ard::simulator {
namespace {

constexpr std::wstring_view kAccountRef[] = {L"ACCOUNT_REF"};
constexpr std::wstring_view kStockCode[] = {L"STOCK_CODE"};
constexpr std::wstring_view kOrderNumber[] = {L"ORDER_NUMBER"};
// The type as a character, the account it is for, the product.
constexpr std::wstring_view kPrice[] = {L"TYPE", L"EXT_REF", L"STOCK_CODE"};
constexpr std::wstring_view kAddress[] = {L"ACCOUNT_REF", L"ADDRESS_REF"};

constexpr TableInfo kCatalogue[] = {
    {L"SalesData", L"SalesIndex", L"SalesRecord", L"NO_OF_SALES", kAccountRef},
    {L"PurchaseData", L"PurchaseIndex", L"PurchaseRecord", L"NO_OF_PURCHASE", kAccountRef},
    {L"NominalData", L"NominalIndex", L"NominalRecord", L"NO_OF_NOMINAL", kAccountRef},
    {L"BankData", L"BankIndex", L"BankRecord", L"NO_OF_BANK", kAccountRef},
    {L"StockData", L"StockIndex", L"StockRecord", L"NO_OF_STOCK", kStockCode},
    {L"PriceData", L"PriceIndex", L"PriceRecord", L"", kPrice},
    {L"SopData", L"SopIndex", L"SopRecord", L"NO_OF_SOP", kOrderNumber},
    {L"PopData", L"PopIndex", L"PopRecord", L"NO_OF_POP", kOrderNumber},
    {L"SalesDeliveryData", L"", L"SalesDeliveryRecord", L"", kAddress},
    {L"PurchaseDeliveryData", L"", L"PurchaseDeliveryRecord", L"", kAddress},
    {L"CompanyDeliveryData", L"", L"CompanyDeliveryRecord", L"", kAddress},
    {L"ControlData", L"", L""},
    {L"SetupData", L"", L""},
    {L"QueueData", L"", L""},
    {L"AccessData", L"", L""},
    {L"StockCategory", L"", L""},
    {L"DepartmentData", L"", L""},
    {L"CurrencyData", L"", L""},
    {L"StockTransactionData", L"", L""},
};

}  // namespace

std::span<const TableInfo> Catalogue() { return kCatalogue; }

ObjectName LookUp(std::wstring_view name) {
  if (name.empty()) return {};
  for (std::size_t i = 0; i < std::size(kCatalogue); ++i) {
    if (name == kCatalogue[i].data_file) return {ObjectKind::kDataFile, i};
    if (name == kCatalogue[i].index) return {ObjectKind::kIndex, i};
    if (name == kCatalogue[i].record) return {ObjectKind::kRecord, i};
  }
  return {};
}

}  // namespace ard::simulator
