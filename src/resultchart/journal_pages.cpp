#include "resultchart/journal_pages.h"

#include <qcustomplot.h>

#include <QImageReader>
#include <algorithm>

#include "charts/qt_text.h"
#include "resultchart/page_style.h"

namespace velumar {
namespace {

constexpr double kHeadingHeight = 20;
constexpr double kBetweenPictures = 12;
constexpr double kBetweenItems = 18;
constexpr double kHighestPicture = 240;
constexpr int kMostPixels = 1000;  // across, to keep the file small
constexpr int kWrapped = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;

QSizeF SizeOf(const std::string& file) { return QImageReader(ToQt(file)).size(); }

double TextHeight(const std::string& text, double width) {
  constexpr double kEndless = 1e6;
  return QFontMetricsF(Face(kTextPixels))
      .boundingRect(QRectF(0, 0, width, kEndless), kWrapped, ToQt(text))
      .height();
}

}  // namespace

JournalPages::JournalPages(const std::vector<JournalItem>& items, QSizeF room) : room_(room) {
  double top = 0;
  for (const JournalItem& item : items) {
    const double height = HeightOf(item);
    if (pages_.empty() || top + height > room_.height()) {
      pages_.emplace_back();
      top = 0;
    }
    pages_.back().push_back({&item, top});
    top += height + kBetweenItems;
  }
}

double JournalPages::PictureHeight(const JournalItem& item) const {
  const double width = (room_.width() - kBetweenPictures) / 2;
  double height = 0;
  for (const std::string& file : item.pictures) {
    const QSizeF size = SizeOf(file);
    if (size.width() > 0) height = std::max(height, width * size.height() / size.width());
  }
  return std::min(height, kHighestPicture);
}

double JournalPages::HeightOf(const JournalItem& item) const {
  double height = kHeadingHeight + PictureHeight(item) + 4;
  for (const std::string& line : item.lines) height += TextHeight(line, room_.width());
  return height;
}

void JournalPages::Paint(QCPPainter& painter, std::size_t page, double top) const {
  for (const Placed& placed : pages_.at(page)) PaintItem(painter, *placed.item, top + placed.top);
}

void JournalPages::PaintItem(QCPPainter& painter, const JournalItem& item, double top) const {
  painter.setPen(kInk);
  painter.setFont(Face(kTextPixels, true));
  const QRectF heading(0, top, room_.width(), kHeadingHeight);
  painter.drawText(
      heading, Qt::AlignLeft | Qt::AlignVCenter,
      QFontMetricsF(painter.font()).elidedText(ToQt(item.title), Qt::ElideMiddle, room_.width()));
  painter.setPen(QPen(kRule, 0.5));
  painter.drawLine(heading.bottomLeft(), heading.bottomRight());
  top = heading.bottom();
  painter.setFont(Face(kTextPixels));
  painter.setPen(kInk);
  for (const std::string& line : item.lines) {
    const double height = TextHeight(line, room_.width());
    painter.drawText(QRectF(0, top, room_.width(), height), kWrapped, ToQt(line));
    top += height;
  }
  const QSizeF place((room_.width() - kBetweenPictures) / 2, PictureHeight(item));
  double left = 0;
  for (const std::string& file : item.pictures) {
    QImage picture(ToQt(file));
    if (picture.isNull()) continue;
    if (picture.width() > kMostPixels) {
      picture = picture.scaledToWidth(kMostPixels, Qt::SmoothTransformation);
    }
    const QSizeF size = QSizeF(picture.size()).scaled(place, Qt::KeepAspectRatio);
    painter.drawImage(QRectF({left, top + 4}, size), picture);
    left += place.width() + kBetweenPictures;
  }
}

}  // namespace velumar
