// What the library costs a C++ host: a look-up through the registered DLL against the same calls
// made by the host itself, by dispatch id, on the same workspace of the registered simulator.
//
//   dll_bench <folder of the company> [by_name.vbs]
//
// With the script, the time of a script that makes those calls by name is printed too. Exits with
// 1 when the target is missed.
#include <windows.h>
// After windows.h.
#include <ArdObjects100.h>
#include <oleauto.h>

#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <initializer_list>
#include <string>
#include <string_view>

#include "benchmarks/timing.h"
#include "frame/error.h"
#include "frame/text.h"
#include "windows/engine/com.h"
#include "windows/engine/variant.h"

namespace ard::benchmarks {
namespace {

using windows::Bstr;
using windows::ComPtr;
using windows::ScopedVariant;

constexpr double kTargetRatio = 1.15;
constexpr std::wstring_view kAccountField = L"ACCOUNT_REF";
constexpr std::wstring_view kNameField = L"NAME";
constexpr WORD kCall = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  std::printf("%s failed: 0x%08lx\n", what, static_cast<unsigned long>(result));
  throw Error(result, FromUtf8(what));
}

// ---- The host's own calls ----

ScopedVariant Text(std::wstring_view text) {
  ScopedVariant variant;
  variant.vt = VT_BSTR;
  variant.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return variant;
}

ScopedVariant False() {
  ScopedVariant variant;
  variant.vt = VT_BOOL;
  variant.boolVal = VARIANT_FALSE;
  return variant;
}

// Calls a member with at most one argument.
HRESULT Get(IDispatch* object, DISPID id, VARIANT* argument, VARIANT* result) {
  DISPPARAMS parameters = {argument, nullptr, argument ? 1U : 0U, 0};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kCall, &parameters, result, nullptr,
                        nullptr);
}

HRESULT Put(IDispatch* object, DISPID id, VARIANT* value) {
  DISPID what = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {value, &what, 1, 1};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                        nullptr, nullptr, nullptr);
}

DISPID IdOf(IDispatch* object, const wchar_t* name) {
  auto* text = const_cast<LPOLESTR>(name);
  DISPID id = DISPID_UNKNOWN;
  Check(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
  return id;
}

// The name of a customer, trimmed; null when there is none.
BSTR NameByHand(IDispatch* workspace, BSTR acc_ref) {
  static DISPID value_id = DISPID_UNKNOWN;
  ScopedVariant record;
  ScopedVariant record_name = Text(L"SalesRecord");
  if (FAILED(Get(workspace, 5, &record_name, &record))) return nullptr;
  ScopedVariant fields;
  if (FAILED(Get(record.pdispVal, 0x20001, nullptr, &fields))) return nullptr;
  {
    ScopedVariant field;
    ScopedVariant field_name = Text(kAccountField);
    if (FAILED(Get(fields.pdispVal, DISPID_VALUE, &field_name, &field))) return nullptr;
    if (value_id == DISPID_UNKNOWN) value_id = IdOf(field.pdispVal, L"Value");
    ScopedVariant key = Text(windows::View(acc_ref));
    if (FAILED(Put(field.pdispVal, value_id, &key))) return nullptr;
  }
  ScopedVariant found;
  ScopedVariant partial = False();
  if (FAILED(Get(record.pdispVal, 0x2000c, &partial, &found))) return nullptr;
  if (found.boolVal == VARIANT_FALSE) return nullptr;
  ScopedVariant field;
  ScopedVariant field_name = Text(kNameField);
  if (FAILED(Get(fields.pdispVal, DISPID_VALUE, &field_name, &field))) return nullptr;
  ScopedVariant name;
  if (FAILED(Get(field.pdispVal, value_id, nullptr, &name))) return nullptr;
  const std::wstring_view trimmed = Trimmed(windows::View(name.bstrVal));
  return SysAllocStringLen(trimmed.data(), static_cast<UINT>(trimmed.size()));
}

// ---- The host ----

ComPtr<IUnknown> Create(const wchar_t* prog_id) {
  CLSID class_id{};
  Check(CLSIDFromProgID(prog_id, &class_id), "CLSIDFromProgID (are the DLLs registered?)");
  ComPtr<IUnknown> object;
  Check(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                         reinterpret_cast<void**>(object.Receive())),
        "CoCreateInstance");
  return object;
}

template <class Interface>
ComPtr<Interface> Query(const ComPtr<IUnknown>& object, REFIID iid) {
  ComPtr<Interface> result;
  Check(object->QueryInterface(iid, reinterpret_cast<void**>(result.Receive())), "QueryInterface");
  return result;
}

