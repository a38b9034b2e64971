// Ini files, shortcuts and files that others hold, on the system's own terms.
#include "windows/machine/files.h"

#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
#include <objbase.h>
#include <shlobj.h>
// clang-format on

#include <filesystem>
#include <string>

#include "frame/error.h"
#include "windows/engine/com.h"
#include "windows/machine/ini_file.h"
#include "windows/machine/windows_environment.h"

namespace ard::windows {
namespace {

namespace fs = std::filesystem;

class FilesTest : public ::testing::Test {
 protected:
  void SetUp() override { fs::create_directory(folder_); }
  void TearDown() override {
    SetFileAttributesW(ini_.c_str(), FILE_ATTRIBUTE_NORMAL);
    fs::remove_all(folder_);
  }

  static HANDLE Hold(const std::wstring& file, DWORD share, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
    return CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, share, &inherited,
                       disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  }

  const std::wstring folder_ = fs::temp_directory_path() / L"A folder with a long name";
  const std::wstring ini_ = folder_ + L"\\test.ini";
};

TEST_F(FilesTest, IniFilesHoldWhatTheSystemLetsThem) {
  EXPECT_EQ(ReadIniFile(ini_, L"CorloAddIns", L"AddIn1"), L"") << "no file";
  for (const std::size_t length : {1u, 254u, 255u, 300u}) {
    const std::wstring value(length, L'v');
    WriteIniFile(ini_, L"CorloAddIns", L"AddIn1", value);
    EXPECT_EQ(ReadIniFile(ini_, L"corloaddins", L"ADDIN1"), value.substr(0, 254));
  }
  WriteIniFile(ini_, L"CorloAddIns", L"AddIn2", L"  caf\u00e9, b ");
  EXPECT_EQ(ReadIniFile(ini_, L"CorloAddIns", L"AddIn2"), L"caf\u00e9, b");
  // Emptied, the key stays.
  WriteIniFile(ini_, L"CorloAddIns", L"AddIn1", L"");
  char keys[64] = {};
  const DWORD length = GetPrivateProfileStringA("CorloAddIns", nullptr, "", keys, sizeof(keys),
                                                std::string(ini_.begin(), ini_.end()).c_str());
  EXPECT_EQ(std::string(keys, length), std::string("AddIn1\0AddIn2\0", 14));
  EXPECT_EQ(ReadIniFile(ini_, L"CorloAddIns", L"AddIn1"), L"");
}

TEST_F(FilesTest, AnIniFileThatIsReadOnlyIsAnError) {
  // A name alone is one in the system's folder.
  wchar_t system[MAX_PATH] = {};
  GetWindowsDirectoryW(system, MAX_PATH);
  const std::wstring files[][2] = {{ini_, ini_},
                                   {L"ArdTest.ini", system + std::wstring(L"\\ArdTest.ini")}};
  for (const auto& [name, path] : files) {
    WriteIniFile(name, L"S", L"K", L"old");
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_THROW(WriteIniFile(name, L"S", L"K", L"new"), Error);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    WriteIniFile(name, L"S", L"K", L"new");
    EXPECT_EQ(ReadIniFile(path, L"S", L"K"), L"new");
    DeleteFileW(path.c_str());
  }
}

TEST_F(FilesTest, ShortPathsNameTheSameFolder) {
  const std::wstring path = ShortPathOf(folder_);
  EXPECT_EQ(path.find(L"A folder"), std::wstring::npos) << "still long";
  WriteIniFile(ini_, L"S", L"K", L"here");
  EXPECT_EQ(ReadIniFile(path + L"\\test.ini", L"S", L"K"), L"here");
  EXPECT_THROW(ShortPathOf(folder_ + L"\\nothing"), Error);
}

TEST_F(FilesTest, OnlyAFileHeldExclusivelyCannotBeRead) {
  const std::wstring file = folder_ + L"\\queue.dta";
  EXPECT_THROW(TryToReadFile(file), Error) << "missing";
  EXPECT_THROW(OpenWithItsProgram(file), Error) << "missing";
  EXPECT_THROW(TryToReadFile(folder_), Error) << "a folder";
  const HANDLE shared = Hold(file, FILE_SHARE_READ, CREATE_NEW);
  EXPECT_NO_THROW(TryToReadFile(file));
  CloseHandle(shared);

  // Another process holds it: the handle that it has inherited is the last one.
  const HANDLE exclusive = Hold(file, 0, OPEN_EXISTING);
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  wchar_t command[] = L"cmd.exe /c pause";
  ASSERT_TRUE(CreateProcessW(nullptr, command, nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                             nullptr, &startup, &process));
  CloseHandle(exclusive);
  EXPECT_THROW(TryToReadFile(file), Error);
  TerminateProcess(process.hProcess, 0);
  WaitForSingleObject(process.hProcess, INFINITE);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  EXPECT_NO_THROW(TryToReadFile(file));
}

TEST_F(FilesTest, AShortcutHoldsWhatItIsGiven) {
  ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
  {
    const Shortcut shortcut = {folder_ + L"\\test.lnk",
                               CommonFilesFolderFor(0) + L"\\Ardenic\\launch.exe", L" {12}",
                               folder_, L"The launcher"};
    WriteShortcut(shortcut);
    WriteShortcut(shortcut);  // over the first
    ComPtr<IShellLinkW> link;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                               reinterpret_cast<void**>(link.Receive())),
              S_OK);
    ComPtr<IPersistFile> file;
    link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.Receive()));
    ASSERT_EQ(file->Load(shortcut.file.c_str(), STGM_READ), S_OK);
    wchar_t text[MAX_PATH] = {};
    link->GetPath(text, MAX_PATH, nullptr, SLGP_RAWPATH);
    EXPECT_EQ(text, shortcut.target);
    link->GetArguments(text, MAX_PATH);
    EXPECT_EQ(text, shortcut.arguments);
    link->GetWorkingDirectory(text, MAX_PATH);
    EXPECT_EQ(text, shortcut.working_folder);
    link->GetDescription(text, MAX_PATH);
    EXPECT_EQ(text, shortcut.description);
    int show = 0;
    link->GetShowCmd(&show);
    EXPECT_EQ(show, SW_SHOWNORMAL);

    Shortcut nowhere = shortcut;
    nowhere.file = folder_ + L"\\nothing\\test.lnk";
    EXPECT_THROW(WriteShortcut(nowhere), Error);
  }
  CoUninitialize();
}

}  // namespace
}  // namespace ard::windows
