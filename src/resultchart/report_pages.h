#pragma once

#include <QString>

#include "resultchart/report.h"

class QPagedPaintDevice;

namespace velumar {

// Draws the report as vectors: an A4 page with run, figures, statistics and chart, then the orders
// on as many landscape pages as they need. Their fourteen columns don't fit upright; the type
// shrinks, to six units of 1/96 inch at least, until the longest text of each column fits. Throws
// std::runtime_error if a page can't be started.
void PrintReport(const Report& report, QPagedPaintDevice& device);

// Saves the report as a PDF file; see SaveWhole. Throws std::runtime_error with the file's name.
void SaveReport(const Report& report, const QString& file);

}  // namespace velumar
