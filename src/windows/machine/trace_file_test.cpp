#include "windows/machine/trace_file.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frame/text.h"
#include "windows/other_bits.h"

namespace ard::windows {
namespace {

constexpr wchar_t kName[] = L"ARDOBJECTS_TRACE";
constexpr wchar_t kDetail[] = L"ARDOBJECTS_TRACE_DETAIL";
constexpr wchar_t kTraceKey[] = L"Software\\ArdObjects100";

void SetInRegistry(const wchar_t* name, const std::wstring& value) {
  RegSetKeyValueW(HKEY_CURRENT_USER, kTraceKey, name, REG_SZ, value.c_str(),
                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

// What the debugger is told: as wide text, or for systems that do not know that, as narrow one.
std::vector<std::string> debugger;
LONG CALLBACK TakeDebugText(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (record.ExceptionCode == 0x4001000A) {
    debugger.push_back(ToUtf8(reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1])));
  } else if (record.ExceptionCode == 0x40010006) {
    debugger.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
  } else {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  return EXCEPTION_CONTINUE_EXECUTION;
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
    DeleteFileW((path_ + L".1").c_str());
    for (const wchar_t* name : {kName, kDetail}) {
      SetEnvironmentVariableW(name, nullptr);
      RegDeleteKeyValueW(HKEY_CURRENT_USER, kTraceKey, name);
    }
  }

  // Its lines without their times and this process, each with a bar for its end; of those that
  // begin a process, just that. `start` is passed over.
  static std::string Content(const std::wstring& path, LONG start = 0) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return "no file";
    char text[4096];
    DWORD length = 0;
    SetFilePointer(file, start, nullptr, FILE_BEGIN);
    ReadFile(file, text, sizeof(text), &length, nullptr);
    CloseHandle(file);
    std::string content;
    for (std::string_view rest(text, length); !rest.empty();) {
      const std::size_t end = std::min(rest.find("\r\n"), rest.size());
      const std::string_view line = rest.substr(0, end);
      const std::string process = "\t" + std::to_string(GetCurrentProcessId()) + "\t";
      const std::size_t cells = line.find(process);
      if (cells == line.npos) return content + "not ours: " + std::string(line);
      const std::string_view cell = line.substr(cells + process.size());
      content += cell.starts_with("0\tprocess\tArdObjects100") ? "begun" : cell;
      rest.remove_prefix(end);
      if (!rest.empty()) content += "|";
      rest.remove_prefix(std::min<std::size_t>(rest.size(), 2));
    }
    return content;
  }

  std::wstring path_;
};

// The first of all: a process looks for engines once.
TEST_F(TraceFileTest, AnEngineForTheOtherBitsIsTold) {
  constexpr bool k64Bit = sizeof(void*) == 8;
  constexpr REGSAM kOther = k64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  const std::wstring id = L"{5B0F8B3C-3A0B-4C43-9B66-0E4DF0A2A0C1}";
  const auto write = [](REGSAM view, const std::wstring& path, const std::wstring& value) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, nullptr, 0, KEY_WRITE | view, nullptr, &key,
                    nullptr);
    RegSetKeyValueW(key, nullptr, nullptr, REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  };
  write(0, L"NexaEng90.Sample\\CLSID", id);
  write(kOther, L"CLSID\\" + id + L"\\InprocServer32", L"engine.dll");
  SetEnvironmentVariableW(kName, path_.c_str());
  Trace first;
  Trace second;
  AttachTraceFile(first, GetModuleHandleW(nullptr));
  AttachTraceFile(second, GetModuleHandleW(nullptr));
  const std::string text =
      std::string("It is registered for programs of ") +
      (k64Bit ? "32 bits only, and this one has 64." : "64 bits only, and this one has 32.");
  EXPECT_EQ(Content(path_),
            "begun|0\tnote\tHost.CreateObject(\"NexaEng90.Sample\")\t" + text + "|begun|");
  for (const REGSAM view : {kOther, REGSAM{}}) {
    EXPECT_EQ(ToUtf8(OtherBitsOnly(L"NexaEng90.Sample")), text);
    const std::wstring key = L"CLSID\\" + id + (view ? L"\\LocalServer32" : L"");
    write(view, key, L"engine.exe");
    EXPECT_EQ(OtherBitsOnly(L"NexaEng90.Sample"), L"");
    RegDeleteKeyExW(HKEY_CLASSES_ROOT, key.c_str(), view, 0);
  }
  RegDeleteTreeW(HKEY_CLASSES_ROOT, L"NexaEng90.Sample");
  RegDeleteKeyExW(HKEY_CLASSES_ROOT, (L"CLSID\\" + id + L"\\InprocServer32").c_str(), kOther, 0);
  RegDeleteKeyExW(HKEY_CLASSES_ROOT, (L"CLSID\\" + id).c_str(), kOther, 0);
}

