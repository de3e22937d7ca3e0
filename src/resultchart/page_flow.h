#pragma once

#include <QRectF>
#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

class QCPPainter;

namespace velumar {

// What no page break divides: a heading, a line of text, a picture. Measures are units of 1/96
// inch.
struct PageBlock {
  double height = 0;
  std::function<void(QCPPainter& painter, const QRectF& place)> paint;
};

// Blocks that are on one page unless they are longer than that, with some room after them.
struct PageGroup {
  std::vector<PageBlock> blocks;
  double after = 0;
};

// Lays groups out below each other, on as many pages as they need.
class PageFlow {
 public:
  // `room` is the height that a page has for them.
  PageFlow(std::vector<PageGroup> groups, double room);

  std::size_t Count() const { return pages_.size(); }
  // Paints a page at the top of a place.
  void Paint(QCPPainter& painter, std::size_t page, const QRectF& place) const;

 private:
  struct Placed {
    PageBlock block;
    double top = 0;
  };
  std::vector<std::vector<Placed>> pages_;
};

// A title with a rule below it.
PageBlock HeadingBlock(const QString& text, int pixels);
// The lines of a text that is wrapped at this width, and at its own line breaks. Each is a block
// that begins `left` units from the place's edge.
std::vector<PageBlock> TextBlocks(const std::string& text, double width, double left = 0);
// The lines of a text in the usual size.
QStringList WrappedText(const std::string& text, double width);

}  // namespace velumar
