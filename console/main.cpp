// ard_console: the classes at a text prompt, over a company of the simulator.
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>

#include "console/line_editor.h"
#include "console/prompt.h"
#include "frame/error.h"
#include "frame/text.h"
#include "host_database/database_file.h"
#include "simulator/simulator.h"

constexpr char kUsage[] =
    "usage: ard_console COMPANY_FOLDER [DATABASE_FILE]\n\n"
    "Gives the classes at a prompt, over a company of the simulated engine and a database of\n"
    "SQLite, into which your changes are written. \"help\" there lists what there is.\n";

#ifdef _WIN32
#include <windows.h>

int wmain(int argc, wchar_t** argv) {
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCP(CP_UTF8);
#else
int main(int argc, char** argv) {
#endif
  const bool help = argc == 2 && std::filesystem::path(argv[1]) == "--help";
  if (help || (argc != 2 && argc != 3)) {
    (help ? std::cout : std::cerr) << kUsage;
    return help ? 0 : 2;
  }
  try {
    const std::filesystem::path company = argv[1];
    const std::shared_ptr<ard::simulator::Simulator> engine =
        ard::simulator::Simulator::Open(company);
    ard::console::Stores stores = {engine->workspace(), nullptr, engine, company.wstring()};
    if (argc == 3) stores.database = ard::host_database::OpenDatabaseFile(argv[2]);
    ard::console::Prompt prompt(std::cin, std::cout, stores);
    const bool interactive = isatty(STDIN_FILENO) != 0;
    return prompt.Run(interactive, interactive ? ard::console::LineEditor(prompt) : nullptr) ? 0
                                                                                             : 1;
  } catch (const ard::Error& error) {
    std::cerr << "ard_console: " << ard::ToUtf8(error.text()) << '\n';
    return 1;
  } catch (const std::exception& error) {
    std::cerr << "ard_console: " << error.what() << '\n';
    return 1;
  }
}
