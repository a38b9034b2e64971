// The automation objects: a thin shell around a portable class. Each procedure converts, calls the
// portable class, converts back and returns S_OK; nothing is ever raised to the host.
#ifndef ARD_WINDOWS_SERVER_AUTOMATION_OBJECT_H_
#define ARD_WINDOWS_SERVER_AUTOMATION_OBJECT_H_

#include <windows.h>
// After windows.h.
#include <ocidl.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "engine/handles.h"
#include "frame/context.h"
#include "frame/public_class.h"
#include "windows/engine/com.h"
#include "windows/engine/late_bound.h"
#include "windows/floating_point.h"
#include "windows/server/dispatch.h"
#include "windows/server/module.h"
#include "windows/server/published_class.h"
#include "windows/server/string_array.h"

namespace ard {
template <>
inline constexpr std::wstring_view kTypeName<windows::ComPtr<IDispatch>> = L"Object";
}  // namespace ard

namespace ard::windows {

// Tells the trace which engine the host has handed over.
inline void NoteEngine(const Context& context) {
  if (!context.trace().on() || !context.workspace) return;
  const std::wstring version = engine::EngineVersion(context);
  if (!version.empty()) context.trace().Noted({engine::kWorkspace, L"Version"}, version);
}

// The member that is the property `name` of `Class`, which has to be of type `T`. Where there is
// none, the compiler says so.
template <class Class, class T>
consteval auto PropertyOf(std::wstring_view name) {
  using Details = std::decay_t<decltype(std::declval<Class&>().details())>;
  for (const auto& property : Class::kProperties) {
    if (property.name == name) return std::get<T Details::*>(property.member);
  }
  throw "no such property";
}

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

// What the portable class is passed for an argument of a published kind (dispatch.h).
template <class Kind>
class Passed;

// One that is the same on both sides, or all but.
template <class Kind, class Kept_>
class PassedPlainly {
 public:
  using Given = typename Kind::Type;
  using Kept = Kept_;  // what a property of that kind is

  explicit PassedPlainly(Given value) : value_(static_cast<Kept>(value)) {}
  static bool Misses(Given) { return false; }
  Kept value() const { return value_; }

 private:
  Kept value_;
};
template <>
class Passed<Boolean> : public PassedPlainly<Boolean, bool> {
  using PassedPlainly::PassedPlainly;
};
template <>
class Passed<Integer> : public PassedPlainly<Integer, std::int16_t> {
  using PassedPlainly::PassedPlainly;
};
template <>
class Passed<Long> : public PassedPlainly<Long, std::int32_t> {
  using PassedPlainly::PassedPlainly;
};
template <>
class Passed<Double> : public PassedPlainly<Double, double> {
  using PassedPlainly::PassedPlainly;
};

template <>
class Passed<String> {
 public:
  using Given = BSTR;
  using Kept = std::wstring;

  explicit Passed(BSTR text) : text_(View(text)) {}
  static bool Misses(BSTR) { return false; }
  std::wstring_view value() const { return text_; }

 private:
  std::wstring_view text_;
};

// The portable side has an enumeration of its own, with the same values.
template <class E>
class Passed<Enumeration<E>> {
 public:
  using Given = E;

  explicit Passed(E value) : value_(value) {}
  static bool Misses(E) { return false; }
  auto value() const { return *this; }
  template <class Own>
  operator Own() const {
    return static_cast<Own>(value_);
  }

 private:
  E value_;
};

// A record of the engine's. One that there is no memory for is none.
template <>
class Passed<ObjectReference> {
 public:
  explicit Passed(IDispatch* record) noexcept {
    try {
      record_ = WrapRecord(record);
    } catch (const std::bad_alloc&) {
    }
  }
  static bool Misses(IDispatch*) { return false; }
  std::unique_ptr<engine::RecordObject> value() { return std::move(record_); }

