#include "windows/machine/trace_file.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace ard::windows {
namespace {

constexpr wchar_t kName[] = L"ARDOBJECTS_TRACE";
constexpr wchar_t kTraceKey[] = L"Software\\ArdObjects100";

void NameInEnvironment(const std::wstring& path) { SetEnvironmentVariableW(kName, path.c_str()); }

void NameInRegistry(const std::wstring& path) {
  RegSetKeyValueW(HKEY_CURRENT_USER, kTraceKey, kName, REG_SZ, path.c_str(),
                  static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
}

class TraceFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    path_ = std::wstring(folder) + L"trace \u00e9.txt";
    TearDown();
  }
  void TearDown() override {
    DeleteFileW(path_.c_str());
    SetEnvironmentVariableW(kName, nullptr);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kTraceKey, kName);
  }

  std::string Content() const {
    const HANDLE file = CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return "no file";
    char text[256];
    DWORD length = 0;
    ReadFile(file, text, sizeof(text), &length, nullptr);
    CloseHandle(file);
    return std::string(text, length);
  }

  std::wstring path_;
};

TEST_F(TraceFileTest, SeveralAppendWhileOthersRead) {
  NameInEnvironment(path_);
  {
    const Trace::Sink first = OpenTraceFile();
    const Trace::Sink second = OpenTraceFile();
    ASSERT_TRUE(first);
    ASSERT_TRUE(second);
    first("one \xC3\xA9");
    second("two");
    first("three");
    EXPECT_EQ(Content(), "one \xC3\xA9\r\ntwo\r\nthree\r\n");
  }
  OpenTraceFile()("four");
  EXPECT_EQ(Content(), "one \xC3\xA9\r\ntwo\r\nthree\r\nfour\r\n");
}

TEST_F(TraceFileTest, TheRegistryNamesItUnlessTheEnvironmentDoes) {
  EXPECT_FALSE(OpenTraceFile()) << "nothing names it";
  NameInRegistry(path_);
  const Trace::Sink sink = OpenTraceFile();
  ASSERT_TRUE(sink);
  sink("line");
  EXPECT_EQ(Content(), "line\r\n");
  NameInEnvironment(path_ + L"\\no\\such\\folder");
  EXPECT_FALSE(OpenTraceFile()) << "the environment comes first";
}

}  // namespace
}  // namespace ard::windows
