#include "trace_report/command.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>

#include "trace_report/page.h"
#include "trace_report/report.h"

namespace ard::trace_report {
namespace {

using std::filesystem::path;

constexpr char kUsage[] = "usage: trace_report [--html PAGE | --follow] FILE\n";
constexpr char kHelp[] =
    "\nSums a trace up that ARDOBJECTS_TRACE has named: what failed, by member; what was noted; "
    "the\n"
    "messages shown; the slowest calls; how often each member was called.\n\n"
    "  --html PAGE  writes it as a page for a browser, with a time line, a filter and a search\n"
    "  --follow     prints the entries, and goes on as the file grows, until it is stopped\n"
    "  --help       this\n";

std::string Named(const path& file) {
  const std::u8string name = file.u8string();
  return Printable({reinterpret_cast<const char*>(name.data()), name.size()});
}

class Command {
 public:
  Command(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

  int SumUp(const path& file, const std::optional<path>& page) {
    std::ifstream in;
    if (!Open(file, in)) return 1;
    Report report;
    for (std::string line; std::getline(in, line);) report.Add(line);
    report.End();
    if (!report.is_trace()) return Fail(file, "No line of it is an entry of a trace.");
    if (!page) {
      errno = 0;
      out_ << report.ToText() << std::flush;
      return out_ ? 0 : Fail("standard output", Reason());
    }
    if (IsOther(*page)) return Fail(*page, "It is there already, and no page.");
    errno = 0;
    std::ofstream written(*page, std::ios::binary);
    written << ToPage(report, Named(file.filename()));
    written.close();
    return written ? 0 : Fail(*page, Reason());
  }

  int Follow(const path& file, const std::function<bool()>& wait) {
    for (;;) {
      std::ifstream in;
      if (!Open(file, in)) return 1;
      std::string rest;  // of a line that is not all there yet
      std::uintmax_t size = 0;
      for (std::error_code error;;) {
        for (char part[4096]; in.read(part, sizeof part), in.gcount() > 0;) {
          rest.append(part, static_cast<std::size_t>(in.gcount()));
          size += static_cast<std::uintmax_t>(in.gcount());
        }
        for (std::size_t end; (end = rest.find('\n')) != rest.npos; rest.erase(0, end + 1)) {
          Print(std::string_view(rest).substr(0, end));
        }
        out_.flush();
        if (!wait()) return 0;
        // A shorter file is another one, in which the trace goes on.
        const std::uintmax_t now = std::filesystem::file_size(file, error);
        if (!error && now < size) break;
        in.clear();
      }
    }
  }

  int Fail(const path& file, std::string_view reason) {
    err_ << "trace_report: " << Named(file) << ": " << reason << '\n';
    return 1;
  }

 private:
  static std::string_view Reason() {
    return errno != 0 ? std::strerror(errno) : "The system does not say why.";
  }

  bool Open(const path& file, std::ifstream& in) {
    std::error_code error;
    errno = 0;
    const bool is_folder = std::filesystem::is_directory(file, error);
    if (!is_folder) in.open(file, std::ios::binary);
    if (!in.is_open()) Fail(file, is_folder ? "It is a folder." : Reason());
    return in.is_open();
  }

  // A file with something else than a page in it, such as a trace, is not written over.
  static bool IsOther(const path& page) {
    constexpr std::string_view kPage = "<!DOCTYPE html>";
    std::error_code error;
    if (!std::filesystem::is_regular_file(page, error)) return false;
    std::string head(kPage.size(), ' ');
    std::ifstream in(page, std::ios::binary);
    in.read(head.data(), static_cast<std::streamsize>(head.size()));
    return in.gcount() > 0 && head != kPage;
  }

  // The cells apart from each other.
  void Print(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    for (std::size_t tab; (tab = line.find('\t')) != line.npos; line.remove_prefix(tab + 1)) {
      out_ << Printable(line.substr(0, tab)) << "  ";
    }
    out_ << Printable(line) << '\n';
  }

  std::ostream& out_;
  std::ostream& err_;
};

}  // namespace

int RunCommand(const std::vector<path>& arguments, std::ostream& out, std::ostream& err,
               const std::function<bool()>& wait) {
  std::optional<path> file;
  std::optional<path> page;
  bool follow = false;
  Command command(out, err);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const path& argument = arguments[i];
    if (argument == "--help") {
      out << kUsage << kHelp;
      return 0;
    }
    if (argument == "--follow") {
      follow = true;
    } else if (argument == "--html" && i + 1 < arguments.size()) {
      page = arguments[++i];
    } else if (file || argument.native().starts_with(path("-").native())) {
      command.Fail(argument, "It is not understood.");
      err << kUsage;
      return 2;
    } else {
      file = argument;
    }
  }
  if (!file || (follow && page)) {
    err << kUsage;
    return 2;
  }
  try {
    return follow ? command.Follow(*file, wait) : command.SumUp(*file, page);
  } catch (const std::bad_alloc&) {
    return command.Fail(*file, "There is not enough memory for it.");
  }
}

}  // namespace ard::trace_report
