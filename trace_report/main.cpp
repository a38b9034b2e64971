// trace_report FILE: what a file that ARDOBJECTS_TRACE has named comes to.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "trace_report/report.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

int Run(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::fputs("trace_report: the file cannot be opened.\n", stderr);
    return EXIT_FAILURE;
  }
  ard::trace_report::Report report;
  for (std::string line; std::getline(file, line);) report.Add(line);
  if (!report.is_trace()) {
    std::fputs("trace_report: no line of the file is an entry of a trace.\n", stderr);
    return EXIT_FAILURE;
  }
  std::fputs(report.ToText().c_str(), stdout);
  return EXIT_SUCCESS;
}

}  // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t* argv[]) {
  SetConsoleOutputCP(CP_UTF8);
#else
int main(int argc, char* argv[]) {
#endif
  if (argc == 2) return Run(argv[1]);
  std::fputs("usage: trace_report FILE\n", stderr);
  return EXIT_FAILURE;
}
