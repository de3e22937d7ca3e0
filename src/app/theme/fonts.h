#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>

#include "forms/control.h"

namespace velumar {

// The installed families used for the three faces of the control tables.
struct Typefaces {
  QString plain;
  QString verdana;
  QString impact;

  static Typefaces Installed();

  // Sizes are in logical pixels, 96 to the inch, so that a window keeps its proportions whatever
  // resolution the system reports for fonts.
  QFont For(const Look& look) const;
  QFont Plain(int pixels) const;
};

inline constexpr int kSmallestPixelSize = 8;

// A text fitted into its place.
struct FittedText {
  QFont font;
  QString shown;
  bool shortened = false;  // `shown` lacks a part of the text
};

// Shrinks the font until the ink of the text fits into `room`, then narrows its letters. If the
// font would become too small to read, the end of the text is elided.
FittedText FitText(const QString& text, const QFont& font, const QSizeF& room);
// The same for a text that changes with each bar and must be read at a glance: the font stays
// larger, and more of the text is elided.
FittedText FitStatus(const QString& text, const QFont& font, const QSizeF& room);

// The font at the largest pixel size, at most its own, at which a line is no higher than `height`.
QFont FitLine(const QFont& font, int height);

}  // namespace velumar
