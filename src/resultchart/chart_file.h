#pragma once

#include <QString>
#include <QStringList>

namespace velumar {

class ResultPlot;

// The endings that a chart can be saved under, "bmp" first; "svg" where the toolkit can write it.
QStringList ChartFileEndings();

// Saves the chart at its size, in the form that the ending names. The file appears whole or not at
// all; an older one of that name stays until then. Throws std::runtime_error that names the file.
void SaveChartFile(ResultPlot& plot, const QSize& size, const QString& file);

}  // namespace velumar
