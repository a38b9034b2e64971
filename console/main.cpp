// ard_console: the classes at a text prompt, over a company of the simulator.
#include <unistd.h>

#include <exception>
#include <iostream>
#include <memory>

#include "console/prompt.h"
#include "simulator/simulator.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: ard_console COMPANY_FOLDER\n";
    return 2;
  }
  try {
    const auto engine = ard::simulator::Simulator::Open(argv[1]);
    ard::console::Prompt prompt(std::cin, std::cout, engine->workspace());
    return prompt.Run(isatty(STDIN_FILENO) != 0) ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << "ard_console: " << error.what() << '\n';
    return 1;
  }
}
