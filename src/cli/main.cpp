#include <iostream>
#include <string>
#include <vector>

#include "cli/cli_program.h"
#include "marketdata/index_cache.h"

int main(int argc, char** argv) {
  velumar::IndexCache cache;
  velumar::CliContext context{cache, std::cin, std::cout, std::cerr};
  return velumar::RunCli(std::vector<std::string>(argv + 1, argv + argc), context);
}
