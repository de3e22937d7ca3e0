#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>
#include <functional>

class QCPPainter;
class QIODevice;
class QPagedPaintDevice;

namespace velumar {

// Pictures and pages as files. A file is replaced only once it is completely written. Everything
// that fails throws std::runtime_error with the file's name and the reason.

// Pictures are laid out in units of 1/96 inch on paper.
inline constexpr double kUnitsPerInch = 96;

// A drawing that can be saved.
struct PlotPicture {
  QSize size;        // in logical pixels
  double scale = 1;  // pixels of a bitmap per logical pixel
  QColor ground;
  QString title;
  std::function<void(QCPPainter& painter)> paint;
};

// Writes a file with the output of `write`; a runtime_error of `write` counts as a failure.
void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write);

// The extension of the file's name in lower case; throws if it isn't one of `extensions`:
// "r.txt: a report is saved as .pdf".
QString RequireExtension(const QString& file, const QStringList& extensions, const QString& what);

// The extensions that a picture can be saved with, "bmp" first; "svg" if the toolkit can write it.
QStringList PictureFileEndings();

// Draws a picture as SVG; null if the toolkit can't.
using SvgWriter = void (*)(const PlotPicture& picture, QIODevice& device);
SvgWriter FindSvgWriter();

QImage BitmapOf(const PlotPicture& picture);
// Saves the picture in the format of the extension.
void SavePicture(const PlotPicture& picture, const QString& file);

// Begins to draw vectors in units of 1/96 inch. Throws std::runtime_error if that is impossible.
void BeginPages(QCPPainter& painter, QPagedPaintDevice& device);

// Writes a PDF file with the pages that `print` draws.
void SavePages(const QString& file, const QString& title,
               const std::function<void(QPagedPaintDevice& device)>& print);

}  // namespace velumar
