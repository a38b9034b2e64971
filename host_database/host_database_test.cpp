#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "frame/error.h"
#include "host_database/ado_error.h"
#include "host_database/database_file.h"
#include "host_database/odbc_connection.h"
#include "tests/core/temporary_folder.h"

namespace ard::host_database {
namespace {

namespace fs = std::filesystem;
using database::Cursor;
using database::Lock;
using database::RecordsetObject;

// The number of the error that an action throws; 0 without one.
std::int32_t ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    EXPECT_FALSE(error.text().empty());
    return error.number();
  }
  return 0;
}

class HostDatabaseTest : public ::testing::Test {
 protected:
  HostDatabaseTest() {
    Execute({L"CREATE TABLE Stock (Code VARCHAR(10), Description TEXT, Price REAL, Held INTEGER)",
             L"INSERT INTO Stock VALUES ('B2', 'Brass ''O'' ring, 5% off', 2.5, 10)",
             L"INSERT INTO Stock VALUES ('a1', '\x00c4rmel [l\x00e4ng]', NULL, 9)",
             L"INSERT INTO Stock VALUES ('b1', NULL, -1.25, 100)",
             L"INSERT INTO Stock VALUES ('A2', 'anvil \x2014 50%', 2.5, -3)"});
  }

  void Execute(const std::vector<std::wstring>& commands) {
    for (const std::wstring& command : commands) connection_.Execute(command);
  }
  std::unique_ptr<Recordset> Open(std::wstring_view command, Cursor cursor = Cursor::kStatic,
                                  Lock lock = Lock::kReadOnly) {
    return connection_.OpenRecordset(command, cursor, lock);
  }

  // The first fields from the current row on.
  static std::wstring Rest(RecordsetObject& rows) {
    std::wstring result;
    for (; !rows.Eof(); rows.MoveNext()) {
      result += (result.empty() ? L"" : L" ") + rows.GetValue(0).ToText();
    }
    return result;
  }
  std::wstring Select(std::wstring_view command) { return Rest(*Open(command)); }

  static std::wstring ConnectionString(const fs::path& file) {
    return L"Driver=SQLite3;Database=" + file.wstring();
  }

  const ard::testing::TemporaryFolder folder_;
  OdbcConnection connection_{ConnectionString(folder_ / "stock.db")};
};

TEST_F(HostDatabaseTest, ADatabaseFileHasToBeOne) {
  EXPECT_EQ(OpenDatabaseFile(folder_ / "stock.db")
                ->OpenRecordset(L"SELECT * FROM Stock", Cursor::kStatic, Lock::kReadOnly)
                ->RecordCount(),
            4);
  std::ofstream(folder_ / "text.db") << std::string(2000, 'x');
  std::ofstream(folder_ / "empty.db");
  for (const auto& [file, problem] : {std::pair("stok.db", L"No such file or directory"),
                                      {"", L"Is no regular file"},
                                      {"empty.db", L"Is an empty file"},
                                      {"text.db", L"[SQLite]file is not a database (26)"}}) {
    try {
      OpenDatabaseFile(folder_ / file);
      ADD_FAILURE() << file;
    } catch (const Error& error) {
      EXPECT_EQ(error.text(), (folder_ / file).wstring() + L": " + problem);
    }
  }
  EXPECT_FALSE(fs::exists(folder_ / "stok.db"));
}

TEST_F(HostDatabaseTest, DeletingTakesExactlyTheCurrentRowOutOfTheTable) {
  Execute({L"INSERT INTO Stock VALUES ('B2', NULL, 2.5, 10)",
           L"INSERT INTO Stock VALUES ('twin', 'x', 1, 1), ('twin', 'x', 1, 1)"});
  const auto rows =
      Open(L"SELECT * FROM [Stock] WHERE Held > 0", Cursor::kStatic, Lock::kOptimistic);
  rows->SetSort(L"Code");
  rows->SetFilter(L"Code = 'B2'");
  rows->MoveNext();  // the one without a description
  rows->Delete();
  EXPECT_EQ(ErrorOf([&] { rows->GetValue(0); }),
            static_cast<std::int32_t>(AdoError::kRowIsDeleted));
  EXPECT_FALSE(rows->Eof());
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(rows->RecordCount(), 1);
  EXPECT_EQ(Select(L"SELECT Code FROM Stock"), L"B2 a1 b1 A2 twin twin");

  rows->SetFilter(L"Code = 'twin'");
  EXPECT_EQ(ErrorOf([&] { rows->Delete(); }), kErrorFailed);
  rows->SetFilter(L"");
  Execute({L"UPDATE Stock SET Price = 3 WHERE Code = 'a1'"});
  EXPECT_EQ(ErrorOf([&] { rows->Delete(); }), kErrorFailed);
  EXPECT_EQ(rows->GetValue(0).ToText(), L"a1");
  // In the file, not in this connection alone.
  OdbcConnection other(ConnectionString(folder_ / "stock.db"));
  EXPECT_EQ(Rest(*other.Open(L"SELECT Code FROM Stock", Cursor::kStatic, Lock::kReadOnly)),
            L"B2 a1 b1 A2 twin twin");
}

}  // namespace
}  // namespace ard::host_database
