#include "app/controls/fitting_line_edit.h"

#include <QApplication>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <algorithm>

#include "app/theme/text_fit.h"

namespace velumar {

namespace {

constexpr int kMargin = 3;     // between the edge of the line and its text, of which a line edit
constexpr int kOwnMargin = 2;  // keeps so much by itself

}  // namespace

FittingLineEdit::FittingLineEdit(QWidget* parent) : QLineEdit(parent), full_font_(font()) {
  setFrame(false);
  setTextMargins(kMargin - kOwnMargin, 0, kMargin - kOwnMargin, 0);
  connect(this, &QLineEdit::textChanged, this, [this] { FitFont(); });
}

void FittingLineEdit::SetFullFont(const QFont& font) {
  full_font_ = font;
  FitFont();
}

void FittingLineEdit::SetShownText(const QString& wanted) {
  if (wanted == text()) return;
  const int cursor = cursorPosition();
  setText(wanted);
  FitFont();
  setCursorPosition(std::min(cursor, static_cast<int>(wanted.size())));
}

QRect FittingLineEdit::TextRoom() const { return rect().adjusted(kMargin, 0, -kMargin, 0); }

void FittingLineEdit::FitFont() {
  const FittedText fitted = FitText(text(), full_font_, TextRoom().size());
  const QFont& wanted = fitted.shortened ? full_font_ : fitted.font;
  if (font() != wanted) setFont(wanted);
}

bool FittingLineEdit::Overflows() const {
  return fontMetrics().horizontalAdvance(text()) > TextRoom().width();
}

QString FittingLineEdit::ToolTipFor(const QString& tip) const {
  return Overflows() ? tip + QLatin1Char('\n') + text() : tip;
}

void FittingLineEdit::paintEvent(QPaintEvent* event) {
  if (hasFocus() || !Overflows()) {
    QLineEdit::paintEvent(event);
    return;
  }
  QStylePainter painter(this);
  QStyleOptionFrame panel;
  initStyleOption(&panel);
  painter.drawPrimitive(QStyle::PE_PanelLineEdit, panel);
  const QString ends = fontMetrics().elidedText(text(), Qt::ElideMiddle, TextRoom().width());
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(TextRoom(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, ends);
}

void FittingLineEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  update();
}

void FittingLineEdit::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  update();
}

void FittingLineEdit::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  FitFont();
}

}  // namespace velumar
