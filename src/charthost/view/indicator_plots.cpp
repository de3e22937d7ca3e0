#include "charthost/view/indicator_plots.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "charthost/bar_text.h"
#include "charthost/view/bar_plottables.h"
#include "charthost/view/readout_bar.h"
#include "charts/qt_text.h"
#include "charts/value_ticker.h"

namespace velumar {

// A line of labels and values in the upper left corner of a pane.
class PaneLegend : public QCPLayerable {
 public:
  PaneLegend(QCustomPlot& plot, const QString& layer, const QCPAxisRect& rect)
      : QCPLayerable(&plot, layer), rect_(rect) {}

  void SetColours(const Palette& colours) { colours_ = colours; }
  void SetItems(std::vector<ReadoutItem> items) { items_ = std::move(items); }

 protected:
  QRect clipRect() const override { return rect_.rect(); }
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(false);
  }

  void draw(QCPPainter* painter) override {
    constexpr int kGap = 10;
    painter->setFont(mParentPlot->font());
    const QFontMetrics metrics(painter->font());
    QColor ground = colours_.field;
    ground.setAlpha(205);
    QPoint at = rect_.topLeft() + QPoint(kGap, 2 + metrics.ascent());
    // The ground has no gaps: a piece of a line between two texts would look like a minus sign.
    const auto write = [&](const QString& text, const QColor& colour, int gap) {
      const int width = metrics.horizontalAdvance(text) + gap;
      painter->fillRect(QRect(at.x() - 3, at.y() - metrics.ascent(), width, metrics.height()),
                        ground);
      painter->setPen(colour);
      painter->drawText(at, text);
      at.rx() += width;
    };
    for (const ReadoutItem& item : items_) {
      if (!item.label.isEmpty()) write(item.label, colours_.muted, 4);
      write(item.value, item.colour, kGap);
    }
  }

 private:
  const QCPAxisRect& rect_;
  Palette colours_ = Palette::Light();
  std::vector<ReadoutItem> items_;
};

namespace {

constexpr double kHistogramShare = 0.4;  // of a candle's width

// As many decimals as a step of the axis needs.
QString TickText(double value, double step, ValueFormat format) {
  if (format == ValueFormat::kVolume) return ToQt(ShortVolumeText(value));
  const int decimals = step >= 1 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9));
  return ToQt(PriceText(value, std::min(decimals, 8)));
}

QCPRange PaneRange(const IndicatorRow& row, const ValueRange& shown) {
  constexpr double kMargin = 0.08;
  if (row.scale) return {row.scale->lower, row.scale->upper};
  if (std::isnan(shown.lower)) return {0, 1};
  const bool histogram = std::ranges::any_of(
      row.lines, [](const LineRow& line) { return line.shape == LineShape::kHistogram; });
  const double lower = histogram ? std::min(0.0, shown.lower) : shown.lower;
  const double upper = histogram ? std::max(0.0, shown.upper) : shown.upper;
  const double flat = std::max(std::abs(upper) * 0.01, 1e-6);
  const double margin = std::max((upper - lower) * kMargin, flat);
  return {lower - margin, upper + margin};
}

void StyleGraph(QCPGraph& graph, LineShape shape, const QColor& colour) {
  // A dashed line of one pixel is drawn ten times as fast as a wider one.
  const bool dashed = shape == LineShape::kDashed;
  graph.setPen(QPen(colour, dashed ? 1 : 1.5, dashed ? Qt::DashLine : Qt::SolidLine,
                    dashed ? Qt::FlatCap : Qt::SquareCap, Qt::RoundJoin));
  if (shape == LineShape::kSteps) {
    graph.setLineStyle(QCPGraph::lsStepCenter);
    graph.setAntialiased(false);
  }
  if (shape != LineShape::kDots) return;
  graph.setLineStyle(QCPGraph::lsNone);
  graph.setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, colour, colour, 3.5));
}

}  // namespace

QColor IndicatorColour(const LineRow& line, const ChosenIndicator& choice, const Palette& colours) {
  const auto chosen = static_cast<std::size_t>(choice.colour);
  switch (line.colour) {
    case LineColour::kChosen:
      return colours.indicators[chosen];
    case LineColour::kNext:
      return colours.indicators[(chosen + 1) % colours.indicators.size()];
    case LineColour::kUp:
      return colours.up;
    case LineColour::kDown:
      return colours.down;
    case LineColour::kFaint:
      break;
  }
  return colours.crosshair;
}

