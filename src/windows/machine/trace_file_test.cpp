#include "windows/machine/trace_file.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "frame/text.h"
#include "windows/other_bits.h"
#include "windows/system_error.h"

namespace ard::windows {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kName[] = L"ARDOBJECTS_TRACE";
constexpr wchar_t kDetail[] = L"ARDOBJECTS_TRACE_DETAIL";
constexpr wchar_t kTraceKey[] = L"Software\\ArdObjects100";

void Write(HKEY root, REGSAM view, const std::wstring& path, const wchar_t* name,
           const std::wstring& value) {
  HKEY key = nullptr;
  RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_WRITE | view, nullptr, &key, nullptr);
  RegSetKeyValueW(key, nullptr, name, REG_SZ, value.c_str(),
                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(key);
}

// What the debugger is told: as wide text, or on systems that do not know that, as narrow one.
std::vector<std::string> debugger;
LONG CALLBACK TakeDebugText(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  const bool is_wide = record.ExceptionCode == DBG_PRINTEXCEPTION_WIDE_C;
  if (!is_wide && record.ExceptionCode != DBG_PRINTEXCEPTION_C) return EXCEPTION_CONTINUE_SEARCH;
  const auto* const text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
  debugger.push_back(is_wide ? ToUtf8(reinterpret_cast<const wchar_t*>(text)) : text);
  return EXCEPTION_CONTINUE_EXECUTION;
}

class TraceFileTest : public ::testing::Test {
 protected:
  void SetUp() override { TearDown(); }
  void TearDown() override {
    fs::remove(path_);
    fs::remove(kept_);
    for (const wchar_t* name : {kName, kDetail}) {
      SetEnvironmentVariableW(name, nullptr);
      for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        RegDeleteKeyValueW(root, kTraceKey, name);
      }
    }
  }

  // Its lines without their times and this process, each with a bar for its end; of those that
  // begin a process, just that. `start` is passed over.
  static std::string Content(const fs::path& path, std::streamoff start = 0) {
    std::ifstream file(path, std::ios::binary);
    if (!file.seekg(start)) return "no file";
    const std::string process = "\t" + std::to_string(GetCurrentProcessId()) + "\t";
    std::string content;
    for (std::string line; std::getline(file, line);) {
      const std::size_t cells = line.find(process);
      if (cells == line.npos) return content + "not ours: " + line;
      line.erase(0, cells + process.size());
      if (line.ends_with('\r')) line.back() = '|';
      content += line.starts_with("0\tprocess\tArdObjects100") ? "begun|" : line;
    }
    return content;
  }

  const fs::path path_ = fs::temp_directory_path() / L"trace \u00e9.txt";
  const fs::path kept_ = path_.wstring() + L".1";
};

// The first of all: a process looks for engines once.
TEST_F(TraceFileTest, AnEngineForTheOtherBitsIsTold) {
  constexpr bool k64Bit = sizeof(void*) == 8;
  constexpr REGSAM kOther = k64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  const std::wstring id = L"{5B0F8B3C-3A0B-4C43-9B66-0E4DF0A2A0C1}";
  const auto write = [](REGSAM view, const std::wstring& path, const std::wstring& value) {
    Write(HKEY_CLASSES_ROOT, view, path, nullptr, value);
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
  AttachTraceFile(first, GetModuleHandleW(L"kernel32.dll"));
  AttachTraceFile(second, GetModuleHandleW(nullptr));
  first.Shown(L"one", L"\u00e9");
  second.Shown(L"two", L"");
  Trace::Call call;
  first.Begin(call, L"A", L"B");  // by this thread, and what follows by another
  std::thread([&] { first.Shown(L"three", L""); }).join();
  EXPECT_EQ(Content(path_),
            "begun|begun|0\tmessage\tone\t\xC3\xA9|0\tmessage\ttwo\t|0\tmessage\tthree\t|");
  first.End(call, L"", std::wstring(), {});

  // Whose it is: the library's version and that of the host, which has none here.
  std::string about;
  std::getline(std::ifstream(path_, std::ios::binary), about);
  const std::string version = "[0-9]+[.][0-9]+[.][0-9]+";
  EXPECT_TRUE(std::regex_search(
      about,
      std::regex("\tArdObjects100 " + version + "[.][0-9]+, " + std::to_string(8 * sizeof(void*)) +
                 " bits, in .*machine_test[.]exe, Windows " + version + "\r$")))
      << about;
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
  Write(HKEY_LOCAL_MACHINE, 0, kTraceKey, kName, kept_);
  EXPECT_TRUE(attached());
  EXPECT_TRUE(Content(kept_).starts_with("begun|")) << "for every user";
  Write(HKEY_CURRENT_USER, 0, kTraceKey, kName, path_);
  Write(HKEY_CURRENT_USER, 0, kTraceKey, kDetail, L"1");
  EXPECT_TRUE(attached());
  EXPECT_TRUE(Content(path_).ends_with("\tneutral\t(\"x\")\t\"\"|")) << Content(path_);
  SetEnvironmentVariableW(kDetail, L"0");
  EXPECT_TRUE(attached());
  EXPECT_TRUE(Content(path_).ends_with("\tneutral\t\t|")) << Content(path_);

  void* const handler = AddVectoredExceptionHandler(1, TakeDebugText);
  SetEnvironmentVariableW(kName, L"C:\\no\\such\\folder");
  EXPECT_FALSE(attached()) << "the environment comes first";
  EXPECT_FALSE(attached());
  RemoveVectoredExceptionHandler(handler);
  const std::wstring reason = SystemError(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND)).text();
  EXPECT_EQ(debugger,
            std::vector<std::string>{
                "ArdObjects100: the trace file C:\\no\\such\\folder cannot be opened: " +
                ToUtf8(reason) + "\r\n"})
      << "once";
}

// Two that share the file: each goes on in the new one, and neither loses what the other has kept.
TEST_F(TraceFileTest, AFullFileIsKeptAndANewOneBegun) {
  SetEnvironmentVariableW(kName, path_.c_str());
  Trace first;
  Trace second;
  AttachTraceFile(first, GetModuleHandleW(nullptr));
  AttachTraceFile(second, GetModuleHandleW(nullptr));
  const std::wstring stride(kTraceStride, L'x');
  fs::resize_file(path_, kTraceLimit);
  second.Shown(L"not looked yet", L"");
  first.Shown(L"first", stride);
  second.Shown(L"second", stride);
  EXPECT_EQ(Content(kept_, kTraceLimit), "0\tmessage\tnot looked yet\t|");
  EXPECT_TRUE(Content(path_).starts_with("begun|0\tmessage\tfirst\tx"));
  fs::resize_file(path_, kTraceLimit);
  second.Shown(L"third", stride);
  first.Shown(L"fourth", L"");
  EXPECT_TRUE(Content(path_).starts_with("begun|0\tmessage\tthird\tx"));
  EXPECT_TRUE(Content(kept_).starts_with("begun|0\tmessage\tfirst\tx"));
}

}  // namespace
}  // namespace ard::windows
