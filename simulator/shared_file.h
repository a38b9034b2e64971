// Files that several programs share, or that one holds for itself. Paths are written as on Windows;
// elsewhere a backslash stands for a slash, and holding a file is a matter of those who ask.
#ifndef ARD_SIMULATOR_SHARED_FILE_H_
#define ARD_SIMULATOR_SHARED_FILE_H_

#include <cstddef>
#include <cstdint>
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

// A file as memory that processes of this machine share, natively and under Wine alike, with locks
// that the system lets go of when the process ends, however it ends. Two of these on one file are
// strangers to one another, whether they are of one process or of two.
class SharedFile {
 public:
  // The first `size` bytes of the file, which is made, full of zeros, where it is not there; read
  // only where it may not be written. Null where it is not there and may not be made. Throws Error.
  static std::unique_ptr<SharedFile> Open(const std::filesystem::path& file, std::size_t size);
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;
  ~SharedFile();

  void* data() const { return data_; }
  bool is_writable() const { return is_writable_; }

  // A lock is on a place, which is any number below 2^62 and has nothing to do with the data. One
  // that is not shared needs a file that may be written. Lock waits, and throws Error; TryLock,
  // which does not share, says whether it has the lock. No place may be locked here twice.
  enum class Sharing { kShared, kNone };
  void Lock(std::uint64_t place, Sharing sharing);
  bool TryLock(std::uint64_t place);
  void Unlock(std::uint64_t place);
  // Whether another has locked the place for itself.
  bool IsLocked(std::uint64_t place);

 private:
  SharedFile() = default;

  std::filesystem::path path_;
  void* data_ = nullptr;
  bool is_writable_ = false;
  // The system's.
#ifdef _WIN32
  void* file_ = nullptr;
#else
  int file_ = -1;
  std::size_t size_ = 0;
#endif
};

}  // namespace ard::simulator

#endif  // ARD_SIMULATOR_SHARED_FILE_H_
