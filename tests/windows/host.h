// What the tests of the library as a host use to be one.
#ifndef ARD_TESTS_WINDOWS_HOST_H_
#define ARD_TESTS_WINDOWS_HOST_H_

#include <windows.h>
// After windows.h.
#include <ArdObjects100.h>
#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

#include "windows/engine/com.h"

namespace ard::windows::testing {

// The published classes.
struct ClassIdentity {
  const wchar_t* name;
  const wchar_t* class_id;
  const wchar_t* interface_id;
};
inline constexpr ClassIdentity kClasses[] = {
    {L"CustomerRecord", L"{B6F608EC-3677-4153-B9E3-721B2E9880D0}",
     L"{A0EFAD31-D10A-4997-95A2-19C120C5841A}"},
    {L"Messaging", L"{6CB5FFBC-9319-4B0A-9250-884660E75398}",
     L"{E2403EE5-14F9-41D7-B167-4DD1DA0DE251}"},
    {L"SupplierRecord", L"{8A099497-1C5B-4C69-A09D-52DB592AD327}",
     L"{453BD3F1-D0D8-4731-ABF5-093D6E783B79}"},
    {L"General", L"{E8274DEF-D136-4752-AFBC-8448DDB53D40}",
     L"{18BF13BA-2CA1-4DF7-8D39-E157596EDD52}"},
    {L"Products", L"{1DD416AD-42AF-41C1-A6A3-72CDE2C4AE6F}",
     L"{F1146947-F284-455C-B803-FFEACA4445AB}"},
    {L"Bank", L"{76ED1AE8-E1FB-4937-91FD-7D51C9FBD165}", L"{2A0AB169-9797-4630-BC01-C3895BBA97C4}"},
    {L"Customers", L"{68AC104F-9BBF-4297-A2D4-0958D440F110}",
     L"{17CB7762-301A-465F-9DE3-C3CB3CE21E3B}"},
    {L"Nominal", L"{BA0140BE-283F-4149-A618-91ACA0285DB6}",
     L"{51FF87AD-C558-4AD6-8568-8EF1AE29276A}"},
    {L"PurchaseOrders", L"{96B48A81-E115-4C27-8859-9736C3FFC2D0}",
     L"{49BCF832-15EF-4EB1-90AE-261B187CB445}"},
    {L"SalesOrders", L"{D021D81C-8F35-4D76-BFF7-D0A1C5D170D1}",
     L"{636DB448-288F-4445-B927-B6291CE6E467}"},
    {L"Suppliers", L"{8EFCC388-8D3A-40CC-90F8-32173E5221BD}",
     L"{2B567382-CF0A-4BD5-A2E7-44800703A4F7}"},
    {L"cAccessRights", L"{89AEF3DA-BAAD-4F70-B40D-BD7FC42A80A5}",
     L"{4E3411B9-5580-47B0-B4C1-95DB978FF202}"},
    {L"cDeliveryAddress", L"{5C16DEF0-5FDF-4C65-90DD-5F0D845AC26C}",
     L"{ABC9C0E8-D076-4E70-92EC-3ECE1B47BAC0}"},
};
inline constexpr wchar_t kLibraryId[] = L"{9F172FBD-0E00-49C2-834D-4C2F00C3C8DD}";

GUID Id(const wchar_t* text);
std::wstring Text(REFGUID id);
std::wstring ProgId(const ClassIdentity& identity);

// The DLL beside the test program.
std::wstring LibraryPath();
// The folder of the demo company: the program's first argument.
extern std::wstring company_folder;

// Functions that the DLL exports.
using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
using NoArguments = HRESULT(STDMETHODCALLTYPE*)();
using Install = HRESULT(STDMETHODCALLTYPE*)(BOOL, const wchar_t*);

// A DLL loaded from `path`, for as long as this lives.
class Dll {
 public:
  explicit Dll(const std::wstring& path) : module_(LoadLibraryW(path.c_str())) {}
  Dll(const Dll&) = delete;
  Dll& operator=(const Dll&) = delete;
  ~Dll() {
    if (module_) FreeLibrary(module_);
  }

  template <class Function>
  Function Export(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  explicit operator bool() const { return module_ != nullptr; }

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
ScopedVariant Variant(std::wstring_view text);
ScopedVariant Variant(const wchar_t* text);
ScopedVariant Variant(long value);
ScopedVariant Variant(IDispatch* object);

// An object used as a script does: members by name.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  HRESULT Invoke(const wchar_t* member, WORD flags, std::vector<ScopedVariant> arguments,
                 VARIANT* result) const;
  // The result of a call; of the type VT_ERROR, with the status, when it failed.
  ScopedVariant Call(const wchar_t* member, std::vector<ScopedVariant> arguments = {}) const;
  template <class... Arguments>
  ScopedVariant Ask(const wchar_t* member, Arguments&&... arguments) const {
    std::vector<ScopedVariant> list;
    (list.push_back(Variant(arguments)), ...);
    return Call(member, std::move(list));
  }
  HRESULT Put(const wchar_t* member, ScopedVariant value, WORD flags = DISPATCH_PROPERTYPUT) const;

  IDispatch* get() const { return object_.get(); }

 private:
  ComPtr<IDispatch> object_;
};

}  // namespace ard::windows::testing

#endif  // ARD_TESTS_WINDOWS_HOST_H_
