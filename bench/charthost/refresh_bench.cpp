#include <benchmark/benchmark.h>

#include <QApplication>
#include <QMouseEvent>
#include <QSettings>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <algorithm>
#include <filesystem>
#include <optional>
#include <vector>

#include "charthost/drawings/drawing_file.h"
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
  const std::vector<Bar>& Bars() const { return all_; }
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

// Of all kinds, over the bars that a chart shows first.
std::vector<Drawing> FiftyDrawings(const std::vector<Bar>& bars) {
  std::vector<Drawing> drawings;
  const auto anchor = [&bars](std::size_t bars_ago, double above) {
    const Bar& bar = bars[bars.size() - 1 - bars_ago];
    return Anchor{{.date = bar.date}, bar.close + above};
  };
  for (std::size_t i = 0; drawings.size() < 50; ++i) {
    const DrawingRow& row = DrawingCatalogue()[i % DrawingCatalogue().size()];
    Drawing drawing{.kind = row.kind, .colour = static_cast<int>(i % Drawing::kColours)};
    for (std::size_t place = 0; place < row.anchors; ++place) {
      drawing.anchors.push_back(anchor(3 + i * 3 % 120 + place * 12, double(place * 4) - 2));
    }
    if (row.kind == DrawingKind::kText) drawing.text = "Gap";
    drawings.push_back(std::move(drawing));
  }
  return drawings;
}

// The charts of a run in a window of 1920 x 1040: that many in view, with five indicators and 50
// drawings each, the second and later ones in longer frames.
class Tiles {
 public:
  explicit Tiles(std::size_t charts) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings_folder_.path());
    settings_.emplace();
    settings_->SetOptions(FiveIndicators());
    ChartLayout layout = {Tiling::kFour, {}};
    const std::vector<Frame> frames = FramesOf(-1);
    for (std::size_t i = 0; i < charts; ++i) layout.charts.push_back({"", -1, {{-1, frames[i]}}});
    settings_->SetLayout(layout);
    const auto file =
        std::filesystem::path(settings_folder_.path().toStdString()) / "drawings.json";
    ChangeDrawings(file, {"LONG", "Long"},
                   [this](const auto&) { return FiftyDrawings(folder_.Bars()); });
    window_.emplace(folder_.Source(), *settings_, file, MainWindow::Report());
    window_->resize(1920, 1040);
    window_->show();
    window_->OpenDirectly({folder_.Path(), "LONG", -1});
    QApplication::processEvents();
  }

  LongFolder& Folder() { return folder_; }
  MainWindow& Window() { return *window_; }
  ChartPlot& Plot() { return window_->ActiveChart()->Plot(); }

 private:
  const QTemporaryDir settings_folder_;
  LongFolder folder_;
  std::optional<ChartSettings> settings_;
  std::optional<MainWindow> window_;
};

// As the link refreshes them: all are on the screen at the return.
void RefreshTiles(benchmark::State& state) {
  Tiles tiles(static_cast<std::size_t>(state.range(0)));
  for (auto round : state) {
    tiles.Folder().StoreOther(state);
    tiles.Window().RefreshFolder(tiles.Folder().Path(), "LONG", {});
  }
}

// One frame of a chart that is zoomed with the wheel, in and out in turn.
void ZoomFrame(benchmark::State& state) {
  Tiles tiles(static_cast<std::size_t>(state.range(0)));
  const QPointF centre = tiles.Plot().rect().center();
  int turn = 120;
  for (auto round : state) {
    QWheelEvent wheel(centre, tiles.Plot().mapToGlobal(centre), {}, {0, turn}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&tiles.Plot(), &wheel);
    QApplication::processEvents();
    turn = -turn;
  }
}

// One frame of a chart that is dragged to the left and right.
void DragFrame(benchmark::State& state) {
  Tiles tiles(static_cast<std::size_t>(state.range(0)));
  const QPointF centre = tiles.Plot().rect().center();
  const auto send = [&](QEvent::Type type, const QPointF& place, Qt::MouseButton button) {
    QMouseEvent event(type, place, tiles.Plot().mapToGlobal(place), button, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&tiles.Plot(), &event);
    QApplication::processEvents();
  };
  send(QEvent::MouseButtonPress, centre, Qt::LeftButton);
  int step = 0;
  for (auto round : state) {
    const int around = ++step % 40;
    send(QEvent::MouseMove, centre - QPointF(12 * std::min(around, 40 - around), 0), Qt::NoButton);
  }
}

// The bound of these: a bare QCustomPlot of the size of one chart, with as many points in as many
// lines and panes, whose range moves.
void BareFrame(benchmark::State& state) {
  constexpr int kBars = 160;
  QCustomPlot plot;
  plot.resize(1880, 960);
  plot.plotLayout()->clear();
  for (const int lines : {3, 0, 1, 2, 3}) {
    auto* const rect = new QCPAxisRect(&plot);
    plot.plotLayout()->addElement(plot.plotLayout()->rowCount(), 0, rect);
    QCPAxis* const bars = rect->axis(QCPAxis::atBottom);
    QCPAxis* const values = rect->axis(QCPAxis::atLeft);
    for (int line = 0; line < lines; ++line) {
      QCPGraph* const graph = plot.addGraph(bars, values);
      for (int i = 0; i < kBars; ++i) graph->addData(i, 100 + line + i % 7);
    }
    if (plot.axisRectCount() == 1) {
      auto* const candles = new QCPFinancial(bars, values);
      candles->setChartStyle(QCPFinancial::csCandlestick);
      for (int i = 0; i < kBars; ++i) candles->addData(i, 100, 104, 96, 100 + i % 5 - 2);
    }
    if (lines == 0) {
      auto* const volumes = new QCPBars(bars, values);
      for (int i = 0; i < kBars; ++i) volumes->addData(i, 100 + i % 7);
    }
    bars->setRange(0, kBars);
    values->setRange(lines == 0 ? 0 : 94, 108);
  }
  plot.show();
  QApplication::processEvents();
  int step = 1;
  for (auto round : state) {
    for (QCPAxisRect* const rect : plot.axisRects()) rect->axis(QCPAxis::atBottom)->moveRange(step);
    plot.replot();
    plot.repaint();
    step = -step;
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
BENCHMARK(ZoomFrame)->ArgName("charts")->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);
BENCHMARK(DragFrame)->ArgName("charts")->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);
BENCHMARK(BareFrame)->Unit(benchmark::kMillisecond);

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
