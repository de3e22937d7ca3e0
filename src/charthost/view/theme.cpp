#include "charthost/view/theme.h"

#include <QIcon>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include "charts/palette.h"

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
  // A plain cross instead of the red button of the style, with a background under the pointer.
  static void DrawCross(const QStyleOption& option, QPainter& painter) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor colour = option.palette.color(QPalette::WindowText);
    if (option.state.testFlag(State_Raised)) {
      painter.setPen(Qt::NoPen);
      QColor background = colour;
      background.setAlpha(40);
      painter.setBrush(background);
      painter.drawRoundedRect(option.rect, 3, 3);
    } else {
      colour.setAlpha(150);
    }
    QRectF cross(0, 0, 7, 7);
    cross.moveCenter(QRectF(option.rect).center());
    painter.setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
    painter.restore();
  }
};

void DrawCandle(QPainter& painter, int x, int top, int bottom, int body_top, int body_bottom,
                const QColor& colour) {
  painter.fillRect(QRect(x + 5, top, 4, bottom - top), colour);
  painter.fillRect(QRect(x, body_top, 14, body_bottom - body_top), colour);
}

}  // namespace

void InstallStyle() { QApplication::setStyle(new ChartStyleProxy); }

void ApplyTheme(ChartTheme theme) {
  switch (theme) {
    case ChartTheme::kSystem:
      return QApplication::setPalette(QPalette());
    case ChartTheme::kLight:
      return QApplication::setPalette(Palette::Light().ForWidgets());
    case ChartTheme::kDark:
      return QApplication::setPalette(Palette::Dark().ForWidgets());
  }
}

QIcon ProgramIcon() {
  QPixmap pixmap(64, 64);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Palette::Dark().field);
  painter.drawRoundedRect(QRect(0, 0, 64, 64), 12, 12);
  DrawCandle(painter, 6, 22, 54, 30, 48, Palette::Dark().down);
  DrawCandle(painter, 25, 14, 50, 20, 42, Palette::Dark().up);
  DrawCandle(painter, 44, 8, 40, 12, 32, Palette::Dark().up);
  return QIcon(pixmap);
}

}  // namespace velumar
