#include <QApplication>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "base/paths.h"
#include "cli/commands.h"
#include "progress/coach_report.h"
#include "progress/played_ledger.h"
#include "resultchart/chart_file.h"
#include "resultchart/coach_file.h"
#include "resultchart/report.h"
#include "resultchart/result_plot.h"
#include "session/played_trades.h"

namespace velumar {

namespace {

constexpr QSize kPictureSize(1000, 640);

// Starts Qt without a display. The application is never deleted: Qt does not support a second one
// after the first everywhere.
void StartOffscreenQt() {
  struct Application {
    bool platform = qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    std::string name = "velumar-cli";
    char* names[2] = {name.data(), nullptr};
    QApplication application{count, names};
  };
  static const auto* const kApplication = new Application;
  static_cast<void>(kApplication);
}

// What is drawn of a ledger never replaces it.
void RequireOtherFile(const std::string& ledger, const std::string& out) {
  std::error_code missing;
  if (!std::filesystem::equivalent(NativePath(ledger), NativePath(out), missing)) return;
  throw std::runtime_error("--out: " + out + " is the ledger itself");
}

void DrawChart(const ChartArguments& arguments) {
  RequireOtherFile(arguments.file, arguments.out);
  const std::optional<ChartType> type = ChartTypeOf(std::string_view(arguments.type));
  if (!type) throw std::runtime_error("--type: there is no chart type \"" + arguments.type + "\"");
  LedgerConnection ledger = OpenScope(arguments);
  ChartPoints points = ReadPoints(ledger, arguments.scope);
  StartOffscreenQt();
  ResultPlot plot;
  plot.resize(kPictureSize);
  plot.SetPoints(std::move(points));
  plot.SetStyle({.type = *type});
  SaveChartFile(plot, kPictureSize, QString::fromStdString(arguments.out));
}

void WriteCoachReport(const ReportArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenScope(arguments);
  const std::vector<PlayedScope> scopes = PlayedScopes(ledger, context.cache);
  const Played played = PlayedOf(scopes, LedgerEntryPlans(ledger));
  TradeFilter filter = FilterOf(arguments.selection, played);
  if (arguments.scope != kCurrentRun) filter.sessions = {arguments.scope};
  const ProgressSummary summary = SummaryOf(played, filter, arguments.selection, context);
  const CoachReport report = MakeCoachReport(ledger, {played, scopes, filter}, summary);
  StartOffscreenQt();
  SaveCoachReport(report, QString::fromStdString(arguments.out));
}

void WriteReport(const ReportArguments& arguments, CliContext& context) {
  RequireOtherFile(arguments.file, arguments.out);
  if (arguments.all) return WriteCoachReport(arguments, context);
  LedgerConnection ledger = OpenScope(arguments);
  const Report report = ReadReport(ledger, arguments.scope);
  StartOffscreenQt();
  SaveReport(report, QString::fromStdString(arguments.out));
}

}  // namespace

const DrawingCommands* FindDrawingCommands() {
  static constexpr DrawingCommands kCommands{DrawChart, WriteReport};
  return &kCommands;
}

}  // namespace velumar
