// What the tests of the library as a host use to be one.
#ifndef ARD_TESTS_WINDOWS_HOST_H_
#define ARD_TESTS_WINDOWS_HOST_H_

#include <windows.h>
// After windows.h.
#include <ArdObjects100.h>
#include <oaidl.h>

#include <memory>
#include <string>
#include <vector>

#include "windows/engine/variant.h"

namespace ard::windows::testing {

// The published classes.
struct ClassIdentity {
  const wchar_t* name;
  GUID class_id;
  GUID interface_id;
};
inline const ClassIdentity kClasses[] = {
    {L"Bank", CLSID_Bank, IID__Bank},
    {L"CustomerRecord", CLSID_CustomerRecord, IID__CustomerRecord},
    {L"Customers", CLSID_Customers, IID__Customers},
    {L"General", CLSID_General, IID__General},
    {L"Messaging", CLSID_Messaging, IID__Messaging},
    {L"Nominal", CLSID_Nominal, IID__Nominal},
    {L"Products", CLSID_Products, IID__Products},
    {L"PurchaseOrders", CLSID_PurchaseOrders, IID__PurchaseOrders},
    {L"SalesOrders", CLSID_SalesOrders, IID__SalesOrders},
    {L"SupplierRecord", CLSID_SupplierRecord, IID__SupplierRecord},
    {L"Suppliers", CLSID_Suppliers, IID__Suppliers},
    {L"cAccessRights", CLSID_cAccessRights, IID__cAccessRights},
    {L"cDeliveryAddress", CLSID_cDeliveryAddress, IID__cDeliveryAddress},
};

std::wstring Text(REFGUID id);
std::wstring ProgId(const ClassIdentity& identity);

// The DLL beside the test program.
std::wstring LibraryPath();
// The folder of the demo company: the program's first argument.
extern std::wstring company_folder;

// A DLL loaded from `path`, for as long as this lives.
class Dll {
 public:
  explicit Dll(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {}
  Dll(const Dll&) = delete;
  Dll& operator=(const Dll&) = delete;
  ~Dll() {
    if (module_) FreeLibrary(module_);
  }

  explicit operator bool() const { return module_ != nullptr; }

  // Calls what it exports under that name.
  template <class... Arguments>
  HRESULT Call(const char* name, Arguments... arguments) const {
    using Function = HRESULT(STDMETHODCALLTYPE*)(Arguments...);
    const auto function = reinterpret_cast<void*>(GetProcAddress(module_, name));
    return reinterpret_cast<Function>(function)(arguments...);
  }
  // Its object for that class; null when it has none.
  ComPtr<IClassFactory> Factory(REFCLSID class_id) const {
    ComPtr<IClassFactory> factory;
    Call<REFCLSID, REFIID, void**>("DllGetClassObject", class_id, IID_IClassFactory,
                                   reinterpret_cast<void**>(factory.Receive()));
    return factory;
  }

 private:
  HMODULE module_;
};

// A new object by its programmatic identifier; null when it cannot be created.
ComPtr<IDispatch> CreateObject(const std::wstring& prog_id);

template <class Interface>
ComPtr<Interface> As(IUnknown* object) {
  ComPtr<Interface> result;
  if (object)
    object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(result.Receive()));
  return result;
}

// An object that is no workspace: it has no member that the library knows, or every call fails.
class ForeignObject : public IDispatch {
 public:
  HRESULT status = DISP_E_MEMBERNOTFOUND;
  ULONG references = 1;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return status;
  }
};

// Arguments.
inline ScopedVariant Variant(const Value& value) { return ToVariant(value); }
inline ScopedVariant Variant(IDispatch* object) {
  return ToVariant(Value(std::make_shared<DispatchObject>(ComPtr(object))));
}

// An object used as a script does: members by name.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  // The result of a call; of the type VT_ERROR, with the status, when it failed.
  ScopedVariant Call(const wchar_t* member, std::vector<ScopedVariant> arguments = {}) const;
  template <class... Arguments>
  ScopedVariant Ask(const wchar_t* member, Arguments&&... arguments) const {
    std::vector<ScopedVariant> list;
    (list.push_back(Variant(arguments)), ...);
    return Call(member, std::move(list));
  }
  // An object is put by reference, anything else by value.
  HRESULT Put(const wchar_t* member, ScopedVariant value) const;

  IDispatch* get() const { return object_.get(); }

 private:
  HRESULT Invoke(const wchar_t* member, WORD flags, std::vector<ScopedVariant> arguments,
                 VARIANT* result) const;

  ComPtr<IDispatch> object_;
};

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_HOST_H_
