#include "app/theme/theme.h"

#include <QtWidgets>
#include <algorithm>
#include <cmath>

namespace velumar {

namespace {

double Linear(double channel) {
  return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

// Pure blue looks violet when it is lightened; sky blue still looks blue.
float HueForLightening(const QColor& colour) {
  constexpr float kPureBlue = 240.F / 360;
  constexpr float kSkyBlue = 216.F / 360;
  const float hue = colour.hslHueF();
  return std::abs(hue - kPureBlue) < 0.04F ? kSkyBlue : hue;
}

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

Palette FirstTheme(ThemeChoice choice, const QPalette& desktop) {
  if (choice == ThemeChoice::kSystem) return Palette::Following(desktop);
  return choice == ThemeChoice::kDark ? Palette::Dark() : Palette::Light();
}

}  // namespace

QColor ToQColor(Colour colour) {
  const auto channel = [colour](unsigned shift) {
    return static_cast<int>(colour >> shift & 255U);
  };
  return {channel(0), channel(8), channel(16)};
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

QColor ReadableOn(const QColor& background, const QColor& colour) {
  const bool lighter = Luminance(background) < 0.18;
  const double contrast = lighter ? 6 : 4.5;  // thin letters need more on a dark background
  if (Contrast(background, colour) >= contrast) return colour;
  QColor shade = colour.toHsl();
  const float hue = lighter ? HueForLightening(colour) : colour.hslHueF();
  constexpr float kStep = 0.02F;
  for (float part = kStep; part < 1 + kStep && Contrast(background, shade) < contrast;
       part += kStep) {
    const float end = lighter ? 1.F : 0.F;
    const float lightness = colour.lightnessF() + (end - colour.lightnessF()) * std::min(part, 1.F);
    shade.setHslF(hue, colour.hslSaturationF(), lightness);
  }
  return shade.toRgb();
}

QPixmap ArtPixmap(const Palette& palette, const QString& name, const QSize& pixels) {
  const QString set = palette.dark ? QStringLiteral("dark") : QStringLiteral("light");
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

void DrawRounded(QPainter& painter, const QRectF& place, double radius, const QPen& line,
                 const QBrush& fill) {
  const double inset = line.style() == Qt::NoPen ? 0 : 0.5;  // lines are one pixel wide
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(line);
  painter.setBrush(fill);
  painter.drawRoundedRect(place.adjusted(inset, inset, -inset, -inset), radius, radius);
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

QPalette DesktopPalette() {
  QApplication::setPalette(QPalette());
  return QApplication::palette();
}

ThemeFollower::ThemeFollower(ThemeChoice choice, std::function<QPalette()> desktop_palette)
    : desktop_palette_(std::move(desktop_palette)),
      current_(FirstTheme(choice, desktop_palette_())) {
  if (choice == ThemeChoice::kSystem) QCoreApplication::instance()->installEventFilter(this);
}

bool ThemeFollower::eventFilter(QObject* watched, QEvent* event) {
  const bool changed =
      event->type() == QEvent::ThemeChange || event->type() == QEvent::ApplicationPaletteChange;
  // While our palette hides the desktop's from the application, only windows get the event. Our own
  // changes of the palette don't count.
  const bool from_desktop = watched->isWindowType() || watched == QCoreApplication::instance();
  if (changed && from_desktop && !following_) Follow();
  return QObject::eventFilter(watched, event);
}

void ThemeFollower::Follow() {
  following_ = true;
  const Palette wanted = Palette::Following(desktop_palette_());
  const bool same = wanted.dark == current_.dark;
  if (same) {
    QApplication::setPalette(current_.ForWidgets());
  } else {
    current_ = wanted;
    ApplyTheme(current_);
  }
  following_ = false;
  if (!same && change_) change_(current_);
}

}  // namespace velumar
