#pragma once

#include <QBrush>
#include <QObject>
#include <QPalette>
#include <QPen>
#include <QPixmap>
#include <functional>
#include <utility>

#include "app/theme/fonts.h"
#include "charts/palette.h"

class QPainter;
class QWidget;

namespace velumar {

// How all windows of this process look.
struct Appearance {
  Palette palette;
  Typefaces faces;
  QString date_format;  // in the letters d, M, y
};

// Gives the whole application the colours of a theme: boxes, dialogs, tooltips and the icon.
void ApplyTheme(const Palette& palette);

QColor ToQColor(Colour colour);

// Contrast of two opaque colours, 1 (none) to 21 (black on white).
double Contrast(const QColor& a, const QColor& b);

// The colour, or the nearest shade of it that can be read on that background.
QColor ReadableOn(const QColor& background, const QColor& colour);

// The picture of that name, scaled to exactly that many device pixels; null if there is none.
QPixmap ArtPixmap(const Palette& palette, const QString& name, const QSize& pixels);

// Draws a rectangle with round corners. The line, if any, lies within the place.
void DrawRounded(QPainter& painter, const QRectF& place, double radius, const QPen& line,
                 const QBrush& fill = Qt::NoBrush);

// The size of the widget in device pixels.
QSize DevicePixels(const QWidget& widget);

// Makes device pixels the unit of the painter and moves its origin to the nearest whole one, so
// that a pixmap of DevicePixels is drawn sharp at every scale.
void PaintInDevicePixels(QPainter& painter);

enum class ThemeChoice { kSystem, kLight, kDark };

// The palette of the desktop. Removes ours from the application, which hides it; the next
// ApplyTheme sets it again.
QPalette DesktopPalette();

// The theme that was chosen, or for "system" the one that matches the desktop's palette. Create it
// before the first ApplyTheme.
class ThemeFollower : public QObject {
 public:
  explicit ThemeFollower(ThemeChoice choice,
                         std::function<QPalette()> desktop_palette = DesktopPalette);

  const Palette& Current() const { return current_; }
  // Called with the new theme, after it was applied, whenever the desktop turns dark or light.
  void OnChange(std::function<void(const Palette& palette)> change) { change_ = std::move(change); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Follow();

  std::function<QPalette()> desktop_palette_;
  Palette current_;
  std::function<void(const Palette& palette)> change_;
  bool following_ = false;
};

}  // namespace velumar
