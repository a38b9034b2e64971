#include "simulator/safe_file.h"

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#include <sys/stat.h>
#else
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

namespace ard::simulator {
namespace {

using std::filesystem::path;

// What the two kinds of system call differently.
#ifdef _WIN32
int OpenNew(const path& file) {
  return _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY, _S_IREAD | _S_IWRITE);
}
auto WriteSome(int file, const char* bytes, std::size_t size) {
  return _write(file, bytes, static_cast<unsigned>(std::min<std::size_t>(size, 1 << 30)));
}
int Flush(int file) { return _commit(file); }
int CloseFile(int file) { return _close(file); }
// Renaming is on the disk when the call returns, as far as the system lets one know.
void FlushFolder(const path&) {}
#else
int OpenNew(const path& file) {
  return open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}
auto WriteSome(int file, const char* bytes, std::size_t size) { return write(file, bytes, size); }
int Flush(int file) { return fsync(file); }
int CloseFile(int file) { return close(file); }
void FlushFolder(const path& folder) {
  const int handle = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) return;
  fsync(handle);
  close(handle);
}
#endif

[[noreturn]] void Fail(const path& file) {
  throw std::system_error(errno, std::generic_category(), file.string());
}

path Aside(path file) { return file += ".new"; }

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = WriteSome(file, bytes.data(), bytes.size());
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return Flush(file) == 0;
}

}  // namespace

std::string ReadFile(const path& file) {
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) Fail(file);
  return bytes;
}

void ReplaceFile(const path& file, std::string_view bytes) {
  WriteAside(file, bytes);
  PutInPlace(file);
}

void WriteAside(const path& file, std::string_view bytes) {
  const path aside = Aside(file);
  const int handle = OpenNew(aside);
  if (handle < 0) Fail(aside);
  const bool written = WriteAll(handle, bytes);
  const int error = errno;
  if (CloseFile(handle) != 0 || !written) {
    if (!written) errno = error;
    Fail(aside);
  }
}

void PutInPlace(const path& file) {
  std::filesystem::rename(Aside(file), file);
  FlushFolder(file.parent_path());
}

}  // namespace ard::simulator
