#include "charthost/view/pointer_tags.h"

#include <algorithm>
#include <cmath>

namespace velumar {

PointerTags::PointerTags(QCPItemText* value, QCPItemText* date) : value_(value), date_(date) {
  date_->setPositionAlignment(Qt::AlignHCenter | Qt::AlignTop);
}

void PointerTags::SetColours(const Palette& colours) {
  for (QCPItemText* const tag : {value_, date_}) {
    tag->setFont(value_->parentPlot()->font());
    tag->setBrush(colours.tag);
    tag->setColor(colours.on_tag);
  }
}

void PointerTags::ShowValue(const QString& text, double y, const QRect& area,
                            QCPAxis::AxisType side, const QCPItemText& last) {
  double place = y;
  if (last.visible()) {
    const double height = last.bottom->pixelPosition().y() - last.top->pixelPosition().y() + 1;
    const double last_y = last.position->pixelPosition().y();
    if (std::abs(y - last_y) < height) place = y < last_y ? last_y - height : last_y + height;
  }
  value_->setText(text);
  const bool at_left = side == QCPAxis::atLeft;
  value_->setPositionAlignment((at_left ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  value_->position->setCoords(at_left ? area.left() - 1 : area.right() + 1, place);
  value_->setVisible(true);
}

void PointerTags::ShowDate(const QString& text, double x, const QRect& area) {
  const int half = QFontMetrics(date_->font()).horizontalAdvance(text) / 2 + 5;
  const int leftmost = area.left() + half;
  const double middle = std::clamp<double>(x, leftmost, std::max(leftmost, area.right() - half));
  date_->setText(text);
  date_->position->setCoords(middle, area.bottom() + 2);
  date_->setVisible(true);
}

}  // namespace velumar
