#include "resultchart/chart_file.h"

#include <QPagedPaintDevice>
#include <stdexcept>

#include "resultchart/result_plot.h"

namespace velumar {

void SaveChartFile(ResultPlot& plot, const QSize& size, const QString& file) {
  SavePicture({.size = size,
               .scale = plot.devicePixelRatioF(),
               .ground = plot.Scene().colours.ground,
               .title = kPlotTitle,
               .paint = [&](QCPPainter& painter) { plot.PaintTo(painter, size); }},
              file);
}

void PrintChartPages(ResultPlot& plot, const ChartPage& page, QPagedPaintDevice& device) {
  device.setPageLayout({QPageSize(QPageSize::A4), page.orientation, QMarginsF()});
  QCPPainter painter;
  BeginPages(painter, device);
  for (int copy = 0; copy < page.copies; ++copy) {
    if (copy > 0 && !device.newPage()) {
      throw std::runtime_error("the next page could not be started");
    }
    painter.save();
    painter.translate(page.place.topLeft() * kUnitsPerInch);
    plot.PaintTo(painter, (page.place.size() * kUnitsPerInch).toSize());
    painter.restore();
  }
}

}  // namespace velumar
