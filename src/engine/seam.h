// The accounts engine as the library sees it: abstract classes with the operations that it needs,
// and nothing of how they are reached. Every operation may throw Error; destroying an object
// releases it; an object that an operation returns is never null. The guarded handles
// (engine/handles.h) are what the rooms above use.
#ifndef ARD_ENGINE_SEAM_H_
#define ARD_ENGINE_SEAM_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/value.h"

namespace ard::engine {

// How a file is opened: for a query, for appending records, for reading.
enum class Mode : std::int32_t { kQuery = 0, kAppend = 33, kRead = 64 };

enum class Match : bool { kExact = false, kPartial = true };

class Field {
 public:
  virtual ~Field() = default;
  virtual std::wstring Name() = 0;
  virtual std::int32_t Type() = 0;
  virtual Value GetValue() = 0;
  virtual void SetValue(const Value& value) = 0;
  // Takes over another field's value, unchanged.
  virtual void CopyFrom(Field& other) { SetValue(other.GetValue()); }
  // The value as text, into the memory that `text` has; as it was when that fails, or, with False,
  // when it is Null.
  virtual bool ReadText(std::wstring& text) {
    Value value = GetValue();
    if (value.is_null()) return false;
    text = std::move(value).ToText();
    return true;
  }
};

// The fields of the record that is current in the object they came from. Whether the collection and
// its fields follow that object to another record is the engine's matter: they are to be taken
// anew.
class Fields {
 public:
  virtual ~Fields() = default;
  virtual std::unique_ptr<Field> Item(std::wstring_view name) = 0;
  virtual std::unique_ptr<Field> Item(std::int32_t position) = 0;  // from 1
  virtual std::int32_t Count() = 0;
};

// Numbered records, from 1, with a current record.
class DataFileObject {
 public:
  virtual ~DataFileObject() = default;
  virtual bool Open(Mode mode) = 0;
  virtual bool Read(std::int32_t record) = 0;
  virtual std::int32_t Count() = 0;
  virtual std::unique_ptr<Fields> GetFields() = 0;
  // `value` as text may end in "*", which matches any ending.
  virtual bool FindFirst(std::wstring_view field, const Value& value) = 0;
  virtual bool FindNext(std::wstring_view field, const Value& value) = 0;
  virtual bool Write(std::int32_t record) = 0;
  virtual void Close() = 0;
};

// The stock transactions of one stock record, in the engine's order, with a current one.
class TransactionsObject {
 public:
  virtual ~TransactionsObject() = default;
  virtual std::int32_t Count() = 0;
  virtual std::unique_ptr<Fields> GetFields() = 0;
  virtual void MoveFirst() = 0;
  virtual bool MoveNext() = 0;
};

// One record located by its key.
class RecordObject {
 public:
  virtual ~RecordObject() = default;
  virtual std::unique_ptr<Fields> GetFields() = 0;
  virtual bool Find(Match match) = 0;
  virtual void MoveFirst() = 0;
  virtual bool MoveNext() = 0;
  virtual void AddNew() = 0;
  virtual void Edit() = 0;
  virtual bool Update() = 0;
  virtual void SetExtraText(std::wstring_view text) = 0;
  // Of a stock record.
  virtual std::unique_ptr<TransactionsObject> Transactions() = 0;
};

// The entries of a data file in key order; positions count from 1.
class IndexObject {
 public:
  virtual ~IndexObject() = default;
  virtual bool Open(Mode mode) = 0;
  virtual void SetKey(const Value& key) = 0;
  virtual bool Find(Match match) = 0;
  virtual std::int32_t Position() = 0;
  virtual std::int32_t RecordNumber() = 0;
  virtual void MoveTo(std::int32_t position) = 0;
  virtual void MoveFirst() = 0;
  virtual bool MoveNext() = 0;
  virtual void Close() = 0;
};

// The engine's own pricing service.
class PricingObject {
 public:
  virtual ~PricingObject() = default;
  virtual double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) = 0;
  virtual double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) = 0;
};

class Workspace {
 public:
  virtual ~Workspace() = default;
  // The engine's CreateRecordObject, told apart by what the caller takes the object for.
  virtual std::unique_ptr<DataFileObject> CreateDataFile(std::wstring_view name) = 0;
  virtual std::unique_ptr<RecordObject> CreateRecord(std::wstring_view name) = 0;
  virtual std::unique_ptr<IndexObject> CreateIndex(std::wstring_view name) = 0;
  // Null when the engine has no pricing service: most have none, and that is no failure.
  virtual std::unique_ptr<PricingObject> CreatePricing() = 0;
  virtual bool Connect(std::wstring_view data_path, std::wstring_view user,
                       std::wstring_view password, std::wstring_view unique_id) = 0;
  virtual bool ConnectNT(std::wstring_view data_path, std::wstring_view account,
                         std::wstring_view password, std::wstring_view unique_id) = 0;
  virtual void Disconnect() = 0;
  virtual std::wstring Version() = 0;
};

class EngineError {
 public:
  virtual ~EngineError() = default;
  virtual std::int32_t Number() = 0;
  virtual std::wstring Text() = 0;
};

class Engine {
 public:
  virtual ~Engine() = default;
  virtual std::unique_ptr<EngineError> LastError() = 0;
};

}  // namespace ard::engine

#endif  // ARD_ENGINE_SEAM_H_
