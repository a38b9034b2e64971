// A host in C++, early-bound: it creates a Customers object, hands it the workspace of an accounts
// engine, and prints what it answers about some accounts.
//
//   example_host <company folder> <account reference>...
//
// The engine is the simulated one. Both libraries must be registered (regsvr32 ArdObjects100.dll).
#include <windows.h>
// After windows.h.
#include <ArdObjects100.h>
#include <oleauto.h>

#include <clocale>
#include <cstdio>
#include <cwchar>
#include <string>
#include <utility>

namespace {

struct Failure {
  std::wstring text;
};

// A step that has failed: what, and what the system says of it.
void Check(HRESULT status, const wchar_t* what) {
  if (SUCCEEDED(status)) return;
  wchar_t said[256] = L"";
  FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                 static_cast<DWORD>(status), 0, said, 256, nullptr);
  wchar_t number[16];
  std::swprintf(number, 16, L"0x%08lX", static_cast<unsigned long>(status));
  throw Failure{std::wstring(what) + L" (" + number + L") " + said};
}

// Owns one reference to an object.
template <class Interface>
class Owned {
 public:
  Owned() = default;
  Owned(Owned&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ~Owned() {
    if (pointer_) pointer_->Release();
  }
  Interface* operator->() const { return pointer_; }
  operator Interface*() const { return pointer_; }
  Interface** operator&() { return &pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

// Owns an automation string.
class Text {
 public:
  explicit Text(const wchar_t* text = nullptr) : text_(SysAllocString(text)) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(text_); }
  operator BSTR() const { return text_; }
  BSTR* operator&() { return &text_; }
  const wchar_t* c_str() const { return text_ ? text_ : L""; }

 private:
  BSTR text_;
};

// Calls a member of a late-bound object with at most one argument.
VARIANT Invoke(IDispatch* object, const wchar_t* member, WORD flags, VARIANT* argument = nullptr) {
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = 0;
  Check(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), L"no such member");
  DISPPARAMS parameters = {argument, nullptr, argument ? 1u : 0u, 0};
  VARIANT result = {};
  EXCEPINFO said = {};
  const HRESULT status = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        &result, &said, nullptr);
  const std::wstring description = said.bstrDescription ? said.bstrDescription : L"";
  for (const BSTR text : {said.bstrSource, said.bstrDescription, said.bstrHelpFile}) {
    SysFreeString(text);
  }
  // The object's own description of what is wrong.
  if (status == DISP_E_EXCEPTION) {
    throw Failure{std::wstring(member) + L": " + description};
  }
  Check(status, member);
  return result;
}

Owned<IDispatch> StartEngine() {
  CLSID class_id;
  Owned<IDispatch> engine;
  Check(CLSIDFromProgID(L"ArdSimulator.Engine", &class_id), L"no accounts engine is registered");
  Check(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                         reinterpret_cast<void**>(&engine)),
        L"the accounts engine cannot be created");
  return engine;
}

Owned<IDispatch> OpenCompany(IDispatch* engine, const wchar_t* folder) {
  const Text path(folder);
  VARIANT argument = {};
  argument.vt = VT_BSTR;
  argument.bstrVal = path;
  Invoke(engine, L"Open", DISPATCH_METHOD, &argument);
  Owned<IDispatch> workspace;
  *&workspace = Invoke(engine, L"Workspace", DISPATCH_PROPERTYGET).pdispVal;
  return workspace;
}

Owned<_Customers> CreateCustomers() {
  Owned<_Customers> customers;
  Check(CoCreateInstance(CLSID_Customers, nullptr, CLSCTX_INPROC_SERVER, IID__Customers,
                         reinterpret_cast<void**>(&customers)),
        L"ArdObjects100 is not registered");
  return customers;
}

void Print(_Customers* customers, const wchar_t* account) {
  const Text acc_ref(account);
  VARIANT_BOOL valid = VARIANT_FALSE;
  Text name;
  Text contact;
  Check(customers->IsValid(acc_ref, &valid), L"IsValid");
  Check(customers->GetName(acc_ref, &name), L"GetName");
  Check(customers->GetContact(acc_ref, &contact), L"GetContact");
  std::printf("%-10ls %-8s %ls (%ls)\n", account, valid ? "valid" : "unknown", name.c_str(),
              contact.c_str());
}

void Run(int count, wchar_t** arguments) {
  const Owned<IDispatch> engine = StartEngine();
  const Owned<IDispatch> workspace = OpenCompany(engine, arguments[1]);
  const Owned<_Customers> customers = CreateCustomers();
  const Text app_name(L"Example host");
  Check(customers->put_AppName(app_name), L"AppName");
  Check(customers->putref_ArdWorkspace(workspace), L"ArdWorkspace");
  for (int i = 2; i < count; ++i) Print(customers, arguments[i]);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 3) {
    std::puts("example_host <company folder> <account reference>...");
    return 2;
  }
  std::setlocale(LC_ALL, "");
  int status = 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  try {
    Run(count, arguments);
  } catch (const Failure& failure) {
    std::printf("Failed: %ls\n", failure.text.c_str());
    status = 1;
  }
  CoUninitialize();
  return status;
}
