// SPDX-License-Identifier: MIT
#include <csignal>
#include <iostream>

#include "app/cli/cli.h"
#include "app/cli/memory.h"

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  // A limit on the size of files is then a write that fails, and is told like any other.
  std::signal(SIGXFSZ, SIG_IGN);
#endif
#ifdef __SANITIZE_ADDRESS__
  // What is not given back would be reported as a leak, and the sanitizer has a heap of its own.
  return oru::app::Run_Cli(argc, argv, std::cout, std::cerr);
#else
  oru::app::Prepare_Memory();
  return oru::app::Run_Cli(argc, argv, std::cout, std::cerr, oru::app::After::Process_Ends);
#endif
}
