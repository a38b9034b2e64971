// A host's database that is a file of SQLite's.
#ifndef ARD_HOST_DATABASE_DATABASE_FILE_H_
#define ARD_HOST_DATABASE_DATABASE_FILE_H_

#include <filesystem>
#include <memory>

#include "host_database/odbc_connection.h"

namespace ard::host_database {

// Opens it. Throws Error, which names the file, when it is not there or is no database.
std::shared_ptr<OdbcConnection> OpenDatabaseFile(const std::filesystem::path& file);

}  // namespace ard::host_database

#endif  // ARD_HOST_DATABASE_DATABASE_FILE_H_
