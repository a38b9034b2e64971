// The library in processes that make it hard for a guest: loaded and unloaded over and over, beside
// other compilers' run-time libraries, with the processor's floating-point unit as hosts set it.
//
//   hostile_process_test <folder of the demo company>
//
// The simulated engine has to be registered.
#include "tests/windows/host.h"

// After windows.h.
#include <dispex.h>
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "benchmarks/holdings.h"
#include "frame/text.h"
#include "tests/windows/hasty_user.h"

namespace ard::windows {
namespace {

using namespace testing;  // NOLINT(google-build-using-namespace): the host
using benchmarks::Heaps;

template <class Interface>
ComPtr<Interface> Create(const Dll& library, REFCLSID class_id) {
  ComPtr<Interface> object;
  library.Factory(class_id)->CreateInstance(nullptr, __uuidof(Interface),
                                            reinterpret_cast<void**>(object.Receive()));
  return object;
}

// Calls with steps that fail inside.
void Fail(const Dll& library) {
  ForeignObject engine;
  engine.status = E_FAIL;
  const ComPtr<_Customers> customers = Create<_Customers>(library, CLSID_Customers);
  EXPECT_EQ(customers->putref_ArdWorkspace(&engine), S_OK);
  Bstr name;
  EXPECT_EQ(customers->GetName(Bstr(L"A").get(), name.Receive()), S_OK);
  EXPECT_EQ(name.view(), L"");
  double percent = 1;
  EXPECT_EQ(customers->GetDiscPercent(Bstr(L"A").get(), Bstr(L"B").get(), 1, 1, &percent), S_OK);
  EXPECT_EQ(percent, 0);
}

// One that takes the type library.
void Describe(const Dll& library) {
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(Create<_Customers>(library, CLSID_Customers)->GetTypeInfo(0, 0, info.Receive()), S_OK);
}

// ---- Other run-time libraries ----

// Whichever comes first, and whichever goes first; and so does the simulated engine.
TEST(BesideAPlugIn, BothThrowAndCatch) {
  for (const bool plugin_first : {true, false}) {
    for (const bool plugin_stays : {true, false}) {
      std::optional<Dll> plugin, library;
      if (plugin_first) plugin.emplace(L"foreign_plugin.dll");
      library.emplace(LibraryPath());
      if (!plugin_first) plugin.emplace(L"foreign_plugin.dll");
      ASSERT_TRUE(*plugin);
      Fail(*library);
      EXPECT_EQ(LateBound(CreateObject(L"ArdSimulator.Engine")).Ask(L"Open", L"?").vt, VT_ERROR);
      EXPECT_EQ(plugin->Call("ThrowAndCatch"), 7);
      (plugin_stays ? library : plugin).reset();
      if (library) Fail(*library);
      if (plugin) {
        EXPECT_EQ(plugin->Call("ThrowAndCatch"), 7);
      }
    }
  }
}

// ---- Loaded and unloaded ----

DWORD NextTlsIndex() {
  const DWORD index = TlsAlloc();
  TlsFree(index);
  return index;
}

// A service whose last apartment ends after each job: the library is unloaded each time. With
// threads it comes and goes with one after the other, while this one lives on and calls, too.
void LeaveNothing(bool threads) {
  constexpr int kWarmUp = 20;
  constexpr int kCycles = 2000;
  std::optional<Dll> library;
  const auto renew = [&] {
    library.reset();
    EXPECT_EQ(GetModuleHandleW(LibraryPath().c_str()), nullptr);
    library.emplace(LibraryPath());
    Fail(*library);
  };
  const auto run = [&](int cycles) {
    for (int i = 0; i < cycles; ++i) {
      threads ? std::jthread(renew).join() : renew();
      Fail(*library);
      if (i % 10 == 0) Describe(*library);
      EXPECT_EQ(library->Call("DllCanUnloadNow"), S_OK);
    }
  };
  run(kWarmUp);
  const DWORD index = NextTlsIndex();
  const auto [blocks, kilobytes] = Heaps();
  const double handles = benchmarks::Handles();
  run(kCycles);
  EXPECT_EQ(NextTlsIndex(), index);
  EXPECT_NEAR(Heaps().blocks, blocks, 20);
  EXPECT_NEAR(Heaps().kilobytes, kilobytes, 20);
  EXPECT_NEAR(benchmarks::Handles(), handles, 2);
}

TEST(Cycles, LeaveNothing) { LeaveNothing(false); }
TEST(Cycles, LeaveNothingWithThreads) { LeaveNothing(true); }
TEST(Cycles, LeaveNothingBesideAPlugIn) {
  const Dll plugin(L"foreign_plugin.dll");
  LeaveNothing(false);
}

// ---- The floating-point environment ----

// Both units: what they are set to, and which exceptions they have noted.
struct Units {
  WORD control;
  DWORD sse;
  WORD noted = 0;

