#include "app/controls/label_view.h"

#include <QPainter>

#include "app/controls/caption_layout.h"

namespace velumar {

LabelView::LabelView(FormCanvas& canvas, QWidget& window, Label& label)
    : QLabel(&window), canvas_(canvas), label_(label) {
  setTextFormat(Qt::PlainText);
}

void LabelView::Update() {
  ApplyCommon(*this, label_);
  const QString text = ToQString(label_.Text());
  if (text != this->text()) setText(text);  // for screen readers; the painting is our own
  QFont font = canvas_.Look().faces.For(label_.DesignLook());
  if (IsCaption(label_)) {
    font.setPixelSize(CaptionPixels(label_.Owner(), label_.DesignLook(), canvas_.Look().faces));
  }
  const QSizeF room(width() - 2 * TextMargin(label_), height());
  fitted_ = FitText(text, font, room);
  if (fitted_.shortened) setToolTip(ToQString(label_.ToolTip()) + QLatin1Char('\n') + text);
  update();
}

QColor LabelView::Ground() const {
  const Theme& theme = canvas_.Look().theme;
  switch (label_.DesignLook().backdrop) {
    case Backdrop::kYellowPaper:
      return theme.value;
    case Backdrop::kNone:
      return label_.Container() == nullptr ? canvas_.GroundUnder(geometry()) : theme.field;
    default:
      return theme.field;
  }
}

void LabelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (label_.DesignLook().backdrop != Backdrop::kNone) {
    painter.setPen(canvas_.Look().theme.border);
    painter.setBrush(Ground());
    painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), 4, 4);
  }
  const int margin = TextMargin(label_);
  const QFontMetricsF metrics(fitted_.font);
  const double spare = width() - 2.0 * margin - metrics.horizontalAdvance(fitted_.shown);
  const bool centred = label_.DesignLook().alignment == Alignment::kCentre;
  painter.setFont(fitted_.font);
  painter.setPen(TextColour(label_, Ground(), canvas_.Look().theme));
  painter.drawText(QPointF(margin + (centred ? spare / 2 : 0),
                           Baseline(label_, fitted_.font, fitted_.shown) - y()),
                   fitted_.shown);
}

}  // namespace velumar
