#include "tests/windows/automation_members.h"

#include <utility>

#include "frame/text.h"
#include "simulator/windows/engine_object.h"
#include "windows/engine/variant.h"

namespace ard::windows::testing {
namespace {

using ard::testing::Argument;

void Require(HRESULT status, const std::wstring& what) {
  if (FAILED(status)) throw Error(status, what);
}

ComPtr<IDispatch> Registered(const std::wstring& prog_id) {
  ComPtr<IDispatch> object = CreateObject(prog_id);
  if (!object) throw Error(REGDB_E_CLASSNOTREG, prog_id);
  return object;
}

// The result of a member that must not fail.
template <class... Arguments>
ScopedVariant Asked(const LateBound& object, const wchar_t* member, Arguments&&... arguments) {
  ScopedVariant result = object.Ask(member, std::forward<Arguments>(arguments)...);
  if (result.vt == VT_ERROR) Require(result.scode, member);
  return result;
}

LateBound AskedObject(const LateBound& object, const wchar_t* member, const wchar_t* argument) {
  return LateBound(ToDispatch(Asked(object, member, argument)));
}

ScopedVariant Texts(std::int32_t count) {
  ScopedVariant array;
  array.parray = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(count));
  if (array.parray) array.vt = VT_ARRAY | VT_BSTR;
  return array;
}

ScopedVariant StockRecord(const LateBound& workspace, const std::wstring& code) {
  const LateBound record = AskedObject(workspace, L"CreateRecordObject", L"StockRecord");
  const LateBound fields(ToDispatch(Asked(record, L"Fields")));
  Require(AskedObject(fields, L"Item", L"STOCK_CODE").Put(L"Value", Variant(code)), code);
  Asked(record, L"Find", false);
  return Variant(record.get());
}

// A folder of accounts data that nobody holds exclusively. Its queue goes when the process ends.
std::wstring DataFolder() {
  static const std::wstring folder = [] {
    wchar_t path[MAX_PATH + 1] = {};
    GetTempPathW(ARRAYSIZE(path), path);
    CreateFileW((std::wstring(path) + L"queue.dta").c_str(), GENERIC_READ,
                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    return std::wstring(path);
  }();
  return folder;
}

// An argument that refers to a variable of the host's.
ScopedVariant Reference(VARIANT& variable) {
  ScopedVariant reference;
  reference.vt = static_cast<VARTYPE>(VT_BYREF | variable.vt);
  reference.byref = &variable.llVal;
  return reference;
}

std::wstring TextOf(const VARIANT& variant) {
  if (!(variant.vt & VT_ARRAY)) {
    std::wstring text = FromVariant(variant).ToText();
    Trim(text);
    return text;
  }
  std::wstring all;
  const auto* elements = static_cast<const BSTR*>(variant.parray->pvData);
  for (ULONG i = 0; i < variant.parray->rgsabound[0].cElements; ++i) {
    (all += L'|') += View(elements[i]);
  }
  return all;
}

}  // namespace

MembersWorld::MembersWorld(const Wrap& wrap)
    : engine_(wrap(simulator::CreateEngineObject(ard::testing::MembersCompany()))),
      connection_(wrap(Registered(L"ADODB.Connection"))),
      workspace_(wrap(ToDispatch(engine_.Ask(L"Workspace")))) {
  Asked(connection_, L"Open", ard::testing::kMembersConnection);
  for (const std::wstring& command : ard::testing::MembersDatabaseCommands()) {
    Asked(connection_, L"Execute", command.c_str());
  }
}

LateBound MembersWorld::Create(const std::wstring& class_name) const {
  LateBound object(Registered(L"ArdObjects100." + class_name));
  // No class has all of these.
  object.Put(L"AppName", Variant(L"Manufacturing"));
  object.Put(L"ArdWorkspace", Variant(workspace_.get()));
  object.Put(L"ArdEngine", Variant(engine_.get()));
  object.Put(L"oDBaseConn", Variant(connection_.get()));
  object.Put(L"ArdDataPath", Variant(DataFolder()));
  object.Put(L"UseAccRights", Variant(true));
  return object;
}

double Count(const LateBound& object, const wchar_t* counter) {
  return FromVariant(Asked(object, counter)).ToDouble();
}

AutomationCall::AutomationCall(const LateBound& object, const ard::testing::Member& member,
                               const MembersWorld& world)
    : object_(object.get()) {
  std::wstring name = member.member_name;
  wchar_t* names = name.data();
  Require(object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id_), member.name);

  outputs_.reserve(member.arguments->size());
  for (const Argument& argument : *member.arguments) {
    switch (argument.kind) {
      case Argument::Kind::kValue:
        arguments_.insert(arguments_.begin(), ToVariant(argument.value));
        break;
      case Argument::Kind::kOutput:
        outputs_.push_back(ToVariant(argument.value));
        arguments_.insert(arguments_.begin(), Reference(outputs_.back()));
        break;
      case Argument::Kind::kTexts:
        outputs_.push_back(Texts(argument.value.ToLong()));
        arguments_.insert(arguments_.begin(), Reference(outputs_.back()));
        break;
      case Argument::Kind::kStockRecord:
        arguments_.insert(arguments_.begin(),
                          StockRecord(world.workspace(), argument.value.ToText()));
        break;
    }
  }
}

HRESULT AutomationCall::operator()() {
  DISPPARAMS parameters = {arguments_.data(), nullptr, static_cast<UINT>(arguments_.size()), 0};
  result_ = ScopedVariant();
  return object_->Invoke(id_, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, &result_,
                         nullptr, nullptr);
}

std::wstring AutomationCall::Answer() const {
  std::wstring answer = TextOf(result_);
  bool first = result_.vt == VT_EMPTY;
  for (const ScopedVariant& output : outputs_) {
    if (!std::exchange(first, false)) answer += L',';
    answer += TextOf(output);
  }
  return answer;
}

}  // namespace ard::windows::testing
