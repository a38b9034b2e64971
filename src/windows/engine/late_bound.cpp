#include "windows/engine/late_bound.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "windows/engine/dispatch_call.h"
#include "windows/engine/dispatch_ids.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

using engine::Match;
using engine::Mode;

// Of one type of object, and of the fields that it has.
using EngineIds = NamedIds<kMemberNames>;

// What a workspace and everything created through it share, until the last of them is gone (or a
// record that the host has handed in, and what comes from it): the ids that are known, and the
// memory of the wrappers. Every call of a host makes and drops a handful of them, so their memory
// is kept for the next call. All of it belongs to one apartment, that is to one thread.
class Session {
 public:
  Session() = default;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void AddRef() { ++references_; }
  void Release() {
    if (--references_ == 0) delete this;
  }

  EngineIds data_file_ids;
  EngineIds record_ids;
  EngineIds transactions_ids;
  EngineIds pricing_ids;

  KnownName Known(std::wstring_view name) { return names_.Find(name); }

  // Memory for one wrapper, which holds a reference to the session until it is given back.
  void* Take() {
    Block* block = free_;
    if (block) free_ = block->next;
    if (!block) block = new Block;
    block->session = this;
    AddRef();
    return block->content;
  }
  static void GiveBack(void* content) {
    auto* block = reinterpret_cast<Block*>(static_cast<char*>(content) - offsetof(Block, content));
    Session* session = block->session;
    block->next = std::exchange(session->free_, block);
    session->Release();
  }

  static constexpr std::size_t kContentSize = 4 * sizeof(void*);

 private:
  struct Block {
    Session* session;
    Block* next;
    alignas(std::max_align_t) char content[kContentSize];
  };

  ~Session() {
    while (free_) delete std::exchange(free_, free_->next);
  }

  KnownNames names_;
  ULONG references_ = 0;
  Block* free_ = nullptr;
};

// A wrapper in the memory of its session.
template <class Interface>
class Wrapper : public Interface {
 public:
  static void* operator new(std::size_t, Session& session) { return session.Take(); }
  static void operator delete(void* memory) { Session::GiveBack(memory); }
  static void operator delete(void* memory, Session&) { Session::GiveBack(memory); }

  Wrapper(Session& session, ComPtr<IDispatch> object)
      : object_(std::move(object)), session_(session) {}

 protected:
  LateBound object_;
  Session& session_;
};

template <class Wrapped, class... Arguments>
std::unique_ptr<Wrapped> Wrap(Session& session, ComPtr<IDispatch> object, Arguments&... arguments) {
  static_assert(sizeof(Wrapped) <= Session::kContentSize);
  return std::unique_ptr<Wrapped>(new (session) Wrapped(session, std::move(object), arguments...));
}

class LateField : public Wrapper<engine::Field> {
 public:
  LateField(Session& session, ComPtr<IDispatch> object, EngineIds& ids)
      : Wrapper(session, std::move(object)), ids_(ids) {}

  std::wstring Name() override { return object_.AskText(ids_.Get(object_, kFieldName)); }
  std::int32_t Type() override { return object_.AskLong(FieldId::kType); }
  Value GetValue() override { return FromVariant(object_.Ask(ids_.Get(object_, kFieldValue))); }
  void SetValue(const Value& value) override { object_.Put(ids_.Get(object_, kFieldValue), value); }
  // Also what no Value holds: memos as arrays of bytes, decimals of more digits than a double has.
  void CopyFrom(engine::Field& other) override {
    auto& field = static_cast<LateField&>(other);
    object_.Put(ids_.Get(object_, kFieldValue),
                field.object_.Ask(field.ids_.Get(field.object_, kFieldValue)));
  }
  bool ReadText(std::wstring& text) override {
    const ScopedVariant value = object_.Ask(ids_.Get(object_, kFieldValue));
    if (value.vt == VT_BSTR) {
      text = View(value.bstrVal);
    } else if (value.vt != VT_NULL) {
      text = FromVariant(value).ToText();
    }
    return value.vt != VT_NULL;
  }

 private:
  EngineIds& ids_;
};

class LateFields : public Wrapper<engine::Fields> {
 public:
  LateFields(Session& session, ComPtr<IDispatch> object, EngineIds& ids)
      : Wrapper(session, std::move(object)), ids_(ids) {}

