#include <stdexcept>

#include "resultchart/svg_file.h"

namespace velumar {

bool SvgOffered() { return false; }

void WriteSvg(ResultPlot&, const QSize&, QIODevice&) {
  throw std::runtime_error("SVG can't be written on this system; take PDF for vectors");
}

}  // namespace velumar
