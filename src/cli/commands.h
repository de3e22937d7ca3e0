#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace velumar {

class IndexCache;

// What the commands work with. main builds it once; tests put string streams in.
struct CliContext {
  IndexCache& cache;
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

// Each adds one command to the program, with its help and the arguments it takes. A command throws
// when it fails; the program then says why on `err` and ends with 1. `context` outlives `app`.
void AddImportCommand(CLI::App& app, CliContext& context);
void AddListCommand(CLI::App& app, CliContext& context);
void AddDumpCommand(CLI::App& app, CliContext& context);
void AddFiguresCommand(CLI::App& app, CliContext& context);
void AddLedgerCommand(CLI::App& app, CliContext& context);
void AddChartCommand(CLI::App& app, CliContext& context);
void AddReportCommand(CLI::App& app, CliContext& context);
void AddReplayCommand(CLI::App& app, CliContext& context);

}  // namespace velumar
