#include <clocale>
#include <iostream>

#include "cli/commands.h"
#include "marketdata/index_cache.h"
#include "platform/system.h"

int main(int argc, char** argv) {
  velumar::UsePlainStreams();
  // Otherwise names in zip files that are not plain ASCII can't be read. The toolkit does the same.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  velumar::IndexCache cache;
  velumar::CliContext context{cache, std::cin, std::cout, std::cerr, velumar::ErrorsGoToTerminal()};
  return velumar::RunCli(velumar::ProgramArguments(argc, argv), context);
}
