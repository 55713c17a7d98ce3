// SPDX-License-Identifier: MIT
#include <iostream>

#include "app/cli/cli.h"
#include "app/cli/memory.h"

int main(int argc, char** argv) {
  oru::app::Prepare_Memory();
  return oru::app::Run_Cli(argc, argv, std::cout, std::cerr, oru::app::After::Process_Ends);
}
