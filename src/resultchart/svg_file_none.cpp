#include <stdexcept>

#include "resultchart/chart_file.h"

namespace velumar {

bool SvgOffered() { return false; }

void WriteSvg(ResultPlot&, const QSize&, QIODevice&) {
  throw std::runtime_error("SVG is not available on this system; save as PDF instead");
}

}  // namespace velumar
