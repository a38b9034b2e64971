// The library's use of ADO, against the stand-in for it.
#include "windows/database/ado.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "frame/error.h"
#include "frame/text.h"
#include "tests/windows/host.h"

namespace ard::host_database {
namespace {

using database::Cursor;
using database::Lock;
using windows::testing::LateBound;

constexpr wchar_t kDatabase[] = L"Driver=SQLite3;Database=:memory:";
constexpr const wchar_t* kCommands[] = {
    L"CREATE TABLE Stock (Code TEXT, Note TEXT, Price REAL, Made TIMESTAMP, Held INTEGER, Old BIT)",
    L"INSERT INTO Stock VALUES ('B2', 'Brass ''O'' ring \x20ac', 2.5, '2026-11-21 06:00:00', 7, 1)",
    L"INSERT INTO Stock VALUES ('a1', '\x00c4rmel', -1.25, NULL, 9, 0)",
    L"INSERT INTO Stock VALUES ('b1', NULL, NULL, '1899-12-29 12:00:00', -3, NULL)",
};

TEST(Ado, GivesTheLibraryWhatTheDatabaseHolds) {
  CoInitialize(nullptr);
  // A connection as a host opens it, and as the library uses it.
  const LateBound object(windows::testing::CreateObject(L"ADODB.Connection"));
  object.Ask(L"Open", kDatabase);
  for (const wchar_t* command : kCommands) object.Ask(L"Execute", command);
  const auto count = [&](const wchar_t* name) {
    return windows::FromVariant(object.Ask(name)).ToLong();
  };
  const auto connection = windows::WrapConnection(object.get());
  EXPECT_FALSE(windows::WrapConnection(nullptr));

  EXPECT_THROW(connection->Open(L"SELECT No FROM Stock", Cursor::kStatic, Lock::kReadOnly), Error);
  auto rows = connection->Open(L"SELECT * FROM Stock", Cursor::kStatic, Lock::kOptimistic);
  EXPECT_EQ(count(L"OpenRecordsets"), 1);
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
  EXPECT_EQ(count(L"OpenRecordsets"), 0);

  rows = connection->Open(L"SELECT * FROM Stock", Cursor::kForwardOnly, Lock::kReadOnly);
  rows->GetValue(0);
  const std::int32_t before = count(L"Operations");
  rows->MoveNext();
  EXPECT_EQ(rows->GetValue(0), Value(L"a1"));
  EXPECT_EQ(count(L"Operations") - before, 2) << "a cell costs one once its field is known";
  object.Ask(L"FailFrom", 1, 0);
  EXPECT_THROW(rows->GetValue(0), Error);
  EXPECT_EQ(rows->GetValue(0), Value(L"a1"));
  rows.reset();
  EXPECT_EQ(count(L"OpenRecordsets"), 0) << "dropped, it closes";
}

}  // namespace
}  // namespace ard::host_database
