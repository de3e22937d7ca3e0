#include <CLI/CLI.hpp>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/commands.h"
#include "cli/common_options.h"
#include "cli/offscreen.h"
#include "resultchart/chart_file.h"
#include "resultchart/report.h"
#include "resultchart/result_plot.h"

namespace velumar {

namespace {

constexpr QSize kPictureSize(1000, 640);

struct ChartArguments : RunArguments {
  std::string out;
  std::string type = "2D Line";
};

void DrawChart(const ChartArguments& arguments) {
  const std::optional<ChartType> type = ChartTypeOf(std::string_view(arguments.type));
  if (!type) throw std::runtime_error("--type: there is no chart of the type " + arguments.type);
  LedgerConnection ledger = OpenRun(arguments);
  ChartPoints points = PointsOfRun(ledger, arguments.run);
  StartDrawingOffscreen();
  ResultPlot plot;
  plot.resize(kPictureSize);
  plot.SetPoints(std::move(points));
  plot.SetType(*type);
  SaveChartFile(plot, kPictureSize, QString::fromStdString(arguments.out));
}

}  // namespace

void AddChartCommand(CLI::App& app, CliContext&) {
  const auto arguments = std::make_shared<ChartArguments>();
  CLI::App* command = app.add_subcommand("chart", "Draw the portfolio of a ledger into a file.");
  AddRunArguments(*command, *arguments);
  command->add_option("--out", arguments->out, "the picture: .bmp, .png, .svg or .pdf")->required();
  command->add_option(
      "--type", arguments->type,
      "\"2D Bar\", \"3D Bar\", \"2D Line\", \"2D Area\", \"3D Line\" or \"3D Step\"");
  command->callback([arguments] { DrawChart(*arguments); });
}

}  // namespace velumar
