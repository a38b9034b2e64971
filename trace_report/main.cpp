// trace_report FILE: what a file that ARDOBJECTS_TRACE has named comes to.
#include <chrono>
#include <filesystem>
#include <iostream>
#include <thread>
#include <vector>

#include "trace_report/command.h"

#ifdef _WIN32
#include <windows.h>

int wmain(int argc, wchar_t* argv[]) {
  SetConsoleOutputCP(CP_UTF8);
#else
int main(int argc, char* argv[]) {
#endif
  const std::vector<std::filesystem::path> arguments(argv + 1, argv + argc);
  return ard::trace_report::RunCommand(arguments, std::cout, std::cerr, [] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    return true;
  });
}
