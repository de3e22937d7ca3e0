#pragma once

#include <QSizeF>
#include <QString>
#include <cstddef>
#include <string>
#include <vector>

class QCPPainter;

namespace velumar {

// A trade of the journal on paper.
struct JournalItem {
  std::string title;
  std::vector<std::string> lines;     // wrapped where they are too long for the page
  std::vector<std::string> pictures;  // files; what can't be read is left out
};

// Lays trades out below each other, with the pictures of each side by side, on as many pages as
// they need. A trade is on one page unless it is longer than that. Measures are units of 1/96 inch.
class JournalPages {
 public:
  // `room` is what a page has for them.
  JournalPages(const std::vector<JournalItem>& items, QSizeF room);

  std::size_t Count() const { return pages_.size(); }
  // Paints a page below `top`.
  void Paint(QCPPainter& painter, std::size_t page, double top) const;

 private:
  // A heading, a line of text or a row of pictures: what no page break divides.
  struct Block {
    QString text;
    bool heading = false;
    std::vector<std::string> pictures;
    double height = 0;
    double top = 0;
  };

  std::vector<Block> BlocksOf(const JournalItem& item) const;
  double PictureWidth() const;
  double PictureHeight(const std::vector<std::string>& pictures) const;
  void PaintHeading(QCPPainter& painter, const QString& text, double top) const;
  void PaintPictures(QCPPainter& painter, const Block& block, double top) const;

  QSizeF room_;
  std::vector<std::vector<Block>> pages_;
};

}  // namespace velumar