  std::unique_ptr<engine::Field> Item(std::wstring_view name) override {
    return Wrap<LateField>(session_, object_.AskObject(FieldsId::kItemByName, session_.Known(name)),
                           ids_);
  }
  std::unique_ptr<engine::Field> Item(std::int32_t position) override {
    const DISPID item = ids_.Get(object_, kFieldsItem);
    return Wrap<LateField>(session_, object_.AskObject(item, position), ids_);
  }
  std::int32_t Count() override { return object_.AskLong(ids_.Get(object_, kFieldsCount)); }

 private:
  EngineIds& ids_;
};

class LateDataFile : public Wrapper<engine::DataFileObject> {
 public:
  using Wrapper::Wrapper;

  bool Open(Mode mode) override { return object_.AskBoolean(DataFileId::kOpen, mode); }
  bool Read(std::int32_t record) override {
    LONG number = record;
    return object_.AskBoolean(DataFileId::kRead, &number);
  }
  std::int32_t Count() override { return object_.AskLong(DataFileId::kCount); }
  std::unique_ptr<engine::Fields> GetFields() override {
    return Wrap<LateFields>(session_, object_.AskObject(DataFileId::kFields),
                            session_.data_file_ids);
  }
  bool FindFirst(std::wstring_view field, const Value& value) override {
    return object_.AskBoolean(DataFileId::kFindFirst, session_.Known(field), value);
  }
  bool FindNext(std::wstring_view field, const Value& value) override {
    return object_.AskBoolean(DataFileId::kFindNext, session_.Known(field), value);
  }
  bool Write(std::int32_t record) override {
    return object_.AskBoolean(DataFileId::kWrite, record);
  }
  void Close() override { object_.Do(DataFileId::kClose); }
};

class LateTransactions : public Wrapper<engine::TransactionsObject> {
 public:
  using Wrapper::Wrapper;

  std::int32_t Count() override { return object_.AskLong(TransactionsId::kCount); }
  std::unique_ptr<engine::Fields> GetFields() override {
    return Wrap<LateFields>(session_, object_.AskObject(TransactionsId::kFields),
                            session_.transactions_ids);
  }
  void MoveFirst() override { object_.Do(TransactionsId::kMoveFirst); }
  bool MoveNext() override { return object_.AskBoolean(TransactionsId::kMoveNext); }
};

class LateRecord : public Wrapper<engine::RecordObject> {
 public:
  using Wrapper::Wrapper;

  std::unique_ptr<engine::Fields> GetFields() override {
    return Wrap<LateFields>(session_, object_.AskObject(RecordId::kFields), session_.record_ids);
  }
  bool Find(Match match) override { return object_.AskBoolean(RecordId::kFind, match); }
  void MoveFirst() override { object_.Do(RecordId::kMoveFirst); }
  bool MoveNext() override { return object_.AskBoolean(RecordId::kMoveNext); }
  void AddNew() override { object_.Do(RecordId::kAddNew); }
  void Edit() override { object_.Do(RecordId::kEdit); }
  bool Update() override { return object_.AskBoolean(RecordId::kUpdate); }
  void SetExtraText(std::wstring_view text) override { object_.Put(RecordId::kExtraText, text); }
  std::unique_ptr<engine::TransactionsObject> Transactions() override {
    const DISPID transactions = session_.record_ids.Get(object_, kRecordTransactions);
    return Wrap<LateTransactions>(session_, object_.AskObject(transactions));
  }
};

class LateIndex : public Wrapper<engine::IndexObject> {
 public:
  using Wrapper::Wrapper;

  bool Open(Mode mode) override { return object_.AskBoolean(IndexId::kOpen, mode); }
  void SetKey(const Value& key) override { object_.Put(IndexId::kKey, key); }
  bool Find(Match match) override { return object_.AskBoolean(IndexId::kFind, match); }
  std::int32_t Position() override { return object_.AskLong(IndexId::kPosition); }
  std::int32_t RecordNumber() override { return object_.AskLong(IndexId::kRecordNumber); }
  void MoveTo(std::int32_t position) override { object_.Do(IndexId::kMoveTo, position); }
  void MoveFirst() override { object_.Do(IndexId::kMoveFirst); }
  bool MoveNext() override { return object_.AskBoolean(IndexId::kMoveNext); }
  void Close() override { object_.Do(IndexId::kClose); }
};

