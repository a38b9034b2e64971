// Files that several programs share, or that one holds for itself. Paths are written as on Windows;
// elsewhere a backslash stands for a slash, and holding a file is a matter of those who ask.
#ifndef ARD_SIMULATOR_SHARED_FILE_H_
#define ARD_SIMULATOR_SHARED_FILE_H_

#include <filesystem>
#include <memory>
#include <string_view>

namespace ard::simulator {

// Opens a file for reading and closes it again, as Environment::TryToRead does. Throws Error when
// it cannot be opened.
void TryToRead(std::wstring_view file);

// Holds a file, so that no other process (nor this one) can open it, for as long as it lives.
// Throws Error when it cannot be opened or is open already.
class HeldFile {
 public:
  explicit HeldFile(const std::filesystem::path& file);

 private:
  std::shared_ptr<void> file_;
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_SHARED_FILE_H_
