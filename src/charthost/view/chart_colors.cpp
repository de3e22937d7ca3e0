#include "charthost/view/chart_colors.h"

namespace velumar {
namespace {

ChartColors LightColors() {
  ChartColors colors;
  colors.background = QColor(0xFFFFFF);
  colors.grid = QColor(0xEDF0F4);
  colors.strong_grid = QColor(0xCFD7E2);
  colors.frame = QColor(0xC3CBD6);
  colors.text = QColor(0x1F2937);
  colors.faint_text = QColor(0x5B6675);
  colors.up = QColor(0x0B8A6A);
  colors.down = QColor(0xCF3438);
  colors.up_volume = QColor(0x9CCFC1);
  colors.down_volume = QColor(0xEBB0B1);
  colors.line = QColor(0x1D4ED8);
  colors.averages = {QColor(0x2563EB), QColor(0xC2660A)};
  colors.crosshair = QColor(0x6B7686);
  colors.tag = QColor(0x374151);
  colors.tag_text = QColor(0xFFFFFF);
  colors.error = QColor(0xB42318);
  return colors;
}

ChartColors DarkColors() {
  ChartColors colors;
  colors.background = QColor(0x12161D);
  colors.grid = QColor(0x1E2530);
  colors.strong_grid = QColor(0x323C4B);
  colors.frame = QColor(0x3A4555);
  colors.text = QColor(0xE6EAF0);
  colors.faint_text = QColor(0x9AA6B5);
  colors.up = QColor(0x2CB991);
  colors.down = QColor(0xF0616A);
  colors.up_volume = QColor(0x26705C);
  colors.down_volume = QColor(0x8A3F46);
  colors.line = QColor(0x6AA5FF);
  colors.averages = {QColor(0x6AA5FF), QColor(0xF5B342)};
  colors.crosshair = QColor(0x8A96A6);
  colors.tag = QColor(0x4A5668);
  colors.tag_text = QColor(0xFFFFFF);
  colors.error = QColor(0xFF8A80);
  return colors;
}

}  // namespace

const ChartColors& ColorsFor(const QPalette& palette) {
  static const ChartColors light = LightColors();
  static const ChartColors dark = DarkColors();
  return palette.color(QPalette::Window).lightness() < 128 ? dark : light;
}

}  // namespace velumar
