#include "resultchart/journal_pages.h"

#include <qcustomplot.h>

#include <QImageReader>
#include <QTextLayout>
#include <algorithm>
#include <utility>

#include "charts/qt_text.h"
#include "resultchart/page_style.h"

namespace velumar {
namespace {

constexpr double kHeadingHeight = 20;
constexpr double kAbovePictures = 4;
constexpr double kBetweenPictures = 12;
constexpr double kBetweenItems = 18;
constexpr double kHighestPicture = 240;
constexpr int kMostPixels = 1000;  // across, to keep the file small

// The lines of a text that is wrapped at this width, and at its own line breaks.
QStringList Wrapped(const std::string& text, double width) {
  QString broken = ToQt(text);
  broken.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
  QTextLayout layout(broken, Face(kTextPixels));
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines.append(broken.mid(line.textStart(), line.textLength()));
  }
  layout.endLayout();
  return lines;
}

}  // namespace

JournalPages::JournalPages(const std::vector<JournalItem>& items, QSizeF room) : room_(room) {
  double top = 0;
  const auto make_room = [&](double height) {
    if (!pages_.empty() && top + height <= room_.height()) return;
    pages_.emplace_back();
    top = 0;
  };
  for (const JournalItem& item : items) {
    std::vector<Block> blocks = BlocksOf(item);
    double height = 0;
    for (const Block& block : blocks) height += block.height;
    make_room(height);
    for (Block& block : blocks) {
      make_room(block.height);
      block.top = top;
      top += block.height;
      pages_.back().push_back(std::move(block));
    }
    top += kBetweenItems;
  }
}

std::vector<JournalPages::Block> JournalPages::BlocksOf(const JournalItem& item) const {
  const double line_height = QFontMetricsF(Face(kTextPixels)).height();
  std::vector<Block> blocks;
  blocks.push_back(
      {.text = ToQt(item.title), .heading = true, .pictures = {}, .height = kHeadingHeight});
  for (const std::string& text : item.lines) {
    for (const QString& line : Wrapped(text, room_.width())) {
      blocks.push_back({.text = line, .pictures = {}, .height = line_height});
    }
  }
  blocks.push_back({.text = {}, .pictures = item.pictures, .height = PictureHeight(item.pictures)});
  return blocks;
}

double JournalPages::PictureWidth() const { return (room_.width() - kBetweenPictures) / 2; }

double JournalPages::PictureHeight(const std::vector<std::string>& pictures) const {
  double height = 0;
  for (const std::string& file : pictures) {
    const QSizeF size = QImageReader(ToQt(file)).size();
    if (size.width() > 0) height = std::max(height, PictureWidth() * size.height() / size.width());
  }
  return std::min(height, kHighestPicture) + kAbovePictures;
}

void JournalPages::Paint(QCPPainter& painter, std::size_t page, double top) const {
  for (const Block& block : pages_.at(page)) {
    if (block.heading) {
      PaintHeading(painter, block.text, top + block.top);
    } else if (!block.pictures.empty()) {
      PaintPictures(painter, block, top + block.top);
    } else {
      painter.setPen(kInk);
      painter.setFont(Face(kTextPixels));
      painter.drawText(QRectF(0, top + block.top, room_.width(), block.height),
                       Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, block.text);
    }
  }
}

void JournalPages::PaintHeading(QCPPainter& painter, const QString& text, double top) const {
  painter.setPen(kInk);
  painter.setFont(Face(kTextPixels, true));
  const QRectF place(0, top, room_.width(), kHeadingHeight);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                   QFontMetricsF(painter.font()).elidedText(text, Qt::ElideMiddle, room_.width()));
  painter.setPen(QPen(kRule, 0.5));
  painter.drawLine(place.bottomLeft(), place.bottomRight());
}

void JournalPages::PaintPictures(QCPPainter& painter, const Block& block, double top) const {
  const QSizeF place(PictureWidth(), block.height - kAbovePictures);
  double left = 0;
  for (const std::string& file : block.pictures) {
    QImage picture(ToQt(file));
    if (picture.isNull()) continue;
    if (picture.width() > kMostPixels) {
      picture = picture.scaledToWidth(kMostPixels, Qt::SmoothTransformation);
    }
    const QSizeF size = QSizeF(picture.size()).scaled(place, Qt::KeepAspectRatio);
    painter.drawImage(QRectF({left, top + kAbovePictures}, size), picture);
    left += place.width() + kBetweenPictures;
  }
}

}  // namespace velumar
