#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "frame/error.h"
#include "host_database/database_file.h"
#include "tests/core/temporary_folder.h"

namespace ard::host_database {
namespace {

TEST(HostDatabaseTest, ADatabaseFileHasToBeOne) {
  const ard::testing::TemporaryFolder folder;
  std::ofstream(folder / "text.db") << std::string(2000, 'x');
  std::ofstream(folder / "empty.db");
  for (const auto& [file, problem] : {std::pair("stok.db", L"No such file or directory"),
                                      {"", L"Is no regular file"},
                                      {"empty.db", L"Is an empty file"},
                                      {"text.db", L"[SQLite]file is not a database (26)"}}) {
    try {
      OpenDatabaseFile(folder / file);
      ADD_FAILURE() << file;
    } catch (const Error& error) {
      EXPECT_EQ(error.text(), (folder / file).wstring() + L": " + problem);
    }
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "stok.db"));
}

}  // namespace
}  // namespace ard::host_database
