// The library's use of ADO, against the stand-in for it.
#include "windows/database/ado.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "frame/error.h"
#include "frame/text.h"
#include "host_database/odbc_connection.h"
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
  std::int32_t Ask(const wchar_t* name) { return connection.AskLong(connection.LookUp(name)); }

  Com com;
  ComPtr<IDispatch> object = New(L"ADODB.Connection");
  LateBound connection{object};
};

// What using everything answers, errors too: a line each.
std::vector<std::string> Use(database::Connection& connection) {
  std::vector<std::string> lines;
  const auto add = [&](std::string_view kind, std::size_t number, std::wstring_view text) {
    lines.push_back(std::string(kind) + std::to_string(number) + " " + ToUtf8(text));
  };
  const auto note = [&](const auto& action) {
    try {
      if constexpr (std::is_void_v<decltype(action())>) {
        action();
      } else {
        const Value answer(action());
        add("type ", answer.storage().index(), answer.is_null() ? L"" : answer.ToText());
      }
    } catch (const Error& error) {
      add("error ", static_cast<std::uint32_t>(error.number()), error.text());
    }
  };
  note([&] { connection.Open(L"SELECT Nonsense FROM Stock", Cursor::kStatic, Lock::kReadOnly); });
  for (const Cursor cursor : {Cursor::kForwardOnly, Cursor::kStatic}) {
    for (const Lock lock : {Lock::kReadOnly, Lock::kOptimistic}) {
      const auto rows = connection.Open(L"SELECT * FROM Stock", cursor, lock);
      const auto note_rest = [&] {
        while (!rows->Eof()) {
          for (std::int32_t i = 0; i < rows->FieldCount(); ++i) {
            note([&] { return rows->GetValue(i); });
          }
          rows->MoveNext();
        }
      };
      for (std::int32_t i = -1; i <= rows->FieldCount(); ++i) {
        note([&] { return rows->FieldName(i); });
        note([&] { return rows->GetFieldType(i); });
      }
      note_rest();
      note([&] { rows->MoveNext(); });
      note([&] { return rows->GetValue(0); });
      for (const wchar_t* filter : {L"Code Like '%1'", L"Code = 'O'Brien'", L"Kode = 'a'"}) {
        note([&] { rows->SetFilter(filter); });
        note([&] { return rows->RecordCount(); });
      }
      note([&] { rows->SetSort(L"[Price] DESC"); });
      note([&] { rows->SetSort(L"Sideways DOWN"); });
      note_rest();
      note([&] { rows->SetFilter(L"Code Like 'z%'"); });
      note([&] { return rows->Bof(); });
      note([&] { rows->SetFilter(L""); });
      for (const std::int32_t row : {0, 1, 3, 4}) {
        note([&] { rows->SetAbsolutePosition(row); });
        note([&] { return rows->GetValue(0); });
      }
      note([&] { rows->Delete(); });
      note([&] { return rows->GetValue(0); });
      note([&] { return rows->RecordCount(); });
      note([&] { rows->Close(); });
      note([&] { return rows->Eof(); });
    }
  }
  return lines;
}

TEST(AdoTest, TheLibraryGetsThroughAdoWhatTheDatabaseHolds) {
  Host host;
  OdbcConnection direct(kDatabase);
  for (const wchar_t* command : kCommands) direct.Execute(command);
  const auto wrapped = windows::WrapConnection(host.object.get());
  const std::vector<std::string> answers = Use(direct);
  EXPECT_EQ(Use(*wrapped), answers);
  EXPECT_EQ(std::count(answers.begin(), answers.end(), "type 9 Brass 'O' ring \xe2\x82\xac"), 4);
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 0);
}

TEST(AdoTest, ARecordsetThatIsDroppedClosesAndClosingTwiceIsNoError) {
  Host host;
  const auto wrapped = windows::WrapConnection(host.object.get());
  auto rows = wrapped->Open(L"SELECT * FROM Stock", Cursor::kStatic, Lock::kReadOnly);
  rows->GetValue(0);
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 1);
  rows.reset();
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 0);
  rows = wrapped->Open(L"SELECT * FROM Stock", Cursor::kStatic, Lock::kReadOnly);
  rows->Close();
  rows->Close();
  EXPECT_EQ(host.Ask(L"OpenRecordsets"), 0);
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

TEST(AdoTest, ThereIsNothingBehindNothing) { EXPECT_EQ(windows::WrapConnection(nullptr), nullptr); }

}  // namespace
}  // namespace ard::host_database
