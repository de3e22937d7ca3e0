#include "resultchart/paper.h"

#include <QPagedPaintDevice>
#include <algorithm>
#include <stdexcept>

#include "charts/picture_file.h"
#include "resultchart/page_style.h"

namespace velumar {

namespace {

constexpr double kUnitsPerPoint = kUnitsPerInch / 72;
constexpr double kMarginMm = 14;
constexpr int kTitlePixels = 22;
constexpr int kSmallPixels = 9;

}  // namespace

double TextWidth(const QString& text, const QFont& font) {
  return QFontMetricsF(font).horizontalAdvance(text);
}

void WriteLine(QCPPainter& painter, const QColor& ink, const QRectF& place, Qt::Alignment alignment,
               QFont font, const QString& text) {
  while (font.pixelSize() > kSmallestPixels && TextWidth(text, font) > place.width()) {
    font.setPixelSize(font.pixelSize() - 1);
  }
  painter.setPen(ink);
  painter.setFont(font);
  painter.drawText(place, static_cast<int>(alignment | Qt::AlignVCenter | Qt::TextSingleLine),
                   QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, place.width()));
}

Paper::Paper(QPagedPaintDevice& device) : device_(device) {
  SetLayout(QPageLayout::Portrait);
  BeginPages(painter_, device_);
}

QRectF Paper::Page() const {
  const QRectF points = device_.pageLayout().paintRect(QPageLayout::Point);
  return {0, 0, points.width() * kUnitsPerPoint, points.height() * kUnitsPerPoint};
}

QRectF Paper::LandscapePage() const {
  const QRectF page = Page();
  return {0, 0, std::max(page.width(), page.height()), std::min(page.width(), page.height())};
}

void Paper::BeginPage(QPageLayout::Orientation orientation, const QString& title,
                      const QString& subtitle) {
  if (page_ > 0) {
    SetLayout(orientation);
    if (!device_.newPage()) throw std::runtime_error("the next page could not be started");
  }
  ++page_;
  const QRectF page = Page();
  WriteLine(painter_, kInk, {0, 0, page.width(), 28}, Qt::AlignLeft, Face(kTitlePixels, true),
            title);
  WriteLine(painter_, kFaint, {0, 28, page.width(), 16}, Qt::AlignLeft, Face(kTextPixels),
            subtitle);
  const QRectF foot(0, page.height() - 16, page.width(), 16);
  WriteLine(painter_, kFaint, foot, Qt::AlignLeft, Face(kSmallPixels), QStringLiteral("Velumar"));
  WriteLine(painter_, kFaint, foot, Qt::AlignRight, Face(kSmallPixels),
            QStringLiteral("Page %1 of %2").arg(page_).arg(pages_));
}

void Paper::SetLayout(QPageLayout::Orientation orientation) {
  const QMarginsF margins(kMarginMm, kMarginMm, kMarginMm, kMarginMm);
  device_.setPageLayout(
      QPageLayout(QPageSize(QPageSize::A4), orientation, margins, QPageLayout::Millimeter));
}

}  // namespace velumar
