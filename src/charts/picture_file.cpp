#include "charts/picture_file.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QFileInfo>
#include <QPdfWriter>
#include <stdexcept>

#include "base/whole_file.h"

namespace velumar {
namespace {

[[noreturn]] void Fail(const QString& file, const QString& reason) {
  throw std::runtime_error((file + QStringLiteral(": ") + reason).toStdString());
}

void WritePdf(const PlotPicture& picture, QIODevice& device) {
  constexpr double kPointsPerInch = 72;
  QPdfWriter writer(&device);
  // Fonts in points are as large as on the screen.
  writer.setResolution(static_cast<int>(kUnitsPerInch));
  writer.setTitle(picture.title);
  const QSizeF points = QSizeF(picture.size) * (kPointsPerInch / kUnitsPerInch);
  writer.setPageLayout({QPageSize(points, QPageSize::Point), QPageLayout::Portrait, QMarginsF()});
  QCPPainter painter;
  BeginPages(painter, writer);
  picture.paint(painter);
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

QStringList PictureFileEndings() {
  QStringList extensions = {QStringLiteral("bmp"), QStringLiteral("png")};
  if (FindSvgWriter() != nullptr) extensions.append(QStringLiteral("svg"));
  extensions.append(QStringLiteral("pdf"));
  return extensions;
}

QImage BitmapOf(const PlotPicture& picture) {
  QImage bitmap(picture.size * picture.scale, QImage::Format_RGB32);
  if (bitmap.isNull()) throw std::runtime_error("not enough memory for the picture");
  bitmap.fill(picture.ground);
  QCPPainter painter;
  painter.begin(&bitmap);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.scale(picture.scale, picture.scale);
  picture.paint(painter);
  return bitmap;
}

void SavePicture(const PlotPicture& picture, const QString& file) {
  const QString extension = RequireExtension(file, PictureFileEndings(), QStringLiteral("a chart"));
  SaveWhole(file, [&](QIODevice& device) {
    if (extension == u"pdf") return WritePdf(picture, device);
    if (extension == u"svg") return FindSvgWriter()(picture, device);
    if (!BitmapOf(picture).save(&device, extension == u"bmp" ? "BMP" : "PNG")) {
      throw std::runtime_error("the picture could not be written");
    }
  });
}

void BeginPages(QCPPainter& painter, QPagedPaintDevice& device) {
  if (!painter.begin(&device)) throw std::runtime_error("the page could not be started");
  painter.setMode(QCPPainter::pmVectorized);
  const double scale = device.logicalDpiX() / kUnitsPerInch;
  painter.scale(scale, scale);
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