  bool operator==(const Units&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Units& units) {
  return out << std::hex << units.control << ' ' << units.noted << ' ' << units.sse << std::dec;
}

Units Read() {
  Units units = {};
  asm volatile("fnstcw %0\n\tfnstsw %1" : "=m"(units.control), "=m"(units.noted));
  units.noted &= 0x38FF;  // with the depth of the stack
  units.sse = _mm_getcsr();
  return units;
}

void Set(const Units& wanted) {
  asm volatile("fnclex\n\tfldcw %0" : : "m"(wanted.control));
  float inexact;
  if (wanted.noted) asm volatile("fldpi\n\tfstps %0" : "=m"(inexact));
  _mm_setcsr(wanted.sse);
}

constexpr Units kWindows = {0x027F, 0x1F80};
constexpr Units kHosts[] = {
    kWindows,
    {0x037F, 0x1F81},           // 64 bits, and an exception noted
    {0x1372, 0x1900},           // invalid operations, divisions by zero and overflow are raised
    {0x0340, 0x0000},           // everything is
    {0x007F, 0x1F80 | 0x8040},  // 24 bits; nothing small
    {0x0A7F, 0x1F80 | 0x6000, 0x20},  // rounded up, which is noted; towards zero
    {0x0740, 0x2000},                 // rounded down, and everything is raised
};

constexpr double kSignaling = std::numeric_limits<double>::signaling_NaN();

// What a call answers to a host with these units, which have to be the same after it.
template <class Call>
auto In(const Units& host, Call&& call) {
  const Units usual = Read();
  Set(host);
  auto answer = call();
  const Units after = Read();
  Set(usual);
  EXPECT_EQ(after, host);
  return answer;
}

TEST(FloatingPoint, IsWindowsOwnInsideAndTheHostsOutside) {
  const LateBound engine(CreateObject(L"ArdSimulator.Engine"));
  ASSERT_NE(engine.Ask(L"Open", company_folder).vt, VT_ERROR);
  const ScopedVariant workspace = engine.Ask(L"Workspace");
  for (const Units& host : kHosts) {
    SCOPED_TRACE(&host - kHosts);
    const auto library = In(host, [] { return std::make_unique<Dll>(LibraryPath()); });
    const auto customers = In(host, [&] { return Create<_Customers>(*library, CLSID_Customers); });
    const auto products = Create<_Products>(*library, CLSID_Products);
    const auto record = Create<_CustomerRecord>(*library, CLSID_CustomerRecord);
    In(host, [&] { return customers->putref_ArdWorkspace(workspace.pdispVal); });
    products->putref_ArdWorkspace(workspace.pdispVal);

    // A customer who gets 10 %, with 1, 2.5 or 5 more for lines of 500, 1,000 or 5,000.
    const Bstr account(L"SMI001"), product(L"BOLT-M6X60");
    const auto percent = [&](double quantity, double price) {
      double answer = 0;
      customers->GetDiscPercent(account.get(), product.get(), quantity, price, &answer);
      return answer;
    };
    const LateBound late_customers(As<IDispatch>(customers.get()));
    const LateBound late_record(As<IDispatch>(record.get()));
    EXPECT_EQ(In(host, [&] { return percent(1e308, 1e308); }), 15);
    EXPECT_EQ(In(host, [&] { return percent(3, 333.4); }), 12.5);
    EXPECT_EQ(In(host, [&] { return percent(1e-310, -1e-310); }), 10);
    EXPECT_EQ(In(host, [&] { return percent(kSignaling, 1); }), 10);
    const auto late_percent = [&] {
      return late_customers.Ask(L"GetDiscPercent", L"SMI001", L"X", L"1e308", L"1e308").dblVal;
    };
    EXPECT_EQ(In(host, late_percent), 15);
    const auto late_put = [&] { return late_record.Put(L"DueDays", Variant(L"1e308")); };
    EXPECT_EQ(In(host, late_put), DISP_E_OVERFLOW);
    double price = 0;
    In(host, [&] { return products->GetSellPrice(product.get(), &price); });
    EXPECT_EQ(price, 0.176);
  }
}

// While one lives, an object of the host's is asked something. It notes how it finds the units, and
// leaves them as they should not be: so that everything is raised, and something to be raised at
// once.
struct Meddling {
  static inline std::vector<Units> seen;

