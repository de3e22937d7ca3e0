#include "charthost/view/open_charts.h"

#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "charthost/view/chart_area.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/drawing_desk.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

bool Shows(const ChartPane& chart, const std::string& folder, const std::string& symbol) {
  return chart.Document().Folder() == folder && chart.Document().Symbol() == symbol;
}

}  // namespace

OpenCharts::OpenCharts(const SeriesSource& source, ChartSettings& settings,
                       const ChartOptions& options, DrawingDesk& desk, ChartArea& area,
                       QObject* parent)
    : QObject(parent),
      source_(source),
      settings_(settings),
      options_(options),
      desk_(desk),
      area_(area) {}

void OpenCharts::Open(const SeriesRequest& request) {
  if (area_.Count() == 0) return AddLayout(request);
  AddPane(request, options_.frames);
  SaveLayout();
}

void OpenCharts::OpenCopy() {
  const ChartDocument& document = area_.Active()->Document();
  AddPane(document.Request(), document.Frames());
  SaveLayout();
}

ChartPane* OpenCharts::AddPane(const SeriesRequest& request, const std::map<int, Frame>& frames) {
  auto* const pane = new ChartPane(source_, request, frames, options_, &area_);
  connect(pane, &ChartPane::OptionsChanged, this, &OpenCharts::OptionsChanged);
  connect(pane, &ChartPane::FrameChanged, this, [this] {
    SaveLayout();
    emit Changed("interval");
  });
  pane->AddDrawings(desk_);
  const ChartDocument& document = pane->Document();
  if (Shows(*pane, played_.folder, played_.symbol)) pane->SetPositions(played_.positions);
  area_.Add(pane);
  if (document.FileNumber() && ChartsLike(document) == 1) {
    emit SeriesOpened(ToQt(document.Folder()), *document.FileNumber());
  }
  return pane;
}

void OpenCharts::Close(ChartPane* chart) {
  if (chart == first_) first_ = nullptr;
  Remove(chart);
  if (area_.Count() > 0) SaveLayout();
}

void OpenCharts::CloseAll() {
  while (area_.Count() > 0) Remove(area_.Charts().front());
}

void OpenCharts::Remove(ChartPane* chart) {
  const ChartDocument& document = chart->Document();
  const bool last = document.FileNumber() && ChartsLike(document) == 1;
  const QString folder = ToQt(document.Folder());
  const int file_number = document.FileNumber().value_or(0);
  area_.Remove(chart);
  if (last) emit SeriesClosed(folder, file_number);
}

std::ptrdiff_t OpenCharts::ChartsLike(const ChartDocument& document) const {
  return std::ranges::count_if(area_.Charts(), [&document](const ChartPane* chart) {
    return chart->Document().Folder() == document.Folder() &&
           chart->Document().FileNumber() == document.FileNumber();
  });
}

// Another series of the folder opens only if it has bars or a run can feed them: other folders
// don't have the series of the last one.
void OpenCharts::AddLayout(const SeriesRequest& request) {
  const ChartLayout layout = settings_.Layout();
  first_ = nullptr;
  const bool alone = layout.charts.size() == 1;
  const std::vector<SecurityInfo> securities =
      alone ? std::vector<SecurityInfo>() : source_.List(request.folder);
  const bool fed = IsWorkingStore(request.folder);
  for (const LaidChart& chart : layout.charts) {
    std::map<int, Frame> frames = chart.frames;
    frames.insert(options_.frames.begin(), options_.frames.end());
    if (chart.symbol.empty()) {
      ChartPane* const pane = AddPane(request, frames);
      if (first_ == nullptr) first_ = pane;
      continue;
    }
    // The run may be of a series that was compared in the last one.
    const ChartDocument* const played = first_ == nullptr ? nullptr : &first_->Document();
    if (played != nullptr && played->Symbol() == chart.symbol &&
        played->Interval() == chart.interval) {
      continue;
    }
    const auto found = std::ranges::find_if(securities, [&chart, fed](const SecurityInfo& one) {
      return one.symbol == chart.symbol && one.interval == chart.interval && (one.bars > 0 || fed);
    });
    if (found != securities.end()) {
      AddPane({request.folder, found->symbol, found->file_number}, frames);
    }
  }
  if (first_ == nullptr) first_ = AddPane(request, options_.frames);
  const QSignalBlocker blocker(&area_);
  area_.Activate(first_);
}

void OpenCharts::FillTiles() {
  const ChartPane* const chart = area_.Active();
  if (chart == nullptr) return;
  while (area_.Count() < TileCount(area_.ShownTiling())) {
    AddPane(chart->Document().Request(), chart->Document().Frames());
    emit Changed("opened");
  }
}

// Charts of other folders are none of the next run.
void OpenCharts::SaveLayout() {
  ChartLayout layout = {area_.ShownTiling(), {}};
  const ChartPane* const first = first_ != nullptr ? first_.data() : area_.Active();
  for (const ChartPane* const chart : area_.Charts()) {
    const ChartDocument& document = chart->Document();
    if (document.Folder() != first->Document().Folder()) continue;
    const bool same = document.Symbol() == first->Document().Symbol() &&
                      document.Interval() == first->Document().Interval();
    layout.charts.push_back(
        {same ? std::string() : document.Symbol(), document.Interval(), document.Frames()});
  }
  if (layout.charts.empty()) layout.charts = settings_.Layout().charts;
  settings_.SetLayout(layout);
}

bool OpenCharts::Refresh(const std::string& folder, const std::string& symbol,
                         const ChartPositions& positions) {
  played_ = {folder, symbol, positions};
  bool any = false;
  for (ChartPane* const chart : area_.Charts()) {
    if (chart->Document().Folder() != folder) continue;
    any = true;
    if (Shows(*chart, folder, symbol)) chart->SetPositions(positions);
    chart->RefreshNow();
  }
  return any;
}

void OpenCharts::ShowPositions(const std::string& folder, const std::string& symbol,
                               const ChartPositions& positions) {
  played_ = {folder, symbol, positions};
  for (ChartPane* const chart : area_.Charts()) {
    if (!Shows(*chart, folder, symbol)) continue;
    chart->SetPositions(positions);
    chart->WindowMoved();
  }
}

ChartPane* OpenCharts::ChartOf(const std::string& folder, const std::string& symbol) const {
  ChartPane* const active = area_.Active();
  if (active != nullptr && Shows(*active, folder, symbol)) return active;
  const auto found = std::ranges::find_if(
      area_.Charts(), [&](const ChartPane* chart) { return Shows(*chart, folder, symbol); });
  return found == area_.Charts().end() ? nullptr : *found;
}

}  // namespace velumar
