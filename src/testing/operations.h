// How many operations a call of each member asks of the engine: what its description needs, put
// down by hand from the steps. Members whose dialogs ask for more are left out.
#ifndef ARD_TESTING_OPERATIONS_H_
#define ARD_TESTING_OPERATIONS_H_

#include <optional>
#include <string_view>

namespace ard::testing {
namespace needed {

// The steps, by the operations that they take.
inline constexpr int kOpen = 2;    // CreateRecordObject, Open
inline constexpr int kClose = 1;   // Close
inline constexpr int kRead = 1;    // Read
inline constexpr int kFields = 1;  // Fields, once for each record
inline constexpr int kItem = 1;    // Fields("NAME")
inline constexpr int kValue = 1;   // Value
inline constexpr int kField = kItem + kValue;
inline constexpr int kFind = 1;    // Find, FindFirst, FindNext
inline constexpr int kMove = 1;    // MoveFirst, MoveNext
inline constexpr int kCount = 1;   // Count
inline constexpr int kCreate = 1;  // CreateRecordObject

// A record by its key, of which nothing is read yet; one whose fields are read; a single-record
// file such as SetupData.
inline constexpr int kLooked = kCreate + kFields + kField + kFind;
inline constexpr int kFound = kLooked + kFields;
inline constexpr int kSingle = kOpen + kRead + kFields + kClose;
// A product by the index, then by its number in the data file; Key =, Find, RecordNumber, Read.
inline constexpr int kProduct = 2 * kOpen + 4 + kFields + 2 * kClose;
// An index and its data file, for a key that is not in it.
inline constexpr int kNotInIndex = 2 * kOpen + 1 + kFind + 2 * kClose;
// The pricing service, which is not there.
inline constexpr int kNoService = kCreate;

// Three transactions, of which two are receipts: Transactions; MoveFirst, Count, MoveNext from
// each; the type of each, and quantity, used and cost of the receipts.
inline constexpr int kAverage = kCreate + 4 * kMove + kCount + 3 * kFields + 9 * kField;

// The fields of StockData and of AccessData, and how many of StockData's are of a type that has a
// blank value.
inline constexpr int kStockFields = 248;
inline constexpr int kBlankedStockFields = kStockFields - 3;
inline constexpr int kAccessFields = 11;
// What a copy of a product clears: 15 fields, and 14 months of 8 figures.
inline constexpr int kCleared = 15 + 14 * 8;

struct Member {
  std::wstring_view name;
  int operations;
};
inline constexpr Member kMembers[] = {
    // Limit, balance, on hold and terms; whether there are to be warnings.
    {L"Customers.IsValid", kFound + 4 * kField + kSingle + kField},
    {L"Customers.IsValid, unknown", kLooked},
    {L"Customers.GetName", kFound + kField},
    {L"Customers.GetContact", kFound + kField},
    // The account's rate and type; the thresholds from level 10 down to the one reached, its rate.
    {L"Customers.GetDiscPercent, table", kFound + 2 * kField + kFound + 4 * kField + kField},
    {L"Customers.GetDiscPercent, value", kFound + 2 * kField + kSingle + 9 * kField + kField},
    {L"Suppliers.IsValid", kFound + 4 * kField + kSingle + kField},
    {L"Suppliers.GetName", kFound + kField},
    {L"Suppliers.GetDiscPercent", kFound + kField},
    {L"Nominal.IsValid", kLooked},
    {L"Bank.IsValid", kLooked},
    {L"CustomerRecord.Read and all properties", kFound + 18 * kField},
    {L"SupplierRecord.Read and all properties", kFound + 5 * kField},

    {L"SalesOrders.GetAccName", kFound + kField},
    {L"SalesOrders.GetAccRef", kFound + kField},
    {L"PurchaseOrders.GetAccRef", kFound + kField},
    {L"PurchaseOrders.GetOrderDate", kFound + kField},
    {L"PurchaseOrders.IsValid", kFound + kField},

    // An array of four, and one of two; twelve tax codes.
    {L"General.GetCategories", kOpen + 4 * (kRead + kFields + kField) + kClose},
    {L"General.GetDepartments", kOpen + 2 * (kRead + kFields + kField) + kClose},
    {L"General.GetDPSettings", kSingle + 2 * kField},
    {L"General.GetTaxCodes", kSingle + 12 * kField},
    {L"General.GetVatRate", kSingle + kField},
    {L"General.GetVatDesc", kSingle + kField},
    {L"General.AddEntryToIniFile", 0},
    {L"General.IsF12Hide", 0},
    {L"General.GetF11Program", 0},
    {L"General.IsArdExclusive", 0},
    {L"General.CreateAccountsShortcut", 0},
    // Three slots, whose names and flags are read; the station of one.
    {L"General.GetNumActiveUsers", kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kClose},
    {L"General.GetNumActiveUsersInclDet",
     kOpen + kCount + 3 * (kRead + kFields + 2 * kField) + kField + kClose},

    {L"Products.IsValid", kNotInIndex},
    {L"Products.GetDesc", kProduct + kField},
    {L"Products.GetDept", kProduct + kField},
    {L"Products.GetCategory", kProduct + kField},
    {L"Products.GetBinLocation", kProduct + kField},
    {L"Products.GetSupplier", kProduct + kField},
    {L"Products.GetSupplierPart", kProduct + kField},
    {L"Products.GetUnitSale", kProduct + kField},
    {L"Products.GetInStock", kProduct + kField},
    {L"Products.GetReOrderLevel", kProduct + kField},
    {L"Products.GetReOrderQty", kProduct + kField},
    {L"Products.GetLastPurDate", kProduct + kField},
    {L"Products.IgnoreStock", kProduct + kField},
    {L"Products.GetFreeStock", kProduct + 2 * kField},
    {L"Products.GetAllocOnOrder", kProduct + 2 * kField},
    {L"Products.GetSupplierOnOrder", kProduct + 3 * kField},
    {L"Products.IsMemberOfCategory", kProduct + kField},
    {L"Products.GetSellPrice", kProduct + kField},
    {L"Products.GetCostPrice", kLooked + kAverage},
    {L"Products.GetAveragePrice", kLooked + kAverage},  // the host finds the record
    // Both prices; two entries of the price list, with their codes and types: the customer's own
    // list
    // and the reference of the first, the reference and the rule of the second.
    {L"Products.GetSpecialPrice", kNoService + kFound + 2 * kField + kCreate + 2 * kFields +
                                      2 * 2 * kField + kMove + kFound + kField + kField +
                                      3 * kField},
    // No price is kept: the cost price, the supplier's currency, its rate.
    {L"Products.GetSupplierPrice",
     kNoService + kNotInIndex + kFound + kField + kFound + kField + kSingle + kField},
    // AddNew; each field and its type; the code; ExtraText, Update, Version.
    {L"Products.SaveNewProduct",
     kCreate + 1 + kFields + kCount + 2 * kStockFields + kBlankedStockFields + kField + 3},
    // AddNew; each field, from the one to the other; code and description; what is cleared, of
    // which one field is set twice; Update.
    {L"Products.CopyProduct", kFound + kCreate + 1 + kFields + kCount + 2 * kStockFields* kField +
                                  2 * kField + kCleared* kField - kItem + 1},
    // Whether stock is kept, in stock, allocated: too little is there.
    {L"Products.UpdateAllocQty", kFound + 3 * kField},

    // Connect; and Disconnect; in vain, and LastError, its number and text.
    {L"Messaging.LogonUser", 1},
    {L"Messaging.LogonUser, not in the table", 2},
    {L"Messaging.LogonUser, refused", 4},
    {L"Messaging.LogoffUser", 1},
    {L"Messaging.PoAccess, denied", kOpen + kFind + kFields + kField + kClose},
    {L"Messaging.PoAccess", kOpen + kFind + kFields + kField + kClose},
    // A name tells how long they are kept; found at once; the right.
    {L"cAccessRights.IsUserAllowedAccess",
     kOpen + kFields + kField + kFind + kFields + kField + kClose},
    // Not found in three ways, then read one after the other.
    {L"cAccessRights.IsValid",
     kOpen + kFields + kField + 3 * kFind + kCount + 3 * (kRead + kFields + kField) + kClose},
    // Not there; opened anew, each field, its type and blank value, the name, Write.
    {L"cAccessRights.AddUser", kOpen + kFind + kClose + kOpen + kFields + kCount +
                                   3 * kAccessFields + kField + kCount + 1 + kClose},
};

}  // namespace needed

// Nothing for a member that is left out.
inline std::optional<int> NeededOperations(std::wstring_view member) {
  for (const needed::Member& entry : needed::kMembers) {
    if (entry.name == member) return entry.operations;
  }
  return std::nullopt;
}

}  // namespace ard::testing

#endif  // ARD_TESTING_OPERATIONS_H_
