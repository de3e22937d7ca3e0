#include "app/theme/artwork.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QWidget>
#include <cmath>

namespace velumar {

namespace {

// The smallest drawing that is at least that large, or the largest of all.
QPixmap DrawnFor(const QString& set, const QString& name, const QSize& pixels) {
  QPixmap drawn;
  for (const int percent : {100, 150, 200, 300}) {
    const QString file = QStringLiteral(":/art/%1/%2@%3.png").arg(set, name).arg(percent);
    if (!QFile::exists(file) || !drawn.load(file)) break;
    if (drawn.width() >= pixels.width() && drawn.height() >= pixels.height()) break;
  }
  return drawn;
}

}  // namespace

QPixmap ArtPixmap(const Theme& theme, const QString& name, const QSize& pixels) {
  const QString set = theme.dark ? QStringLiteral("dark") : QStringLiteral("light");
  const QString key =
      QStringLiteral("%1/%2 %3x%4").arg(set, name).arg(pixels.width()).arg(pixels.height());
  QPixmap art;
  if (QPixmapCache::find(key, &art)) return art;
  art = DrawnFor(set, name, pixels);
  if (!art.isNull() && art.size() != pixels) {
    art = art.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  }
  art.setDevicePixelRatio(1);
  QPixmapCache::insert(key, art);
  return art;
}

QSize DevicePixels(const QWidget& widget) {
  return (QSizeF(widget.size()) * widget.devicePixelRatioF()).toSize();
}

void PaintInDevicePixels(QPainter& painter) {
  const double scale = painter.device()->devicePixelRatioF();
  const QPointF origin = painter.deviceTransform().map(QPointF(0, 0));
  const QPointF off(std::round(origin.x()) - origin.x(), std::round(origin.y()) - origin.y());
  painter.scale(1 / scale, 1 / scale);
  painter.translate(off);
}

}  // namespace velumar
