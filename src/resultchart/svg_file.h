#pragma once

#include <QIODevice>
#include <QSize>

namespace velumar {

class ResultPlot;

bool SvgOffered();
void WriteSvg(ResultPlot& plot, const QSize& size, QIODevice& device);

}  // namespace velumar
