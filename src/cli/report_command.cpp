#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "base/dates.h"
#include "cli/commands.h"
#include "cli/date_pattern.h"
#include "cli/offscreen.h"
#include "ledger/ledger.h"
#include "resultchart/report_pages.h"
#include "results/run_record.h"

namespace velumar {

namespace {

struct ReportArguments {
  std::string file;
  std::string out;
  int run = kRunNow;
  std::string date_pattern;
};

void WriteReport(const ReportArguments& arguments) {
  const std::string pattern = UsedDatePattern(arguments.date_pattern);
  LedgerConnection ledger([&](std::string_view date) { return IsoDateText(date, pattern); });
  LedgerOpenToRead(ledger, arguments.file);
  const Report report = ReadReport(ledger, arguments.run);
  StartDrawingOffscreen();
  SaveReport(report, QString::fromStdString(arguments.out));
}

}  // namespace

void AddReportCommand(CLI::App& app, CliContext&) {
  const auto arguments = std::make_shared<ReportArguments>();
  CLI::App* command = app.add_subcommand(
      "report", "Write a run's figures, statistics, chart and orders as pages to hand on.");
  command->add_option("FILE", arguments->file, "the ledger, as Portfolio.mdb")->required();
  command->add_option("--out", arguments->out, "the report, a .pdf")->required();
  command->add_option("--run", arguments->run, "the archived run of this number")
      ->check(CLI::PositiveNumber);
  AddDatePattern(*command, arguments->date_pattern);
  command->callback([arguments] { WriteReport(*arguments); });
}

}  // namespace velumar
