#include "charthost/view/drawing_items.h"

#include "charts/qt_text.h"

namespace velumar {
namespace {

constexpr double kHandle = 4;  // half its width, in pixels
constexpr int kFillOpacity = 28;

}  // namespace

template <typename Item>
Item& DrawingItems::Next(std::vector<Item*>& items, std::size_t& used) {
  if (used == items.size()) {
    auto* const item = new Item(&plot_);
    item->setLayer(QStringLiteral("overlay"));
    item->setSelectable(false);
    item->setClipAxisRect(&area_);
    item->setClipToAxisRect(true);
    for (QCPItemPosition* const place : item->positions()) {
      place->setType(QCPItemPosition::ptAbsolute);
    }
    items.push_back(item);
  }
  Item& item = *items[used++];
  item.setVisible(true);
  return item;
}

void DrawingItems::Show(const std::vector<ShownShape>& shapes, const Palette& colours) {
  used_lines_ = used_rects_ = used_texts_ = used_handles_ = 0;
  for (const ShownShape& shown : shapes) {
    const QColor& colour = colours.indicators[static_cast<std::size_t>(shown.colour)];
    ShowFill(shown.shape, colour);
    ShowLines(shown, colour);
    ShowLabels(shown.shape, colour);
    if (shown.selected) ShowHandles(shown.shape, colour, colours.field);
  }
  const auto hide = [](const auto& items, std::size_t from) {
    for (; from < items.size(); ++from) items[from]->setVisible(false);
  };
  hide(lines_, used_lines_);
  hide(rects_, used_rects_);
  hide(texts_, used_texts_);
  hide(handles_, used_handles_);
}

// A thin line is drawn many times as fast as a wider one, and one along the pixels needs no soft
// edges.
void DrawingItems::ShowLines(const ShownShape& shown, const QColor& colour) {
  for (const Segment& line : shown.shape.lines) {
    const bool straight = line.from.x == line.to.x || line.from.y == line.to.y;
    QCPItemLine& item = Next(lines_, used_lines_);
    item.setPen(QPen(colour, shown.selected ? 2.5 : 1));
    item.setAntialiased(!straight);
    item.setHead(shown.shape.arrow_head ? QCPLineEnding(QCPLineEnding::esSpikeArrow, 9, 12)
                                        : QCPLineEnding());
    item.start->setCoords(line.from.x, line.from.y);
    item.end->setCoords(line.to.x, line.to.y);
  }
}

void DrawingItems::ShowFill(const Shape& shape, QColor colour) {
  if (!shape.fill) return;
  colour.setAlpha(kFillOpacity);
  QCPItemRect& item = Next(rects_, used_rects_);
  item.setPen(Qt::NoPen);
  item.setBrush(colour);
  item.topLeft->setCoords(shape.fill->left, shape.fill->top);
  item.bottomRight->setCoords(shape.fill->right, shape.fill->bottom);
}

void DrawingItems::ShowLabels(const Shape& shape, const QColor& colour) {
  for (const Shape::Label& label : shape.labels) {
    QCPItemText& item = Next(texts_, used_texts_);
    item.setFont(plot_.font());
    item.setColor(colour);
    item.setText(ToQt(label.text));
    item.setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
    item.position->setCoords(label.box.left, label.box.top);
  }
}

void DrawingItems::ShowHandles(const Shape& shape, const QColor& colour, const QColor& ground) {
  for (const Point& handle : shape.handles) {
    QCPItemEllipse& item = Next(handles_, used_handles_);
    item.setPen(QPen(colour, 1.5));
    item.setBrush(ground);
    item.topLeft->setCoords(handle.x - kHandle, handle.y - kHandle);
    item.bottomRight->setCoords(handle.x + kHandle, handle.y + kHandle);
  }
}

}  // namespace velumar
