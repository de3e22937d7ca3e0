#include "charts/palette.h"

namespace velumar {

const Palette& Palette::Light() {
  static const Palette palette = {.dark = false,
                                  .window = QColor(0xdfe4ec),
                                  .edge = QColor(0x182133),
                                  .field = QColor(0xffffff),
                                  .tick = QColor(0xc0ffc0),
                                  .value = QColor(0xffff80),
                                  .text = QColor(0x1b2536),
                                  .faint = QColor(0x7d8899),
                                  .border = QColor(0x6c7a91),
                                  .accent = QColor(0x1f6feb),
                                  .on_accent = QColor(0xffffff),
                                  .button = QColor(0xf4f7fb),
                                  .groove = QColor(0xb9c5d8),
                                  .ground = QColor(0xf3f6fa),
                                  .muted = QColor(0x4a576b),
                                  .grid = QColor(0xe6eaf0),
                                  .strong_grid = QColor(0xcfd7e2),
                                  .floor = QColor(0xdde3ec),
                                  .shadow = QColor(0xa8b2c1),
                                  .hint = QColor(0xffffe1),
                                  .up = QColor(0x0b8a6a),
                                  .down = QColor(0xcf3438),
                                  .up_volume = QColor(0x9ccfc1),
                                  .down_volume = QColor(0xebb0b1),
                                  .line = QColor(0x1d4ed8),
                                  .averages = {QColor(0x2563eb), QColor(0xc2660a)},
                                  .crosshair = QColor(0x6b7686),
                                  .tag = QColor(0x374151),
                                  .on_tag = QColor(0xffffff),
                                  .error = QColor(0xb42318)};
  return palette;
}

const Palette& Palette::Dark() {
  static const Palette palette = {.dark = true,
                                  .window = QColor(0x232b38),
                                  .edge = QColor(0x465468),
                                  .field = QColor(0x121821),
                                  .tick = QColor(0x1d3a28),
                                  .value = QColor(0x3b3a1c),
                                  .text = QColor(0xe6edf8),
                                  .faint = QColor(0x7b889b),
                                  .border = QColor(0x5a6980),
                                  .accent = QColor(0x5b9bff),
                                  .on_accent = QColor(0x0d1118),
                                  .button = QColor(0x3a4658),
                                  .groove = QColor(0x4a586d),
                                  .ground = QColor(0x171e29),
                                  .muted = QColor(0xa9b5c6),
                                  .grid = QColor(0x222a36),
                                  .strong_grid = QColor(0x323c4b),
                                  .floor = QColor(0x242e3c),
                                  .shadow = QColor(0x05080c),
                                  .hint = QColor(0x2d3848),
                                  .up = QColor(0x2cb991),
                                  .down = QColor(0xf0616a),
                                  .up_volume = QColor(0x26705c),
                                  .down_volume = QColor(0x8a3f46),
                                  .line = QColor(0x6aa5ff),
                                  .averages = {QColor(0x6aa5ff), QColor(0xf5b342)},
                                  .crosshair = QColor(0x8a96a6),
                                  .tag = QColor(0x4a5668),
                                  .on_tag = QColor(0xffffff),
                                  .error = QColor(0xff8a80)};
  return palette;
}

const Palette& Palette::Following(const QPalette& system) {
  return system.color(QPalette::Window).lightness() < 128 ? Dark() : Light();
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