  Meddling() {
    seen.push_back({Read().control, _mm_getcsr() & ~_MM_EXCEPT_MASK});
    Set(kWindows);
  }
  ~Meddling() {
    Set(kHosts[5]);
    asm volatile("fldcw %0" : : "m"(kHosts[3].control));
    _mm_setcsr(kHosts[3].sse);
  }
};

// The simulated engine, behind objects that are none of automation's at first sight every other
// time; without it a script's object, whose value is True and whose names are those that are added.
class Meddler final : public ForeignObject {
 public:
  explicit Meddler(ComPtr<IDispatch> object = {}) : object_(std::move(object)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const Meddling meddling;
    const bool extends = !object_ && iid == __uuidof(IDispatchEx);
    return ForeignObject::QueryInterface(extends ? IID_IDispatch : iid, object);
  }
  ULONG STDMETHODCALLTYPE Release() override {
    std::optional<Meddling> meddling;
    if (object_) meddling.emplace();
    const ULONG left = ForeignObject::Release();
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    const Meddling meddling;
    return object_ ? object_->GetIDsOfNames(iid, names, count, locale, ids) : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* failed) override {
    const Meddling meddling;
    if (!object_) {
      if (result) *result = Variant(true).Detach();
      return S_OK;
    }
    if (id == kFindNext && window) {
      Sleep(std::exchange(pause, 0));
      std::thread(SendNotifyMessageW, window, WM_NULL, 0, 0).join();
    }
    const HRESULT outcome =
        object_->Invoke(id, iid, locale, flags, parameters, result, exception, failed);
    if (result && result->vt == VT_DISPATCH) {
      result->pdispVal = new Meddler(ComPtr<IDispatch>::Adopt(result->pdispVal));
      if (Meddling::seen.size() % 2) result->vt = VT_UNKNOWN;
    }
    if (id != kClose) return outcome;
    exception->pfnDeferredFillIn = TellLate;
    return DISP_E_EXCEPTION;
  }
  // The first of what IDispatchEx has beyond.
  virtual HRESULT STDMETHODCALLTYPE GetDispID(BSTR, DWORD, DISPID*) {
    const Meddling meddling;
    return S_OK;
  }

  static inline int told_late = 0;
  // While a file is searched a window of the host's is told something, and once after a moment.
  static inline HWND window = nullptr;
  static inline DWORD pause = 600;

 private:
  static constexpr DISPID kFindNext = 0x1000C;
  static constexpr DISPID kClose = 0x1000A;  // a data file, which is closed, but tells of an error

  static HRESULT STDMETHODCALLTYPE TellLate(EXCEPINFO*) {
    const Meddling meddling;
    return ++told_late, S_OK;
  }

