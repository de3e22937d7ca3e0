#include "cli/commands.h"

namespace velumar {

// Built without the windows there is nothing to draw with.
void AddChartCommand(CLI::App&, CliContext&) {}
void AddReportCommand(CLI::App&, CliContext&) {}

}  // namespace velumar
