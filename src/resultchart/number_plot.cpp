#include "resultchart/number_plot.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "charts/picture_file.h"
#include "charts/qt_text.h"
#include "charts/value_ticker.h"

namespace velumar {

namespace {

constexpr int kNumberPixels = 11;

QVector<double> ToVector(const std::vector<double>& numbers) {
  return {numbers.begin(), numbers.end()};
}

// The distance between the bars of a pane, as all but the missing ones have; 0 without bars.
double BarDistance(const NumberPicture::Pane& pane) {
  std::vector<double> x;
  for (const NumberPicture::Series& series : pane.series) {
    if (series.shape == NumberPicture::Shape::kBars) {
      x.insert(x.end(), series.x.begin(), series.x.end());
    }
  }
  if (x.empty()) return 0;
  std::ranges::sort(x);
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < x.size(); ++i) {
    if (x[i] > x[i - 1]) least = std::min(least, x[i] - x[i - 1]);
  }
  return std::isfinite(least) ? least : 1;
}

// Round numbers with as many decimals as they need.
class NumberTicker : public QCPAxisTicker {
 protected:
  double getTickStep(const QCPRange& range) override {
    return step_ = RoundStep(range.size() / tickCount());
  }
  QString getTickLabel(double tick, const QLocale&, QChar, int) override {
    return StepLabel(tick, step_);
  }

 private:
  double step_ = 1;
};

}  // namespace

NumberPlot::NumberPlot(QWidget* parent)
    : QCustomPlot(parent), picture_(std::make_shared<NumberPicture>()) {
  // In pixels: a size in points would follow the printer's resolution.
  QFont plain = font();
  plain.setPixelSize(kNumberPixels);
  setFont(plain);
  left_sides_ = new QCPMarginGroup(this);
  connect(this, &QCustomPlot::beforeReplot, this, [this] { FitLabels(viewport().size()); });
  Build();
}

void NumberPlot::SetPicture(std::shared_ptr<const NumberPicture> picture) {
  if (picture == picture_) return;
  picture_ = std::move(picture);
  Build();
}

void NumberPlot::SetColours(const Palette& colours) {
  colours_ = colours;
  Build();
}

void NumberPlot::PaintTo(QCPPainter& painter, const QSize& size) {
  FitLabels(size);
  toPainter(&painter, size.width(), size.height());
}

void NumberPlot::SaveTo(const QSize& size, const QString& file) {
  SavePicture({.size = size,
               .scale = devicePixelRatioF(),
               .ground = colours_.ground,
               .title = ToQt(picture_->title),
               .paint = [&](QCPPainter& painter) { PaintTo(painter, size); }},
              file);
}

void NumberPlot::Build() {
  clearPlottables();
  clearItems();
  plotLayout()->clear();
  labelled_ = nullptr;
  setBackground(QBrush(colours_.ground));
  int row = 0;
  for (const NumberPicture::Pane& pane : picture_->panes) {
    AddPane(pane, row, &pane == &picture_->panes.back());
    ++row;
  }
  if (row == 0) AddTitle(ToQt(picture_->hint));
  replot(QCustomPlot::rpQueuedReplot);
}

void NumberPlot::AddTitle(const QString& text) {
  auto* const title = new QCPTextElement(this, text, font());
  title->setTextColor(colours_.muted);
  plotLayout()->addElement(0, 0, title);
}

void NumberPlot::AddPane(const NumberPicture::Pane& pane, int row, bool last) {
  auto* const rect = new QCPAxisRect(this);
  plotLayout()->addElement(row, 0, rect);
  plotLayout()->setRowStretchFactor(row, row == 0 ? 1.0 : 0.6);
  rect->setMinimumMargins(QMargins(8, 8, 12, last ? 8 : 2));
  rect->setMarginGroup(QCP::msLeft, left_sides_);
  QCPAxis* const x = rect->axis(QCPAxis::atBottom);
  QCPAxis* const y = rect->axis(QCPAxis::atLeft);
  for (QCPAxis* const axis : rect->axes()) StyleAxis(*axis);
  y->setTicker(QSharedPointer<NumberTicker>::create());
  y->setLabel(ToQt(pane.title));
  x->setTicker(QSharedPointer<NumberTicker>::create());
  x->setRange(SpanOfX());
  x->setTickLabels(last);
  if (last) x->setLabel(ToQt(picture_->x_title));
  SpanValues(*y, pane);
  for (const NumberPicture::Series& series : pane.series) {
    AddSeries(series, BarDistance(pane), x, y);
  }
  if (picture_->mark) AddMark(x, y);
  if (last) labelled_ = x;
}

