#include "app/services/screen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

#include "forms/form.h"

namespace velumar {

float QtScreen::WidthTwips() const {
  return static_cast<float>(QGuiApplication::primaryScreen()->geometry().width()) * kTwipsPerPixel;
}

float QtScreen::HeightTwips() const {
  return static_cast<float>(QGuiApplication::primaryScreen()->geometry().height()) * kTwipsPerPixel;
}

bool QtScreen::Shows(float left, float top, float width, float height) const {
  constexpr double kGrip = 24;  // logical pixels, enough to take hold of the window
  const QPointF origin = QGuiApplication::primaryScreen()->geometry().topLeft();
  const QRectF window(origin + QPointF(left, top) / kTwipsPerPixel,
                      QSizeF(width, height) / kTwipsPerPixel);
  const auto screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(), [&](const QScreen* screen) {
    const QRectF seen = QRectF(screen->geometry()).intersected(window);
    return seen.width() >= kGrip && seen.height() >= kGrip;
  });
}

void QtClipboard::SetText(std::string_view text) {
  QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
}

}  // namespace velumar
