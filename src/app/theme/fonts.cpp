#include "app/theme/fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>
#include <algorithm>

namespace velumar {

namespace {

constexpr int kSmallestStatusPixelSize = 10;
constexpr double kNarrowest = 0.74;  // part of the width of the letters

// The first installed one of these families, which are separated by commas.
QString FirstInstalled(const QString& wanted) {
  const QStringList installed = QFontDatabase::families();
  for (const QString& family : wanted.split(QLatin1Char(','))) {
    if (installed.contains(family, Qt::CaseInsensitive)) return family;
  }
  return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

// The font with its letters `part` as wide. What a stretch does depends on how wide a family is
// drawn, so the letters are measured.
QFont Narrowed(const QFont& font, double part) {
  const QString sample = QStringLiteral("0123456789");
  const double wanted = QFontMetricsF(font).horizontalAdvance(sample) * part;
  QFont narrow = font;
  // Widths rounded to whole pixels would gain nothing at small sizes.
  narrow.setHintingPreference(QFont::PreferNoHinting);
  for (int stretch = 100; stretch >= QFont::UltraCondensed; stretch -= 2) {
    narrow.setStretch(stretch);
    if (QFontMetricsF(narrow).horizontalAdvance(sample) <= wanted) break;
  }
  return narrow;
}

bool Fits(const QString& text, const QFont& font, const QSizeF& room) {
  const QFontMetricsF metrics(font);
  const QRectF ink = metrics.tightBoundingRect(text);
  return std::max(metrics.horizontalAdvance(text), ink.right()) <= room.width() &&
         ink.height() <= room.height();
}

// The largest font, down to that size, at which the text fits; elided if it fits at none.
FittedText Shrunk(const QString& text, const QFont& font, const QSizeF& room, int smallest) {
  FittedText fitted{font, text};
  for (int size = font.pixelSize(); size >= smallest; --size) {
    fitted.font.setPixelSize(size);
    if (Fits(text, fitted.font, room)) return fitted;
  }
  fitted.font.setPixelSize(std::min(font.pixelSize(), smallest));
  fitted.shown = QFontMetricsF(fitted.font).elidedText(text, Qt::ElideRight, room.width());
  fitted.shortened = fitted.shown != text;
  return fitted;
}

}  // namespace

Typefaces Typefaces::Installed() {
  return {.plain = FirstInstalled(QStringLiteral(
              "Segoe UI,Tahoma,Noto Sans,Open Sans,Liberation Sans,DejaVu Sans Condensed")),
          .verdana = FirstInstalled(QStringLiteral("Verdana,DejaVu Sans")),
          .impact = FirstInstalled(QStringLiteral(
              "Impact,Anton,Oswald,Franklin Gothic Heavy,Arial Black,DejaVu Sans Condensed,"
              "Liberation Sans Narrow,Nimbus Sans Narrow"))};
}

QFont Typefaces::For(const Look& look) const {
  constexpr double kPixelsPerPoint = 96.0 / 72.0;
  QFont font(look.face == FontFace::kImpact    ? impact
             : look.face == FontFace::kVerdana ? verdana
                                               : plain);
  font.setPixelSize(qRound(look.points * kPixelsPerPoint));
  font.setItalic(look.italic);
  font.setBold(look.bold);
  if (look.face != FontFace::kImpact || impact == QLatin1String("Impact")) return font;
  // Impact is heavy and narrow by itself; its substitutes are made so.
  constexpr double kAsNarrow = 0.86;
  font.setBold(true);
  return Narrowed(font, kAsNarrow);
}

QFont Typefaces::Plain(int pixels) const {
  QFont font(plain);
  font.setPixelSize(pixels);
  return font;
}

FittedText FitText(const QString& text, const QFont& font, const QSizeF& room) {
  FittedText fitted = Shrunk(text, font, room, kSmallestPixelSize);
  if (!fitted.shortened) return fitted;
  for (const double part : {0.92, 0.83, kNarrowest}) {
    const QFont narrow = Narrowed(fitted.font, part);
    if (Fits(text, narrow, room)) return {narrow, text};
  }
  return fitted;
}

FittedText FitStatus(const QString& text, const QFont& font, const QSizeF& room) {
  return Shrunk(text, font, room, kSmallestStatusPixelSize);
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
