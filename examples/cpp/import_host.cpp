// A first host in C++ for Microsoft's compiler, which makes its declarations of the library with
// #import.
//
// Shows   logon, questions, lists to pick from, outputs, an array, a change that is undone, logoff.
//         Outputs are variables whose addresses are passed. Of #import, optional arguments that are
//         no variants have to be written out. A property may be written as a member, too:
//         session->AppName = L"Manufacturing".
// Build   cl /EHsc /std:c++17 import_host.cpp
//         with ArdObjects100.dll in the folder or on the path.
// Run     import_host [COMPANY [CONNECTION]]
// Checked compiled by MinGW, with a header in place of what #import makes, and run under Wine, 64
//         and 32 bit. Not compiled by Microsoft's compiler.
#include <windows.h>
// After windows.h.
#include <comdef.h>

#include <cstdio>
#include <cwchar>
#include <initializer_list>

#import "ArdObjects100.dll"

using namespace ArdObjects100;

namespace {

// Your own accounts engine, company and database go here.
constexpr wchar_t kEngineClass[] = L"ArdSimulator.Engine";
constexpr wchar_t kCompany[] = L"C:\\companies\\demo";
constexpr wchar_t kConnection[] = L"Driver={SQLite3 ODBC Driver};Database=C:\\companies\\host.db";
// Access:      L"Provider=Microsoft.ACE.OLEDB.16.0;Data Source=C:\\companies\\host.accdb"
// SQL Server:  L"Provider=MSOLEDBSQL;Server=(local);Database=Host;Trusted_Connection=yes"
// No database: L""

// A member of an object that is known by name only: the engine, the database.
_variant_t Call(IDispatch* object, const wchar_t* member, WORD how, _variant_t argument = {}) {
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = DISPID_UNKNOWN;
  _com_util::CheckError(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id));
  DISPPARAMS parameters = {&argument, nullptr, argument.vt == VT_EMPTY ? 0u : 1u, 0};
  _variant_t result;
  _com_util::CheckError(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, how, &parameters, &result,
                                       nullptr, nullptr));
  return result;
}

// The conversation of one session with the library.
class Host {
 public:
  Host(const wchar_t* company, const wchar_t* connection) : company_(company) {
    _com_util::CheckError(engine_.CreateInstance(kEngineClass));
    Call(engine_, L"Open", DISPATCH_METHOD, company);
    workspace_ = Call(engine_, L"Workspace", DISPATCH_PROPERTYGET);
    if (*connection) {
      _com_util::CheckError(database_.CreateInstance(L"ADODB.Connection"));
      Call(database_, L"Open", DISPATCH_METHOD, connection);
    }
  }

  void Run() {
    _MessagingPtr session(__uuidof(Messaging));
    session->PutAppName(L"Manufacturing");
    session->PutRegistryPath(L"First Host");
    session->PutArdDataPath(company_);
    session->PutUniqueID(L"FIRST");
    session->PutUseAccRights(database_ ? VARIANT_TRUE : VARIANT_FALSE);
    session->PutRefArdEngine(engine_);
    session->PutRefArdWorkspace(workspace_);
    session->PutRefoDBaseConn(database_);
    if (!session->CheckForLogon(VARIANT_FALSE)) {
      std::puts("Not logged on");
      return;
    }
    std::printf("Logged on: %ls\n", Text(session->GetUserLogged()));

    customers_->PutAppName(session->GetAppName());
    customers_->PutRefArdWorkspace(workspace_);
    products_->PutAppName(session->GetAppName());
    products_->PutRegistryPath(session->GetRegistryPath());
    products_->PutRefArdWorkspace(workspace_);
    products_->PutRefoDBaseConn(database_);
    general_->PutRefArdWorkspace(workspace_);
    _bstr_t quantity_format;
    _bstr_t price_format;
    general_->GetDPSettings(&quantity_places_, &price_places_, quantity_format.GetAddress(),
                            price_format.GetAddress());

    AskAboutCustomers();
    AskAboutProduct(L"SHELF-1200X600", L"ABC001");
    AskAboutSettings(L"ABC001");
    Pick();
    Allocate(L"SHELF-1200X600");

    session->LogoffUser();
    std::puts("Logged off");
  }

 private:
  // A text without any characters may be no text at all.
  static const wchar_t* Text(const _bstr_t& text) { return text.length() ? text : L""; }

  void AskAboutCustomers() {
    for (const wchar_t* reference : {L"ABC001", L"NOBODY"}) {
      // Nothing raises an error: what is not there has an empty name.
      std::printf(
          "Customer %ls: %ls\n", reference,
          customers_->IsValid(reference) ? Text(customers_->GetName(reference)) : L"not known");
    }
  }

