#include "resultchart/chart_colours.h"

namespace velumar {

ChartColours ChartColours::Light() {
  return {.ground = QColor(0xf3, 0xf6, 0xfa),
          .text = QColor(0x1b, 0x25, 0x36),
          .faint = QColor(0x4a, 0x57, 0x6b),
          .frame = QColor(0x6c, 0x7a, 0x91),
          .grid = QColor(0xd3, 0xda, 0xe4),
          .floor = QColor(0xdd, 0xe3, 0xec),
          .shadow = QColor(0xa8, 0xb2, 0xc1),
          .hint = QColor(0xff, 0xff, 0xe1)};
}

ChartColours ChartColours::Dark() {
  return {.ground = QColor(0x17, 0x1e, 0x29),
          .text = QColor(0xe6, 0xed, 0xf8),
          .faint = QColor(0xa9, 0xb5, 0xc6),
          .frame = QColor(0x6b, 0x7a, 0x90),
          .grid = QColor(0x2f, 0x3a, 0x4a),
          .floor = QColor(0x24, 0x2e, 0x3c),
          .shadow = QColor(0x05, 0x08, 0x0c),
          .hint = QColor(0x2d, 0x38, 0x48)};
}

ChartColours ChartColours::OnWhiteWall() const {
  ChartColours colours = *this;
  const ChartColours light = Light();
  colours.grid = light.grid;
  colours.frame = light.frame;
  return colours;
}

}  // namespace velumar
