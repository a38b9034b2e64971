#include "benchmarks/dispatch_recorder.h"

#include <algorithm>

#include "frame/error.h"
#include "windows/engine/variant.h"

namespace ard::benchmarks {

using windows::ComPtr;
using windows::ScopedVariant;

namespace {

// Objects tell no names of their members: these are asked for by name.
constexpr const wchar_t* kMemberNames[] = {
    L"Value",
    L"Item",
    L"Fields",
    L"Find",
    L"Count",
    L"Name",
    L"Type",
    L"CreateRecordObject",
    L"Open",
    L"Close",
    L"Read",
    L"Write",
    L"FindFirst",
    L"FindNext",
    L"MoveFirst",
    L"MoveNext",
    L"MoveTo",
    L"Key",
    L"Position",
    L"RecordNumber",
    L"Update",
    L"AddNew",
    L"Edit",
    L"ExtraText",
    L"Version",
    L"Transactions",
    L"Connect",
    L"ConnectNT",
    L"EOF",
    L"Disconnect",
    L"LastError",
    L"Number",
    L"Text",
    L"BOF",
    L"State",
    L"CursorLocation",
    L"Filter",
    L"Sort",
    L"Delete",
    L"RecordCount",
    L"Execute",
    L"AbsolutePosition",
    L"CustomerUnitPrice",
    L"SupplierUnitPrice",
};

std::wstring NameOf(IDispatch* object, DISPID id) {
  for (const wchar_t* name : kMemberNames) {
    auto* text = const_cast<LPOLESTR>(name);
    DISPID found = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &found);
    if (found == id) return name;
  }
  return {};
}

DISPID property_put = DISPID_PROPERTYPUT;

constexpr std::size_t kMostArguments = 8;

// The arguments of one call, as any host has to make them: a server whose parameters are by
// reference may put another text in place of the one that it is passed, so each call gets its own.
class FreshArguments {
 public:
  explicit FreshArguments(const std::vector<ScopedVariant>& arguments) : count_(arguments.size()) {
    if (count_ > kMostArguments) throw Error(kErrorFailed, L"An operation has too many arguments.");
    for (std::size_t i = 0; i < count_; ++i) {
      arguments_[i] = arguments[i];
      if (arguments_[i].vt == VT_BSTR) {
        const BSTR text = arguments_[i].bstrVal;
        arguments_[i].bstrVal = SysAllocStringLen(text, SysStringLen(text));
      }
    }
  }
  FreshArguments(const FreshArguments&) = delete;
  FreshArguments& operator=(const FreshArguments&) = delete;
  ~FreshArguments() {
    for (std::size_t i = 0; i < count_; ++i) {
      if (arguments_[i].vt == VT_BSTR) SysFreeString(arguments_[i].bstrVal);
    }
  }

  VARIANT* data() { return arguments_; }

 private:
  VARIANT arguments_[kMostArguments];
  std::size_t count_;
};

// Repeats the operation, and leaves the object that it hands out in `handed_out`.
void Repeat(const Step& step, IDispatch* object, ComPtr<IDispatch>* handed_out) {
  const bool puts = step.flags & DISPATCH_PROPERTYPUT;
  FreshArguments arguments(step.arguments);
  DISPPARAMS parameters = {arguments.data(), puts ? &property_put : nullptr,
                           static_cast<UINT>(step.arguments.size()), puts ? 1U : 0U};
  ScopedVariant result;
  EXCEPINFO exception{};
  const HRESULT status =
      object->Invoke(step.id, IID_NULL, LOCALE_USER_DEFAULT, step.flags, &parameters,
                     step.has_result ? &result : nullptr, &exception, nullptr);
  if (FAILED(status)) {
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
  } else if (handed_out && result.vt == VT_DISPATCH) {
    *handed_out = ComPtr<IDispatch>::Adopt(result.Detach().pdispVal);
  }
}

}  // namespace

class DispatchProxy final : public windows::ComObject<IDispatch> {
 public:
  DispatchProxy(ComPtr<IDispatch> object, DispatchRecorder& recorder)
      : object_(std::move(object)), recorder_(recorder), slot_(recorder.Enter(this)) {}

  const ComPtr<IDispatch>& bare() const { return object_; }
  Slot slot() const { return slot_; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return object_->GetTypeInfoCount(count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
    return object_->GetTypeInfo(index, locale, info);
  }
  // What is looked up is kept, and belongs to no call.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    return object_->GetIDsOfNames(reserved, names, count, locale, ids);
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* failed) override {
    Step step = StepOf(id, flags, *parameters, result);
    DISPPARAMS bare = *parameters;
    bare.rgvarg = step.arguments.data();
    const HRESULT status =
        object_->Invoke(id, reserved, locale, flags, &bare, result, exception, failed);
    step.failed = FAILED(status);
    if (SUCCEEDED(status) && result && result->vt == VT_DISPATCH && result->pdispVal) {
      auto* const proxy = new DispatchProxy(ComPtr<IDispatch>::Adopt(result->pdispVal), recorder_);
      result->pdispVal = proxy;
      step.result = proxy->slot();
    }
    recorder_.Note(std::move(step));
    return status;
  }

 private:
  ~DispatchProxy() override {
    recorder_.proxies_[slot_] = nullptr;
    Step step;
    step.kind = Step::Kind::kRelease;
    step.object = slot_;
    recorder_.Note(std::move(step));
  }

