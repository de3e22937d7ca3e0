#include "charthost/view/measure_tool.h"

#include "charthost/view/chart_plot.h"
#include "charts/qt_text.h"

namespace velumar {

MeasureTool::MeasureTool(ChartPlot& plot)
    : plot_(plot), area_(new QCPItemRect(&plot)), text_(new QCPItemText(&plot)) {
  QCPAxis* const bars = plot.Prices().axis(QCPAxis::atBottom);
  QCPAxis* const prices = plot.Prices().axis(QCPAxis::atRight);
  for (QCPItemPosition* const place : {area_->topLeft, area_->bottomRight, text_->position}) {
    place->setAxisRect(&plot.Prices());
    place->setAxes(bars, prices);
    place->setType(QCPItemPosition::ptPlotCoords);
  }
  for (QCPAbstractItem* const item :
       {static_cast<QCPAbstractItem*>(area_), static_cast<QCPAbstractItem*>(text_)}) {
    item->setLayer(plot.PointerLayer());
    item->setClipAxisRect(&plot.Prices());
    item->setVisible(false);
  }
  text_->setPadding(QMargins(6, 2, 6, 2));
}

void MeasureTool::SetColours(const Palette& colours) {
  QColor fill = colours.line;
  area_->setPen(QPen(fill, 0));
  fill.setAlpha(40);
  area_->setBrush(fill);
  text_->setFont(plot_.font());
  text_->setBrush(colours.tag);
  text_->setColor(colours.on_tag);
}

bool MeasureTool::Press(const QMouseEvent& event) {
  Hide();
  const bool starts =
      event.button() == Qt::LeftButton && event.modifiers().testFlag(Qt::ShiftModifier);
  if (starts) from_ = plot_.PlaceAt(event.position());
  if (from_) MeasureTo(from_);
  return from_.has_value();
}

void MeasureTool::Move(const QMouseEvent& event) {
  if (!from_) return;
  if (event.buttons() != Qt::NoButton) {
    MeasureTo(plot_.PlaceAt(event.position()));
  } else if (!event.modifiers().testFlag(Qt::ShiftModifier)) {
    Hide();
  }
}

bool MeasureTool::Key(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Escape && from_) {
    Hide();
    return true;
  }
  const bool steps = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
  if (!steps || event.modifiers() != (Qt::ControlModifier | Qt::ShiftModifier)) return false;
  if (!from_) from_ = plot_.StepPointer(0);
  if (from_) MeasureTo(plot_.StepPointer(event.key() == Qt::Key_Left ? -1 : 1));
  return true;
}

void MeasureTool::KeyReleased(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Shift) Hide();
}

// A place without a bar or price keeps the last one.
void MeasureTool::MeasureTo(const std::optional<ChartPlace>& place) {
  if (place) to_ = *place;
  Show();
}

void MeasureTool::Hide() {
  if (!std::exchange(from_, std::nullopt)) return;
  Show();
}

// A run that goes back may have taken the bars.
void MeasureTool::BeforeReplot() {
  const int bars = plot_.Model().Series().size();
  if (from_ && (from_->bar >= bars || to_.bar >= bars)) from_.reset();
  const bool shown = from_ && *from_ != to_;
  area_->setVisible(shown);
  text_->setVisible(shown);
  if (!shown) return;
  area_->topLeft->setCoords(from_->bar, from_->price);
  area_->bottomRight->setCoords(to_.bar, to_.price);
  const ChartPositions& positions = plot_.Positions();
  text_->setText(ToQt(DistanceText(plot_.Model().Series(), *from_, to_,
                                   {positions.quantity, positions.profit_per_point})));
  // Inside the pane, on the side to which the pointer moves.
  const QRect pane = plot_.Prices().rect();
  const int half = QFontMetrics(text_->font()).horizontalAdvance(text_->text()) / 2 + 8;
  const double middle =
      (area_->topLeft->pixelPosition().x() + area_->bottomRight->pixelPosition().x()) / 2;
  const double least = pane.left() + half;
  const double x = std::clamp(middle, least, std::max<double>(least, pane.right() - half));
  const int height = QFontMetrics(text_->font()).height() + 4;
  const double end = area_->bottomRight->pixelPosition().y();
  const bool above = end - height - 4 > pane.top() &&
                     (to_.price >= from_->price || end + height + 4 > pane.bottom());
  text_->setPositionAlignment(Qt::AlignHCenter | (above ? Qt::AlignBottom : Qt::AlignTop));
  text_->position->setPixelPosition({x, end + (above ? -4 : 4)});
}

void MeasureTool::Show() {
  BeforeReplot();
  plot_.layer(plot_.PointerLayer())->replot();
}

}  // namespace velumar
