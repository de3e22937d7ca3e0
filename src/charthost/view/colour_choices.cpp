#include "charthost/view/colour_choices.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QPainter>
#include <QWidget>

#include "charts/palette.h"

namespace velumar {

std::array<QString, 8> ColourNames() {
  return {QObject::tr("Blue"),   QObject::tr("Orange"), QObject::tr("Wine"),  QObject::tr("Teal"),
          QObject::tr("Purple"), QObject::tr("Olive"),  QObject::tr("Green"), QObject::tr("Grey")};
}

const QColor& ChosenColour(int colour, const QWidget& widget) {
  return Palette::Following(widget.palette()).indicators[static_cast<std::size_t>(colour)];
}

QIcon ColourIcon(int colour, const QWidget& widget) {
  constexpr int kSize = 14;
  const double scale = widget.devicePixelRatioF();
  QPixmap pixmap((QSizeF(kSize, kSize) * scale).toSize());
  pixmap.setDevicePixelRatio(scale);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::white, 1));  // on the colour of a selected row
  painter.setBrush(ChosenColour(colour, widget));
  painter.drawRoundedRect(QRectF(1, 1, kSize - 2, kSize - 2), 3, 3);
  return QIcon(pixmap);
}

void FillColours(QComboBox& box) {
  box.clear();
  int colour = 0;
  for (const QString& name : ColourNames()) box.addItem(ColourIcon(colour++, box), name);
}

}  // namespace velumar
