#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "marketdata/sample_directory.h"

namespace velumar {

void AddDemoCommand(CLI::App& app, CliContext& context) {
  const auto directory = std::make_shared<std::string>();
  CLI::App* demo = app.add_subcommand(
      "demo",
      "Write a directory of sample data to practise on: invented securities, daily and of 5, 15, "
      "30 "
      "and 60 minutes, always the same. A directory that holds anything else is left alone.");
  demo->add_option("DIR", *directory, "the directory to write, made if it is missing")->required();
  demo->callback([directory, &context] {
    const int securities = WriteSampleDirectory(*directory, context.cache);
    context.out << *directory << ": " << securities << " securities\n";
  });
}

}  // namespace velumar
