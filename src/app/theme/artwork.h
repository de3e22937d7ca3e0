#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

#include "app/theme/theme.h"

class QPainter;
class QWidget;

namespace velumar {

// The picture of that name, scaled to exactly that many device pixels; null if there is none.
QPixmap ArtPixmap(const Theme& theme, const QString& name, const QSize& pixels);

// The size of the widget in device pixels.
QSize DevicePixels(const QWidget& widget);

// Makes device pixels the unit of the painter and moves its origin to the nearest whole one, so
// that a pixmap of DevicePixels is drawn sharp at every scale.
void PaintInDevicePixels(QPainter& painter);

}  // namespace velumar
