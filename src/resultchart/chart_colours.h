#pragma once

#include <QColor>

namespace velumar {

// The colours of a saved chart, which prints well too.
namespace chart_colours {

inline constexpr QColor kSeries(0, 192, 0);
inline constexpr QColor kGround(0xf3, 0xf6, 0xfa);
inline constexpr QColor kText(0x1b, 0x25, 0x36);
inline constexpr QColor kFaint(0x4a, 0x57, 0x6b);  // numbers and dates
inline constexpr QColor kFrame(0x6c, 0x7a, 0x91);
inline constexpr QColor kGrid(0xd3, 0xda, 0xe4);
inline constexpr QColor kFloor(0xdd, 0xe3, 0xec);  // of a chart with depth

}  // namespace chart_colours

}  // namespace velumar
