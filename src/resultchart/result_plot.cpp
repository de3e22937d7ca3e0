#include "resultchart/result_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "resultchart/chart_pointer.h"
#include "resultchart/chart_tickers.h"
#include "resultchart/chart_wall.h"
#include "resultchart/portfolio_series.h"

namespace velumar {

namespace {

const QString kPointerLayer = QStringLiteral("pointer");
constexpr double kFewestPoints = 5;  // that a zoom leaves in sight
constexpr int kAroundPlot = 14;
constexpr int kPlainPixels = 12;

QPointF DepthFor(const QSize& size) {
  const double across = std::clamp(size.width() * 0.035, 8.0, 26.0);
  return {std::round(across), -std::round(across * 0.7)};
}

}  // namespace

ResultPlot::ResultPlot(QWidget* parent) : QCustomPlot(parent) {
  // In pixels: a size in points would follow the printer's, not the picture's.
  QFont plain = font();
  plain.setPixelSize(kPlainPixels);
  setFont(plain);
  plotLayout()->clear();
  plotLayout()->setMargins(QMargins(kAroundPlot, kAroundPlot / 2, kAroundPlot, kAroundPlot));
  title_ = new QCPTextElement(this);
  plotLayout()->addElement(0, 0, title_);
  rect_ = new QCPAxisRect(this, false);
  QCPAxis* const places = rect_->addAxis(QCPAxis::atBottom);
  QCPAxis* const values = rect_->addAxis(QCPAxis::atLeft);
  const auto dates = QSharedPointer<DateTicker>::create(*places, scene_);
  const auto money = QSharedPointer<MoneyTicker>::create(*values, scene_);
  places->setTicker(dates);
  values->setTicker(money);
  plotLayout()->addElement(1, 0, rect_);
  new ChartWall(rect_, scene_, *dates, *money);
  new PortfolioSeries(places, values, scene_);
  addLayer(kPointerLayer);
  layer(kPointerLayer)->setMode(QCPLayer::lmBuffered);
  pointer_ = new ChartPointer(rect_, kPointerLayer, scene_);
  setMouseTracking(true);
  connect(this, &QCustomPlot::beforeReplot, this,
          [this] { Arrange(viewport().size() - QSize(0, covered_)); });
  SetColours(scene_.colours);
  SetPoints({});
}

void ResultPlot::SetPoints(ChartPoints points) {
  scene_.points = std::move(points);
  pointer_->Follow(std::nullopt);
  SetTitles(!scene_.points.values.empty());
  ShowSpan(WholeSpan());
}

void ResultPlot::SetTitles(bool with_points) {
  title_->setText(with_points ? QString(kPlotTitle) : QString());
  QCPAxis* const places = rect_->axis(QCPAxis::atBottom);
  QCPAxis* const values = rect_->axis(QCPAxis::atLeft);
  places->setLabel(with_points ? QStringLiteral("Action Date") : QString());
  values->setLabel(with_points ? QStringLiteral("Portfolio") : QString());
  places->setVisible(with_points);
  values->setVisible(with_points);
}

void ResultPlot::SetType(ChartType type) {
  scene_.type = type;
  Changed();
}

void ResultPlot::SetSeriesColour(const QColor& colour) {
  scene_.series = colour;
  Changed();
}

void ResultPlot::SetShadow(bool shadow) {
  scene_.shadow = shadow;
  Changed();
}

void ResultPlot::SetWhiteWall(bool white) {
  scene_.white_wall = white;
  Changed();
}

void ResultPlot::SetColours(const ChartColours& colours) {
  scene_.colours = colours;
  setBackground(QBrush(colours.ground));
  QFont title_font = font();
  title_font.setPixelSize(16);
  title_font.setBold(true);
  title_->setFont(title_font);
  title_->setTextColor(colours.text);
  StyleAxes();
  Changed();
}

void ResultPlot::StyleAxes() {
  for (QCPAxis* const axis : rect_->axes()) {
    axis->setLayer(QStringLiteral("axes"));
    axis->grid()->setVisible(false);
    axis->setSubTicks(false);
    axis->setTickLength(0, 4);
    axis->setBasePen(QPen(scene_.colours.frame, 0));
    axis->setTickPen(QPen(scene_.colours.frame, 0));
    axis->setTickLabelColor(scene_.colours.faint);
    axis->setTickLabelFont(font());
    axis->setLabelColor(scene_.colours.text);
    axis->setLabelFont(font());
    axis->setLabelPadding(6);
    axis->setTickLabelPadding(5);
  }
}

AxisSpan ResultPlot::WholeSpan() const {
  return {-0.5, std::max(1.0, static_cast<double>(scene_.points.values.size())) - 0.5};
}

AxisSpan ResultPlot::Span() const {
  const QCPRange range = rect_->axis(QCPAxis::atBottom)->range();
  return {range.lower, range.upper};
}

void ResultPlot::ShowSpan(AxisSpan span) {
  const AxisSpan whole = WholeSpan();
  const double size = std::clamp(span.Size(), std::min(kFewestPoints, whole.Size()), whole.Size());
  const double first = std::clamp(span.first, whole.first, whole.last - size);
  rect_->axis(QCPAxis::atBottom)->setRange(first, first + size);
  Changed();
}

void ResultPlot::MoveTo(AxisSpan span) {
  ShowSpan(span);
  Q_EMIT SpanMoved();
}

void ResultPlot::SetCovered(int pixels) {
  covered_ = pixels;
  Changed();
}

void ResultPlot::Changed() { replot(QCustomPlot::rpQueuedReplot); }

// Depth and values follow the size and what is in sight.
void ResultPlot::Arrange(const QSize& size) {
  scene_.depth = HasDepth(scene_.type) ? DepthFor(size) : QPointF();
  const QPoint depth = scene_.depth.toPoint();
  rect_->setMinimumMargins(QMargins(8, 10 - depth.y(), 14 + depth.x(), 8));
  const ValueSpan values = FittingValues(scene_.points.values, Span(), StandsOnBase(scene_.type));
  rect_->axis(QCPAxis::atLeft)->setRange(values.lower, values.upper);
  // The marks are made before the rectangle has its size, and go by the size that it has: so it
  // gets it here.
  plotLayout()->setOuterRect(QRect(QPoint(), size));
  for (const auto phase :
       {QCPLayoutElement::upPreparation, QCPLayoutElement::upMargins, QCPLayoutElement::upLayout}) {
    plotLayout()->update(phase);
  }
}

void ResultPlot::PaintTo(QCPPainter& painter, const QSize& size) {
  pointer_->Follow(std::nullopt);
  Arrange(size);
  toPainter(&painter, size.width(), size.height());
  Changed();
}

void ResultPlot::Follow(std::optional<QPointF> pixel) {
  pointer_->Follow(pixel);
  layer(kPointerLayer)->replot();
}

void ResultPlot::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  grip_ = rect_->axis(QCPAxis::atBottom)->pixelToCoord(event->position().x());
}