TEST_F(TraceFileTest, SeveralAppendWhileOthersRead) {
  SetEnvironmentVariableW(kName, path_.c_str());
  Trace first;
  Trace second;
  AttachTraceFile(first, GetModuleHandleW(nullptr));
  AttachTraceFile(second, GetModuleHandleW(nullptr));
  first.Shown(L"one", L"\u00e9");
  second.Shown(L"two", L"");
  first.Shown(L"three", L"");
  EXPECT_EQ(Content(path_),
            "begun|begun|0\tmessage\tone\t\xC3\xA9|0\tmessage\ttwo\t|0\tmessage\tthree\t|");
}

TEST_F(TraceFileTest, TheRegistryNamesItUnlessTheEnvironmentDoes) {
  const auto attached = [] {
    Trace trace;
    AttachTraceFile(trace, GetModuleHandleW(nullptr));
    if (!trace.on()) return false;
    Trace::Call call;
    trace.Begin(call, L"A", L"B");
    trace.End(call, L"", std::wstring(), {std::wstring(L"x")});
    return trace.on();
  };
  EXPECT_FALSE(attached()) << "nothing names it";
  SetInRegistry(kName, path_);
  SetInRegistry(kDetail, L"1");
  EXPECT_TRUE(attached());
  EXPECT_TRUE(Content(path_).ends_with("\tneutral\t(\"x\")\t\"\"|")) << Content(path_);
  SetEnvironmentVariableW(kDetail, L"0");
  EXPECT_TRUE(attached());
  EXPECT_TRUE(Content(path_).ends_with("\tneutral\t\t|")) << Content(path_);

  void* const handler = AddVectoredExceptionHandler(1, TakeDebugText);
  const std::wstring nowhere = path_ + L"\\no\\such\\folder";
  SetEnvironmentVariableW(kName, nowhere.c_str());
  EXPECT_FALSE(attached()) << "the environment comes first";
  EXPECT_FALSE(attached());
  RemoveVectoredExceptionHandler(handler);
  ASSERT_EQ(debugger.size(), 1u) << "told once";
  constexpr std::string_view kTold = "folder cannot be opened: ";
  const std::size_t told = debugger[0].find(kTold);
  EXPECT_TRUE(debugger[0].starts_with("ArdObjects100: the trace file ")) << debugger[0];
  ASSERT_NE(told, std::string::npos) << debugger[0];
  EXPECT_GT(debugger[0].size(), told + kTold.size() + 10) << "the reason follows";
}

// Two that share the file: each goes on in the new one, and neither loses what the other has kept.
TEST_F(TraceFileTest, AFullFileIsKeptAndANewOneBegun) {
  SetEnvironmentVariableW(kName, path_.c_str());
  Trace first;
  Trace second;
  AttachTraceFile(first, GetModuleHandleW(nullptr));
  AttachTraceFile(second, GetModuleHandleW(nullptr));
  const std::wstring stride(kTraceStride, L'x');
  const auto fill = [&] {
    const HANDLE file = CreateFileW(path_.c_str(), GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    SetFilePointer(file, static_cast<LONG>(kTraceLimit), nullptr, FILE_BEGIN);
    SetEndOfFile(file);
    CloseHandle(file);
  };
  fill();
  second.Shown(L"not looked yet", L"");
  first.Shown(L"first", stride);
  second.Shown(L"second", stride);
  EXPECT_EQ(Content(path_ + L".1", static_cast<LONG>(kTraceLimit)),
            "0\tmessage\tnot looked yet\t|");
  EXPECT_TRUE(Content(path_).starts_with("begun|0\tmessage\tfirst\tx"));
  fill();
  second.Shown(L"third", stride);
  first.Shown(L"fourth", L"");
  EXPECT_TRUE(Content(path_).starts_with("begun|0\tmessage\tthird\tx"));
  EXPECT_TRUE(Content(path_ + L".1").starts_with("begun|0\tmessage\tfirst\tx"));
}

}  // namespace
}  // namespace ard::windows
