#include "charthost/view/chart_plot.h"

#include <cmath>

#include "charthost/view/axis_tickers.h"
#include "charthost/view/chart_overlay.h"

namespace velumar {
namespace {

const QString kPointerLayer = QStringLiteral("pointer");
constexpr double kLeastMarkedPixels = 6;

}  // namespace

ChartPlot::ChartPlot(ChartModel& model, QWidget* parent)
    : QCustomPlot(parent), model_(model), scene_{model, &ColorsFor(palette())} {
  plotLayout()->clear();
  plotLayout()->setRowSpacing(6);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
  prices_ = AddRect(0, ValueKind::kPrice);
  volumes_ = AddRect(1, ValueKind::kVolume);
  volume_arranged_ = true;
  auto* const margins = new QCPMarginGroup(this);
  prices_->setMarginGroup(QCP::msRight, margins);
  volumes_->setMarginGroup(QCP::msRight, margins);

  new StrongGridLayer(prices_, scene_);
  new StrongGridLayer(volumes_, scene_);
  new PriceLayer(prices_, QStringLiteral("main"), scene_);
  new AverageLayer(prices_, QStringLiteral("main"), scene_);
  new VolumeLayer(volumes_, QStringLiteral("main"), scene_);
  new LastPriceLayer(prices_, scene_);
  addLayer(kPointerLayer);
  layer(kPointerLayer)->setMode(QCPLayer::lmBuffered);
  pointer_ = new PointerLayer(prices_, volumes_, scene_, kPointerLayer);
  connect(this, &QCustomPlot::beforeReplot, this, &ChartPlot::BeforeReplot);
  ModelChanged();
}

QCPAxisRect* ChartPlot::AddRect(int row, ValueKind kind) {
  auto* const rect = new QCPAxisRect(this, false);
  QCPAxis* const dates = rect->addAxis(QCPAxis::atBottom);
  QCPAxis* const values = rect->addAxis(QCPAxis::atRight);
  for (QCPAxis* const axis : rect->axes()) {
    axis->setLayer(QStringLiteral("axes"));
    axis->grid()->setLayer(QStringLiteral("grid"));
  }
  dates->setTicker(QSharedPointer<BarDateTicker>::create(dates, model_));
  values->setTicker(QSharedPointer<ValueTicker>::create(values, model_, kind));
  rect->setMinimumMargins(QMargins(1, 1, 48, 1));
  plotLayout()->addElement(row, 0, rect);
  return rect;
}

void ChartPlot::StyleAxis(QCPAxis* axis) {
  const ChartColors& colors = *scene_.colors;
  axis->grid()->setVisible(true);
  axis->grid()->setPen(QPen(colors.grid, 0));
  axis->grid()->setZeroLinePen(Qt::NoPen);
  axis->setBasePen(QPen(colors.frame, 0));
  axis->setTickPen(QPen(colors.frame, 0));
  axis->setSubTicks(false);
  axis->setTickLength(0, 4);
  axis->setTickLabelColor(colors.faint_text);
  axis->setTickLabelFont(font());
}

void ChartPlot::SetColors(const ChartColors& colors) {
  scene_.colors = &colors;
  setBackground(QBrush(colors.background));
  for (QCPAxisRect* const rect : {prices_, volumes_}) {
    for (QCPAxis* const axis : rect->axes()) StyleAxis(axis);
  }
  ModelChanged();
}

void ChartPlot::ModelChanged() {
  ArrangeRects();
  replot(QCustomPlot::rpQueuedReplot);
}

// The volume takes a fifth below the prices; without it the prices have all the room and the dates.
void ChartPlot::ArrangeRects() {
  const bool with_volume = model_.ShowsVolume();
  if (with_volume != volume_arranged_) {
    if (with_volume) {
      plotLayout()->addElement(1, 0, volumes_);
    } else {
      plotLayout()->take(volumes_);
      plotLayout()->simplify();
    }
    volumes_->setVisible(with_volume);
    volume_arranged_ = with_volume;
  }
  if (with_volume) plotLayout()->setRowStretchFactors({4, 1});
  prices_->axis(QCPAxis::atBottom)->setTickLabels(!with_volume);
  prices_->axis(QCPAxis::atBottom)->setTicks(true);
}

double ChartPlot::PlotWidth() const {
  return prices_->width() > 0 ? prices_->width() : std::max(1, viewport().width() - 60);
}

double ChartPlot::PlaceAt(double pixel) const {
  return prices_->axis(QCPAxis::atBottom)->pixelToCoord(pixel);
}

void ChartPlot::BeforeReplot() {
  model_.Layout(PlotWidth());
  const ViewWindow& window = model_.Window();
  for (QCPAxisRect* const rect : {prices_, volumes_}) {
    rect->axis(QCPAxis::atBottom)->setRange(window.First(), window.Last());
  }
  QCPAxis* const price_axis = prices_->axis(QCPAxis::atRight);
  const ValueRange range = model_.Prices();
  price_axis->setScaleType(model_.Logarithmic() ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
  price_axis->setRange(range.lower, range.upper);
  const double highest = model_.HighestVolume();
  volumes_->axis(QCPAxis::atRight)->setRange(0, highest > 0 ? highest * 1.12 : 1);
  const bool empty = model_.Series().size() == 0;
  price_axis->setTickLabels(!empty);
  price_axis->setTicks(!empty);
  price_axis->grid()->setVisible(!empty);
}

void ChartPlot::SetPointer(std::optional<QPointF> position) {
  pointer_->SetPointer(position);
  layer(kPointerLayer)->replot();
  emit BarHovered(pointer_->Bar().value_or(-1));
}

void ChartPlot::mousePressEvent(QMouseEvent* event) {
  const bool mark =
      event->button() == Qt::RightButton ||
      (event->button() == Qt::LeftButton && event->modifiers().testFlag(Qt::ShiftModifier));
  if (!mark && event->button() != Qt::LeftButton) return;
  drag_ = mark ? Drag::kMark : Drag::kPan;
  drag_start_ = event->position();
  drag_first_ = model_.Window().First();
  drag_last_ = model_.Window().Last();
}

void ChartPlot::mouseMoveEvent(QMouseEvent* event) {
  const double moved = event->position().x() - drag_start_.x();
  if (drag_ == Drag::kPan) {
    setCursor(Qt::ClosedHandCursor);
    ViewWindow& window = model_.Window();
    window.Pan(drag_first_ - moved / model_.PixelsPerBar() - window.First());
    ModelChanged();
  } else if (drag_ == Drag::kMark) {
    pointer_->SetMarked(std::pair(drag_start_.x(), event->position().x()));
  }
  SetPointer(event->position());
}

void ChartPlot::mouseReleaseEvent(QMouseEvent* event) {
  const double moved = event->position().x() - drag_start_.x();
  if (drag_ == Drag::kMark && std::abs(moved) >= kLeastMarkedPixels) {
    model_.Window().ShowBetween(PlaceAt(drag_start_.x()), PlaceAt(event->position().x()));
    ModelChanged();
  }
  drag_ = Drag::kNone;
  setCursor(Qt::CrossCursor);
  pointer_->SetMarked(std::nullopt);
  SetPointer(event->position());
}

void ChartPlot::mouseDoubleClickEvent(QMouseEvent*) {
  drag_ = Drag::kNone;
  model_.Window().Reset(model_.Series().size());
  ModelChanged();
}

void ChartPlot::wheelEvent(QWheelEvent* event) {
  const QPointF steps = QPointF(event->angleDelta()) / 120;
  const bool sideways = std::abs(steps.x()) > std::abs(steps.y());
  if (sideways || event->modifiers().testFlag(Qt::ShiftModifier)) {
    model_.Window().Pan((steps.x() + steps.y()) * -0.1 * model_.Window().Span());
  } else {
    model_.Window().Zoom(std::pow(0.85, steps.y()), PlaceAt(event->position().x()));
  }
  ModelChanged();
  SetPointer(event->position());
}

void ChartPlot::leaveEvent(QEvent*) { SetPointer(std::nullopt); }

void ChartPlot::keyPressEvent(QKeyEvent* event) {
  ViewWindow& window = model_.Window();
  switch (event->key()) {
    case Qt::Key_Left:
      window.Pan(-0.1 * window.Span());
      break;
    case Qt::Key_Right:
      window.Pan(0.1 * window.Span());
      break;
    case Qt::Key_PageUp:
      window.Pan(-0.9 * window.Span());
      break;
    case Qt::Key_PageDown:
      window.Pan(0.9 * window.Span());
      break;
    case Qt::Key_Home:
      window.ShowOldest();
      break;
    case Qt::Key_End:
      window.ShowNewest();
      break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      window.Zoom(0.8);
      break;
    case Qt::Key_Minus:
      window.Zoom(1.25);
      break;
    default:
      event->ignore();
      return;
  }
  ModelChanged();
}

}  // namespace velumar
