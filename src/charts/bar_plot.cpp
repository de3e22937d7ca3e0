#include "charts/bar_plot.h"

#include "charts/plot_buffers.h"

namespace velumar {

BarPlot::BarPlot(QWidget* parent) : QCustomPlot(parent) {
  plotLayout()->clear();
  setMouseTracking(true);
  setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
  // Several changes within one event are one picture on the screen.
  setPlottingHint(QCP::phImmediateRefresh, false);
  layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmLogical);
  addLayer(pointer_layer_);
  layer(pointer_layer_)->setMode(QCPLayer::lmBuffered);
  mPaintBuffers = {QSharedPointer<GroundBuffer>::create(colours_.field),
                   QSharedPointer<RecordedBuffer>::create()};
  for (const auto& buffer : mPaintBuffers) buffer->setDevicePixelRatio(bufferDevicePixelRatio());
  connect(this, &QCustomPlot::mouseMove, this,
          [this](const QMouseEvent* event) { MovePointer(event->position()); });
}

QCPAxisRect* BarPlot::AddRect(int row, QCPAxis::AxisTypes sides) {
  constexpr double kZoomStep = 0.85;
  auto* const rect = new QCPAxisRect(this, false);
  rect->addAxes(QCPAxis::atBottom | sides);
  for (QCPAxis* const axis : rect->axes()) {
    axis->setLayer(QStringLiteral("axes"));
    axis->grid()->setLayer(QStringLiteral("grid"));
    axis->grid()->setVisible(true);
  }
  plotLayout()->addElement(row, 0, rect);
  rects_.append(rect);
  QCPAxis* const bars = &BarAxis();
  rect->setRangeDragAxes({bars}, {});
  rect->setRangeZoomAxes({bars}, {});
  rect->setRangeZoomFactor(kZoomStep);
  if (rects_.size() == 1) {
    for (QCPItemLine*& line : cross_) {
      line = new QCPItemLine(this);
      line->setLayer(pointer_layer_);
      line->setClipToAxisRect(false);
      line->setAntialiased(false);
      line->setVisible(false);
      for (auto* const end : line->positions()) end->setType(QCPItemPosition::ptAbsolute);
    }
    connect(bars, qOverload<const QCPRange&, const QCPRange&>(&QCPAxis::rangeChanged), this,
            &BarPlot::BoundRange);
  } else {
    rect->axis(QCPAxis::atBottom)->setRange(bars->range());
    connect(bars, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), rect->axis(QCPAxis::atBottom),
            qOverload<const QCPRange&>(&QCPAxis::setRange));
  }
  StyleRect(*rect);
  return rect;
}

void BarPlot::SetColours(const Palette& colours) {
  colours_ = colours;
  setBackground(QBrush(colours.field));
  for (QCPItemLine* const line : cross_) {
    line->setPen(QPen(colours.crosshair, 0, Qt::DashLine));
  }
  for (QCPAxisRect* const rect : rects_) StyleRect(*rect);
}

void BarPlot::StyleRect(QCPAxisRect& rect) const {
  for (QCPAxis* const axis : rect.axes()) {
    axis->grid()->setPen(QPen(colours_.grid, 0));
    axis->grid()->setZeroLinePen(Qt::NoPen);
    axis->setBasePen(QPen(colours_.border, 0));
    axis->setTickPen(QPen(colours_.border, 0));
    axis->setSubTicks(false);
    axis->setTickLength(0, 4);
    axis->setTickLabelColor(colours_.muted);
    axis->setTickLabelFont(font());
    axis->setLabelColor(colours_.text);
    axis->setLabelFont(font());
  }
}

void BarPlot::ShowBars(const QCPRange& range) {
  bounding_ = true;
  BarAxis().setRange(range);
  bounding_ = false;
}

void BarPlot::LayOut(const QSize& size) {
  plotLayout()->setOuterRect(QRect(QPoint(), size));
  for (const auto phase :
       {QCPLayoutElement::upPreparation, QCPLayoutElement::upMargins, QCPLayoutElement::upLayout}) {
    plotLayout()->update(phase);
  }
}

void BarPlot::BoundRange(const QCPRange& wanted, const QCPRange& before) {
  if (bounding_) return;
  const QCPRange bounded = Bounded(wanted);
  // A zoom beyond its limit leaves the bars where they are.
  const bool at_limit =
      !qFuzzyCompare(wanted.size(), bounded.size()) && qFuzzyCompare(before.size(), bounded.size());
  ShowBars(at_limit ? before : bounded);
  emit SpanMoved();
}

void BarPlot::ShowCross(QPointF centre, const QRect& area) {
  const double y = std::round(centre.y());
  cross_[0]->start->setCoords(area.left(), y);
  cross_[0]->end->setCoords(area.right(), y);
  cross_[0]->setVisible(true);
  ShowUpright(centre.x(), area);
}

void BarPlot::ShowUpright(double x, const QRect& area) {
  cross_[1]->start->setCoords(std::round(x), area.top());
  cross_[1]->end->setCoords(std::round(x), area.bottom());
  cross_[1]->setVisible(true);
}

void BarPlot::HidePointer() {
  for (QCPItemLine* const line : cross_) line->setVisible(false);
  for (QCPItemText* const text : pointer_texts_) text->setVisible(false);
}

void BarPlot::PlacePointer() {
  HidePointer();
  if (pointer_) {
    ShowPointer(*pointer_);
  } else {
    ShowNoPointer();
  }
}

void BarPlot::MovePointer(std::optional<QPointF> pixel) {
  pointer_ = pixel;
  PlacePointer();
  if (!mReplotQueued) layer(pointer_layer_)->replot();
}

QCPItemText* BarPlot::AddPointerText() {
  auto* const text = new QCPItemText(this);
  text->setLayer(pointer_layer_);
  text->setClipToAxisRect(false);
  text->setPadding(QMargins(5, 1, 5, 1));
  text->position->setType(QCPItemPosition::ptAbsolute);
  text->setVisible(false);
  pointer_texts_.append(text);
  return text;
}

void BarPlot::wheelEvent(QWheelEvent* event) {
  constexpr double kScrolledShare = 0.1;
  const QPointF steps = QPointF(event->angleDelta()) / 120;
  const bool sideways = std::abs(steps.x()) > std::abs(steps.y());
  if (sideways || event->modifiers().testFlag(Qt::ShiftModifier)) {
    BarAxis().moveRange((steps.x() + steps.y()) * -kScrolledShare * BarAxis().range().size());
    replot(QCustomPlot::rpQueuedReplot);
  } else {
    QCustomPlot::wheelEvent(event);
  }
  MovePointer(event->position());
}

// The ground is already in the buffer.
void BarPlot::paintEvent(QPaintEvent* event) {
  const QScopedValueRollback<QBrush> no_ground(mBackgroundBrush, QBrush());
  QCustomPlot::paintEvent(event);
}

void BarPlot::leaveEvent(QEvent*) { MovePointer(std::nullopt); }

}  // namespace velumar