// The simulator with an open company, by the names of its members.
class Simulator {
 public:
  explicit Simulator(const wchar_t* company) {
    ScopedVariant folder = Text(company);
    Check(Get(engine_.get(), IdOf(engine_.get(), L"Open"), &folder, nullptr), "Open");
  }

  ComPtr<IDispatch> workspace() { return windows::ToDispatch(Ask(L"Workspace")); }
  std::int64_t operations() {
    return static_cast<std::int64_t>(windows::FromVariant(Ask(L"Operations")).ToDouble());
  }

 private:
  ScopedVariant Ask(const wchar_t* name) {
    ScopedVariant result;
    Check(Get(engine_.get(), IdOf(engine_.get(), name), nullptr, &result), "Invoke");
    return result;
  }

  ComPtr<IDispatch> engine_ = Query<IDispatch>(Create(L"ArdSimulator.Engine"), IID_IDispatch);
};

std::wstring FirstCustomer(IDispatch* workspace) {
  ScopedVariant name = Text(L"SalesRecord");
  ScopedVariant record;
  Check(Get(workspace, 5, &name, &record), "CreateRecordObject");
  Check(Get(record.pdispVal, 0x20004, nullptr, nullptr), "MoveFirst");
  ScopedVariant fields;
  Check(Get(record.pdispVal, 0x20001, nullptr, &fields), "Fields");
  ScopedVariant field;
  ScopedVariant field_name = Text(kAccountField);
  Check(Get(fields.pdispVal, DISPID_VALUE, &field_name, &field), "Item");
  ScopedVariant value;
  Check(Get(field.pdispVal, IdOf(field.pdispVal, L"Value"), nullptr, &value), "Value");
  return std::wstring(Trimmed(windows::View(value.bstrVal)));
}

// Runs the script and prints the nanoseconds that it gives.
bool ReportByName(const wchar_t* script, const wchar_t* company, const std::wstring& acc_ref) {
  const std::wstring command = std::wstring(L"cscript //nologo \"") + script + L"\" \"" + company +
                               L"\" \"" + acc_ref + L"\" 20000";
  std::FILE* output = _wpopen(command.c_str(), L"r");
  if (!output) return false;
  double nanoseconds = 0;
  const bool read = std::fscanf(output, "%lf", &nanoseconds) == 1;
  _pclose(output);
  if (read) std::printf("%-34s %16.0f\n", "the same by name, in VBScript", nanoseconds);
  if (!read) std::printf("The script gave no time.\n");
  return read;
}

bool Run(const wchar_t* company, const wchar_t* script) {
  Simulator simulator(company);
  const ComPtr<IDispatch> workspace = simulator.workspace();
  const auto customers = Query<_Customers>(Create(L"ArdObjects100.Customers"), IID__Customers);
  Check(customers->putref_ArdWorkspace(workspace.get()), "ArdWorkspace");
  const std::wstring first = FirstCustomer(workspace.get());
  const Bstr acc_ref(first);

  const auto by_hand = [&] { SysFreeString(NameByHand(workspace.get(), acc_ref.get())); };
  const auto by_library = [&] {
    BSTR name = nullptr;
    customers->GetName(acc_ref.get(), &name);
    SysFreeString(name);
  };

  const Bstr name_by_hand = Bstr::Adopt(NameByHand(workspace.get(), acc_ref.get()));

  Bstr name_by_library;
  Check(customers->GetName(acc_ref.get(), name_by_library.Receive()), "GetName");
  if (name_by_hand.view() != name_by_library.view() || name_by_hand.view().empty()) {
    std::printf("The two ways give different names.\n");
    return false;
  }

  const auto operations_of = [&](const auto& action) {
    const std::int64_t before = simulator.operations();
    action();
    return simulator.operations() - before;
  };
  const std::int64_t operations_by_hand = operations_of(by_hand);
  const std::int64_t operations_by_library = operations_of(by_library);

  PrintComparisonHeader();
  const bool met = Report("Customers.GetName, through the DLL", Compare(by_hand, by_library),
                          kTargetRatio, operations_by_hand, operations_by_library);
  return (!script || ReportByName(script, company, first)) && met;
}

}  // namespace
}  // namespace ard::benchmarks

int wmain(int count, wchar_t** arguments) {
  if (count < 2) {
    std::printf("usage: dll_bench <folder of the company> [by_name.vbs]\n");
    return 2;
  }
  CoInitialize(nullptr);
  int result = 1;
  try {
    result = ard::benchmarks::Run(arguments[1], count > 2 ? arguments[2] : nullptr) ? 0 : 1;
  } catch (const ard::Error& error) {
    std::printf("%s\n", ard::ToUtf8(error.text()).c_str());
  }
  CoUninitialize();
  return result;
}
