#include "simulator/shared_file.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#endif

#include <string>
#include <system_error>

#include "frame/error.h"
#include "frame/text.h"

namespace ard::simulator {
namespace {

using std::filesystem::path;
using Sharing = SharedFile::Sharing;

// Locks are beyond all data: on Windows they keep others from reading what is locked.
constexpr std::uint64_t kFirstPlace = std::uint64_t{1} << 32;

// The number and text of the system's.
[[noreturn]] void Fail(int code, const path& file) {
  const std::string text = file.filename().string() + ": " + std::system_category().message(code);
  throw Error(static_cast<std::int32_t>(code), FromUtf8(text));
}

#ifdef _WIN32
path PathOf(std::wstring_view file) { return file; }

int LastCode() { return static_cast<int>(GetLastError()); }

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::shared_ptr<void> Open(const path& file, Sharing sharing) {
  const DWORD share = sharing == Sharing::kNone ? 0 : kShareAll;
  const HANDLE handle =
      CreateFileW(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) Fail(LastCode(), file);
  return {handle, CloseHandle};
}

OVERLAPPED At(std::uint64_t place) {
  OVERLAPPED at{};
  at.Offset = static_cast<DWORD>(kFirstPlace + place);
  at.OffsetHigh = static_cast<DWORD>((kFirstPlace + place) >> 32);
  return at;
}
bool LockAt(HANDLE file, std::uint64_t place, Sharing sharing, bool wait) {
  OVERLAPPED at = At(place);
  const DWORD flags = (sharing == Sharing::kNone ? LOCKFILE_EXCLUSIVE_LOCK : 0) |
                      (wait ? 0 : LOCKFILE_FAIL_IMMEDIATELY);
  return LockFileEx(file, flags, 0, 1, 0, &at) != 0;
}
void UnlockAt(HANDLE file, std::uint64_t place) {
  OVERLAPPED at = At(place);
  UnlockFileEx(file, 0, 1, 0, &at);
}
#else
int LastCode() { return errno; }

path PathOf(std::wstring_view file) {
  std::wstring path(file);
  std::replace(path.begin(), path.end(), L'\\', L'/');
  return ToUtf8(path);
}

// It never waits, as it would for somebody at the other end of a pipe.
std::shared_ptr<void> Open(const path& file, Sharing sharing) {
  const int handle = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (handle < 0) Fail(errno, file);
  if (flock(handle, (sharing == Sharing::kNone ? LOCK_EX : LOCK_SH) | LOCK_NB) != 0) {
    const int code = errno;
    close(handle);
    Fail(code, file);
  }
  return {nullptr, [handle](void*) { close(handle); }};
}

// The locks are of an open file rather than of a process: so two engines in one process lock each
// other out, and so do Wine's processes, whose locks its server takes.
bool SetLock(int file, std::uint64_t place, short type, bool wait) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(kFirstPlace + place);
  lock.l_len = 1;
  int result = 0;
  do result = fcntl(file, wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock);
  while (result != 0 && errno == EINTR);
  return result == 0;
}
bool LockAt(int file, std::uint64_t place, Sharing sharing, bool wait) {
  return SetLock(file, place, sharing == Sharing::kNone ? F_WRLCK : F_RDLCK, wait);
}
void UnlockAt(int file, std::uint64_t place) { SetLock(file, place, F_UNLCK, false); }
#endif

}  // namespace

void TryToRead(std::wstring_view file) { Open(PathOf(file), Sharing::kShared); }

HeldFile::HeldFile(const path& file) : file_(simulator::Open(file, Sharing::kNone)) {}

#ifdef _WIN32
std::unique_ptr<SharedFile> SharedFile::Open(const path& file, std::size_t size) {
  std::unique_ptr<SharedFile> shared(new SharedFile);
  shared->path_ = file;
  const auto open = [&](DWORD access, DWORD how) {
    const HANDLE handle = CreateFileW(file.c_str(), access, kShareAll, nullptr, how, 0, nullptr);
    if (handle != INVALID_HANDLE_VALUE) shared->file_ = handle;
    return handle != INVALID_HANDLE_VALUE;
  };
  shared->is_writable_ = open(GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  if (!shared->is_writable_) {
    const int code = LastCode();
    if (code != ERROR_ACCESS_DENIED && code != ERROR_WRITE_PROTECT) Fail(code, file);
    if (!open(GENERIC_READ, OPEN_EXISTING)) return nullptr;
  }
  const HANDLE mapping = CreateFileMappingW(
      shared->file_, nullptr, shared->is_writable_ ? PAGE_READWRITE : PAGE_READONLY, 0,
      shared->is_writable_ ? static_cast<DWORD>(size) : 0, nullptr);
  if (mapping) {
    shared->data_ = MapViewOfFile(
        mapping, shared->is_writable_ ? FILE_MAP_READ | FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, size);
  }
  const int code = LastCode();
  if (mapping) CloseHandle(mapping);
  if (!shared->data_) Fail(code, file);
  return shared;
}

SharedFile::~SharedFile() {
  if (data_) UnmapViewOfFile(data_);
  if (file_) CloseHandle(file_);
}
#else
std::unique_ptr<SharedFile> SharedFile::Open(const path& file, std::size_t size) {
  std::unique_ptr<SharedFile> shared(new SharedFile);
  shared->path_ = file;
  shared->size_ = size;
  shared->file_ = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  shared->is_writable_ = shared->file_ >= 0;
  if (!shared->is_writable_) {
    if (errno != EACCES && errno != EPERM && errno != EROFS) Fail(errno, file);
    shared->file_ = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (shared->file_ < 0) return nullptr;
  } else if (const int code = posix_fallocate(shared->file_, 0, static_cast<off_t>(size))) {
    // Without room on the disk, it would be a write to the memory that fails, which ends a process.
    Fail(code, file);
  }
  struct stat status {};
  if (fstat(shared->file_, &status) != 0) Fail(errno, file);
  if (static_cast<std::size_t>(status.st_size) < size) return nullptr;
  void* const data = mmap(nullptr, size, shared->is_writable_ ? PROT_READ | PROT_WRITE : PROT_READ,
                          MAP_SHARED, shared->file_, 0);
  if (data == MAP_FAILED) Fail(errno, file);
  shared->data_ = data;
  return shared;
}

SharedFile::~SharedFile() {
  if (data_) munmap(data_, size_);
  if (file_ >= 0) close(file_);
}
#endif

void SharedFile::Lock(std::uint64_t place, Sharing sharing) {
  if (!LockAt(file_, place, sharing, true)) Fail(LastCode(), path_);
}

bool SharedFile::TryLock(std::uint64_t place) {
  return LockAt(file_, place, Sharing::kNone, false);
}

void SharedFile::Unlock(std::uint64_t place) { UnlockAt(file_, place); }

bool SharedFile::IsLocked(std::uint64_t place) {
  if (!LockAt(file_, place, Sharing::kShared, false)) return true;
  Unlock(place);
  return false;
}

}  // namespace ard::simulator
