#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

class QPainter;
class QWidget;

namespace velumar {

// The picture of that name in a set ("light", "dark"), at exactly that many pixels of the screen.
// Null where there is none.
QPixmap ArtPixmap(const QString& set, const QString& name, const QSize& pixels);

// How many pixels of the screen the widget covers.
QSize DevicePixels(const QWidget& widget);

// Moves the painter's origin to the nearest whole pixel of the screen and makes that its unit, so
// that a pixmap of DevicePixels comes out sharp at every scale.
void PaintInDevicePixels(QPainter& painter);

}  // namespace velumar