  const ComPtr<IDispatch> object_;
};

// What makes the recordsets of the host's database.
struct RecordsetFactory final : ComObject<IClassFactory> {
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, void** object) override {
    const Meddling meddling;
    *object = new Meddler;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

BOOL CALLBACK PressEnd(HWND control, LPARAM) {
  return PostMessageW(control, WM_KEYDOWN, VK_END, 0);
}

// A window of the host's, which changes them with each message. Its user goes to the end of the
// list that comes up instead.
LRESULT CALLBACK MeddlingWindow(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_CLOSE) return 0;  // the user's haste is not for this one
  const LRESULT answer = DefWindowProcW(window, message, wparam, lparam);
  if (message == WM_ACTIVATE && wparam == WA_INACTIVE) {
    PostMessageW(window, WM_NULL, 0, 0);
    EnumChildWindows(reinterpret_cast<HWND>(lparam), PressEnd, 0);
  }
  Set(kHosts[5]);
  return answer;
}

TEST(FloatingPoint, IsWindowsOwnForTheHostsObjects) {
  const Dll library(LibraryPath());
  const LateBound engine(CreateObject(L"ArdSimulator.Engine"));
  ASSERT_NE(engine.Ask(L"Open", company_folder).vt, VT_ERROR);
  const ScopedVariant workspace = engine.Ask(L"Workspace");
  auto customers = Create<_Customers>(library, CLSID_Customers);
  ComPtr<IDispatch> meddler =
      ComPtr<IDispatch>::Adopt(new Meddler(As<IDispatch>(workspace.pdispVal)));
  for (int i = 0; i < 2; ++i) {
    In(kHosts[5], [&] { return customers->putref_ArdWorkspace(meddler.get()); });
  }
  double percent = 0;
  In(kHosts[5], [&] {
    return customers->GetDiscPercent(Bstr(L"SMI001").get(), Bstr(L"BOLT-M6X60").get(), 3, 333.4,
                                     &percent);
  });
  EXPECT_EQ(percent, 12.5);
  EXPECT_GT(Meddler::told_late, 0);
  const HWND window = CreateWindowW(WC_DIALOG, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    200, nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MeddlingWindow));
  Bstr picked;
  const HastyUser user;
  In(kHosts[5], [&] { return customers->FastList(picked.Receive()); });
  EXPECT_EQ(picked.view(), L"ZOO001");
  const auto bank = Create<_Bank>(library, CLSID_Bank);
  bank->putref_ArdWorkspace(meddler.get());
  Meddler::window = window;
  In(kHosts[5], [&] { return bank->List(Bstr(L"12*").get(), picked.Receive()); });
  EXPECT_NE(picked.view(), L"");

  // Scripts' objects as arguments; and a refusal by a database that cannot be read.
  const auto script = ComPtr<IDispatch>::Adopt(new Meddler);
  const auto pass_script = [&](IDispatch* object, const wchar_t* member, UINT times) {
    std::vector<VARIANT> arguments(times, Variant(script.get()));
    auto* name = const_cast<wchar_t*>(member);
    DISPID id = 0;
    object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id);
    DISPPARAMS parameters = {arguments.data(), nullptr, times, 0};
    return In(kHosts[5], [&] {
      return object->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                            nullptr);
    });
  };
  const auto general = Create<_General>(library, CLSID_General);
  EXPECT_EQ(pass_script(customers.get(), L"GetDiscPercent", 4), S_OK);
  EXPECT_EQ(pass_script(general.get(), L"GetNumActiveUsersInclDet", 2), S_OK);
  auto messaging = Create<_Messaging>(library, CLSID_Messaging);
  messaging->putref_ArdWorkspace(script.get());
  messaging->putref_ArdEngine(meddler.get());
  messaging->putref_oDBaseConn(meddler.get());
  messaging->put_UseAccRights(VARIANT_TRUE);
  CLSID recordset;
  DWORD factory = 0;
  CLSIDFromProgID(L"ADODB.Recordset", &recordset);
  CoRegisterClassObject(recordset, ComPtr<IUnknown>::Adopt(new RecordsetFactory).get(),
                        CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &factory);
  VARIANT_BOOL logged_on = VARIANT_TRUE;
  In(kHosts[5], [&] { return messaging->LogonUser(Bstr(L"A").get(), nullptr, &logged_on); });
  EXPECT_EQ(logged_on, VARIANT_FALSE);
  CoRevokeClassObject(factory);
  DestroyWindow(window);
  In(kHosts[5], [&] { return customers = {}, messaging = {}, true; });
  EXPECT_EQ(Meddling::seen, std::vector<Units>(Meddling::seen.size(), kWindows));
  meddler = {};
  Set(kWindows);
}

// ---- Memory that runs out ----

// So many allocations of the library's succeed.
int allocations_left = std::numeric_limits<int>::max();
void* Allocate(std::size_t size) { return allocations_left-- > 0 ? std::malloc(size) : nullptr; }

// Has a module take `replacement` in place of a function that it imports.
void Replace(HMODULE module, FARPROC function, void* replacement) {
  char* const base = reinterpret_cast<char*>(module);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
  void** const first = reinterpret_cast<void**>(base + table.VirtualAddress);
  DWORD protection = 0;
  VirtualProtect(first, table.Size, PAGE_READWRITE, &protection);
  std::replace(first, first + table.Size / sizeof *first, reinterpret_cast<void*>(function),
               replacement);
}