 private:
  std::unique_ptr<engine::RecordObject> record_;
};

// One that may be left out has been replaced by then; to a vtable host none by reference is zero.
template <class Kind, auto default_value>
class Passed<Optional<Kind, default_value>> : public Passed<Kind> {
  using Passed<Kind>::Passed;
};
template <class Kind>
class Passed<ReadByRef<Kind>> : public Passed<Kind> {
 public:
  using Given = typename Passed<Kind>::Given;

  explicit Passed(const Given* value) : Passed<Kind>(value ? *value : Given{}) {}
  static bool Misses(const Given*) { return false; }
};

// A text in a host's variable, which the host may change meanwhile.
template <>
class Passed<ReadByRef<String>> {
 public:
  using Given = BSTR;

  explicit Passed(const BSTR* text) noexcept {
    try {
      if (text) text_ = View(*text);
    } catch (const std::bad_alloc&) {  // none, then
    }
  }
  static bool Misses(const BSTR*) { return false; }
  std::wstring_view value() const { return text_; }

 private:
  std::wstring text_;
};

template <class Kind>
class Passed<ByRef<Kind>> {
 public:
  explicit Passed(typename Kind::Type* target) : target_(target) {}
  static bool Misses(const typename Kind::Type* target) { return !target; }
  typename Kind::Type& value() { return *target_; }

 private:
  typename Kind::Type* target_;
};

// A text that is put out starts as what the caller has passed, and the caller's string is replaced
// when it has changed.
template <>
class Passed<ByRef<String>> {
 public:
  explicit Passed(BSTR* target) noexcept : target_(target) {
    try {
      value_ = View(*target);
    } catch (const std::bad_alloc&) {
      target_ = nullptr;  // the caller keeps what it has
    }
  }
  Passed(const Passed&) = delete;
  Passed& operator=(const Passed&) = delete;
  ~Passed() {
    if (!target_ || value_ == View(*target_)) return;
    SysReAllocStringLen(target_, value_.data(), static_cast<UINT>(value_.size()));
  }
  static bool Misses(const BSTR* target) { return !target; }
  std::wstring& value() { return value_; }

 private:
  BSTR* target_;
  std::wstring value_;
};

template <>
class Passed<StringArray> {
 public:
  explicit Passed(SAFEARRAY** array) : elements_(*array) {}
  static bool Misses(SAFEARRAY** array) { return !array; }
  TextArray value() const { return TextsOf(elements_); }

 private:
  ArrayElements<BSTR> elements_;
};

// The name of a property, as a template argument.
template <std::size_t size>
struct PropertyName {
  consteval PropertyName(const wchar_t (&name)[size]) { std::copy_n(name, size, text); }
  constexpr std::wstring_view view() const { return {text, size - 1}; }

  wchar_t text[size];
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
    if (left == 0) Die();
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

  // Calls a method of the portable class by its published signature, and hands its result out.
  template <class Signature, class Method, class Result, class... Arguments>
  HRESULT Call(Method method, Result result, Arguments... arguments) {
    return CallAs(static_cast<Signature*>(nullptr), method, result, arguments...);
  }

  // The procedures of a property of the portable class, of that published type and name.
  template <class Kind, PropertyName name>
  HRESULT GetProperty(typename Kind::Type* value) {
    if (!value) return E_POINTER;
    const Entry entry(this);
    constexpr auto property = PropertyOf<Portable, typename Passed<Kind>::Kept>(name.view());
    *value = ToAutomation(portable_.Get(name.view(), property));
    return S_OK;
  }
  template <class Kind, PropertyName name>
  HRESULT PutProperty(typename Kind::Type value) {
    const Entry entry(this);
    constexpr auto property = PropertyOf<Portable, typename Passed<Kind>::Kept>(name.view());
    portable_.Put(name.view(), property, Passed<Kind>(value).value());
    return S_OK;
  }

  // The procedures of a context property that is a text.
  HRESULT PutText(std::wstring_view name, std::wstring Context::*property, BSTR value) {
    const Entry entry(this);
    const std::wstring_view text = View(value);
    portable_.Run(name, {text}, [&] { portable_.context().*property = text; });
    return S_OK;
  }
  HRESULT GetText(std::wstring_view name, std::wstring Context::*property, BSTR* value) {
    if (!value) return E_POINTER;
    const Entry entry(this);
    *value = ToAutomation(portable_.template Call<std::wstring>(
        name, [&](std::wstring& result) { result = portable_.context().*property; }));
    return S_OK;
  }

