#pragma once

#include <QPageLayout>
#include <QRectF>

#include "charts/picture_file.h"

namespace velumar {

class ResultPlot;

// Saves the chart at that size in the format of the extension: see SavePicture.
void SaveChartFile(ResultPlot& plot, const QSize& size, const QString& file);

// A sheet of A4 with a chart.
struct ChartPage {
  QRectF place;  // of the chart from the sheet's corner in inches; cut off outside the sheet
  QPageLayout::Orientation orientation = QPageLayout::Portrait;
  int copies = 1;
};

// Prints one page for each copy. Throws std::runtime_error if a page can't be started.
void PrintChartPages(ResultPlot& plot, const ChartPage& page, QPagedPaintDevice& device);

}  // namespace velumar
