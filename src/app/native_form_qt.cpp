#include <QPainterPath>
#include <QRegion>
#include <QWindow>

#include "app/native_form.h"

namespace velumar {

bool WindowsMayBlend() { return true; }

void CutCorners(QWidget& window, const QSize& corners) {
  QPainterPath shape;
  shape.addRoundedRect(window.rect(), corners.width() / 2.0, corners.height() / 2.0);
  window.setMask(QRegion(shape.toFillPolygon().toPolygon()));
}

void SetAlpha(QWidget& window, int alpha) { window.setWindowOpacity(alpha / 255.0); }

void KeepOnTop(QWidget&) {}

bool MoveWithMouse(QWidget& window) {
  return window.windowHandle() != nullptr && window.windowHandle()->startSystemMove();
}

}  // namespace velumar
