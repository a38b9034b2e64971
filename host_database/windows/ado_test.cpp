// The library's use of ADO, against the stand-in for it.
#include "windows/database/ado.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "frame/error.h"
#include "frame/text.h"
#include "windows/engine/dispatch_call.h"

namespace ard::host_database {
namespace {

using database::Cursor;
using database::Lock;
using windows::ComPtr;
using windows::LateBound;

constexpr std::wstring_view kDatabase = L"Driver=SQLite3;Database=:memory:";
constexpr const wchar_t* kCommands[] = {
    L"CREATE TABLE Stock (Code TEXT, Note TEXT, Price REAL, Made TIMESTAMP, Held INTEGER, Old BIT)",
    L"INSERT INTO Stock VALUES ('B2', 'Brass ''O'' ring \x20ac', 2.5, '2026-11-21 06:00:00', 7, 1)",
    L"INSERT INTO Stock VALUES ('a1', '\x00c4rmel', -1.25, NULL, 9, 0)",
    L"INSERT INTO Stock VALUES ('b1', NULL, NULL, '1899-12-29 12:00:00', -3, NULL)",
};

class Com {
 public:
  Com() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  Com(const Com&) = delete;
  Com& operator=(const Com&) = delete;
  ~Com() { CoUninitialize(); }
};

// An object of a registered class.
ComPtr<IDispatch> New(const wchar_t* prog_id) {
  CLSID class_id;
  void* object = nullptr;
  EXPECT_EQ(CLSIDFromProgID(prog_id, &class_id), S_OK);
  EXPECT_EQ(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object),
            S_OK);
  return ComPtr<IDispatch>::Adopt(static_cast<IDispatch*>(object));
}

// A connection as a host opens it.
struct Host {
  Host() {
    connection.Do(connection.LookUp(L"Open"), kDatabase);
    for (const std::wstring_view command : kCommands) {
      connection.Do(connection.LookUp(L"Execute"), command);
    }
  }
  std::int32_t Ask(const wchar_t* name) const {
    return connection.AskLong(connection.LookUp(name));
  }

  Com com;
  ComPtr<IDispatch> object = New(L"ADODB.Connection");
  LateBound connection{object};
};

TEST(AdoTest, TheLibraryGetsThroughAdoWhatTheDatabaseHolds) {
  const Host host;
  const auto wrapped = windows::WrapConnection(host.object.get());
  EXPECT_THROW(wrapped->Open(L"SELECT No FROM Stock", Cursor::kStatic, Lock::kReadOnly), Error);
  auto rows = wrapped->Open(L"SELECT * FROM Stock", Cursor::kStatic, Lock::kOptimistic);
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 1);
  const std::wstring brass = L"Brass 'O' ring \x20ac";
  const Value expected[][6] = {
      {L"B2", brass, 2.5, Date{46347.25}, 7, true},
      {L"a1", L"\x00c4rmel", -1.25, Null(), 9, false},
      {L"b1", Null(), Null(), Date{-1.5}, -3, Null()},
  };
  for (const auto& row : expected) {
    ASSERT_FALSE(rows->Eof());
    for (std::int32_t i = 0; i < rows->FieldCount(); ++i) {
      EXPECT_EQ(rows->GetValue(i), row[i]) << ToUtf8(rows->FieldName(i));
    }
    rows->MoveNext();
  }
  EXPECT_TRUE(rows->Eof());
  EXPECT_THROW(rows->GetValue(0), Error);

  rows->SetSort(L"[Price] DESC");
  rows->SetFilter(L"Code Like '%1'");
  EXPECT_EQ(rows->RecordCount(), 2);
  EXPECT_EQ(rows->GetValue(0), Value(L"a1"));
  EXPECT_THROW(rows->SetFilter(L"Kode = 'a'"), Error);
  rows->SetFilter(L"");
  rows->SetAbsolutePosition(3);
  rows->Delete();
  EXPECT_EQ(rows->RecordCount(), 2);
  rows->Close();
  EXPECT_NO_THROW(rows->Close());
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 0);
  rows = wrapped->Open(L"SELECT * FROM Stock", Cursor::kForwardOnly, Lock::kReadOnly);
  rows.reset();
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 0) << "dropped, it closes";
}

TEST(AdoTest, ACellCostsOneCallOnceItsFieldIsKnown) {
  Host host;
  const auto rows = windows::WrapConnection(host.object.get())
                        ->Open(L"SELECT * FROM Stock", Cursor::kStatic, Lock::kReadOnly);
  rows->GetValue(0);
  const std::int32_t before = host.Ask(L"Operations");
  rows->MoveNext();
  EXPECT_EQ(rows->GetValue(0).ToText(), L"a1");
  EXPECT_EQ(host.Ask(L"Operations") - before, 2);
  host.connection.Do(host.connection.LookUp(L"FailFrom"), 1, Value(false));
  EXPECT_THROW(rows->GetValue(0), Error);
  EXPECT_EQ(rows->GetValue(0).ToText(), L"a1");
}

}  // namespace
}  // namespace ard::host_database
