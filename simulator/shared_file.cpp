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

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::shared_ptr<void> Open(const path& file, Sharing sharing) {
  const DWORD share = sharing == Sharing::kNone ? 0 : kShareAll;
  const HANDLE handle =
      CreateFileW(file.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) Fail(static_cast<int>(GetLastError()), file);
  return {handle, CloseHandle};
}

// What locking and unlocking take for a place.
OVERLAPPED At(std::uint64_t place) {
  const std::uint64_t offset = kFirstPlace + place;
  OVERLAPPED at{};
  at.Offset = static_cast<DWORD>(offset);
  at.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return at;
}

// Whether the place has been locked.
bool LockAt(HANDLE file, std::uint64_t place, DWORD flags) {
  OVERLAPPED at = At(place);
  return LockFileEx(file, flags, 0, 1, 0, &at) != 0;
}
#else
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

// Locks of an open file rather than of a process: two engines in one process lock each other out,
// and Wine's processes, whose locks its server takes, do too.
bool Command(int file, int command, struct flock& lock) {
  int result = 0;
  do result = fcntl(file, command, &lock);
  while (result != 0 && errno == EINTR);
  return result == 0;
}
struct flock At(std::uint64_t place, short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = static_cast<off_t>(kFirstPlace + place);
  lock.l_len = 1;
  return lock;
}
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
    const DWORD code = GetLastError();
    if (code != ERROR_ACCESS_DENIED && code != ERROR_WRITE_PROTECT) {
      Fail(static_cast<int>(code), file);
    }
    if (!open(GENERIC_READ, OPEN_EXISTING)) return nullptr;
  }
  const HANDLE mapping = CreateFileMappingW(
      shared->file_, nullptr, shared->is_writable_ ? PAGE_READWRITE : PAGE_READONLY, 0,
      shared->is_writable_ ? static_cast<DWORD>(size) : 0, nullptr);
  if (mapping) {
    shared->data_ = MapViewOfFile(
        mapping, shared->is_writable_ ? FILE_MAP_READ | FILE_MAP_WRITE : FILE_MAP_READ, 0, 0, size);
  }
  const DWORD code = GetLastError();
  if (mapping) CloseHandle(mapping);
  if (!shared->data_) Fail(static_cast<int>(code), file);
  return shared;
}

SharedFile::~SharedFile() {
  if (data_) UnmapViewOfFile(data_);
  if (file_) CloseHandle(file_);
}

void SharedFile::Lock(std::uint64_t place, Sharing sharing) {
  if (!LockAt(file_, place, sharing == Sharing::kNone ? LOCKFILE_EXCLUSIVE_LOCK : 0)) {
    Fail(static_cast<int>(GetLastError()), path_);
  }
}

bool SharedFile::TryLock(std::uint64_t place) {
  return LockAt(file_, place, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY);
}

void SharedFile::Unlock(std::uint64_t place) {
  OVERLAPPED at = At(place);
  UnlockFileEx(file_, 0, 1, 0, &at);
}

bool SharedFile::IsLocked(std::uint64_t place) const {
  if (!LockAt(file_, place, LOCKFILE_FAIL_IMMEDIATELY)) return true;
  OVERLAPPED at = At(place);
  UnlockFileEx(file_, 0, 1, 0, &at);
  return false;
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

void SharedFile::Lock(std::uint64_t place, Sharing sharing) {
  struct flock lock = At(place, sharing == Sharing::kNone ? F_WRLCK : F_RDLCK);
  if (!Command(file_, F_OFD_SETLKW, lock)) Fail(errno, path_);
}

bool SharedFile::TryLock(std::uint64_t place) {
  struct flock lock = At(place, F_WRLCK);
  return Command(file_, F_OFD_SETLK, lock);
}

void SharedFile::Unlock(std::uint64_t place) {
  struct flock lock = At(place, F_UNLCK);
  Command(file_, F_OFD_SETLK, lock);
}

bool SharedFile::IsLocked(std::uint64_t place) const {
  struct flock lock = At(place, F_RDLCK);
  return Command(file_, F_OFD_GETLK, lock) && lock.l_type != F_UNLCK;
}
#endif

}  // namespace ard::simulator