void ResultPlot::mouseMoveEvent(QMouseEvent* event) {
  if (grip_) {
    const double here = rect_->axis(QCPAxis::atBottom)->pixelToCoord(event->position().x());
    const AxisSpan span = Span();
    MoveTo({span.first + *grip_ - here, span.last + *grip_ - here});
  }
  Follow(event->position());
}

void ResultPlot::mouseReleaseEvent(QMouseEvent*) { grip_.reset(); }

void ResultPlot::mouseDoubleClickEvent(QMouseEvent*) {
  grip_.reset();
  MoveTo(WholeSpan());
}

void ResultPlot::wheelEvent(QWheelEvent* event) {
  constexpr double kStep = 120;
  constexpr double kNearer = 0.8;
  const double factor = std::pow(kNearer, event->angleDelta().y() / kStep);
  const double here = rect_->axis(QCPAxis::atBottom)->pixelToCoord(event->position().x());
  const AxisSpan span = Span();
  const double least = std::min(kFewestPoints, WholeSpan().Size());
  const double part = std::max(factor, least / span.Size());
  MoveTo({here - (here - span.first) * part, here + (span.last - here) * part});
  Follow(event->position());
}

void ResultPlot::leaveEvent(QEvent*) { Follow(std::nullopt); }

}  // namespace velumar