  void AskAboutProduct(const wchar_t* code, const wchar_t* customer) {
    double allocated = 0;
    double on_order = 0;
    products_->GetAllocOnOrder(code, &allocated, &on_order);
    std::printf("Product %ls: %ls\n", code, Text(products_->GetDesc(code)));
    std::printf("Free %.*f, allocated %.*f, on order %.*f\n", quantity_places_,
                products_->GetFreeStock(code), quantity_places_, allocated, quantity_places_,
                on_order);
    std::printf("Price %.*f, for %ls %.*f\n", price_places_, products_->GetSellPrice(code),
                customer, price_places_, products_->GetSpecialPrice(code, customer));
    std::printf("Last bought: %ls; ", Text(LastBought(code)));
    std::printf("LOCKER-3D300 on %ls\n", Text(LastBought(L"LOCKER-3D300")));
  }

  _bstr_t LastBought(const wchar_t* code) {
    const DATE date = products_->GetLastPurDate(code);
    SYSTEMTIME day = {};
    // The zero date stands for none.
    if (date == 0 || !VariantTimeToSystemTime(date, &day)) return L"never";
    wchar_t text[16];
    std::swprintf(text, 16, L"%04d-%02d-%02d", day.wYear, day.wMonth, day.wDay);
    return text;
  }

  void AskAboutSettings(const wchar_t* customer) {
    std::printf("Decimal places: %d of quantities, %d of prices\n", quantity_places_,
                price_places_);
    _CustomerRecordPtr record(__uuidof(CustomerRecord));
    record->PutRefArdWorkspace(workspace_);
    if (record->Read(customer)) {
      const _bstr_t description = general_->GetVatDesc(record->GetTaxCode());
      int length = static_cast<int>(description.length());
      while (length > 0 && Text(description)[length - 1] == L' ') --length;
      std::printf("Tax of %ls: %.*f %%, %.*ls\n", customer, price_places_,
                  general_->GetVatRate(record->GetTaxCode()), length, Text(description));
    }
    // The library fills the elements that there are, here those of codes 0 to 2.
    SAFEARRAY* codes = SafeArrayCreateVector(VT_BSTR, 0, 3);
    general_->GetTaxCodes(&codes);
    BSTR* code = nullptr;
    _com_util::CheckError(SafeArrayAccessData(codes, reinterpret_cast<void**>(&code)));
    std::printf("Tax codes: %ls, %ls, %ls\n", code[0], code[1], code[2]);
    SafeArrayUnaccessData(codes);
    SafeArrayDestroy(codes);
  }

  void Pick() {
    // The list opens on the first customer that matches.
    const _bstr_t customer = customers_->List(L"SMI*");
    if (customer.length() == 0) {
      std::puts("Picked customer: none");
    } else {
      std::printf("Picked customer: %ls, %ls\n", Text(customer),
                  Text(customers_->GetName(customer)));
    }
    const _bstr_t product = products_->FastList(VARIANT_TRUE);
    std::printf("Picked product: %ls\n", product.length() ? Text(product) : L"none");
  }

  void Allocate(const wchar_t* code) {
    if (products_->UpdateAllocQty(code, 6)) PrintAllocated("6 more", code);
    if (!products_->UpdateAllocQty(code, 1000)) std::puts("1000 more: refused");
    if (products_->UpdateAllocQty(code, -6)) PrintAllocated("6 less", code);
  }

  void PrintAllocated(const char* what, const wchar_t* code) {
    double allocated = 0;
    double on_order = 0;
    products_->GetAllocOnOrder(code, &allocated, &on_order);
    std::printf("%s: allocated %.*f\n", what, quantity_places_, allocated);
  }

  const _bstr_t company_;
  IDispatchPtr engine_;
  IDispatchPtr workspace_;
  IDispatchPtr database_;
  _CustomersPtr customers_{__uuidof(Customers)};
  _ProductsPtr products_{__uuidof(Products)};
  _GeneralPtr general_{__uuidof(General)};
  short quantity_places_ = 0;
  short price_places_ = 0;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
  int status = 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  try {
    Host(count > 1 ? arguments[1] : kCompany, count > 2 ? arguments[2] : kConnection).Run();
  } catch (const _com_error& error) {
    std::printf("Failed with 0x%08lX\n", static_cast<unsigned long>(error.Error()));
    status = 1;
  }
  CoUninitialize();
  return status;
}
