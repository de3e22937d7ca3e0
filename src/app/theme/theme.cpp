#include "app/theme/theme.h"

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

}  // namespace

Theme Theme::Light() {
  return {.dark = false,
          .window = QColor(0xdf, 0xe4, 0xec),
          .edge = QColor(0x18, 0x21, 0x33),
          .field = QColor(0xff, 0xff, 0xff),
          .tick = QColor(0xc0, 0xff, 0xc0),
          .value = QColor(0xff, 0xff, 0x80),
          .text = QColor(0x1b, 0x25, 0x36),
          .faint = QColor(0x7d, 0x88, 0x99),
          .border = QColor(0x6c, 0x7a, 0x91),
          .accent = QColor(0x1f, 0x6f, 0xeb),
          .on_accent = QColor(0xff, 0xff, 0xff),
          .button = QColor(0xf4, 0xf7, 0xfb),
          .groove = QColor(0xb9, 0xc5, 0xd8)};
}

Theme Theme::Dark() {
  return {.dark = true,
          .window = QColor(0x23, 0x2b, 0x38),
          .edge = QColor(0x46, 0x54, 0x68),
          .field = QColor(0x12, 0x18, 0x21),
          .tick = QColor(0x1d, 0x3a, 0x28),
          .value = QColor(0x3b, 0x3a, 0x1c),
          .text = QColor(0xe6, 0xed, 0xf8),
          .faint = QColor(0x7b, 0x88, 0x9b),
          .border = QColor(0x5a, 0x69, 0x80),
          .accent = QColor(0x5b, 0x9b, 0xff),
          .on_accent = QColor(0x0d, 0x11, 0x18),
          .button = QColor(0x3a, 0x46, 0x58),
          .groove = QColor(0x4a, 0x58, 0x6d)};
}

Theme Theme::Following(const QPalette& system) {
  return system.color(QPalette::Window).lightness() < 128 ? Dark() : Light();
}

QPalette Theme::Palette() const {
  QPalette palette(text, button, button.lighter(115), border, groove, text, on_accent, field,
                   window);
  palette.setColor(QPalette::Disabled, QPalette::Base, window);
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, on_accent);
  palette.setColor(QPalette::AlternateBase, window);
  palette.setColor(QPalette::ToolTipBase, field);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::PlaceholderText, faint);
  palette.setColor(QPalette::Link, accent);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

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

}  // namespace velumar
