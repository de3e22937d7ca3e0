#include <qcustomplot.h>

#include <QSvgGenerator>
#include <stdexcept>

#include "resultchart/chart_file.h"
#include "resultchart/result_plot.h"

namespace velumar {

namespace {

void WriteSvg(ResultPlot& plot, const QSize& size, QIODevice& device) {
  QSvgGenerator generator;
  generator.setOutputDevice(&device);
  generator.setSize(size);
  generator.setViewBox(QRect(QPoint(), size));
  generator.setResolution(static_cast<int>(kUnitsPerInch));
  generator.setTitle(kPlotTitle);
  QCPPainter painter;
  if (!painter.begin(&generator)) throw std::runtime_error("the picture could not be started");
  plot.PaintTo(painter, size);
}

}  // namespace

SvgWriter FindSvgWriter() { return WriteSvg; }

}  // namespace velumar
