#pragma once

#include <QApplication>
#include <QColor>
#include <QFont>

namespace velumar {

// How reports look on paper. Sizes are units of 1/96 inch.
inline constexpr int kHeadingPixels = 14;
inline constexpr int kTextPixels = 11;
inline constexpr int kSmallestPixels = 6;

inline const QColor kInk(0x1b, 0x25, 0x36);
inline const QColor kFaint(0x5c, 0x67, 0x7a);
inline const QColor kRule(0xb9, 0xc5, 0xd8);
inline const QColor kBand(0xf1, 0xf4, 0xf9);

inline QFont Face(int pixels, bool bold = false) {
  QFont font = QApplication::font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace velumar
