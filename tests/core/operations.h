// The steps that members take, by the operations that they ask of the engine: a member's number
// (*_members.cpp) is put down with them, by hand, from its description.
#ifndef ARD_TESTS_CORE_OPERATIONS_H_
#define ARD_TESTS_CORE_OPERATIONS_H_

namespace ard::testing::needed {

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

}  // namespace ard::testing::needed

#endif  // ARD_TESTS_CORE_OPERATIONS_H_