TEST(Memory, MayRunOut) {
  const Dll library(LibraryPath());
  Replace(GetModuleHandleW(LibraryPath().c_str()),
          GetProcAddress(GetModuleHandleW(L"msvcrt"), "malloc"),
          reinterpret_cast<void*>(&Allocate));
  const ComPtr<IClassFactory> factory = library.Factory(CLSID_Customers);
  const auto customers = Create<_Customers>(library, CLSID_Customers);
  const std::pair<HRESULT, std::function<HRESULT(void**)>> cases[] = {
      {E_OUTOFMEMORY,
       [&](void** out) {
         return library.Call<REFCLSID, REFIID, void**>("DllGetClassObject", CLSID_Bank,
                                                       IID_IClassFactory, out);
       }},
      {E_OUTOFMEMORY,
       [&](void** out) { return factory->CreateInstance(nullptr, IID_IUnknown, out); }},
      {TYPE_E_CANTLOADLIBRARY,
       [&](void** out) {
         return customers->GetTypeInfo(0, 0, reinterpret_cast<ITypeInfo**>(out));
       }},
  };
  for (const auto& [status, call] : cases) {
    HRESULT outcome = status;
    int left = 0;
    for (; outcome == status; ++left) {
      ComPtr<IUnknown> out;
      allocations_left = left;
      outcome = call(reinterpret_cast<void**>(out.Receive()));
      allocations_left = std::numeric_limits<int>::max();
    }
    EXPECT_EQ(outcome, S_OK) << &status;
    EXPECT_GT(left, 1) << "it needed none";
  }
}

// ---- What a guest says of itself ----

std::string VersionOf(const std::wstring& file) {
  std::vector<char> resource(4096);
  GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data());
  void* found = nullptr;
  UINT length = 0;
  std::string text;
  for (const std::wstring name : {L"CompanyName", L"FileDescription", L"FileVersion",
                                  L"LegalCopyright", L"OriginalFilename", L"OLESelfRegister"}) {
    const std::wstring key = L"\\StringFileInfo\\040904B0\\" + name;
    const bool is_there = VerQueryValueW(resource.data(), key.c_str(), &found, &length);
    text += is_there ? ToUtf8(static_cast<const wchar_t*>(found)) + "|" : "-|";
  }
  VerQueryValueW(resource.data(), L"\\", &found, &length);
  const auto& numbers = *static_cast<VS_FIXEDFILEINFO*>(found);
  return text + std::to_string(HIWORD(numbers.dwFileVersionMS)) + "." +
         std::to_string(LOWORD(numbers.dwFileVersionMS)) + "." +
         std::to_string(HIWORD(numbers.dwFileVersionLS)) + "|" + std::to_string(numbers.dwFileType);
}

TEST(VersionInformation, IsThatOfTheProject) {
  const std::wstring folder = LibraryPath().substr(0, LibraryPath().rfind(L'\\') + 1);
  const std::string cases[][2] = {{"ArdObjects100.dll", "Core Accounts Integration"},
                                  {"ArdSimulator.dll", "Simulated accounts engine"},
                                  {"ArdDatabase.dll", "Stand-in for ADO under Wine"},
                                  {"example_host.exe", "Example of a host"},
                                  {"trace_report.exe", "Sums a trace file up"}};
  for (const auto& [file, description] : cases) {
    EXPECT_EQ(VersionOf(folder + FromUtf8(file)),
              "The ArdObjects100 maintainers|" + description +
                  "|" ARD_VERSION "|Copyright (c) 2026 the ArdObjects100 maintainers|" + file +
                  (file.ends_with(".dll") ? "||" ARD_VERSION "|2" : "|-|" ARD_VERSION "|1"));
  }
}

// As a host with windows has them; so that it is the library alone that comes and goes.
class SystemLibraries : public ::testing::Environment {
  void SetUp() override {
    for (const wchar_t* name : {L"comctl32", L"comdlg32", L"shell32", L"uxtheme"}) {
      LoadLibraryW(name);
    }
  }
};
[[maybe_unused]] const auto* const kSystemLibraries =
    ::testing::AddGlobalTestEnvironment(new SystemLibraries);

}  // namespace
}  // namespace ard::windows
