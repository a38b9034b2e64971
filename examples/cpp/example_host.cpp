// A first host in C++ for any compiler, with the header of the library's interfaces,
// ArdObjects100.h, and ArdObjects100_i.c with their identifiers (include of a release).
//
// Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
//         Everything is put out to variables whose addresses are passed, results, too: what is
//         returned is S_OK always. Optional arguments have to be written out.
// Build   x86_64-w64-mingw32-g++ -std=c++20 -municode -static -I../../include example_host.cpp
//             ../../include/ArdObjects100_i.c -lole32 -loleaut32 -luuid -o example_host.exe
//         i686-w64-mingw32-g++ for the 32-bit library.
// Run     example_host [COMPANY [CONNECTION]]
// Checked compiled by MinGW's GCC and by Clang, and run under Wine, 64 and 32 bit.
#include <windows.h>
// After windows.h.
#include <ArdObjects100.h>
#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <initializer_list>
#include <string>
#include <utility>

namespace {

// Your own accounts engine, company and database go here.
constexpr wchar_t kEngineClass[] = L"ArdSimulator.Engine";
constexpr wchar_t kCompany[] = L"C:\\companies\\demo";
constexpr wchar_t kConnection[] = L"Driver={SQLite3 ODBC Driver};Database=C:\\companies\\host.db";
// Access:      L"Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\\companies\\host.accdb"
// SQL Server:  L"Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
// No database: L""

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
  Owned& operator=(Owned&& other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
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
  // To be put out to: what it has had is let go of.
  BSTR* operator&() {
    SysFreeString(std::exchange(text_, nullptr));
    return &text_;
  }
  bool empty() const { return SysStringLen(text_) == 0; }
  const wchar_t* c_str() const { return text_ ? text_ : L""; }

 private:
  BSTR text_;
};

// A member of an object that is known by name only, the engine or the database; with a text, or
// without an argument.
VARIANT Invoke(IDispatch* object, const wchar_t* member, WORD flags, BSTR text = nullptr) {
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = 0;
  Check(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), L"no such member");
  VARIANT argument = {};
  argument.vt = VT_BSTR;
  argument.bstrVal = text;
  DISPPARAMS parameters = {&argument, nullptr, text ? 1u : 0u, 0};
  VARIANT result = {};
  EXCEPINFO said = {};
  const HRESULT status = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        &result, &said, nullptr);
  const std::wstring description = said.bstrDescription ? said.bstrDescription : L"";
  for (const BSTR part : {said.bstrSource, said.bstrDescription, said.bstrHelpFile}) {
    SysFreeString(part);
  }
  // The object's own description of what is wrong.
  if (status == DISP_E_EXCEPTION) {
    throw Failure{std::wstring(member) + L": " + description};
  }
  Check(status, member);
  return result;
}

template <class Interface>
Owned<Interface> Create(REFCLSID class_id, REFIID interface_id) {
  Owned<Interface> object;
  Check(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, interface_id,
                         reinterpret_cast<void**>(&object)),
        L"a class is not registered");
  return object;
}

Owned<IDispatch> Create(const wchar_t* programmatic_id) {
  CLSID class_id;
  Check(CLSIDFromProgID(programmatic_id, &class_id), programmatic_id);
  return Create<IDispatch>(class_id, IID_IDispatch);
}

// The conversation of one session with the library.
class Host {
 public:
  Host(const wchar_t* company, const wchar_t* connection) : company_(company) {
    Invoke(engine_, L"Open", DISPATCH_METHOD, company_);
    *&workspace_ = Invoke(engine_, L"Workspace", DISPATCH_PROPERTYGET).pdispVal;
    if (*connection) {
      database_ = Create(L"ADODB.Connection");
      Invoke(database_, L"Open", DISPATCH_METHOD, Text(connection));
    }
  }

  void Run() {
    const auto session = Create<_Messaging>(CLSID_Messaging, IID__Messaging);
    const Text app_name(L"Manufacturing");
    const Text registry_path(L"First Host");
    session->put_AppName(app_name);
    session->put_RegistryPath(registry_path);
    session->put_ArdDataPath(company_);
    session->put_UniqueID(Text(L"FIRST"));
    session->put_UseAccRights(database_ ? VARIANT_TRUE : VARIANT_FALSE);
    session->putref_ArdEngine(engine_);
    session->putref_ArdWorkspace(workspace_);
    session->putref_oDBaseConn(database_);
    VARIANT_BOOL done = VARIANT_FALSE;
    session->CheckForLogon(VARIANT_FALSE, &done);
    if (!done) {
      std::puts("Not logged on");
      return;
    }
    Text user;
    session->get_UserLogged(&user);
    std::printf("Logged on: %ls\n", user.c_str());

    customers_->put_AppName(app_name);
    customers_->putref_ArdWorkspace(workspace_);
    products_->put_AppName(app_name);
    products_->put_RegistryPath(registry_path);
    products_->putref_ArdWorkspace(workspace_);
    products_->putref_oDBaseConn(database_);
    general_->putref_ArdWorkspace(workspace_);
    Text quantity_format;
    Text price_format;
    general_->GetDPSettings(&quantity_places_, &price_places_, &quantity_format, &price_format);

    AskAboutCustomers();
    AskAboutProduct(L"SHELF-1200X600", L"ABC001");
    AskAboutSettings(L"ABC001");
    Pick();
    Allocate(L"SHELF-1200X600");

    session->LogoffUser(&done);
    std::puts("Logged off");
  }

