// The members of the engine's objects: the dispatch ids that it publishes, and the names of the
// members that it publishes no id for.
#ifndef ARD_WINDOWS_ENGINE_DISPATCH_IDS_H_
#define ARD_WINDOWS_ENGINE_DISPATCH_IDS_H_

#include <array>
#include <cstddef>

namespace ard::windows {

struct WorkspaceId {
  enum : long {
    kVersion = 3,
    kConnect = 4,
    kCreateRecordObject = 5,
    kDisconnect = 6,
    kConnectNt = 7,
  };
};

struct EngineId {
  enum : long { kLastError = 2 };
};

struct ErrorId {
  enum : long { kNumber = 1, kText = 2 };
};

struct DataFileId {
  enum : long {
    kFields = 0x10002,
    kRead = 0x10003,
    kWrite = 0x10004,
    kCount = 0x10006,
    kOpen = 0x10009,
    kClose = 0x1000a,
    kFindFirst = 0x1000b,
    kFindNext = 0x1000c,
  };
};

struct RecordId {
  enum : long {
    kFields = 0x20001,
    kMoveFirst = 0x20004,
    kMoveNext = 0x20006,
    kUpdate = 0x2000a,
    kAddNew = 0x2000b,
    kFind = 0x2000c,
    kEdit = 0x2000f,
    kExtraText = 0x20011,
  };
};

// A collection of transactions has some of the ids of a record, and one of a data file.
struct TransactionsId {
  enum : long {
    kFields = RecordId::kFields,
    kMoveFirst = RecordId::kMoveFirst,
    kMoveNext = RecordId::kMoveNext,
    kCount = DataFileId::kCount,
  };
};

struct IndexId {
  enum : long {
    kKey = 0x10001,
    kRecordNumber = 0x10002,
    kPosition = 0x10003,
    kFind = 0x10006,
    kMoveFirst = 0x10007,
    kMoveNext = 0x10009,
    kMoveTo = 0x1000d,
    kOpen = 0x20009,
    kClose = 0x2000a,
  };
};

struct FieldsId {
  enum : long { kItemByName = 0 };  // the default member
};

struct FieldId {
  enum : long { kType = 4 };
};

// Members looked up by name.
enum NamedMember : std::size_t {
  kFieldsItem,  // by position
  kFieldsCount,
  kFieldName,
  kFieldValue,
  kRecordTransactions,
  kCustomerUnitPrice,
  kSupplierUnitPrice,
  kNamedMembers,
};
inline constexpr std::array<const wchar_t*, kNamedMembers> kMemberNames = {L"Item",
                                                                           L"Count",
                                                                           L"Name",
                                                                           L"Value",
                                                                           L"Transactions",
                                                                           L"CustomerUnitPrice",
                                                                           L"SupplierUnitPrice"};

}  // namespace ard::windows

#endif  // ARD_WINDOWS_ENGINE_DISPATCH_IDS_H_
