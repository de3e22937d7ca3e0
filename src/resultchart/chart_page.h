#pragma once

#include <QPageLayout>
#include <QRectF>

class QPagedPaintDevice;

namespace velumar {

class ResultPlot;

// A sheet of A4 with a chart on it.
struct ChartPage {
  QRectF place;  // of the chart from the sheet's corner, in inches; what is off the sheet is cut
  QPageLayout::Orientation orientation = QPageLayout::Portrait;
  int copies = 1;
};

// Draws the pages as vectors, one for each copy. Throws std::runtime_error when a page can't be
// begun.
void PrintChartPages(ResultPlot& plot, const ChartPage& page, QPagedPaintDevice& device);

}  // namespace velumar
