// The customer and product lists through the registered library, on ledgers of any size: opening
// one reads one page, however many records there are.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/windows/host.h"
#include "windows/engine/variant.h"

namespace ard::windows {
namespace {

using testing::CreateObject;
using testing::LateBound;

struct List {
  const wchar_t* class_name;
  const wchar_t* window;
};
constexpr List kCustomers = {L"ArdObjects100.Customers", L"Select Customer"};
constexpr List kProducts = {L"ArdObjects100.Products", L"Select Product"};

// The product-information records of the second page, as many as `rows`.
ScopedVariant ConnectionWith(long rows) {
  const LateBound connection(CreateObject(L"ADODB.Connection"));
  connection.Ask(L"Open", L"Driver=SQLite3;Database=:memory:");
  connection.Ask(L"Execute",
                 L"CREATE TABLE ProdInfoStockFields (StockCode TEXT, Description TEXT)");
  connection.Ask(L"Execute",
                 (L"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                  std::to_wstring(rows) +
                  L") INSERT INTO ProdInfoStockFields SELECT printf('P%06d', i), 'Made up' FROM n")
                     .c_str());
  return testing::Variant(connection.get());
}

double Count(const LateBound& engine, const wchar_t* name) {
  return FromVariant(engine.Ask(name)).ToDouble();
}

// One opening of a list, which a timer of the thread's own modal loop ends once the page has been
// read, and the list has had a while to read more.
class Opening {
 public:
  // What it reads of a ledger with so many records; `connection` may be empty.
  static double Records(const List& list, long size, const VARIANT& connection) {
    const LateBound engine(CreateObject(L"ArdSimulator.Engine"));
    const LateBound host(CreateObject(list.class_name));
    engine.Ask(L"OpenSyntheticStock", size, size);
    host.Put(L"ArdWorkspace", engine.Ask(L"Workspace"), DISPATCH_PROPERTYPUTREF);
    if (connection.vt == VT_DISPATCH) {
      host.Put(L"oDBaseConn", testing::Variant(connection.pdispVal), DISPATCH_PROPERTYPUTREF);
    }
    window_ = list.window;
    engine_ = &engine;
    ticks_ = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, Watch);
    host.Ask(L"FastList");
    KillTimer(nullptr, timer);
    EXPECT_EQ(Count(engine, L"OpenFiles"), 0);
    return Count(engine, L"RecordsRead");
  }

 private:
  static void CALLBACK Watch(HWND, UINT, UINT_PTR, DWORD) {
    // The first record is the company's count.
    if (Count(*engine_, L"RecordsRead") < 2 || ++ticks_ < 4) return;
    PostMessageW(FindWindowW(nullptr, window_), WM_CLOSE, 0, 0);
  }

  static inline const wchar_t* window_;
  static inline const LateBound* engine_;
  static inline int ticks_;
};

TEST(LedgerOfAnySize, ListsOpenWithOnePage) {
  const ScopedVariant connection = ConnectionWith(100'000);
  for (const bool products : {false, true}) {
    const List& list = products ? kProducts : kCustomers;
    const VARIANT with = products ? static_cast<const VARIANT&>(connection) : VARIANT{};
    // The window shows some twenty rows; the count is one record more.
    const double page = Opening::Records(list, 1'000, with);
    EXPECT_GT(page, 10);
    EXPECT_LT(page, 40);
    for (const long size : {1'000'000, 10'000'000}) {
      EXPECT_EQ(Opening::Records(list, size, with), page) << size;
    }
  }
}

class ComApartment : public ::testing::Environment {
  void SetUp() override { ASSERT_EQ(OleInitialize(nullptr), S_OK); }
  void TearDown() override { OleUninitialize(); }
};

}  // namespace
}  // namespace ard::windows

int wmain(int count, wchar_t** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  ::testing::AddGlobalTestEnvironment(new ard::windows::ComApartment);
  return RUN_ALL_TESTS();
}
