#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

namespace velumar {

// A text as it goes into its place without being cut.
struct FittedText {
  QFont font;
  QString shown;
  // The shown text stands for a longer one.
  bool shortened = false;
};

inline constexpr int kSmallestPixelSize = 8;
inline constexpr double kNarrowest = 0.74;  // of the letters' own width

// Shrinks the font until the ink of the text fits into `room`, then narrows its letters; below what
// can be read the middle of the text gives way to an ellipsis.
FittedText FitText(const QString& text, const QFont& font, const QSizeF& room);

// The font with its letters that part as wide as they are by themselves.
QFont Narrowed(const QFont& font, double part);

// The font at the largest pixel size, its own at most, at which a line of it is that high.
QFont FitLine(const QFont& font, int height);

}  // namespace velumar
