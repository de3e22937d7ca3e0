#pragma once

#include <QString>

#include "resultchart/report.h"

class QPagedPaintDevice;

namespace velumar {

// Draws the report as vectors: an A4 page with run, figures, statistics and chart, and the orders
// on as many pages behind it as they take, those across. Throws std::runtime_error when a page
// can't be begun.
void PrintReport(const Report& report, QPagedPaintDevice& device);

// The same into a PDF file, which appears whole or not at all. Throws std::runtime_error that names
// the file.
void SaveReport(const Report& report, const QString& file);

}  // namespace velumar
