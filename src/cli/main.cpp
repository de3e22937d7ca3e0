#include <iostream>

#include "cli/commands.h"
#include "marketdata/index_cache.h"
#include "platform/system.h"

int main(int argc, char** argv) {
  velumar::UsePlainStreams();
  velumar::IndexCache cache;
  velumar::CliContext context{cache, std::cin, std::cout, std::cerr, velumar::ErrorsGoToTerminal()};
  return velumar::RunCli(velumar::ProgramArguments(argc, argv), context);
}
