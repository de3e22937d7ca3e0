#pragma once

#include <qcustomplot.h>

#include <QPageLayout>

class QPagedPaintDevice;

namespace velumar {

// What is printed is measured in units of 1/96 inch. A page has a title with a line below it at its
// top, and its number at its foot.
inline constexpr double kHeader = 52;
inline constexpr double kFooter = 26;

// The width of a text in one line.
double TextWidth(const QString& text, const QFont& font);

// Writes a text in one line of its place: in a smaller size if necessary, and with its middle left
// out if even that is too long.
void WriteLine(QCPPainter& painter, const QColor& ink, const QRectF& place, Qt::Alignment alignment,
               QFont font, const QString& text);

// Sheets of A4 that are printed as vectors, one after the other. The painter's origin is the
// corner of the printable area.
class Paper {
 public:
  // Throws std::runtime_error if the first page can't be started.
  explicit Paper(QPagedPaintDevice& device);

  QCPPainter& Painter() { return painter_; }
  // The printable area of the page as it is, and of a landscape page.
  QRectF Page() const;
  QRectF LandscapePage() const;

  // Call it before the first page.
  void SetCount(std::size_t pages) { pages_ = pages; }
  // The first page is there already; each other one throws std::runtime_error if it can't be
  // started.
  void BeginPage(QPageLayout::Orientation orientation, const QString& title,
                 const QString& subtitle);

 private:
  void SetLayout(QPageLayout::Orientation orientation);

  QPagedPaintDevice& device_;
  QCPPainter painter_;
  std::size_t page_ = 0;
  std::size_t pages_ = 1;
};

}  // namespace velumar