IndicatorPlots::IndicatorPlots(const ChartModel& model, Surroundings surroundings)
    : model_(model), surroundings_(std::move(surroundings)) {}

void IndicatorPlots::SetColours(const Palette& colours) {
  colours_ = colours;
  for (const Pane& pane : panes_) pane.legend->SetColours(colours);
  drawn_.clear();
  Arrange();
}

std::vector<IndicatorPlots::Drawn> IndicatorPlots::Wanted() const {
  std::vector<Drawn> wanted;
  for (const ModelIndicator& indicator : model_.Indicators()) {
    wanted.push_back({indicator.row, indicator.choice.colour});
  }
  return wanted;
}

void IndicatorPlots::Arrange() {
  std::vector<Drawn> wanted = Wanted();
  if (wanted == drawn_ && wanted.size() == lines_.size()) return;
  Clear();
  drawn_ = std::move(wanted);
  for (const ModelIndicator& indicator : model_.Indicators()) {
    QCPAxisRect* rect = surroundings_.prices;
    if (indicator.row->pane == IndicatorPane::kVolume) rect = surroundings_.volumes;
    if (indicator.row->pane == IndicatorPane::kOwn) {
      UsePane(*indicator.row);
      rect = panes_[panes_used_ - 1].rect;
    }
    std::vector<DrawnLine>& lines = lines_.emplace_back();
    for (const LineRow& line : indicator.row->lines) {
      lines.push_back(AddLine(line, indicator.choice, *rect));
    }
  }
  for (std::size_t i = 0; i < panes_.size(); ++i) {
    panes_[i].rect->setVisible(i < panes_used_);
    panes_[i].legend->setVisible(i < panes_used_);
  }
}

void IndicatorPlots::Clear() {
  QCustomPlot& plot = *surroundings_.plot;
  for (const std::vector<DrawnLine>& lines : lines_) {
    for (const DrawnLine& line : lines) {
      if (line.graph != nullptr) plot.removePlottable(line.graph);
      if (line.bars != nullptr) plot.removePlottable(line.bars);
    }
  }
  for (QCPItemLine* const level : levels_) plot.removeItem(level);
  lines_.clear();
  levels_.clear();
  panes_used_ = 0;
}

void IndicatorPlots::UsePane(const IndicatorRow& row) {
  if (panes_used_ == panes_.size()) AddPane();
  Pane& pane = panes_[panes_used_++];
  pane.format = row.format;
  AddLevels(*pane.rect, row.levels);
}

void IndicatorPlots::AddPane() {
  constexpr int kLeastHeight = 28;
  const std::size_t index = panes_.size();
  QCPAxisRect* const rect = surroundings_.add_pane();
  rect->setMinimumSize(50, kLeastHeight);
  QCPAxis* const values = rect->axis(QCPAxis::atRight);
  values->setTicker(
      QSharedPointer<ValueTicker>::create(*values, 30, [this, index](double value, double step) {
        return TickText(value, step, panes_[index].format);
      }));
  auto* const legend = new PaneLegend(*surroundings_.plot, surroundings_.legend_layer, *rect);
  legend->SetColours(colours_);
  panes_.push_back({rect, legend});
}

void IndicatorPlots::AddLevels(QCPAxisRect& rect, const std::vector<double>& levels) {
  for (const double level : levels) {
    auto* const line = new QCPItemLine(surroundings_.plot);
    line->setClipAxisRect(&rect);
    line->setAntialiased(false);
    line->setLayer(QStringLiteral("axes"));
    line->setPen(QPen(colours_.crosshair, 0, Qt::DotLine));
    for (QCPItemPosition* const place : {line->start, line->end}) {
      place->setAxisRect(&rect);
      place->setAxes(rect.axis(QCPAxis::atBottom), rect.axis(QCPAxis::atRight));
      place->setTypeX(QCPItemPosition::ptAxisRectRatio);
      place->setTypeY(QCPItemPosition::ptPlotCoords);
    }
    line->start->setCoords(0, level);
    line->end->setCoords(1, level);
    levels_.push_back(line);
  }
}

