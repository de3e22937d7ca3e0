#include "app/theme/text_fit.h"

#include <QFontMetricsF>
#include <algorithm>

namespace velumar {

namespace {

bool Fits(const QString& text, const QFont& font, const QSizeF& room) {
  const QFontMetricsF metrics(font);
  const QRectF ink = metrics.tightBoundingRect(text);
  return std::max(metrics.horizontalAdvance(text), ink.right()) <= room.width() &&
         ink.height() <= room.height();
}

}  // namespace

// What a stretch means depends on how wide the family is drawn, so the letters are measured.
QFont Narrowed(const QFont& font, double part) {
  const QString sample = QStringLiteral("0123456789");
  const double wanted = QFontMetricsF(font).horizontalAdvance(sample) * part;
  QFont narrow = font;
  // Whole pixels would win nothing back at small sizes.
  narrow.setHintingPreference(QFont::PreferNoHinting);
  for (int stretch = 100; stretch >= QFont::UltraCondensed; stretch -= 2) {
    narrow.setStretch(stretch);
    if (QFontMetricsF(narrow).horizontalAdvance(sample) <= wanted) break;
  }
  return narrow;
}

FittedText FitText(const QString& text, const QFont& font, const QSizeF& room) {
  FittedText fitted{font, text};
  for (int size = font.pixelSize(); size >= kSmallestPixelSize; --size) {
    fitted.font.setPixelSize(size);
    if (Fits(text, fitted.font, room)) return fitted;
  }
  fitted.font.setPixelSize(std::min(font.pixelSize(), kSmallestPixelSize));
  for (const double part : {0.92, 0.83, kNarrowest}) {
    const QFont narrow = Narrowed(fitted.font, part);
    if (Fits(text, narrow, room)) return {narrow, text};
  }
  fitted.shown = QFontMetricsF(fitted.font).elidedText(text, Qt::ElideMiddle, room.width());
  fitted.shortened = fitted.shown != text;
  return fitted;
}

QFont FitLine(const QFont& font, int height) {
  QFont fitted = font;
  for (int size = font.pixelSize(); size > 1; --size) {
    fitted.setPixelSize(size);
    if (QFontMetricsF(fitted).height() <= height + 0.5) break;
  }
  return fitted;
}

}  // namespace velumar
