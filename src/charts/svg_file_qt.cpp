#include <qcustomplot.h>

#include <QSvgGenerator>
#include <stdexcept>

#include "charts/picture_file.h"

namespace velumar {

namespace {

void WriteSvg(const PlotPicture& picture, QIODevice& device) {
  QSvgGenerator generator;
  generator.setOutputDevice(&device);
  generator.setSize(picture.size);
  generator.setViewBox(QRect(QPoint(), picture.size));
  generator.setResolution(static_cast<int>(kUnitsPerInch));
  generator.setTitle(picture.title);
  QCPPainter painter;
  if (!painter.begin(&generator)) throw std::runtime_error("the picture could not be started");
  picture.paint(painter);
}

}  // namespace

SvgWriter FindSvgWriter() { return WriteSvg; }

}  // namespace velumar
