#include "app/controls/frame_view.h"

#include <QMouseEvent>
#include <QPainter>

namespace velumar {

FrameView::FrameView(FormCanvas& canvas, QWidget& window, Frame& frame)
    : QWidget(&window), canvas_(canvas), frame_(frame) {}

void FrameView::Update() {
  ApplyCommon(*this, frame_);
  update();
}

void FrameView::paintEvent(QPaintEvent*) {
  constexpr double kRound = 4;
  constexpr int kCaptionLeft = 10;
  constexpr int kCaptionRoom = 4;
  const Theme& theme = canvas_.Look().theme;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(canvas_.Look().faces.For(frame_.DesignLook()));
  const QString caption = ToQString(frame_.Text()).trimmed();
  const QFontMetrics metrics(painter.font());
  const int line = caption.isEmpty() ? 0 : metrics.height() / 2;
  // A frame may reach over the edge of its window by a hair.
  const QRect seen = rect() & parentWidget()->rect().translated(-pos());
  const QRectF box = QRectF(seen).adjusted(.5, line + .5, -.5, -.5);
  painter.setPen(theme.border);
  painter.setBrush(theme.field);
  painter.drawRoundedRect(box, kRound, kRound);
  if (caption.isEmpty()) return;
  const int width = metrics.horizontalAdvance(caption) + 2 * kCaptionRoom;
  const QRectF plate(kCaptionLeft, 0, width, metrics.height());
  painter.setPen(Qt::NoPen);
  painter.drawRoundedRect(plate, kRound, kRound);
  painter.setPen(ReadableOn(theme.field, ToQColor(frame_.ForeColour())));
  painter.drawText(plate, Qt::AlignCenter, caption);
}

void FrameView::mousePressEvent(QMouseEvent* event) {
  canvas_.Deliver([this] { frame_.UserPress(); });
  event->accept();
}

}  // namespace velumar
