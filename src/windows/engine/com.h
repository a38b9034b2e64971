// Owners of automation's resources (interface pointers, strings and variants), and the base of
// objects that are owned through them.
#ifndef ARD_WINDOWS_ENGINE_COM_H_
#define ARD_WINDOWS_ENGINE_COM_H_

#include <windows.h>
// After windows.h.
#include <oleauto.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "frame/error.h"
#include "windows/floating_point.h"

namespace ard::windows {

// A counted reference to a COM object.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  // Shares `pointer` with its owner.
  explicit ComPtr(Interface* pointer) : pointer_(pointer) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(other.Detach()) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  // Takes over a reference that the caller owns.
  static ComPtr Adopt(Interface* pointer) {
    ComPtr result;
    result.pointer_ = pointer;
    return result;
  }

  Interface* get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  // Gives the reference to the caller.
  Interface* Detach() { return std::exchange(pointer_, nullptr); }
  // Where a function stores a reference that it hands out.
  Interface** Receive() {
    *this = ComPtr();
    return &pointer_;
  }

 private:
  Interface* pointer_ = nullptr;
};

// The IUnknown of an object that has one interface beside it. It starts with one reference, that of
// its maker, and deletes itself with the last.
template <class Interface>
class ComObject : public Interface {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final {
    if (!object) return E_POINTER;
    const bool known = iid == __uuidof(Interface) || iid == IID_IUnknown;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~ComObject() = default;

 private:
  std::atomic<ULONG> references_ = 1;
};

// The characters of an automation string, embedded NULs included; a null one is empty.
inline std::wstring_view View(BSTR text) { return {text ? text : L"", SysStringLen(text)}; }

// Each call of a host compares some texts: by words of four letters, the last of which reaches back
// into the one before.
inline constexpr std::size_t kWord = 4;
inline std::uint64_t WordAt(const wchar_t* letters) {
  std::uint64_t word;
  std::memcpy(&word, letters, sizeof(word));
  return word;
}
inline bool IsSame(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  if (a.size() < kWord) return a == b;
  const std::size_t last = a.size() - kWord;
  for (std::size_t i = 0; i < last; i += kWord) {
    if (WordAt(&a[i]) != WordAt(&b[i])) return false;
  }
  return WordAt(&a[last]) == WordAt(&b[last]);
}

// Throws Error when there is no memory for it.
inline BSTR NewBstr(std::wstring_view text) {
  const BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (!result) throw Error(kErrorOutOfMemory, L"Out of memory.");
  return result;
}

// An automation string.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::wstring_view text) : text_(NewBstr(text)) {}
  Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
  Bstr& operator=(Bstr&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~Bstr() { SysFreeString(text_); }

  // Takes over a string that the caller owns.
  static Bstr Adopt(BSTR text) {
    Bstr result;
    result.text_ = text;
    return result;
  }

  BSTR get() const { return text_; }
  std::wstring_view view() const { return View(text_); }
  BSTR Detach() { return std::exchange(text_, nullptr); }
  BSTR* Receive() {
    SysFreeString(Detach());
    return &text_;
  }

 private:
  BSTR text_ = nullptr;
};

// A VARIANT that is cleared when it goes. It adds no member, so that an array of them is an array
// of arguments.
class ScopedVariant : public VARIANT {
 public:
  ScopedVariant() : VARIANT{} {}
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant(ScopedVariant&& other) noexcept : VARIANT(other.Detach()) {}
  ScopedVariant& operator=(ScopedVariant&& other) noexcept {
    std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    return *this;
  }
  // Empty ones, numbers, dates and Booleans own nothing.
  ~ScopedVariant() {
    if (vt == VT_BSTR) {
      SysFreeString(bstrVal);
    } else if (vt > VT_DATE && vt != VT_BOOL) {
      VariantClear(this);
      FloatingPoint::Establish();  // it may have been someone else's object
    }
  }

  // Gives the content to the caller.
  VARIANT Detach() { return std::exchange(static_cast<VARIANT&>(*this), VARIANT{}); }
};
static_assert(sizeof(ScopedVariant) == sizeof(VARIANT));

}  // namespace ard::windows

#endif  // ARD_WINDOWS_ENGINE_COM_H_
