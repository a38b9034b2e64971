// Files that are replaced as a whole: whatever happens while one is written, the file holds the
// old bytes or the new ones.
#ifndef ARD_SIMULATOR_SAFE_FILE_H_
#define ARD_SIMULATOR_SAFE_FILE_H_

#include <filesystem>
#include <string>
#include <string_view>

namespace ard::simulator {

// All of the file. Throws std::system_error.
std::string ReadFile(const std::filesystem::path& path);

// WriteAside, then PutInPlace. Throws std::system_error; the file is then as it was.
void ReplaceFile(const std::filesystem::path& path, std::string_view bytes);

// The two steps of it. The first puts the bytes on the disk beside the file, as "name.new" (one
// left there by a crash is overwritten); the second gives them the file's name.
void WriteAside(const std::filesystem::path& path, std::string_view bytes);
void PutInPlace(const std::filesystem::path& path);

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_SAFE_FILE_H_
