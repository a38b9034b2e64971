// Objects for late-bound callers, made of tables: what names and dispatch ids an object answers to,
// and what each of them does.
#ifndef ARD_SIMULATOR_WINDOWS_AUTOMATION_H_
#define ARD_SIMULATOR_WINDOWS_AUTOMATION_H_

#include <windows.h>
// After windows.h.
#include <oaidl.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "engine/seam.h"
#include "windows/engine/variant.h"

namespace ard::simulator {

using windows::ComPtr;

// What keeps the DLL loaded: its objects and locks.
inline std::atomic<std::int32_t> module_references = 0;

// One call of a member: its arguments, in the order in which they are written, and its result.
class Call {
 public:
  Call(const DISPPARAMS& parameters, VARIANT* result) : parameters_(parameters), result_(result) {}

  std::size_t size() const { return parameters_.cArgs; }
  Value Argument(std::size_t i) const {
    return windows::FromVariant(parameters_.rgvarg[size() - 1 - i]);
  }
  std::wstring Text(std::size_t i) const { return Argument(i).ToText(); }
  std::int32_t Long(std::size_t i) const { return Argument(i).ToLong(); }
  bool Boolean(std::size_t i) const { return Argument(i).ToBoolean(); }
  engine::Mode Mode(std::size_t i) const { return static_cast<engine::Mode>(Long(i)); }
  engine::Match Match(std::size_t i) const { return static_cast<engine::Match>(Boolean(i)); }

  void Return(const Value& value) {
    if (result_) *result_ = windows::ToVariant(value).Detach();
  }
  void Return(ComPtr<IDispatch> object) {
    if (!result_) return;
    result_->vt = VT_DISPATCH;
    result_->pdispVal = object.Detach();
  }

 private:
  const DISPPARAMS& parameters_;
  VARIANT* result_;
};

// How a member may be invoked. A caller need not know whether one with a result is a method or a
// property.
inline constexpr WORD kCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
inline constexpr WORD kPut = DISPATCH_PROPERTYPUT;

template <class Target>
struct Member {
  const wchar_t* name;
  DISPID id;
  WORD flags;
  UINT arguments;
  void (*handler)(Target& self, Call& call);
};

// Whether two member names are the same but for the case of their letters.
bool IsSameName(const wchar_t* a, const wchar_t* b);

// Describes the exception being handled and returns the result of the call. Call it only inside a
// catch block.
HRESULT ReportException(EXCEPINFO* info) noexcept;

// An automation object that answers for a target: `members` is its table.
template <class Target>
class Automation final : public windows::ComObject<IDispatch> {
 public:
  using Members = std::span<const Member<Target>>;

  static ComPtr<IDispatch> Create(Members members, Target target) {
    return ComPtr<IDispatch>::Adopt(new Automation(members, std::move(target)));
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (info) *info = nullptr;
    return DISP_E_BADINDEX;
  }

  // Names of parameters are not known.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    for (const Member<Target>& member : members_) {
      if (count == 0 || !IsSameName(member.name, names[0])) continue;
      ids[0] = member.id;
      break;
    }
    return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const Member<Target>* member = Find(id, flags);
    if (!member) return DISP_E_MEMBERNOTFOUND;
    if (parameters->cArgs != member->arguments) return DISP_E_BADPARAMCOUNT;
    if (result) VariantInit(result);
    Call call(*parameters, result);
    // The caller may let go of this object in the middle of the call.
    const ComPtr<IDispatch> self(this);
    try {
      member->handler(target_, call);
      return S_OK;
    } catch (...) {
      return ReportException(exception);
    }
  }

 private:
  Automation(Members members, Target target) : members_(members), target_(std::move(target)) {
    ++module_references;
  }
  ~Automation() override { --module_references; }

  const Member<Target>* Find(DISPID id, WORD flags) const {
    for (const Member<Target>& member : members_) {
      if (member.id == id && (member.flags & flags)) return &member;
    }
    return nullptr;
  }

  Members members_;
  Target target_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_WINDOWS_AUTOMATION_H_
