#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

#include "cli/commands.h"
#include "csv/csv_export.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

struct DumpArguments {
  std::string directory;
  std::string symbol;
  std::string interval;
};

std::string RequireInterval(const std::string& text) {
  return IntervalFromText(text) ? "" : "an interval is D or a number of minutes, not " + text;
}

}  // namespace

void AddDumpCommand(CLI::App& app, CliContext& context) {
  const auto arguments = std::make_shared<DumpArguments>();
  CLI::App* command = app.add_subcommand(
      "dump", "Print the bars of one security as CSV, exactly, in the form that import takes in.");
  command->add_option("DIR", arguments->directory, "the market data directory")->required();
  command->add_option("SYMBOL", arguments->symbol, "the symbol as the directory has it")
      ->required();
  command->add_option("INTERVAL", arguments->interval, "D for daily bars, else the minutes")
      ->required()
      ->check(RequireInterval);
  command->callback([arguments, &context] {
    context.out << CsvOfSeries(arguments->directory, arguments->symbol,
                               *IntervalFromText(arguments->interval), context.cache);
  });
}

}  // namespace velumar
