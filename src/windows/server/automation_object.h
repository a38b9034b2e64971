// The automation objects: a thin shell around a portable class. Each procedure converts, calls the
// portable class, converts back and returns S_OK; nothing is ever raised to the host.
#ifndef ARD_WINDOWS_SERVER_AUTOMATION_OBJECT_H_
#define ARD_WINDOWS_SERVER_AUTOMATION_OBJECT_H_

#include <windows.h>
// After windows.h.
#include <ocidl.h>

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "frame/context.h"
#include "frame/public_class.h"
#include "windows/engine/com.h"
#include "windows/floating_point.h"
#include "windows/server/dispatch.h"
#include "windows/server/module.h"
#include "windows/server/published_class.h"

namespace ard::windows {

// Results as the vtable hands them out. A string that there is no memory for is empty.
inline VARIANT_BOOL ToAutomation(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
inline short ToAutomation(std::int16_t value) { return value; }
inline LONG ToAutomation(std::int32_t value) { return value; }
inline double ToAutomation(double value) { return value; }
inline DATE ToAutomation(Date value) { return value.days; }
inline BSTR ToAutomation(const std::wstring& text) {
  return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}
inline IDispatch* ToAutomation(ComPtr<IDispatch> object) { return object.Detach(); }

// A text that a method of the portable class puts out: it starts as what the caller has passed, and
// the caller's string is replaced when it has changed.
class TextOutput {
 public:
  explicit TextOutput(BSTR* target) noexcept : target_(target) {
    try {
      value_ = View(*target);
    } catch (const std::bad_alloc&) {
      target_ = nullptr;  // the caller keeps what it has
    }
  }
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;
  ~TextOutput() {
    if (!target_ || value_ == View(*target_)) return;
    SysReAllocStringLen(target_, value_.data(), static_cast<UINT>(value_.size()));
  }

  std::wstring& value() { return value_; }

 private:
  BSTR* target_;
  std::wstring value_;
};

template <class Interface, class Portable>
class AutomationObject : public Interface, public IProvideClassInfo {
 public:
  explicit AutomationObject(const PublishedClass& published)
      : published_(published), portable_(runtime_->environment()) {}
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == published_.interface_id) {
      *object = static_cast<Interface*>(this);
    } else if (iid == IID_IProvideClassInfo) {
      *object = static_cast<IProvideClassInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() final {
    const ULONG left = --references_;
    if (left == 0) {
      const FloatingPoint floating_point;
      delete this;
    }
    return left;
  }

  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) final {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) final {
    if (!info) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return HandOut(FindTypeInfo(published_.interface_id), info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) final {
    return windows::GetIDsOfNames(published_.table, reserved, names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                                   UINT* failed) final {
    const ComPtr<Interface> self(this);  // the host may let go of it in the middle
    return windows::Invoke(this, published_.table, portable_.context().trace(), prepared_, id,
                           reserved, locale, flags, parameters, result, failed);
  }

  // IProvideClassInfo
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) final {
    if (!info) return E_POINTER;
    *info = nullptr;
    return HandOut(FindTypeInfo(published_.class_id), info);
  }

 protected:
  virtual ~AutomationObject() = default;

  struct Entry : ProcedureEntry {
    explicit Entry(AutomationObject* object)
        : ProcedureEntry(static_cast<Interface*>(object), object->prepared_) {}
  };

  // What a method of the portable class answers to the arguments, as the vtable hands it out.
  template <class Answer, class Method, class... Arguments>
  HRESULT Call(Answer* result, Method method, Arguments... arguments) {
    if (!result) return E_POINTER;
    const Entry entry(this);
    *result = ToAutomation(std::invoke(method, portable_, arguments...));
    return S_OK;
  }

  // The same for one without a result.
  template <class Method>
  HRESULT Perform(Method&& method) {
    const Entry entry(this);
    std::invoke(method, portable_);
    return S_OK;
  }

  Portable& portable() { return portable_; }

  // The procedures of a property that is a text: a member of `owner`, or of the context.
  template <class Owner>
  HRESULT PutText(std::wstring_view name, Owner& owner, std::wstring Owner::*property, BSTR value) {
    const Entry entry(this);
    portable_.template Call<std::wstring>(name,
                                          [&](std::wstring&) { owner.*property = View(value); });
    return S_OK;
  }
  template <class Owner>
  HRESULT GetText(std::wstring_view name, Owner& owner, std::wstring Owner::*property,
                  BSTR* value) {
    if (!value) return E_POINTER;
    const Entry entry(this);
    *value = ToAutomation(portable_.template Call<std::wstring>(
        name, [&](std::wstring& result) { result = owner.*property; }));
    return S_OK;
  }
  HRESULT PutText(std::wstring_view name, std::wstring Context::*property, BSTR value) {
    return PutText(name, portable_.context(), property, value);
  }
  HRESULT GetText(std::wstring_view name, std::wstring Context::*property, BSTR* value) {
    return GetText(name, portable_.context(), property, value);
  }

  // The procedures of a context property that is an object. The host gets back the very pointer
  // that it has given; the portable class gets it behind its seam.
  template <class Seam>
  HRESULT PutObject(std::wstring_view name, ComPtr<IDispatch>& property, IDispatch* value,
                    std::shared_ptr<Seam> Context::*seam,
                    std::shared_ptr<Seam> (*wrap)(IDispatch* object)) {
    const Entry entry(this);
    // What was there goes last: it is the host's, and may come back to set the property anew.
    ComPtr<IDispatch> last_value = std::exchange(property, ComPtr(value));
    std::shared_ptr<Seam> last = std::exchange(portable_.context().*seam, nullptr);
    portable_.template Call<ComPtr<IDispatch>>(
        name, [&](ComPtr<IDispatch>&) { portable_.context().*seam = wrap(value); });
    return S_OK;
  }
  HRESULT GetObject(std::wstring_view name, const ComPtr<IDispatch>& property, IDispatch** value) {
    if (!value) return E_POINTER;
    const Entry entry(this);
    *value = ToAutomation(portable_.template Call<ComPtr<IDispatch>>(
        name, [&](ComPtr<IDispatch>& result) { result = property; }));
    return S_OK;
  }

 private:
  // The portable class, with the frame of its public methods for the property procedures, too.
  struct Framed : Portable {
    using Portable::Portable;
    using PublicClass::Call;
  };

  static HRESULT HandOut(ComPtr<ITypeInfo> info, ITypeInfo** out) {
    *out = info.Detach();
    return *out ? S_OK : TYPE_E_CANTLOADLIBRARY;
  }

  ModuleLock module_lock_;  // the last to go
  const PublishedClass& published_;
  std::atomic<ULONG> references_ = 1;
  bool prepared_ = false;
  std::shared_ptr<Runtime> runtime_ = Runtime::Get();
  Framed portable_;
};

template <class AutomationClass>
IDispatch* Create(const PublishedClass& published) {
  return new AutomationClass(published);
}

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_AUTOMATION_OBJECT_H_
