#include "windows/dialogs/accessible_list.h"

#include <utility>

namespace ard::windows {
namespace {

// Loaded when a reader first asks, and kept: what it has handed out may outlive the list.
template <class Function>
Function FromOleacc(const char* name) {
  static const HMODULE kLibrary = LoadLibraryW(L"oleacc.dll");
  return kLibrary
             ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(kLibrary, name)))
             : nullptr;
}

}  // namespace

AccessibleList* AccessibleList::Create(HWND list, Name name) {
  using Create = HRESULT(WINAPI*)(HWND, LONG, REFIID, void**);
  const auto create = FromOleacc<Create>("CreateStdAccessibleObject");
  void* object = nullptr;
  if (!create || FAILED(create(list, OBJID_CLIENT, __uuidof(IAccessible), &object)) || !object) {
    return nullptr;
  }
  return new AccessibleList(static_cast<IAccessible*>(object), std::move(name));
}

LRESULT AccessibleList::Answer(WPARAM wparam) {
  using ToResult = LRESULT(WINAPI*)(REFIID, WPARAM, IUnknown*);
  const auto to_result = FromOleacc<ToResult>("LresultFromObject");
  return to_result ? to_result(__uuidof(IAccessible), wparam, this) : 0;
}

void AccessibleList::Disconnect() {
  name_ = nullptr;
  CoDisconnectObject(this, 0);
}

STDMETHODIMP AccessibleList::QueryInterface(REFIID iid, void** object) {
  if (iid != __uuidof(IUnknown) && iid != __uuidof(IDispatch) && iid != __uuidof(IAccessible)) {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  *object = static_cast<IAccessible*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) AccessibleList::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP AccessibleList::get_accName(VARIANT child, BSTR* name) {
  if (!name || child.vt != VT_I4) return E_INVALIDARG;
  *name = nullptr;
  if (!name_) return CO_E_OBJNOTCONNECTED;
  try {
    const std::wstring text = name_(child.lVal);
    if (text.empty()) return S_FALSE;
    *name = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  } catch (...) {
    // Out of memory.
  }
  return *name ? S_OK : E_OUTOFMEMORY;
}

}  // namespace ard::windows
