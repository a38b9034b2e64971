#include "windows/machine/files.h"

// clang-format off
#include <windows.h>  // before any other header of the system
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
// clang-format on

#include <iterator>

#include "windows/engine/com.h"
#include "windows/machine/ansi.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

[[noreturn]] void ThrowLastError() { throw SystemError(HRESULT_FROM_WIN32(GetLastError())); }

void Check(HRESULT result) {
  if (FAILED(result)) throw SystemError(result);
}

}  // namespace

std::wstring ShortPathOf(std::wstring_view path) {
  char buffer[255];
  const DWORD length = GetShortPathNameA(ToAnsi(path).c_str(), buffer, std::size(buffer));
  if (length == 0) ThrowLastError();
  if (length >= std::size(buffer))
    throw SystemError(HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE));
  return FromAnsi({buffer, length});
}

std::wstring CommonFilesFolderFor(std::int32_t owner) {
  wchar_t folder[MAX_PATH];
  const auto window = reinterpret_cast<HWND>(static_cast<INT_PTR>(owner));
  if (!SHGetSpecialFolderPathW(window, folder, CSIDL_PROGRAM_FILES_COMMON, FALSE)) {
    throw SystemError(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND));
  }
  return folder;
}

void WriteShortcut(const Shortcut& shortcut) {
  ComPtr<IShellLinkW> link;
  Check(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                         reinterpret_cast<void**>(link.Receive())));
  Check(link->SetPath(shortcut.target.c_str()));
  Check(link->SetArguments(shortcut.arguments.c_str()));
  Check(link->SetDescription(shortcut.description.c_str()));
  Check(link->SetWorkingDirectory(shortcut.working_folder.c_str()));
  Check(link->SetShowCmd(SW_SHOWNORMAL));
  ComPtr<IPersistFile> file;
  Check(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.Receive())));
  Check(file->Save(shortcut.file.c_str(), TRUE));
}

void TryToReadFile(std::wstring_view file) {
  const HANDLE handle = CreateFileW(std::wstring(file).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) ThrowLastError();
  CloseHandle(handle);
}

void OpenWithItsProgram(std::wstring_view file) {
  const HINSTANCE result = ShellExecuteW(GetActiveWindow(), L"open", std::wstring(file).c_str(),
                                         nullptr, nullptr, SW_SHOWNORMAL);
  // Up to 32, it is a system error code.
  const auto code = static_cast<DWORD>(reinterpret_cast<INT_PTR>(result));
  if (code <= 32) throw SystemError(HRESULT_FROM_WIN32(code));
}

}  // namespace ard::windows
