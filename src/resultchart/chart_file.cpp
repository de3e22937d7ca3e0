#include "resultchart/chart_file.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPdfWriter>
#include <stdexcept>

#include "base/whole_file.h"
#include "resultchart/result_plot.h"

namespace velumar {
namespace {

[[noreturn]] void Fail(const QString& file, const QString& reason) {
  throw std::runtime_error((file + QStringLiteral(": ") + reason).toStdString());
}

void WritePicture(ResultPlot& plot, const QSize& size, QIODevice& device, const char* format) {
  const double scale = plot.devicePixelRatioF();
  QImage picture(size * scale, QImage::Format_RGB32);
  if (picture.isNull()) throw std::runtime_error("not enough memory for the picture");
  picture.fill(plot.Scene().colours.ground);
  {
    QCPPainter painter;
    painter.begin(&picture);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    plot.PaintTo(painter, size);
  }
  if (!picture.save(&device, format)) throw std::runtime_error("the picture could not be written");
}

void WritePdf(ResultPlot& plot, const QSize& size, QIODevice& device) {
  constexpr double kPointsPerInch = 72;
  QPdfWriter writer(&device);
  writer.setTitle(kPlotTitle);
  const QSizeF points = QSizeF(size) * (kPointsPerInch / kUnitsPerInch);
  writer.setPageLayout({QPageSize(points, QPageSize::Point), QPageLayout::Portrait, QMarginsF()});
  QCPPainter painter;
  BeginPages(painter, writer);
  plot.PaintTo(painter, size);
}

}  // namespace

// Into memory first: the toolkit's writers don't report a full disk.
void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  try {
    write(buffer);
  } catch (const std::runtime_error& error) {
    Fail(file, QString::fromUtf8(error.what()));
  }
  const QByteArray& bytes = buffer.data();
  ReplaceWholeFile(QFileInfo(file).filesystemFilePath(),
                   {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

QString RequireExtension(const QString& file, const QStringList& extensions, const QString& what) {
  const QString extension = QFileInfo(file).suffix().toLower();
  if (extensions.contains(extension)) return extension;
  Fail(file, what + QStringLiteral(" is saved as .") + extensions.join(QStringLiteral(", .")));
}

QStringList ChartFileEndings() {
  QStringList extensions = {QStringLiteral("bmp"), QStringLiteral("png")};
  if (FindSvgWriter() != nullptr) extensions.append(QStringLiteral("svg"));
  extensions.append(QStringLiteral("pdf"));
  return extensions;
}

void SaveChartFile(ResultPlot& plot, const QSize& size, const QString& file) {
  const QString extension = RequireExtension(file, ChartFileEndings(), QStringLiteral("a chart"));
  SaveWhole(file, [&](QIODevice& device) {
    if (extension == u"pdf") return WritePdf(plot, size, device);
    if (extension == u"svg") return FindSvgWriter()(plot, size, device);
    WritePicture(plot, size, device, extension == u"bmp" ? "BMP" : "PNG");
  });
}

void BeginPages(QCPPainter& painter, QPagedPaintDevice& device) {
  if (!painter.begin(&device)) throw std::runtime_error("the page could not be started");
  painter.setMode(QCPPainter::pmVectorized);
  const double scale = device.logicalDpiX() / kUnitsPerInch;
  painter.scale(scale, scale);
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

void SavePages(const QString& file, const QString& title,
               const std::function<void(QPagedPaintDevice& device)>& print) {
  SaveWhole(file, [&](QIODevice& device) {
    QPdfWriter writer(&device);
    writer.setTitle(title);
    print(writer);
  });
}

}  // namespace velumar