  Step StepOf(DISPID id, WORD flags, const DISPPARAMS& parameters, const VARIANT* result) const {
    Step step;
    step.object = slot_;
    step.name = NameOf(object_.get(), id);
    step.id = id;
    step.flags = flags;
    step.has_result = result != nullptr;
    step.referred.resize(parameters.cArgs);
    for (UINT i = 0; i < parameters.cArgs; ++i) {
      const VARIANT& given = parameters.rgvarg[i];
      ScopedVariant argument = recorder_.Prepared(given);
      if (given.vt & VT_BYREF) {
        step.referred[i] = std::move(argument);
        argument = ScopedVariant();
        argument.vt = given.vt;
        argument.byref = &step.referred[i].byref;
      }
      step.arguments.push_back(std::move(argument));
    }
    return step;
  }

  ComPtr<IDispatch> object_;
  DispatchRecorder& recorder_;
  Slot slot_;
};

ComPtr<IDispatch> DispatchRecorder::Wrap(ComPtr<IDispatch> object) {
  if (std::find(proxies_.begin(), proxies_.end(), object.get()) != proxies_.end()) return object;
  return ComPtr<IDispatch>::Adopt(new DispatchProxy(std::move(object), *this));
}

Slot DispatchRecorder::Enter(DispatchProxy* proxy) {
  auto place = std::find(proxies_.begin(), proxies_.end(), nullptr);
  if (place == proxies_.end()) place = proxies_.insert(place, nullptr);
  *place = proxy;
  return static_cast<Slot>(place - proxies_.begin());
}

void DispatchRecorder::Note(Step step) {
  if (is_on_) recording_.steps_.push_back(std::move(step));
}

ScopedVariant DispatchRecorder::Prepared(const VARIANT& argument) const {
  ScopedVariant copy;
  VariantCopyInd(&copy, const_cast<VARIANT*>(&argument));
  for (DispatchProxy* const proxy : proxies_) {
    if (!proxy || copy.vt != VT_DISPATCH || copy.pdispVal != proxy) continue;
    copy = ScopedVariant();
    copy.vt = VT_DISPATCH;
    copy.pdispVal = ComPtr<IDispatch>(proxy->bare()).Detach();
  }
  return copy;
}

void DispatchRecorder::Start() {
  recording_ = {};
  for (const DispatchProxy* const proxy : proxies_) {
    recording_.host_objects_.push_back(proxy ? proxy->bare() : ComPtr<IDispatch>());
  }
  is_on_ = true;
}

Recording DispatchRecorder::Stop() {
  is_on_ = false;
  recording_.host_objects_.resize(proxies_.size());
  recording_.objects_ = recording_.host_objects_;
  return std::move(recording_);
}

void Recording::Replay() {
  for (const Step& step : steps_) {
    ComPtr<IDispatch>& object = objects_[step.object];
    switch (step.kind) {
      case Step::Kind::kInvoke:
        if (object) {
          Repeat(step, object.get(), step.result == kNoSlot ? nullptr : &objects_[step.result]);
        }
        break;
      case Step::Kind::kCreate:
        CoCreateInstance(step.class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                         reinterpret_cast<void**>(object.Receive()));
        break;
      case Step::Kind::kRelease:
        object = {};
        break;
    }
  }
}

// ---- Created objects ----

class WrappingFactory final : public windows::ComObject<IClassFactory> {
 public:
  WrappingFactory(ComPtr<IClassFactory> factory, const wchar_t* prog_id, const CLSID& class_id,
                  DispatchRecorder& recorder)
      : factory_(std::move(factory)), prog_id_(prog_id), class_id_(class_id), recorder_(recorder) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    ComPtr<IDispatch> created;
    const HRESULT status =
        factory_->CreateInstance(outer, IID_IDispatch, reinterpret_cast<void**>(created.Receive()));
    if (FAILED(status)) return status;
    Step step;
    step.kind = Step::Kind::kCreate;
    step.name = prog_id_;
    step.class_id = class_id_;
    const auto proxy =
        ComPtr<DispatchProxy>::Adopt(new DispatchProxy(std::move(created), recorder_));
    step.object = proxy->slot();
    recorder_.Note(std::move(step));
    return proxy->QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override { return factory_->LockServer(lock); }

 private:
  ComPtr<IClassFactory> factory_;
  const wchar_t* prog_id_;
  CLSID class_id_;
  DispatchRecorder& recorder_;
};

WrappedClass::WrappedClass(DispatchRecorder& recorder, const wchar_t* prog_id) {
  CLSID class_id{};
  ComPtr<IClassFactory> factory;
  if (FAILED(CLSIDFromProgID(prog_id, &class_id)) ||
      FAILED(CoGetClassObject(class_id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                              reinterpret_cast<void**>(factory.Receive())))) {
    throw Error(kErrorFailed, std::wstring(prog_id) + L" is not registered.");
  }
  const auto wrapping = ComPtr<IClassFactory>::Adopt(
      new WrappingFactory(std::move(factory), prog_id, class_id, recorder));
  CoRegisterClassObject(class_id, wrapping.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                        &registration_);
}

WrappedClass::~WrappedClass() { CoRevokeClassObject(registration_); }

}  // namespace ard::benchmarks
