#pragma once

#include <QPageLayout>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <functional>

class QCPPainter;
class QIODevice;
class QPagedPaintDevice;

namespace velumar {

class ResultPlot;

// Charts, reports and pictures as files. A file is replaced only once it is completely written.
// Everything that fails throws std::runtime_error with the file's name and the reason.

// Writes a file with the output of `write`; a runtime_error of `write` counts as a failure.
void SaveWhole(const QString& file, const std::function<void(QIODevice& device)>& write);

// The extension of the file's name in lower case; throws if it isn't one of `extensions`:
// "r.txt: a report is saved as .pdf".
QString RequireExtension(const QString& file, const QStringList& extensions, const QString& what);

// The extensions that a chart can be saved with, "bmp" first; "svg" if the toolkit can write it.
QStringList ChartFileEndings();

// Draws a chart as SVG; null if the toolkit can't.
using SvgWriter = void (*)(ResultPlot& plot, const QSize& size, QIODevice& device);
SvgWriter FindSvgWriter();

// Saves the chart at that size in the format of the extension.
void SaveChartFile(ResultPlot& plot, const QSize& size, const QString& file);

// A sheet of A4 with a chart.
struct ChartPage {
  QRectF place;  // of the chart from the sheet's corner in inches; cut off outside the sheet
  QPageLayout::Orientation orientation = QPageLayout::Portrait;
  int copies = 1;
};

// Begins to draw vectors in units of 1/96 inch. Throws std::runtime_error if that is impossible.
void BeginPages(QCPPainter& painter, QPagedPaintDevice& device);

// Prints one page for each copy. Throws std::runtime_error if a page can't be started.
void PrintChartPages(ResultPlot& plot, const ChartPage& page, QPagedPaintDevice& device);

// Writes a PDF file with the pages that `print` draws.
void SavePages(const QString& file, const QString& title,
               const std::function<void(QPagedPaintDevice& device)>& print);

}  // namespace velumar
