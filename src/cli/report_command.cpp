#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/common_options.h"
#include "cli/offscreen.h"
#include "resultchart/report_pages.h"

namespace velumar {

namespace {

struct ReportArguments : RunArguments {
  std::string out;
};

void WriteReport(const ReportArguments& arguments) {
  LedgerConnection ledger = OpenRun(arguments);
  const Report report = ReadReport(ledger, arguments.run);
  StartDrawingOffscreen();
  SaveReport(report, QString::fromStdString(arguments.out));
}

}  // namespace

void AddReportCommand(CLI::App& app, CliContext&) {
  const auto arguments = std::make_shared<ReportArguments>();
  CLI::App* command =
      app.add_subcommand("report", "Write a run's figures, statistics, chart and orders as a PDF.");
  AddRunArguments(*command, *arguments);
  command->add_option("--out", arguments->out, "the report, a .pdf")->required();
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments] { WriteReport(*arguments); });
}

}  // namespace velumar
