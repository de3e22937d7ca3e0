#include "app/theme/typefaces.h"

#include <QFontDatabase>
#include <QStringList>
#include <QtGlobal>

#include "app/theme/text_fit.h"

namespace velumar {

namespace {

QString FirstInstalled(const QStringList& wanted) {
  const QStringList installed = QFontDatabase::families();
  for (const QString& family : wanted) {
    if (installed.contains(family, Qt::CaseInsensitive)) return family;
  }
  return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

}  // namespace

Typefaces Typefaces::Installed() {
  return {.plain = FirstInstalled({QStringLiteral("Segoe UI"), QStringLiteral("Tahoma"),
                                   QStringLiteral("Noto Sans"), QStringLiteral("Open Sans"),
                                   QStringLiteral("Liberation Sans"),
                                   QStringLiteral("DejaVu Sans Condensed")}),
          .verdana = FirstInstalled({QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")}),
          .impact = FirstInstalled(
              {QStringLiteral("Impact"), QStringLiteral("Anton"), QStringLiteral("Oswald"),
               QStringLiteral("Franklin Gothic Heavy"), QStringLiteral("Arial Black"),
               QStringLiteral("DejaVu Sans Condensed"), QStringLiteral("Liberation Sans Narrow"),
               QStringLiteral("Nimbus Sans Narrow")})};
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
  // Impact is heavy and narrow by itself; what stands in for it is made so.
  constexpr double kAsNarrow = 0.86;
  font.setBold(true);
  return Narrowed(font, kAsNarrow);
}

QFont Typefaces::Plain(int pixels) const {
  QFont font(plain);
  font.setPixelSize(pixels);
  return font;
}

}  // namespace velumar
