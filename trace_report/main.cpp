// trace_report FILE: what a file that ARDOBJECTS_TRACE has named comes to.
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "trace_report/page.h"
#include "trace_report/report.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

using ard::trace_report::Report;
using std::filesystem::path;

constexpr char kUsage[] = "usage: trace_report [--html PAGE | --follow] FILE\n";
constexpr char kHelp[] =
    "\nSums a trace up that ARDOBJECTS_TRACE has named: what failed, by member; what was noted; "
    "the\n"
    "slowest calls; how often each member was called; the messages shown.\n\n"
    "  --html PAGE  writes it as a page for a browser, with a time line, a filter and a search\n"
    "  --follow     prints the entries, and goes on as the file grows, until it is stopped\n"
    "  --help       this\n";

std::string Named(const path& file) {
  const std::u8string name = file.u8string();
  return ard::trace_report::Printable({reinterpret_cast<const char*>(name.data()), name.size()});
}

int Fail(const path& file, std::string_view reason) {
  std::fprintf(stderr, "trace_report: %s: %s\n", Named(file).c_str(), std::string(reason).c_str());
  return EXIT_FAILURE;
}

// None when it is open; otherwise why not.
std::optional<std::string> Open(const path& file, std::ifstream& in) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) return "It is a folder.";
  errno = 0;
  in.open(file, std::ios::binary);
  if (!in) return errno != 0 ? std::strerror(errno) : "It cannot be opened.";
  return std::nullopt;
}

int Follow(const path& file) {
  for (std::ifstream in;;) {
    if (const auto reason = Open(file, in)) return Fail(file, *reason);
    std::streamoff read = 0;
    std::string line;
    for (;;) {
      for (std::string part; std::getline(in, part);) {
        read += static_cast<std::streamoff>(part.size()) + 1;
        line += part;
        if (in.eof()) {
          --read;  // the rest of the line is still to come
          break;
        }
        if (line.ends_with('\r')) line.pop_back();
        std::string text;
        for (std::size_t tab; (tab = line.find('\t')) != line.npos; line.erase(0, tab + 1)) {
          text += ard::trace_report::Printable(std::string_view(line).substr(0, tab)) + "  ";
        }
        std::puts((text + ard::trace_report::Printable(line)).c_str());
        line.clear();
      }
      std::fflush(stdout);
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      // A shorter file is another one: the trace goes on in it.
      std::error_code error;
      if (const auto size = std::filesystem::file_size(file, error);
          !error && size < static_cast<std::uintmax_t>(read)) {
        break;
      }
      in.clear();
      in.seekg(read);
    }
    in.close();
    in.clear();
  }
}

int Run(const path& file, const std::optional<path>& page) {
  std::ifstream in;
  if (const auto reason = Open(file, in)) return Fail(file, *reason);
  Report report;
  for (std::string line; std::getline(in, line);) report.Add(line);
  report.End();
  if (in.bad()) return Fail(file, "It cannot be read to its end.");
  if (!report.is_trace()) return Fail(file, "No line of it is an entry of a trace.");
  if (!page) {
    std::fputs(report.ToText().c_str(), stdout);
    return EXIT_SUCCESS;
  }
  errno = 0;
  std::ofstream out(*page, std::ios::binary);
  out << ToPage(report, Named(file.filename()));
  out.close();
  if (!out) return Fail(*page, errno != 0 ? std::strerror(errno) : "It cannot be written.");
  return EXIT_SUCCESS;
}

int Main(const std::vector<path>& arguments) {
  std::optional<path> file;
  std::optional<path> page;
  bool follow = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const path& argument = arguments[i];
    const bool is_option = argument.native().size() > 1 && argument.native()[0] == '-';
    if (argument == "--help") {
      std::printf("%s%s", kUsage, kHelp);
      return EXIT_SUCCESS;
    }
    if (argument == "--follow") {
      follow = true;
    } else if (argument == "--html" && i + 1 < arguments.size()) {
      page = arguments[++i];
    } else if (is_option || file) {
      std::fprintf(stderr, "trace_report: %s is not understood.\n%s", Named(argument).c_str(),
                   kUsage);
      return 2;
    } else {
      file = argument;
    }
  }
  if (!file || (follow && page)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  return follow ? Follow(*file) : Run(*file, page);
}

}  // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t* argv[]) {
  SetConsoleOutputCP(CP_UTF8);
#else
int main(int argc, char* argv[]) {
#endif
  return Main(std::vector<path>(argv + 1, argv + argc));
}
