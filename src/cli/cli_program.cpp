#include "cli/cli_program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <ostream>
#include <stdexcept>

namespace velumar {

namespace {

constexpr int kFailure = 1;
constexpr int kBadArguments = 2;

void AddCommands(CLI::App& app, CliContext& context) {
  app.set_version_flag("--version", "velumar-cli " VELUMAR_VERSION);
  app.require_subcommand(1);
  AddImportCommand(app, context);
  AddListCommand(app, context);
  AddDumpCommand(app, context);
  AddFiguresCommand(app, context);
  AddLedgerCommand(app, context);
  AddChartCommand(app, context);
  AddReportCommand(app, context);
  AddReplayCommand(app, context);
}

}  // namespace

int RunCli(const std::vector<std::string>& arguments, CliContext& context) {
  CLI::App app("Velumar without a window: market data directories from the command line.",
               "velumar-cli");
  // The same words mean the same on every system: "/data" is a folder.
  app.allow_windows_style_options(false);
  AddCommands(app, context);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    context.out.flush();
    if (!context.out) throw std::runtime_error("the output can't be written");
  } catch (const CLI::ParseError& error) {
    return app.exit(error, context.out, context.err) == 0 ? 0 : kBadArguments;
  } catch (const std::exception& error) {
    context.err << "velumar-cli: " << error.what() << '\n';
    return kFailure;
  }
  return 0;
}

}  // namespace velumar