 private:
  void AskAboutCustomers() {
    for (const wchar_t* reference : {L"ABC001", L"NOBODY"}) {
      VARIANT_BOOL known = VARIANT_FALSE;
      customers_->IsValid(Text(reference), &known);
      // Nothing is an error: what is not there has an empty name.
      Text name;
      customers_->GetName(Text(reference), &name);
      std::printf("Customer %ls: %ls\n", reference, known ? name.c_str() : L"not known");
    }
  }

  void AskAboutProduct(const wchar_t* product, const wchar_t* customer) {
    const Text code(product);
    double free_stock = 0;
    double allocated = 0;
    double on_order = 0;
    double list_price = 0;
    double price = 0;
    Text description;
    products_->GetDesc(code, &description);
    products_->GetFreeStock(code, &free_stock);
    products_->GetAllocOnOrder(code, &allocated, &on_order);
    products_->GetSellPrice(code, &list_price);
    products_->GetSpecialPrice(code, Text(customer), &price);
    std::printf("Product %ls: %ls\n", product, description.c_str());
    std::printf("Free %.*f, allocated %.*f, on order %.*f\n", quantity_places_, free_stock,
                quantity_places_, allocated, quantity_places_, on_order);
    std::printf("Price %.*f, for %ls %.*f\n", price_places_, list_price, customer, price_places_,
                price);
    std::printf("Last bought: %ls; LOCKER-3D300 on %ls\n", LastBought(product).c_str(),
                LastBought(L"LOCKER-3D300").c_str());
  }

  std::wstring LastBought(const wchar_t* code) {
    DATE date = 0;
    SYSTEMTIME day = {};
    products_->GetLastPurDate(Text(code), &date);
    // The zero date stands for none.
    if (date == 0 || !VariantTimeToSystemTime(date, &day)) return L"never";
    wchar_t text[16];
    std::swprintf(text, 16, L"%04d-%02d-%02d", day.wYear, day.wMonth, day.wDay);
    return text;
  }

  void AskAboutSettings(const wchar_t* customer) {
    std::printf("Decimal places: %d of quantities, %d of prices\n", quantity_places_,
                price_places_);
    const auto record = Create<_CustomerRecord>(CLSID_CustomerRecord, IID__CustomerRecord);
    record->putref_ArdWorkspace(workspace_);
    VARIANT_BOOL found = VARIANT_FALSE;
    record->Read(Text(customer), &found);
    if (found) {
      short tax_code = 0;
      double rate = 0;
      Text padded;
      record->get_TaxCode(&tax_code);
      general_->GetVatRate(tax_code, &rate);
      general_->GetVatDesc(tax_code, &padded);
      std::wstring description = padded.c_str();
      description.erase(description.find_last_not_of(L' ') + 1);
      std::printf("Tax of %ls: %.*f %%, %ls\n", customer, price_places_, rate, description.c_str());
    }
    // The library fills the elements that there are, here those of codes 0 to 2.
    SAFEARRAY* codes = SafeArrayCreateVector(VT_BSTR, 0, 3);
    general_->GetTaxCodes(&codes);
    BSTR* code = nullptr;
    Check(SafeArrayAccessData(codes, reinterpret_cast<void**>(&code)), L"tax codes");
    std::printf("Tax codes: %ls, %ls, %ls\n", code[0], code[1], code[2]);
    SafeArrayUnaccessData(codes);
    SafeArrayDestroy(codes);
  }

  void Pick() {
    Text customer;
    Text name;
    Text product;
    // The list opens on the first customer that matches.
    customers_->List(Text(L"SMI*"), &customer);
    if (customer.empty()) {
      std::puts("Picked customer: none");
    } else {
      customers_->GetName(customer, &name);
      std::printf("Picked customer: %ls, %ls\n", customer.c_str(), name.c_str());
    }
    products_->FastList(VARIANT_TRUE, &product);
    std::printf("Picked product: %ls\n", product.empty() ? L"none" : product.c_str());
  }

  void Allocate(const wchar_t* product) {
    const Text code(product);
    VARIANT_BOOL done = VARIANT_FALSE;
    products_->UpdateAllocQty(code, 6, &done);
    if (done) PrintAllocated("6 more", code);
    products_->UpdateAllocQty(code, 1000, &done);
    if (!done) std::puts("1000 more: refused");
    products_->UpdateAllocQty(code, -6, &done);
    if (done) PrintAllocated("6 less", code);
  }

  void PrintAllocated(const char* what, BSTR code) {
    double allocated = 0;
    double on_order = 0;
    products_->GetAllocOnOrder(code, &allocated, &on_order);
    std::printf("%s: allocated %.*f\n", what, quantity_places_, allocated);
  }

  const Text company_;
  const Owned<IDispatch> engine_ = Create(kEngineClass);
  Owned<IDispatch> workspace_;
  Owned<IDispatch> database_;
  const Owned<_Customers> customers_ = Create<_Customers>(CLSID_Customers, IID__Customers);
  const Owned<_Products> products_ = Create<_Products>(CLSID_Products, IID__Products);
  const Owned<_General> general_ = Create<_General>(CLSID_General, IID__General);
  short quantity_places_ = 0;
  short price_places_ = 0;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
  int status = 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  try {
    Host(count > 1 ? arguments[1] : kCompany, count > 2 ? arguments[2] : kConnection).Run();
  } catch (const Failure& failure) {
    std::printf("Failed: %ls\n", failure.text.c_str());
    status = 1;
  }
  CoUninitialize();
  return status;
}
