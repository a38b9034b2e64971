#include "simulator/windows/adapters.h"

#include <string_view>
#include <utility>

namespace ard::simulator {
namespace {

// The share of an automation object in a live count.
class Live {
 public:
  explicit Live(const LiveCount& count) : count_(count) { ++*count_; }
  Live(const Live& other) : Live(other.count_) {}
  Live(Live&&) = default;
  Live& operator=(const Live&) = delete;
  ~Live() {
    if (count_) --*count_;
  }

 private:
  LiveCount count_;
};

// Members go from the last to the first: an owner goes after what belongs to it.
struct FieldTarget {
  std::shared_ptr<void> owner;
  Live live;
  std::unique_ptr<engine::Field> field;
};

struct FieldsTarget {
  std::shared_ptr<void> owner;
  Live live;
  std::unique_ptr<engine::Fields> fields;
};

struct DataFileTarget {
  Live live;
  std::shared_ptr<engine::DataFileObject> file;
};

struct RecordTarget {
  Live live;
  std::shared_ptr<engine::RecordObject> record;
};

struct IndexTarget {
  Live live;
  std::unique_ptr<engine::IndexObject> index;
};

struct TransactionsTarget {
  Live live;
  std::shared_ptr<engine::TransactionsObject> list;
};

struct PricingTarget {
  Live live;
  std::unique_ptr<engine::PricingObject> pricing;
};

struct WorkspaceTarget {
  LiveCount live;
  std::shared_ptr<engine::Workspace> workspace;
};

struct ErrorTarget {
  Live live;
  std::unique_ptr<engine::EngineError> error;
};

void GetFieldValue(FieldTarget& self, Call& call) { call.Return(self.field->GetValue()); }
void PutFieldValue(FieldTarget& self, Call& call) { self.field->SetValue(call.Argument(0)); }

constexpr Member<FieldTarget> kFieldMembers[] = {
    {L"Value", 3, kCall, 0, GetFieldValue},
    {L"Value", 3, kPut, 1, PutFieldValue},
    {L"Name", 2, kCall, 0, [](FieldTarget& self, Call& call) { call.Return(self.field->Name()); }},
    {L"Type", 4, kCall, 0, [](FieldTarget& self, Call& call) { call.Return(self.field->Type()); }},
    // The default member.
    {L"Value", DISPID_VALUE, kCall, 0, GetFieldValue},
    {L"Value", DISPID_VALUE, kPut, 1, PutFieldValue},
};

void GetFieldsItem(FieldsTarget& self, Call& call) {
  const Value which = call.Argument(0);
  const bool by_name = std::holds_alternative<std::wstring>(which.storage());
  auto field = by_name ? self.fields->Item(which.ToText()) : self.fields->Item(which.ToLong());
  call.Return(
      Automation<FieldTarget>::Create(kFieldMembers, {self.owner, self.live, std::move(field)}));
}

constexpr Member<FieldsTarget> kFieldsMembers[] = {
    {L"Item", DISPID_VALUE, kCall, 1, GetFieldsItem},
    {L"Count", 1, kCall, 0,
     [](FieldsTarget& self, Call& call) { call.Return(self.fields->Count()); }},
};

// The fields of an engine object, which lives as long as they do.
template <class Owner>
ComPtr<IDispatch> ExposeFields(const std::shared_ptr<Owner>& owner, const Live& live) {
  return Automation<FieldsTarget>::Create(kFieldsMembers, {owner, live, owner->GetFields()});
}

constexpr Member<DataFileTarget> kDataFileMembers[] = {
    {L"Fields", 0x10002, kCall, 0,
     [](DataFileTarget& self, Call& call) { call.Return(ExposeFields(self.file, self.live)); }},
    {L"Read", 0x10003, kCall, 1,
     [](DataFileTarget& self, Call& call) { call.Return(self.file->Read(call.Long(0))); }},
    {L"Write", 0x10004, kCall, 1,
     [](DataFileTarget& self, Call& call) { call.Return(self.file->Write(call.Long(0))); }},
    {L"Count", 0x10006, kCall, 0,
     [](DataFileTarget& self, Call& call) { call.Return(self.file->Count()); }},
    {L"Open", 0x10009, kCall, 1,
     [](DataFileTarget& self, Call& call) { call.Return(self.file->Open(call.Mode(0))); }},
    {L"Close", 0x1000a, kCall, 0, [](DataFileTarget& self, Call&) { self.file->Close(); }},
    {L"FindFirst", 0x1000b, kCall, 2,
     [](DataFileTarget& self, Call& call) {
       call.Return(self.file->FindFirst(call.Text(0), call.Argument(1)));
     }},
    {L"FindNext", 0x1000c, kCall, 2,
     [](DataFileTarget& self, Call& call) {
       call.Return(self.file->FindNext(call.Text(0), call.Argument(1)));
     }},
};

constexpr Member<TransactionsTarget> kTransactionsMembers[] = {
    {L"Fields", 0x20001, kCall, 0,
     [](TransactionsTarget& self, Call& call) { call.Return(ExposeFields(self.list, self.live)); }},
    {L"Count", 0x10006, kCall, 0,
     [](TransactionsTarget& self, Call& call) { call.Return(self.list->Count()); }},
    {L"MoveFirst", 0x20004, kCall, 0,
     [](TransactionsTarget& self, Call&) { self.list->MoveFirst(); }},
    {L"MoveNext", 0x20006, kCall, 0,
     [](TransactionsTarget& self, Call& call) { call.Return(self.list->MoveNext()); }},
};

constexpr Member<RecordTarget> kRecordMembers[] = {
    {L"Fields", 0x20001, kCall, 0,
     [](RecordTarget& self, Call& call) { call.Return(ExposeFields(self.record, self.live)); }},
    {L"MoveFirst", 0x20004, kCall, 0, [](RecordTarget& self, Call&) { self.record->MoveFirst(); }},
    {L"MoveNext", 0x20006, kCall, 0,
     [](RecordTarget& self, Call& call) { call.Return(self.record->MoveNext()); }},
    {L"Update", 0x2000a, kCall, 0,
     [](RecordTarget& self, Call& call) { call.Return(self.record->Update()); }},
    {L"AddNew", 0x2000b, kCall, 0, [](RecordTarget& self, Call&) { self.record->AddNew(); }},
    {L"Find", 0x2000c, kCall, 1,
     [](RecordTarget& self, Call& call) { call.Return(self.record->Find(call.Match(0))); }},
    {L"Edit", 0x2000f, kCall, 0, [](RecordTarget& self, Call&) { self.record->Edit(); }},
    {L"ExtraText", 0x20011, kPut, 1,
     [](RecordTarget& self, Call& call) { self.record->SetExtraText(call.Text(0)); }},
    {L"Transactions", 0x20020, kCall, 0,
     [](RecordTarget& self, Call& call) {
       call.Return(Automation<TransactionsTarget>::Create(
           kTransactionsMembers, {self.live, self.record->Transactions()}));
     }},
};

constexpr Member<IndexTarget> kIndexMembers[] = {
    {L"Key", 0x10001, kPut, 1,
     [](IndexTarget& self, Call& call) { self.index->SetKey(call.Argument(0)); }},
    {L"RecordNumber", 0x10002, kCall, 0,
     [](IndexTarget& self, Call& call) { call.Return(self.index->RecordNumber()); }},
    {L"Position", 0x10003, kCall, 0,
     [](IndexTarget& self, Call& call) { call.Return(self.index->Position()); }},
    {L"Find", 0x10006, kCall, 1,
     [](IndexTarget& self, Call& call) { call.Return(self.index->Find(call.Match(0))); }},
    {L"MoveFirst", 0x10007, kCall, 0, [](IndexTarget& self, Call&) { self.index->MoveFirst(); }},
    {L"MoveNext", 0x10009, kCall, 0,
     [](IndexTarget& self, Call& call) { call.Return(self.index->MoveNext()); }},
    {L"MoveTo", 0x1000d, kCall, 1,
     [](IndexTarget& self, Call& call) { self.index->MoveTo(call.Long(0)); }},
    {L"Open", 0x20009, kCall, 1,
     [](IndexTarget& self, Call& call) { call.Return(self.index->Open(call.Mode(0))); }},
    {L"Close", 0x2000a, kCall, 0, [](IndexTarget& self, Call&) { self.index->Close(); }},
};

constexpr Member<PricingTarget> kPricingMembers[] = {
    {L"CustomerUnitPrice", 1, kCall, 2,
     [](PricingTarget& self, Call& call) {
       call.Return(self.pricing->CustomerUnitPrice(call.Text(0), call.Text(1)));
     }},
    {L"SupplierUnitPrice", 2, kCall, 2,
     [](PricingTarget& self, Call& call) {
       call.Return(self.pricing->SupplierUnitPrice(call.Text(0), call.Text(1)));
     }},
};

void CreateRecordObject(WorkspaceTarget& self, Call& call) {
  const std::wstring name = call.Text(0);
  Live live(self.live);
  if (name.ends_with(L"Index")) {
    auto index = self.workspace->CreateIndex(name);
    call.Return(Automation<IndexTarget>::Create(kIndexMembers, {live, std::move(index)}));
  } else if (name.ends_with(L"Record")) {
    auto record = self.workspace->CreateRecord(name);
    call.Return(Automation<RecordTarget>::Create(kRecordMembers, {live, std::move(record)}));
  } else if (name == L"Pricing") {
    auto pricing = self.workspace->CreatePricing();
    if (!pricing) throw Error(kErrorUnknownName, L"The engine has no object Pricing.");
    call.Return(Automation<PricingTarget>::Create(kPricingMembers, {live, std::move(pricing)}));
  } else {
    auto file = self.workspace->CreateDataFile(name);
    call.Return(Automation<DataFileTarget>::Create(kDataFileMembers, {live, std::move(file)}));
  }
}

constexpr Member<WorkspaceTarget> kWorkspaceMembers[] = {
    {L"Version", 3, kCall, 0,
     [](WorkspaceTarget& self, Call& call) { call.Return(self.workspace->Version()); }},
    {L"Connect", 4, kCall, 4,
     [](WorkspaceTarget& self, Call& call) {
       call.Return(self.workspace->Connect(call.Text(0), call.Text(1), call.Text(2), call.Text(3)));
     }},
    {L"CreateRecordObject", 5, kCall, 1, CreateRecordObject},
    {L"Disconnect", 6, kCall, 0,
     [](WorkspaceTarget& self, Call&) { self.workspace->Disconnect(); }},
    {L"ConnectNT", 7, kCall, 4,
     [](WorkspaceTarget& self, Call& call) {
       call.Return(
           self.workspace->ConnectNT(call.Text(0), call.Text(1), call.Text(2), call.Text(3)));
     }},
};

constexpr Member<ErrorTarget> kErrorMembers[] = {
    {L"Number", 1, kCall, 0,
     [](ErrorTarget& self, Call& call) { call.Return(self.error->Number()); }},
    {L"Text", 2, kCall, 0, [](ErrorTarget& self, Call& call) { call.Return(self.error->Text()); }},
};

}  // namespace

ComPtr<IDispatch> Expose(std::shared_ptr<engine::Workspace> workspace, LiveCount live) {
  return Automation<WorkspaceTarget>::Create(kWorkspaceMembers,
                                             {std::move(live), std::move(workspace)});
}

ComPtr<IDispatch> Expose(std::unique_ptr<engine::EngineError> error, const LiveCount& live) {
  return Automation<ErrorTarget>::Create(kErrorMembers, {Live(live), std::move(error)});
}

}  // namespace ard::simulator
