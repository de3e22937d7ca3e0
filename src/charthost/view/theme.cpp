#include "charthost/view/theme.h"

#include <QIcon>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

namespace velumar {
namespace {

class ChartStyleProxy : public QProxyStyle {
 public:
  ChartStyleProxy() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_MenuBar_AltKeyNavigation) return 0;
    if (hint == SH_UnderlineShortcut) return 1;
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element != PE_IndicatorTabClose) {
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    DrawCross(*option, *painter);
  }

 private:
  // Calmer than the red button of the style: a cross, with a ground when the pointer is on it.
  static void DrawCross(const QStyleOption& option, QPainter& painter) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = option.palette.color(QPalette::WindowText);
    if (option.state.testFlag(State_Raised)) {
      painter.setPen(Qt::NoPen);
      QColor ground = color;
      ground.setAlpha(40);
      painter.setBrush(ground);
      painter.drawRoundedRect(option.rect, 3, 3);
    } else {
      color.setAlpha(150);
    }
    QRectF cross(0, 0, 7, 7);
    cross.moveCenter(QRectF(option.rect).center());
    painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
    painter.restore();
  }
};

QPalette PaletteOf(QColor window, QColor base, QColor text, QColor button, QColor highlight) {
  QPalette palette(button, window);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
  }
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::ToolTipBase, base);
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  QColor faint = text;
  faint.setAlpha(140);
  palette.setColor(QPalette::PlaceholderText, faint);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

void DrawCandle(QPainter& painter, int x, int top, int bottom, int body_top, int body_bottom,
                const QColor& color) {
  painter.fillRect(QRect(x + 5, top, 4, bottom - top), color);
  painter.fillRect(QRect(x, body_top, 14, body_bottom - body_top), color);
}

}  // namespace

void InstallStyle() { QApplication::setStyle(new ChartStyleProxy); }

void ApplyTheme(ChartTheme theme) {
  switch (theme) {
    case ChartTheme::kSystem:
      return QApplication::setPalette(QPalette());
    case ChartTheme::kLight:
      return QApplication::setPalette(PaletteOf(0xF3F5F8, 0xFFFFFF, 0x1F2937, 0xE9EDF2, 0x2563EB));
    case ChartTheme::kDark:
      return QApplication::setPalette(PaletteOf(0x232A36, 0x151A22, 0xE6EAF0, 0x323B4A, 0x3B7BE0));
  }
}

QIcon ProgramIcon() {
  QPixmap pixmap(64, 64);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x12161D));
  painter.drawRoundedRect(QRect(0, 0, 64, 64), 12, 12);
  DrawCandle(painter, 6, 22, 54, 30, 48, QColor(0xF0616A));
  DrawCandle(painter, 25, 14, 50, 20, 42, QColor(0x2CB991));
  DrawCandle(painter, 44, 8, 40, 12, 32, QColor(0x2CB991));
  return QIcon(pixmap);
}

}  // namespace velumar