IndicatorPlots::DrawnLine IndicatorPlots::AddLine(const LineRow& line,
                                                  const ChosenIndicator& choice,
                                                  QCPAxisRect& rect) {
  QCPAxis* const bars = rect.axis(QCPAxis::atBottom);
  QCPAxis* const values = rect.axis(QCPAxis::atRight);
  const QColor colour = IndicatorColour(line, choice, colours_);
  DrawnLine drawn;
  if (line.shape == LineShape::kHistogram) {
    drawn.bars = new QCPBars(bars, values);
    drawn.bars->setAntialiased(false);
    drawn.bars->setSelectable(QCP::stNone);
    drawn.bars->setWidthType(QCPBars::wtAbsolute);
    drawn.bars->setPen(BodyPen(colour));
    drawn.bars->setBrush(colour);
  } else {
    drawn.graph = new QCPGraph(bars, values);
    drawn.graph->setSelectable(QCP::stNone);
    StyleGraph(*drawn.graph, line.shape, colour);
  }
  return drawn;
}

std::vector<QCPAxisRect*> IndicatorPlots::Panes() const {
  std::vector<QCPAxisRect*> rects;
  for (std::size_t i = 0; i < panes_used_; ++i) rects.push_back(panes_[i].rect);
  return rects;
}

const ModelIndicator& IndicatorPlots::Of(std::size_t pane) const {
  const std::vector<ModelIndicator>& indicators = model_.Indicators();
  std::size_t place = 0;
  for (;; ++place) {
    if (indicators[place].row->pane != IndicatorPane::kOwn) continue;
    if (pane-- == 0) return indicators[place];
  }
}

void IndicatorPlots::SetRanges() {
  for (std::size_t i = 0; i < panes_used_; ++i) {
    const ModelIndicator& indicator = Of(i);
    panes_[i].rect->axis(QCPAxis::atRight)->setRange(PaneRange(*indicator.row, indicator.shown));
  }
}

void IndicatorPlots::Fill() {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const ModelIndicator& indicator = model_.Indicators()[i];
    const bool logarithmic = indicator.row->pane == IndicatorPane::kPrice && model_.Logarithmic();
    for (std::size_t line = 0; line < lines_[i].size(); ++line) {
      const std::vector<double>& values = indicator.run.Line(line);
      QVector<QCPGraphData> points;
      QVector<QCPBarsData> bars;
      for (const BarColumn& column : model_.Columns()) {
        const double value = values[static_cast<std::size_t>(column.last_bar)];
        if (lines_[i][line].graph != nullptr) {
          points.append({column.place, logarithmic && value <= 0 ? kNoValue : value});
        } else if (!std::isnan(value)) {
          const QCPAxis& axis = *surroundings_.prices->axis(QCPAxis::atBottom);
          bars.append({SnappedPlace(axis, column.place), value});
        }
      }
      if (lines_[i][line].graph != nullptr) {
        lines_[i][line].graph->data()->set(points, true);
      } else {
        lines_[i][line].bars->data()->set(bars, true);
        lines_[i][line].bars->setWidth(std::max(1.0, 2 * kHistogramShare * BodyReach(model_)));
      }
    }
  }
}

void IndicatorPlots::ShowLegends(int bar) {
  if (Wanted() != drawn_) return;  // until the next drawing
  for (std::size_t i = 0; i < panes_used_; ++i) {
    const ModelIndicator& indicator = Of(i);
    const std::vector<LineRow>& lines = indicator.row->lines;
    std::vector<ReadoutItem> items = {
        {QString(), ToQt(IndicatorLabel(indicator.choice)), colours_.text}};
    for (std::size_t line = 0; line < lines.size() && bar >= 0; ++line) {
      const double value = indicator.run.Line(line)[static_cast<std::size_t>(bar)];
      items.push_back(
          {ToQt(lines[line].name),
           ToQt(IndicatorValueText(value, indicator.row->format, model_.Series().decimals)),
           IndicatorColour(lines[line], indicator.choice, colours_)});
    }
    panes_[i].legend->SetItems(std::move(items));
  }
}

}  // namespace velumar
