#include "host_database/database_file.h"

#include <string>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::host_database {

// To the driver an empty file is an empty database, and most of what has another form is one until
// something is asked of it.
std::shared_ptr<OdbcConnection> OpenDatabaseFile(const std::filesystem::path& file) {
  const std::wstring name = FromUtf8(file.string());
  try {
    if (!std::filesystem::exists(file)) throw Error(kErrorFailed, L"No such file or directory");
    if (!std::filesystem::is_regular_file(file)) throw Error(kErrorFailed, L"Is no regular file");
    if (std::filesystem::file_size(file) == 0) throw Error(kErrorFailed, L"Is an empty file");
    auto connection =
        std::make_shared<OdbcConnection>(L"Driver=SQLite3;NoCreat=1;Database=" + name);
    connection->OpenRecordset(L"SELECT name FROM sqlite_master", database::Cursor::kForwardOnly,
                              database::Lock::kReadOnly);
    return connection;
  } catch (const Error& error) {
    throw Error(error.number(), std::wstring(name).append(L": ").append(error.text()));
  }
}

}  // namespace ard::host_database
