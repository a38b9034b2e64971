#include "simulator/shared_file.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#endif

#include <cstdint>
#include <string>
#include <system_error>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

enum class Sharing { kShared, kNone };

// The number and text of the system's.
[[noreturn]] void Fail(int code) {
  throw Error(static_cast<std::int32_t>(code), FromUtf8(std::system_category().message(code)));
}

#ifdef _WIN32
std::filesystem::path PathOf(std::wstring_view file) { return file; }

std::shared_ptr<void> Open(const std::filesystem::path& file, Sharing sharing) {
  const DWORD share =
      sharing == Sharing::kNone ? 0 : FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle =
      CreateFileW(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) Fail(static_cast<int>(GetLastError()));
  return {handle, CloseHandle};
}
#else
std::filesystem::path PathOf(std::wstring_view file) {
  std::wstring path(file);
  std::replace(path.begin(), path.end(), L'\\', L'/');
  return ToUtf8(path);
}

std::shared_ptr<void> Open(const std::filesystem::path& file, Sharing sharing) {
  const int handle = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) Fail(errno);
  if (flock(handle, (sharing == Sharing::kNone ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) {
    const int code = errno;
    close(handle);
    Fail(code);
  }
  return {nullptr, [handle](void*) { close(handle); }};
}
#endif

}  // namespace

void TryToRead(std::wstring_view file) { Open(PathOf(file), Sharing::kShared); }

HeldFile::HeldFile(const std::filesystem::path& file) : file_(Open(file, Sharing::kNone)) {}

}  // namespace ard::simulator
