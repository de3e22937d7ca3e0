#include "resultchart/journal_pages.h"

#include <qcustomplot.h>

#include <QImageReader>
#include <algorithm>
#include <iterator>

#include "charts/qt_text.h"
#include "resultchart/page_style.h"

namespace velumar {
namespace {

constexpr double kAbovePictures = 4;
constexpr double kBetweenPictures = 12;
constexpr double kBetweenItems = 18;
constexpr double kHighestPicture = 240;
constexpr int kMostPixels = 1000;  // across, to keep the file small

double PictureWidth(double width) { return (width - kBetweenPictures) / 2; }

double PictureHeight(const std::vector<std::string>& pictures, double width) {
  double height = 0;
  for (const std::string& file : pictures) {
    const QSizeF size = QImageReader(ToQt(file)).size();
    if (size.width() > 0) {
      height = std::max(height, PictureWidth(width) * size.height() / size.width());
    }
  }
  return std::min(height, kHighestPicture) + kAbovePictures;
}

void PaintPictures(QCPPainter& painter, const std::vector<std::string>& pictures,
                   const QRectF& place) {
  const QSizeF room(PictureWidth(place.width()), place.height() - kAbovePictures);
  QPointF corner(place.left(), place.top() + kAbovePictures);
  for (const std::string& file : pictures) {
    QImage picture(ToQt(file));
    if (picture.isNull()) continue;
    if (picture.width() > kMostPixels) {
      picture = picture.scaledToWidth(kMostPixels, Qt::SmoothTransformation);
    }
    const QSizeF size = QSizeF(picture.size()).scaled(room, Qt::KeepAspectRatio);
    painter.drawImage(QRectF(corner, size), picture);
    corner.rx() += room.width() + kBetweenPictures;
  }
}

}  // namespace

PageGroup JournalGroup(const JournalItem& item, double width) {
  PageGroup group{.blocks = {HeadingBlock(ToQt(item.title), kTextPixels)}, .after = kBetweenItems};
  for (const std::string& text : item.lines)
    std::ranges::move(TextBlocks(text, width), std::back_inserter(group.blocks));
  group.blocks.push_back({PictureHeight(item.pictures, width),
                          [pictures = item.pictures](QCPPainter& painter, const QRectF& place) {
                            PaintPictures(painter, pictures, place);
                          }});
  return group;
}

}  // namespace velumar
