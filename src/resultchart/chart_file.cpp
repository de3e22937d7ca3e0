#include "resultchart/chart_file.h"

#include <QPageLayout>
#include <QPdfWriter>
#include <stdexcept>

#include "resultchart/result_plot.h"
#include "resultchart/saved_file.h"
#include "resultchart/svg_file.h"

namespace velumar {

namespace {

void WritePicture(ResultPlot& plot, const QSize& size, QIODevice& device, const char* form) {
  const double scale = plot.devicePixelRatioF();
  QImage picture(size * scale, QImage::Format_RGB32);
  if (picture.isNull()) throw std::runtime_error("there is no memory for the picture");
  picture.fill(plot.Scene().colours.ground);
  {
    QCPPainter painter;
    painter.begin(&picture);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    plot.PaintTo(painter, size);
  }
  if (!picture.save(&device, form)) throw std::runtime_error("the picture can't be written");
}

void WritePdf(ResultPlot& plot, const QSize& size, QIODevice& device) {
  constexpr double kPointsPerInch = 72;
  QPdfWriter writer(&device);
  writer.setTitle(kPlotTitle);
  const QSizeF points = QSizeF(size) * (kPointsPerInch / kUnitsPerInch);
  writer.setPageLayout({QPageSize(points, QPageSize::Point), QPageLayout::Portrait, QMarginsF()});
  QCPPainter painter;
  if (!painter.begin(&writer)) throw std::runtime_error("the page can't be written");
  painter.setMode(QCPPainter::pmVectorized);
  painter.scale(writer.resolution() / kUnitsPerInch, writer.resolution() / kUnitsPerInch);
  plot.PaintTo(painter, size);
}

void WriteForm(ResultPlot& plot, const QSize& size, QIODevice& device, const QString& ending) {
  if (ending == u"pdf") return WritePdf(plot, size, device);
  if (ending == u"svg") return WriteSvg(plot, size, device);
  WritePicture(plot, size, device, ending == u"bmp" ? "BMP" : "PNG");
}

}  // namespace

QStringList ChartFileEndings() {
  QStringList endings = {QStringLiteral("bmp"), QStringLiteral("png")};
  if (SvgOffered()) endings.append(QStringLiteral("svg"));
  endings.append(QStringLiteral("pdf"));
  return endings;
}

void SaveChartFile(ResultPlot& plot, const QSize& size, const QString& file) {
  const QString ending = RequireEnding(file, ChartFileEndings(), QStringLiteral("a chart"));
  SaveWhole(file, [&](QIODevice& device) { WriteForm(plot, size, device, ending); });
}

}  // namespace velumar
