#include "charthost/view/position_marks.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "charthost/bar_text.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

constexpr double kArrowPixels = 7;  // half its width
constexpr int kTagOpacity = 170;

// Buys are a long entry and a short exit.
bool Buys(const OrderMark& order) { return order.is_long == order.entry; }

std::size_t ArrowIndex(bool earlier, bool buys, bool entry) {
  return (earlier ? 4U : 0U) + (buys ? 0U : 2U) + (entry ? 0U : 1U);
}

// The tip is at (0, 0), below it the arrow up, above it the arrow down.
QPainterPath Arrow(bool up) {
  const double length = up ? 1.6 * kArrowPixels : -1.6 * kArrowPixels;
  QPainterPath path;
  path.moveTo(0, 0);
  path.lineTo(kArrowPixels, length);
  path.lineTo(-kArrowPixels, length);
  path.closeSubpath();
  return path;
}

// True for the lower one of two lines, whose tag is below it, so that neither tag covers the other.
bool IsLower(const HeldLine& line, const std::vector<HeldLine>& all) {
  return std::any_of(all.begin(), all.end(), [&line](const HeldLine& other) {
    return other.is_long != line.is_long &&
           (line.price < other.price || (line.price == other.price && line.is_long));
  });
}

// "2.5", without trailing zeros.
QString QuantityText(double quantity) { return QString::number(quantity, 'g', 7); }

}  // namespace

PositionMarks::PositionMarks(QCustomPlot& plot, QCPAxisRect& prices, QCPAxis& bars)
    : prices_(prices) {
  QCPAxis* const values = prices.axis(QCPAxis::atRight);
  for (QCPGraph*& arrow : arrows_) {
    arrow = new QCPGraph(&bars, values);
    arrow->setLineStyle(QCPGraph::lsNone);
    arrow->setSelectable(QCP::stNone);
    arrow->setLayer(QStringLiteral("overlay"));  // above the lines
  }
  for (HeldMark& held : held_) {
    held = {new QCPItemLine(&plot), new QCPItemText(&plot)};
    held.tag->setPadding(QMargins(5, 1, 5, 1));
    held.tag->setLayer(QStringLiteral("overlay"));  // above the arrows
    for (QCPItemPosition* const place : {held.line->start, held.line->end, held.tag->position}) {
      place->setAxisRect(&prices);
      place->setAxes(&bars, values);
      place->setTypeX(QCPItemPosition::ptAxisRectRatio);
      place->setTypeY(QCPItemPosition::ptPlotCoords);
    }
    held.line->setAntialiased(false);
  }
  StyleArrows();
}

void PositionMarks::SetColours(const Palette& colours) {
  colours_ = colours;
  StyleArrows();
}

void PositionMarks::StyleArrows() {
  for (std::size_t i = 0; i < arrows_.size(); ++i) {
    const bool earlier = i >= 4;
    const bool buys = i % 4 < 2;
    const bool entry = i % 2 == 0;
    const QColor colour = earlier ? colours_.muted : buys ? colours_.up : colours_.down;
    const QBrush fill(entry ? colour : colours_.field);
    // A frame in the colour of the ground keeps the arrow apart from its candle.
    const QPen frame(entry ? colours_.field : colour, entry ? 1 : 2);
    arrows_[i]->setScatterStyle(QCPScatterStyle(Arrow(buys), frame, fill, 6));
  }
}

void PositionMarks::Show(const ChartModel& model) {
  for (const HeldMark& held : held_) {
    held.line->setVisible(false);
    held.tag->setVisible(false);
  }
  ShowOrders(model);
  if (!model.Options().positions) return;
  for (const HeldLine& held : positions_.held) ShowHeld(held, model);
}

// Orders at bars that the chart doesn't have yet wait for them.
void PositionMarks::ShowOrders(const ChartModel& model) {
  std::array<QVector<QCPGraphData>, 8> points;
  if (model.Options().positions) {
    for (const OrderMark& order : positions_.orders) {
      const std::optional<int> bar = BarOfStored(model.Series(), order.bar);
      const bool drawable =
          bar && std::isfinite(order.price) && (!model.Logarithmic() || order.price > 0);
      if (drawable) {
        points[ArrowIndex(order.earlier, Buys(order), order.entry)].append(
            {double(*bar), order.price});
      }
    }
  }
  for (std::size_t i = 0; i < points.size(); ++i) arrows_[i]->data()->set(points[i]);
}

void PositionMarks::ShowHeld(const HeldLine& held, const ChartModel& model) {
  const HeldMark& mark = held_[held.is_long ? 0 : 1];
  if (!prices_.axis(QCPAxis::atRight)->range().contains(held.price)) return;
  const QColor colour = held.is_long ? colours_.up : colours_.down;
  mark.line->setPen(QPen(colour, 1.5, Qt::DashLine));
  mark.line->start->setCoords(0, held.price);
  mark.line->end->setCoords(1, held.price);
  mark.line->setVisible(true);
  mark.tag->setText(QStringLiteral("%1 %2 @ %3   %4")
                        .arg(held.is_long ? QStringLiteral("Long") : QStringLiteral("Short"),
                             QuantityText(held.quantity),
                             ToQt(PriceText(held.price, model.Series().decimals)),
                             ToQt(MoneyText(held.profit))));
  mark.tag->setColor(colour);
  QColor ground = colours_.field;
  ground.setAlpha(kTagOpacity);
  mark.tag->setBrush(ground);
  mark.tag->setPositionAlignment(Qt::AlignLeft |
                                 (IsLower(held, positions_.held) ? Qt::AlignTop : Qt::AlignBottom));
  mark.tag->position->setCoords(0, held.price);
  mark.tag->setVisible(true);
}

}  // namespace velumar
