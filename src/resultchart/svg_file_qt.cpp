#include <qcustomplot.h>

#include <QSvgGenerator>

#include "resultchart/result_plot.h"
#include "resultchart/svg_file.h"

namespace velumar {

bool SvgOffered() { return true; }

void WriteSvg(ResultPlot& plot, const QSize& size, QIODevice& device) {
  QSvgGenerator generator;
  generator.setOutputDevice(&device);
  generator.setSize(size);
  generator.setViewBox(QRect(QPoint(), size));
  generator.setResolution(static_cast<int>(kUnitsPerInch));
  generator.setTitle(kPlotTitle);
  QCPPainter painter;
  painter.begin(&generator);
  plot.PaintTo(painter, size);
}

}  // namespace velumar