  // The procedures of a context property that is an object. The host gets back the very pointer
  // that it has given; the portable class gets it behind its seam.
  template <class Seam>
  HRESULT PutObject(std::wstring_view name, ComPtr<IDispatch>& property, IDispatch* value,
                    HandedOver<Seam> Context::*seam,
                    std::shared_ptr<Seam> (*wrap)(IDispatch* object)) {
    const Entry entry(this);
    if (dying_) value = nullptr;  // nobody would let go of it
    ComPtr<IDispatch> last;       // the host's, which may come back to set the property anew
    portable_.Run(name, {value}, [&] {
      portable_.context().*seam = nullptr;
      last = std::exchange(property, ComPtr(value));
      portable_.context().*seam = wrap(value);
      if (std::is_same_v<Seam, engine::Workspace>) NoteEngine(portable_.context());
    });
    return S_OK;
  }
  HRESULT GetObject(std::wstring_view name, const ComPtr<IDispatch>& property, IDispatch** value) {
    if (!value) return E_POINTER;
    const Entry entry(this);
    *value = ToAutomation(portable_.template Call<ComPtr<IDispatch>>(
        name, [&](ComPtr<IDispatch>& result) { result = property; }));
    return S_OK;
  }

  // Those that the class publishes.
  ComPtr<IDispatch> workspace_;
  ComPtr<IDispatch> engine_;
  ComPtr<IDispatch> connection_;

 private:
  // The portable class, with the frame of its public methods for the property procedures, too.
  struct Framed : Portable {
    using Portable::Portable;
    using PublicClass::Call;
    using PublicClass::Run;
  };

  template <class Published, class... Kinds, class Method, class Result, class... Arguments>
  HRESULT CallAs(Published (*)(Kinds...), Method method, Result result, Arguments... arguments) {
    constexpr bool has_result = !std::is_void_v<Published>;
    if constexpr (has_result) {
      if (!result) return E_POINTER;
    }
    if ((Passed<Kinds>::Misses(arguments) || ...)) return E_POINTER;
    const Entry entry(this);
    std::tuple<Passed<Kinds>...> passed(arguments...);
    const auto call = [&](auto&... argument) {
      return std::invoke(method, portable_, argument.value()...);
    };
    if constexpr (has_result) {
      *result = ToAutomation(std::apply(call, passed));
    } else {
      std::apply(call, passed);
    }
    return S_OK;
  }

  // What is the host's goes first, and may come back: to an object that has nothing any more, and
  // is not let go of a second time. It may even be kept.
  void Die() {
    const FloatingPoint floating_point;
    ++references_;
    dying_ = true;
    Context& context = portable_.context();
    context.workspace = nullptr;
    context.engine = nullptr;
    context.database = nullptr;
    for (ComPtr<IDispatch>* const object : {&workspace_, &engine_, &connection_}) {
      *object = {};
      FloatingPoint::Establish();
    }
    dying_ = false;
    if (--references_ == 0) delete this;
  }

  static HRESULT HandOut(ComPtr<ITypeInfo> info, ITypeInfo** out) {
    *out = info.Detach();
    return *out ? S_OK : TYPE_E_CANTLOADLIBRARY;
  }

  ModuleLock module_lock_;  // the last to go
  const PublishedClass& published_;
  std::atomic<ULONG> references_ = 1;
  bool prepared_ = false;
  bool dying_ = false;
  std::shared_ptr<Runtime> runtime_ = Runtime::Get();
  Framed portable_;
};

template <class AutomationClass>
IDispatch* Create(const PublishedClass& published) {
  return new AutomationClass(published);
}

}  // namespace ard::windows

#endif  // ARD_WINDOWS_SERVER_AUTOMATION_OBJECT_H_
