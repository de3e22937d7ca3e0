#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTemporaryDir>
#include <vector>

#include "charthost/series_source.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "marketdata/directory_editor.h"
#include "marketdata/index_cache.h"

namespace velumar {
namespace {

constexpr int kMostBars = 32767;

std::vector<Bar> WalkingBars() {
  std::vector<Bar> bars;
  float price = 100;
  for (int i = 0; i < kMostBars; ++i) {
    price += static_cast<float>(i * 37 % 11 - 5) / 8;
    const int date = (1900 + i / 336) * 10000 + (i / 28 % 12 + 1) * 100 + i % 28 + 1;
    bars.push_back({date, 0, price, price + 1, price - 1, price + (i % 2 == 0 ? 0.5F : -0.5F),
                    static_cast<float>(1000 + i % 997), 0});
  }
  return bars;
}

// Reads the folder again and paints the complete chart, as Alt+V, R does; the argument is the zoom.
void RefreshChart(benchmark::State& state, ChartStyle style) {
  const QTemporaryDir directory;
  const std::string folder = directory.path().toStdString() + "/data";
  IndexCache cache;
  StoreSecurity(folder, {"LONG", "Long", -1}, WalkingBars(), cache);
  const SeriesSource source(cache);
  ChartOptions options;
  options.style = style;
  ChartPane pane(source, {folder, "LONG", std::nullopt}, options, nullptr);
  pane.resize(1600, 900);
  pane.show();
  QApplication::processEvents();
  if (state.range(0) == 1) pane.Window().ShowAll();
  for (auto round : state) {
    pane.Refresh();
    pane.Plot().replot(QCustomPlot::rpImmediateRefresh);
    pane.repaint();
  }
}

BENCHMARK_CAPTURE(RefreshChart, candles, ChartStyle::kCandles)
    ->ArgName("whole")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefreshChart, bars, ChartStyle::kBars)
    ->ArgName("whole")
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefreshChart, line, ChartStyle::kLine)
    ->ArgName("whole")
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velumar

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
