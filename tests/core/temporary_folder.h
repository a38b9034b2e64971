// A folder for the files of a test, which goes with it.
#ifndef ARD_TESTS_CORE_TEMPORARY_FOLDER_H_
#define ARD_TESTS_CORE_TEMPORARY_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <string>

namespace ard::testing {

class TemporaryFolder : public std::filesystem::path {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ard_test_XXXXXX").string();
    assign(mkdtemp(name.data()));
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() { std::filesystem::remove_all(*this); }
};

}  // namespace ard::testing

#endif  // ARD_TESTS_CORE_TEMPORARY_FOLDER_H_
