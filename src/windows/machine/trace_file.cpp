#include "windows/machine/trace_file.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "windows/machine/registry.h"
#include "windows/other_bits.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

// The programmatic identifiers of the engine's classes begin so, with the generation behind it.
constexpr wchar_t kEngines[] = L"NexaEng";

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::wstring FromEnvironment(const wchar_t* name) {
  // The first call counts the ending zero, the second does not.
  std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  if (value.empty()) return value;
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::wstring Setting(const wchar_t* name) {
  std::wstring value = FromEnvironment(name);
  for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
    if (!value.empty()) break;
    if (ReadRegistryText(root, kLibraryKey, name, value) != ERROR_SUCCESS) value.clear();
  }
  return value;
}

class File {
 public:
  File() = default;
  File(const std::wstring& path, DWORD access, DWORD disposition)
      : handle_(CreateFileW(path.c_str(), access, kShareAll, nullptr, disposition,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  File(const File&) = delete;
  File(File&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  File& operator=(File&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~File() {
    if (is_open()) CloseHandle(handle_);
  }

  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE handle() const { return handle_; }
  bool IsFull() const {
    LARGE_INTEGER size = {};
    return is_open() && GetFileSizeEx(handle_, &size) && size.QuadPart >= kTraceLimit;
  }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

// Renames that very file, whatever it is called by now, in place of any of that name.
void Rename(const File& file, const std::wstring& path) {
  const std::size_t bytes = path.size() * sizeof(wchar_t);
  std::vector<std::byte> memory(sizeof(FILE_RENAME_INFO) + bytes);
  auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
  info->ReplaceIfExists = TRUE;
  info->FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(info->FileName, path.data(), bytes);
  SetFileInformationByHandle(file.handle(), FileRenameInfo, info,
                             static_cast<DWORD>(memory.size()));
}

class TraceFile {
 public:
  explicit TraceFile(std::wstring path) : path_(std::move(path)) { Reopen(); }

  bool is_open() const { return file_.is_open(); }

  void Write(std::string_view line) {
    const std::string text = std::string(line) + "\r\n";
    if (first_line_.empty()) first_line_ = text;
    written_ += text.size();
    if (written_ >= kTraceStride) MakeRoom();
    Append(text);
  }

 private:
  // Append access makes each write go to the end, whoever else writes.
  void Reopen() {
    File file(path_, FILE_APPEND_DATA | FILE_READ_ATTRIBUTES, OPEN_ALWAYS);
    if (file.is_open()) file_ = std::move(file);
  }

  // Another process may have made the new file, or be about to. Whoever cannot goes on in the old.
  void MakeRoom() {
    written_ = 0;
    if (!file_.IsFull()) return;
    {
      const File named(path_, DELETE | FILE_READ_ATTRIBUTES, OPEN_EXISTING);
      if (named.IsFull()) Rename(named, path_ + L".1");
    }
    Reopen();
    if (!file_.IsFull()) Append(first_line_);
  }

  void Append(const std::string& text) const {
    DWORD written = 0;
    WriteFile(file_.handle(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  }

  std::wstring path_;
  File file_;
  std::string first_line_;              // it tells of the process, so each file gets it
  std::size_t written_ = kTraceStride;  // since the size was looked at: never so far
};

// " 1.0.0.0", of a module in memory; "" for one that tells no version.
std::wstring VersionOf(HMODULE module) {
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(1), RT_VERSION);
  const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
  // The fixed part follows the header and its name, L"VS_VERSION_INFO".
  constexpr std::size_t kFixed = 40;
  if (!loaded || SizeofResource(module, resource) < kFixed + sizeof(VS_FIXEDFILEINFO)) return {};
  VS_FIXEDFILEINFO info;
  std::memcpy(&info, static_cast<const std::byte*>(LockResource(loaded)) + kFixed, sizeof info);
  std::wstring version;
  for (const DWORD part : {info.dwFileVersionMS, info.dwFileVersionLS}) {
    version += version.empty() ? L' ' : L'.';
    version += std::to_wstring(HIWORD(part)) + L'.' + std::to_wstring(LOWORD(part));
  }
  return version;
}

std::wstring WindowsVersion() {
  using RtlGetVersion = LONG WINAPI(OSVERSIONINFOW*);
  OSVERSIONINFOW version = {};
  version.dwOSVersionInfoSize = sizeof version;
  // The documented function tells hosts of long ago what they expect.
  if (const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll")) {
    if (const FARPROC get = GetProcAddress(ntdll, "RtlGetVersion")) {
      reinterpret_cast<RtlGetVersion*>(reinterpret_cast<void*>(get))(&version);
    }
  }
  return std::to_wstring(version.dwMajorVersion) + L'.' + std::to_wstring(version.dwMinorVersion) +
         L'.' + std::to_wstring(version.dwBuildNumber);
}

std::wstring AboutProcess(HINSTANCE module) {
  wchar_t host[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, host, MAX_PATH - 1);
  return L"ArdObjects100" + VersionOf(module) + L", " + std::to_wstring(8 * sizeof(void*)) +
         L" bits, in " + host + VersionOf(GetModuleHandleW(nullptr)) + L", Windows " +
         WindowsVersion();
}

}  // namespace

void AttachTraceFile(Trace& trace, HINSTANCE module) {
  const std::wstring path = Setting(L"ARDOBJECTS_TRACE");
  if (path.empty()) return;
  const auto file = std::make_shared<TraceFile>(path);
  if (!file->is_open()) {
    const Error error = SystemError(HRESULT_FROM_WIN32(GetLastError()));
    static std::atomic_flag told;
    if (told.test_and_set()) return;
    OutputDebugStringW(
        (L"ArdObjects100: the trace file " + path + L" cannot be opened: " + error.text() + L"\r\n")
            .c_str());
    return;
  }
  const std::wstring about = AboutProcess(module);
  Trace::Origin origin;
  origin.detail = Setting(L"ARDOBJECTS_TRACE_DETAIL") == L"1";
  origin.process = GetCurrentProcessId();
  origin.thread = [] { return static_cast<std::uint32_t>(GetCurrentThreadId()); };
  origin.about = about;
  trace.Attach([file](std::string_view line) { file->Write(line); }, origin);

  // A host that cannot create the engine has nothing to hand over but nothing. Once is enough.
  static std::atomic_flag looked;
  if (looked.test_and_set()) return;
  const std::wstring engine = FirstOfOtherBits(kEngines);
  if (!engine.empty()) trace.Noted({L"Host", L"CreateObject", engine}, OtherBitsOnly(engine));
}

}  // namespace ard::windows
