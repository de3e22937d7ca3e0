#include <benchmark/benchmark.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <optional>
#include <vector>

#include "charthost/series_source.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/chart_settings.h"
#include "charthost/view/main_window.h"
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

ChartOptions FiveIndicators() {
  ChartOptions options;
  for (const char* key : {"bollinger", "rsi", "macd", "adx"}) {
    options.indicators.push_back(UsualIndicator(*FindIndicator(key), 2));
  }
  options.indicators.erase(options.indicators.begin());
  return options;
}

// A folder with one series that can have the most bars that a file can hold.
class LongFolder {
 public:
  LongFolder() { Store(kMostBars); }

  void Store(int bars) {
    std::vector<Bar> stored = all_;
    stored.resize(static_cast<std::size_t>(bars));
    StoreSecurity(path_, {"LONG", "Long", -1}, stored, cache_);
  }
  // Between two measured rounds: one bar less, or that one more again.
  void StoreOther(benchmark::State& state) {
    state.PauseTiming();
    Store(whole_ ? kMostBars - 1 : kMostBars);
    whole_ = !whole_;
    state.ResumeTiming();
  }
  const std::string& Path() const { return path_; }
  const SeriesSource& Source() const { return source_; }

 private:
  QTemporaryDir directory_;
  std::string path_ = directory_.path().toStdString() + "/data";
  IndexCache cache_;
  SeriesSource source_{cache_};
  std::vector<Bar> all_ = WalkingBars();
  bool whole_ = true;
};

class LongChart {
 public:
  explicit LongChart(const ChartOptions& options) {
    pane_.emplace(folder_.Source(), SeriesRequest{folder_.Path(), "LONG", std::nullopt},
                  std::map<int, Frame>(), options, nullptr);
    pane_->resize(1600, 900);
    pane_->show();
    QApplication::processEvents();
  }

  // Reads the folder again and paints the complete chart, as Alt+V, R does.
  void Refresh() {
    pane_->Refresh();
    pane_->Plot().replot(QCustomPlot::rpImmediateRefresh);
    pane_->repaint();
  }

  ChartPane& Pane() { return *pane_; }
  LongFolder& Folder() { return folder_; }

 private:
  LongFolder folder_;
  std::optional<ChartPane> pane_;
};

// The argument is the zoom.
void RefreshChart(benchmark::State& state, ChartStyle style) {
  ChartOptions options;
  options.style = style;
  LongChart chart(options);
  if (state.range(0) == 1) chart.Pane().Window().ShowAll();
  for (auto round : state) chart.Refresh();
}

// Five indicators in three panes below the prices and the volume; each refresh finds one bar more
// or one bar less.
void RefreshIndicators(benchmark::State& state) {
  LongChart chart(FiveIndicators());
  if (state.range(0) == 1) chart.Pane().Window().ShowAll();
  for (auto round : state) {
    chart.Folder().StoreOther(state);
    chart.Refresh();
  }
}

// The charts of a run, as the link refreshes them: that many in view, with five indicators each,
// the second and later ones in longer frames. All are on the screen at the return.
void RefreshTiles(benchmark::State& state) {
  const QTemporaryDir settings_folder;
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_folder.path());
  ChartSettings settings;
  settings.SetOptions(FiveIndicators());
  ChartLayout layout = {Tiling::kFour, {}};
  const std::vector<Frame> frames = FramesOf(-1);
  for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i) {
    layout.charts.push_back({"", -1, {{-1, frames[i]}}});
  }
  settings.SetLayout(layout);
  LongFolder folder;
  MainWindow window(folder.Source(), settings,
                    std::filesystem::path(settings_folder.path().toStdString()) / "drawings.json",
                    {});
  window.resize(1920, 1040);
  window.show();
  window.OpenDirectly({folder.Path(), "LONG", -1});
  QApplication::processEvents();
  for (auto round : state) {
    folder.StoreOther(state);
    window.RefreshFolder(folder.Path(), "LONG", {});
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

BENCHMARK(RefreshIndicators)->ArgName("whole")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

BENCHMARK(RefreshTiles)->ArgName("charts")->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);

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
