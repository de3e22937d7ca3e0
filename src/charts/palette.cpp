#include "charts/palette.h"

namespace velumar {

namespace {

Palette MakePalette(bool dark) {
  const auto pick = [dark](QRgb in_light, QRgb in_dark) {
    return QColor(dark ? in_dark : in_light);
  };
  const std::array<QColor, 8> indicators = {pick(0x2563eb, 0x6aa5ff), pick(0xc2660a, 0xf5b342),
                                            pick(0x882255, 0xf28cb8), pick(0x0f8080, 0x5fd4d4),
                                            pick(0xaa4499, 0xd0a8f0), pick(0x75751a, 0xdcdc6a),
                                            pick(0x117733, 0x7fd18f), pick(0x4f5b6b, 0xb4bec9)};
  return {.dark = dark,
          .window = pick(0xdfe4ec, 0x232b38),
          .edge = pick(0x182133, 0x465468),
          .field = pick(0xffffff, 0x121821),
          .tick = pick(0xc0ffc0, 0x1d3a28),
          .value = pick(0xffff80, 0x3b3a1c),
          .text = pick(0x1b2536, 0xe6edf8),
          .faint = pick(0x7d8899, 0x7b889b),
          .border = pick(0x6c7a91, 0x5a6980),
          .accent = pick(0x1f6feb, 0x5b9bff),
          .on_accent = pick(0xffffff, 0x0d1118),
          .button = pick(0xf4f7fb, 0x3a4658),
          .groove = pick(0xb9c5d8, 0x4a586d),
          .ground = pick(0xf3f6fa, 0x171e29),
          .muted = pick(0x4a576b, 0xa9b5c6),
          .grid = pick(0xe6eaf0, 0x222a36),
          .strong_grid = pick(0xcfd7e2, 0x323c4b),
          .floor = pick(0xdde3ec, 0x242e3c),
          .shadow = pick(0xa8b2c1, 0x05080c),
          .hint = pick(0xffffe1, 0x2d3848),
          .up = pick(0x0b8a6a, 0x2cb991),
          .down = pick(0xcf3438, 0xf0616a),
          .up_volume = pick(0x9ccfc1, 0x26705c),
          .down_volume = pick(0xebb0b1, 0x8a3f46),
          .line = pick(0x1d4ed8, 0x6aa5ff),
          .indicators = indicators,
          .crosshair = pick(0x6b7686, 0x8a96a6),
          .tag = pick(0x374151, 0x4a5668),
          .on_tag = pick(0xffffff, 0xffffff),
          .error = pick(0xb42318, 0xff8a80)};
}

Palette MakeSafePalette(bool dark) {
  Palette palette = MakePalette(dark);
  palette.up = dark ? QColor(0x56b4e9) : QColor(0x0067a5);
  palette.down = dark ? QColor(0xf08a3c) : QColor(0xb54a00);
  palette.up_volume = dark ? QColor(0x2f6384) : QColor(0x9cc4de);
  palette.down_volume = dark ? QColor(0x7f4a22) : QColor(0xe3b48f);
  return palette;
}

const Palette& PaletteOf(bool dark, bool safe) {
  static const std::array palettes = {MakePalette(false), MakePalette(true), MakeSafePalette(false),
                                      MakeSafePalette(true)};
  return palettes[(safe ? 2U : 0U) + (dark ? 1U : 0U)];
}

}  // namespace

const Palette& Palette::Light() { return PaletteOf(false, false); }

const Palette& Palette::Dark() { return PaletteOf(true, false); }

const Palette& Palette::SafeLight() { return PaletteOf(false, true); }

const Palette& Palette::SafeDark() { return PaletteOf(true, true); }

const Palette& Palette::Following(const QPalette& system, bool safe) {
  return PaletteOf(system.color(QPalette::Window).lightness() < 128, safe);
}

QPalette Palette::ForWidgets() const {
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
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

}  // namespace velumar
