#include "resultchart/chart_page.h"

#include <QPagedPaintDevice>
#include <stdexcept>

#include "resultchart/result_plot.h"

namespace velumar {

void PrintChartPages(ResultPlot& plot, const ChartPage& page, QPagedPaintDevice& device) {
  device.setPageLayout({QPageSize(QPageSize::A4), page.orientation, QMarginsF()});
  QCPPainter painter;
  if (!painter.begin(&device)) throw std::runtime_error("the page can't be begun");
  painter.setMode(QCPPainter::pmVectorized);
  const double scale = device.logicalDpiX() / kUnitsPerInch;
  for (int copy = 0; copy < page.copies; ++copy) {
    if (copy > 0 && !device.newPage()) throw std::runtime_error("the next page can't be begun");
    painter.save();
    painter.scale(scale, scale);
    painter.translate(page.place.topLeft() * kUnitsPerInch);
    plot.PaintTo(painter, (page.place.size() * kUnitsPerInch).toSize());
    painter.restore();
  }
}

}  // namespace velumar