class LatePricing : public Wrapper<engine::PricingObject> {
 public:
  using Wrapper::Wrapper;

  double CustomerUnitPrice(std::wstring_view acc_ref, std::wstring_view stock_code) override {
    return object_.AskDouble(Id(kCustomerUnitPrice), acc_ref, stock_code);
  }
  double SupplierUnitPrice(std::wstring_view stock_code, std::wstring_view acc_ref) override {
    return object_.AskDouble(Id(kSupplierUnitPrice), stock_code, acc_ref);
  }

 private:
  DISPID Id(NamedMember member) { return session_.pricing_ids.Get(object_, member); }
};

class LateWorkspace : public engine::Workspace {
 public:
  explicit LateWorkspace(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  std::unique_ptr<engine::DataFileObject> CreateDataFile(std::wstring_view name) override {
    return Wrap<LateDataFile>(*session_.get(), Create(name));
  }
  std::unique_ptr<engine::RecordObject> CreateRecord(std::wstring_view name) override {
    return Wrap<LateRecord>(*session_.get(), Create(name));
  }
  std::unique_ptr<engine::IndexObject> CreateIndex(std::wstring_view name) override {
    return Wrap<LateIndex>(*session_.get(), Create(name));
  }
  std::unique_ptr<engine::PricingObject> CreatePricing() override {
    ComPtr<IDispatch> service =
        object_.AskForObject(WorkspaceId::kCreateRecordObject, std::wstring_view(L"Pricing"));
    return service ? Wrap<LatePricing>(*session_.get(), std::move(service)) : nullptr;
  }
  bool Connect(std::wstring_view data_path, std::wstring_view user, std::wstring_view password,
               std::wstring_view unique_id) override {
    return object_.AskBoolean(WorkspaceId::kConnect, data_path, user, password, unique_id);
  }
  bool ConnectNT(std::wstring_view data_path, std::wstring_view account, std::wstring_view password,
                 std::wstring_view unique_id) override {
    return object_.AskBoolean(WorkspaceId::kConnectNt, data_path, account, password, unique_id);
  }
  void Disconnect() override { object_.Do(WorkspaceId::kDisconnect); }
  std::wstring Version() override { return object_.AskText(WorkspaceId::kVersion); }

 private:
  ComPtr<IDispatch> Create(std::wstring_view name) {
    try {
      return object_.AskObject(WorkspaceId::kCreateRecordObject, session_->Known(name));
    } catch (const Error&) {
      // What has no such member is no workspace: the error of something else would mislead.
      if (!object_.Has(L"CreateRecordObject")) throw SystemError(kErrorNoMember);
      throw;
    }
  }

  LateBound object_;
  ComPtr<Session> session_{new Session};
};

class LateError : public engine::EngineError {
 public:
  explicit LateError(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  std::int32_t Number() override { return object_.AskLong(ErrorId::kNumber); }
  std::wstring Text() override { return object_.AskText(ErrorId::kText); }

 private:
  LateBound object_;
};

class LateEngine : public engine::Engine {
 public:
  explicit LateEngine(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  std::unique_ptr<engine::EngineError> LastError() override {
    return std::make_unique<LateError>(object_.AskObject(EngineId::kLastError));
  }

 private:
  LateBound object_;
};

}  // namespace

std::shared_ptr<engine::Workspace> WrapWorkspace(IDispatch* workspace) {
  if (!workspace) return nullptr;
  return std::make_shared<LateWorkspace>(ComPtr<IDispatch>(workspace));
}

std::shared_ptr<engine::Engine> WrapEngine(IDispatch* engine) {
  if (!engine) return nullptr;
  return std::make_shared<LateEngine>(ComPtr<IDispatch>(engine));
}

std::unique_ptr<engine::RecordObject> WrapRecord(IDispatch* record) {
  if (!record) return nullptr;
  const ComPtr<Session> session(new Session);
  return Wrap<LateRecord>(*session.get(), ComPtr<IDispatch>(record));
}

}  // namespace ard::windows
