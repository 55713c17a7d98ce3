// SPDX-License-Identifier: MIT
#include <iostream>

#include "app/cli/cli.h"

int main(int argc, char** argv) {
  return oru::app::Run_Cli(argc, argv, std::cout, std::cerr);
}
