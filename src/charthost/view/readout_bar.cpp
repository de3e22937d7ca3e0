#include "charthost/view/readout_bar.h"

#include <QPainter>
#include <algorithm>

namespace velumar {
namespace {

constexpr int kMargin = 10;
constexpr int kItemGap = 14;
constexpr int kLabelGap = 4;

}  // namespace

ReadoutBar::ReadoutBar(QWidget* parent)
    : QWidget(parent), colours_(&Palette::Following(palette())) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ReadoutBar::SetColours(const Palette& colours) {
  colours_ = &colours;
  update();
}

void ReadoutBar::SetItems(std::vector<ReadoutItem> items) {
  items_ = std::move(items);
  widths_.resize(items_.size(), 0);
  for (std::size_t i = 0; i < items_.size(); ++i) {
    widths_[i] = std::max(widths_[i], ItemWidth(items_[i]));
  }
  FitHeight();
  update();
}

QFont ReadoutBar::ValueFont(const ReadoutItem& item) const {
  QFont value_font = font();
  value_font.setBold(item.bold);
  return value_font;
}

int ReadoutBar::ItemWidth(const ReadoutItem& item) const {
  const int label =
      item.label.isEmpty() ? 0 : fontMetrics().horizontalAdvance(item.label) + kLabelGap;
  return label + QFontMetrics(ValueFont(item)).horizontalAdvance(item.value);
}

int ReadoutBar::RowHeight() const { return fontMetrics().height() + 6; }

std::vector<QPoint> ReadoutBar::Places(int width) const {
  std::vector<QPoint> places;
  QPoint at(kMargin, 4);
  for (const int item_width : widths_) {
    if (at.x() > kMargin && at.x() + item_width > width - kMargin) {
      at = QPoint(kMargin, at.y() + RowHeight());
    }
    places.push_back(at);
    at.rx() += item_width + kItemGap;
  }
  return places;
}

int ReadoutBar::heightForWidth(int width) const {
  const std::vector<QPoint> places = Places(width);
  return (places.empty() ? 4 : places.back().y()) + RowHeight() + 4;
}

QSize ReadoutBar::minimumSizeHint() const {
  const int widest = widths_.empty() ? 0 : *std::max_element(widths_.begin(), widths_.end());
  return {widest + 2 * kMargin, RowHeight() + 8};
}

void ReadoutBar::FitHeight() {
  const int height = heightForWidth(width());
  if (height != minimumHeight()) setFixedHeight(height);
}

void ReadoutBar::resizeEvent(QResizeEvent*) { FitHeight(); }

void ReadoutBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintTo(painter);
}

void ReadoutBar::PaintTo(QPainter& painter) const {
  painter.fillRect(rect(), colours_->field);
  const std::vector<QPoint> places = Places(width());
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const ReadoutItem& item = items_[i];
    QRect cell(places[i], QSize(widths_[i] + kItemGap, RowHeight()));
    painter.setFont(font());
    painter.setPen(colours_->muted);
    painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter, item.label);
    if (!item.label.isEmpty()) {
      cell.setLeft(cell.left() + fontMetrics().horizontalAdvance(item.label) + kLabelGap);
    }
    painter.setFont(ValueFont(item));
    painter.setPen(item.colour);
    painter.drawText(cell, Qt::AlignLeft | Qt::AlignVCenter, item.value);
  }
}

}  // namespace velumar
