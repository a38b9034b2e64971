#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

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

class HostDatabaseTest : public ::testing::Test {
 protected:
  HostDatabaseTest() {
    connection_.Execute(L"CREATE TABLE Stock (Code VARCHAR(10), Description TEXT, Price REAL)");
    connection_.Execute(
        L"INSERT INTO Stock VALUES ('B2', 'Brass', 2.5), ('a1', '\x00c4rmel', NULL), "
        L"('b1', NULL, -1.25), ('B2', NULL, 2.5), ('twin', 'x', 1), ('twin', 'x', 1)");
  }

  // The codes that are in the file, as another connection sees them.
  std::wstring Codes() const {
    const auto rows =
        OpenDatabaseFile(folder_ / "stock.db")
            ->OpenRecordset(L"SELECT Code FROM Stock", Cursor::kStatic, Lock::kReadOnly);
    std::wstring codes;
    for (; !rows->Eof(); rows->MoveNext()) codes += rows->GetValue(0).ToText() + L" ";
    return codes;
  }
  static std::int32_t ErrorOfDeleting(database::RecordsetObject& rows) {
    try {
      rows.Delete();
    } catch (const Error& error) {
      return error.number();
    }
    return 0;
  }

  const ard::testing::TemporaryFolder folder_;
  OdbcConnection connection_{L"Driver=SQLite3;Database=" + (folder_ / "stock.db").wstring()};
};

TEST_F(HostDatabaseTest, ADatabaseFileHasToBeOne) {
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
  const auto rows = connection_.OpenRecordset(L"SELECT * FROM [Stock] WHERE Code <> 'b1'",
                                              Cursor::kStatic, Lock::kOptimistic);
  rows->SetSort(L"Code");
  rows->SetFilter(L"Code = 'B2'");
  rows->MoveNext();  // the one without a description
  rows->Delete();
  try {
    rows->GetValue(0);
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), static_cast<std::int32_t>(AdoError::kRowIsDeleted));
  }
  EXPECT_FALSE(rows->Eof());
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
  EXPECT_EQ(rows->RecordCount(), 1);
  EXPECT_EQ(Codes(), L"B2 a1 b1 twin twin ");

  rows->SetFilter(L"Code = 'twin'");
  EXPECT_EQ(ErrorOfDeleting(*rows), kErrorFailed);
  rows->SetFilter(L"");
  connection_.Execute(L"UPDATE Stock SET Price = 3 WHERE Code = 'a1'");
  EXPECT_EQ(ErrorOfDeleting(*rows), kErrorFailed);
  EXPECT_EQ(rows->GetValue(0).ToText(), L"a1");
  EXPECT_EQ(Codes(), L"B2 a1 b1 twin twin ");
}

}  // namespace
}  // namespace ard::host_database
