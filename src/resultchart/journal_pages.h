#pragma once

#include <QSizeF>
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
// they need. Measures are units of 1/96 inch.
class JournalPages {
 public:
  // `room` is what a page has for them. `items` must outlive the object.
  JournalPages(const std::vector<JournalItem>& items, QSizeF room);

  std::size_t Count() const { return pages_.size(); }
  // Paints a page below `top`.
  void Paint(QCPPainter& painter, std::size_t page, double top) const;

 private:
  struct Placed {
    const JournalItem* item;
    double top;
  };

  double HeightOf(const JournalItem& item) const;
  double PictureHeight(const JournalItem& item) const;
  void PaintItem(QCPPainter& painter, const JournalItem& item, double top) const;

  QSizeF room_;
  std::vector<std::vector<Placed>> pages_;
};

}  // namespace velumar