void NumberPlot::AddSeries(const NumberPicture::Series& series, double distance, QCPAxis* x,
                           QCPAxis* y) {
  constexpr double kBarShare = 0.8;
  constexpr int kFillAlpha = 90;
  const QColor colour = ColourOf(series.tone);
  QColor fill = colour;
  fill.setAlpha(kFillAlpha);
  if (series.shape == NumberPicture::Shape::kBars) {
    auto* const bars = new QCPBars(x, y);
    bars->setWidth(distance * kBarShare);
    bars->setPen(Qt::NoPen);
    bars->setBrush(colour);
    bars->setData(ToVector(series.x), ToVector(series.y), true);
    return;
  }
  auto* const graph = new QCPGraph(x, y);
  const bool points = series.shape == NumberPicture::Shape::kPoints;
  graph->setData(ToVector(series.x), ToVector(series.y), !points);
  graph->setPen(QPen(colour, points ? 0 : 1.5));
  if (points) {
    graph->setLineStyle(QCPGraph::lsNone);
    graph->setScatterStyle({QCPScatterStyle::ssDisc, QPen(fill), QBrush(fill), 5});
  }
  if (series.shape == NumberPicture::Shape::kArea) graph->setBrush(fill);
}

void NumberPlot::AddMark(QCPAxis* x, QCPAxis* y) {
  auto* const mark = new QCPItemStraightLine(this);
  for (auto* const point : {mark->point1, mark->point2}) point->setAxes(x, y);
  mark->setClipAxisRect(x->axisRect());
  mark->point1->setCoords(*picture_->mark, 0);
  mark->point2->setCoords(*picture_->mark, 1);
  mark->setPen(QPen(colours_.accent, 2));
}

void NumberPlot::StyleAxis(QCPAxis& axis) const {
  axis.setBasePen(QPen(colours_.border, 0));
  axis.setTickPen(QPen(colours_.border, 0));
  axis.setSubTicks(false);
  axis.setTickLength(0, 4);
  axis.setTickLabelColor(colours_.muted);
  axis.setTickLabelFont(font());
  axis.setLabelColor(colours_.text);
  axis.setLabelFont(font());
  axis.grid()->setPen(QPen(colours_.grid, 0));
  axis.grid()->setZeroLinePen(QPen(colours_.border, 0));
  axis.grid()->setVisible(axis.axisType() == QCPAxis::atLeft);
}

void NumberPlot::SpanValues(QCPAxis& y, const NumberPicture::Pane& pane) const {
  constexpr double kMargin = 0.06;
  double lower = std::numeric_limits<double>::max();
  double upper = std::numeric_limits<double>::lowest();
  for (const NumberPicture::Series& series : pane.series) {
    for (const double value : series.y) {
      lower = std::min(lower, value);
      upper = std::max(upper, value);
    }
    if (series.shape == NumberPicture::Shape::kLine) continue;
    lower = std::min(lower, 0.0);
    upper = std::max(upper, 0.0);
  }
  if (upper < lower) lower = upper = 0;
  const double margin = std::max(upper - lower, 1e-9) * kMargin;
  y.setRange(lower == 0 ? 0 : lower - margin, upper + margin);
}

QCPRange NumberPlot::SpanOfX() const {
  const double count = static_cast<double>(picture_->labels.size());
  if (count > 0) return {-0.6, count - 0.4};
  double lower = picture_->mark.value_or(std::numeric_limits<double>::max());
  double upper = picture_->mark.value_or(std::numeric_limits<double>::lowest());
  double around = 0;
  for (const NumberPicture::Pane& pane : picture_->panes) {
    for (const NumberPicture::Series& series : pane.series) {
      for (const double x : series.x) {
        lower = std::min(lower, x);
        upper = std::max(upper, x);
      }
    }
    around = std::max(around, BarDistance(pane));
  }
  if (upper < lower) return {0, 1};
  if (around == 0) around = std::max(upper - lower, 1e-9) * 0.02;
  return {lower - around, upper + around};
}

void NumberPlot::FitLabels(const QSize& size) {
  constexpr int kGap = 10;
  constexpr int kTurned = -35;      // degrees
  constexpr double kPlotted = 0.8;  // of the width; the rest is the axis
  const std::size_t count = picture_->labels.size();
  if (labelled_ == nullptr || count == 0) return;
  const QFontMetrics metrics(labelled_->tickLabelFont());
  const double room = kPlotted * size.width() / static_cast<double>(count);
  int widest = 0;
  for (const std::string& label : picture_->labels) {
    widest = std::max(widest, metrics.horizontalAdvance(ToQt(label)));
  }
  const bool turned = widest + kGap > room;
  const auto every = static_cast<std::size_t>(
      turned ? std::max(1.0, std::ceil(1.4 * metrics.height() / room)) : 1.0);
  auto ticker = QSharedPointer<QCPAxisTickerText>::create();
  for (std::size_t i = 0; i < count; i += every) {
    ticker->addTick(static_cast<double>(i), ToQt(picture_->labels[i]));
  }
  labelled_->setTicker(ticker);
  labelled_->setTickLabelRotation(turned ? kTurned : 0);
}

QColor NumberPlot::ColourOf(NumberPicture::Tone tone) const {
  switch (tone) {
    case NumberPicture::Tone::kGain:
      return colours_.up;
    case NumberPicture::Tone::kLoss:
      return colours_.down;
    case NumberPicture::Tone::kPlain:
      break;
  }
  return colours_.line;
}

}  // namespace velumar
