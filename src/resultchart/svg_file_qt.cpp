#include <qcustomplot.h>

#include <QSvgGenerator>

#include "resultchart/result_plot.h"
#include "resultchart/svg_file.h"

namespace velumar {

bool SvgOffered() { return true; }

void WriteSvg(ResultPlot& plot, const QSize& size, QIODevice& device) {
  constexpr int kUnitsPerInch = 96;
  QSvgGenerator generator;
  generator.setOutputDevice(&device);
  generator.setSize(size);
  generator.setViewBox(QRect(QPoint(), size));
  generator.setResolution(kUnitsPerInch);
  generator.setTitle(QStringLiteral("Portfolio Graph."));
  QCPPainter painter;
  painter.begin(&generator);
  plot.PaintTo(painter, size);
}

}  // namespace velumar
