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
constexpr std::size_t kMostPlanLines = 40;

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
    : plot_(plot), prices_(prices), bars_(bars) {
  QCPAxis* const values = prices.axis(QCPAxis::atRight);
  for (QCPGraph*& arrow : arrows_) {
    arrow = new QCPGraph(&bars, values);
    arrow->setLineStyle(QCPGraph::lsNone);
    arrow->setSelectable(QCP::stNone);
    arrow->setLayer(QStringLiteral("overlay"));  // above the lines
  }
  for (HeldMark& held : held_) held = NewMark();
  StyleArrows();
}

PositionMarks::HeldMark PositionMarks::NewMark() {
  const HeldMark mark = {new QCPItemLine(&plot_), new QCPItemText(&plot_)};
  mark.tag->setPadding(QMargins(5, 1, 5, 1));
  mark.tag->setLayer(QStringLiteral("overlay"));  // above the arrows
  for (QCPItemPosition* const place : {mark.line->start, mark.line->end, mark.tag->position}) {
    place->setAxisRect(&prices_);
    place->setAxes(&bars_, prices_.axis(QCPAxis::atRight));
    place->setTypeX(QCPItemPosition::ptAxisRectRatio);
    place->setTypeY(QCPItemPosition::ptPlotCoords);
  }
  mark.line->setAntialiased(false);
  return mark;
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
  const auto hide = [](const HeldMark& mark) {
    mark.line->setVisible(false);
    mark.tag->setVisible(false);
  };
  std::ranges::for_each(held_, hide);
  std::ranges::for_each(plans_, hide);
  ShowOrders(model);
  if (!model.Options().positions) return;
  for (const HeldLine& held : positions_.held) ShowHeld(held, model);
  const std::size_t lines = std::min(positions_.plans.size(), kMostPlanLines);
  while (plans_.size() < lines) plans_.push_back(NewMark());
  for (std::size_t i = 0; i < lines; ++i) ShowPlan(positions_.plans[i], plans_[i], model);
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

// A line that begins near the right edge has its tag at that edge, where all of it is seen.
void PositionMarks::ShowPlan(const PlanLine& line, const HeldMark& mark, const ChartModel& model) {
  constexpr double kTagRoom = 0.75;  // of the window, to the left of a tag
  const std::optional<int> bar = BarOfStored(model.Series(), line.bar);
  if (!bar || !prices_.axis(QCPAxis::atRight)->range().contains(line.price)) return;
  const QColor colour = line.stop ? colours_.down : colours_.up;
  mark.line->setPen(
      QPen(colour, line.reached ? 2.5 : 1, line.waits ? Qt::DashLine : Qt::SolidLine));
  mark.line->start->setTypeX(QCPItemPosition::ptPlotCoords);
  mark.line->start->setCoords(*bar, line.price);
  mark.line->end->setCoords(1, line.price);
  mark.line->setVisible(true);
  mark.tag->setText((line.stop ? QStringLiteral("Stop %1%2") : QStringLiteral("Target %1%2"))
                        .arg(ToQt(PriceText(line.price, model.Series().decimals)),
                             line.reached ? QStringLiteral(" reached") : QString()));
  QColor ground = line.reached ? colour : colours_.field;
  if (!line.reached) ground.setAlpha(kTagOpacity);
  mark.tag->setBrush(ground);
  mark.tag->setColor(line.reached ? colours_.field : colour);
  const ViewWindow& window = model.Window();
  const bool at_edge = *bar > window.First() + kTagRoom * window.Span();
  mark.tag->position->setTypeX(at_edge ? QCPItemPosition::ptAxisRectRatio
                                       : QCPItemPosition::ptPlotCoords);
  mark.tag->position->setCoords(at_edge ? 1 : std::max<double>(*bar, window.First()), line.price);
  const int newest = model.Series().size() - 1;
  const bool above = newest < 0 || line.price >= model.Series().closes[newest];
  mark.tag->setPositionAlignment((at_edge ? Qt::AlignRight : Qt::AlignLeft) |
                                 (above ? Qt::AlignBottom : Qt::AlignTop));
  mark.tag->setVisible(true);
}

}  // namespace velumar
