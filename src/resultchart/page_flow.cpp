#include "resultchart/page_flow.h"

#include <qcustomplot.h>

#include <QTextLayout>
#include <utility>

#include "charts/qt_text.h"
#include "resultchart/page_style.h"

namespace velumar {

PageFlow::PageFlow(std::vector<PageGroup> groups, double room) {
  double top = 0;
  const auto make_room = [&](double height) {
    if (!pages_.empty() && top + height <= room) return;
    pages_.emplace_back();
    top = 0;
  };
  for (PageGroup& group : groups) {
    double height = 0;
    for (const PageBlock& block : group.blocks) height += block.height;
    make_room(height);
    for (PageBlock& block : group.blocks) {
      make_room(block.height);
      const double block_height = block.height;
      pages_.back().push_back({std::move(block), top});
      top += block_height;
    }
    top += group.after;
  }
}

void PageFlow::Paint(QCPPainter& painter, std::size_t page, const QRectF& place) const {
  for (const Placed& placed : pages_.at(page)) {
    if (!placed.block.paint) continue;
    placed.block.paint(
        painter, {place.left(), place.top() + placed.top, place.width(), placed.block.height});
  }
}

PageBlock HeadingBlock(const QString& text, int pixels) {
  constexpr double kBelowRule = 3;
  return {pixels + 12.0, [text, pixels](QCPPainter& painter, const QRectF& whole) {
            const QRectF place = whole.adjusted(0, 0, 0, -kBelowRule);
            painter.setPen(kInk);
            painter.setFont(Face(pixels, true));
            painter.drawText(
                place, Qt::AlignLeft | Qt::AlignVCenter,
                QFontMetricsF(painter.font()).elidedText(text, Qt::ElideMiddle, place.width()));
            painter.setPen(QPen(kRule, 0.5));
            painter.drawLine(place.bottomLeft(), place.bottomRight());
          }};
}

std::vector<PageBlock> TextBlocks(const std::string& text, double width, double left) {
  const double height = QFontMetricsF(Face(kTextPixels)).height();
  std::vector<PageBlock> blocks;
  for (const QString& line : WrappedText(text, width)) {
    blocks.push_back({height, [line, left](QCPPainter& painter, const QRectF& place) {
                        painter.setPen(kInk);
                        painter.setFont(Face(kTextPixels));
                        painter.drawText(place.adjusted(left, 0, 0, 0),
                                         Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, line);
                      }});
  }
  return blocks;
}

QStringList WrappedText(const std::string& text, double width) {
  QString broken = ToQt(text);
  broken.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
  QTextLayout layout(broken, Face(kTextPixels));
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines.append(broken.mid(line.textStart(), line.textLength()));
  }
  layout.endLayout();
  return lines;
}

}  // namespace velumar
