#include "charthost/view/plot_panes.h"

#include <cmath>

#include "charthost/bar_text.h"
#include "charthost/view/bar_plottables.h"
#include "charts/qt_text.h"
#include "charts/value_ticker.h"

namespace velumar {

PlotPanes::PlotPanes(const ChartModel& model, Surroundings surroundings)
    : model_(model),
      surroundings_(std::move(surroundings)),
      margins_(new QCPMarginGroup(surroundings_.plot)) {
  prices_ = Add();
  volumes_ = Add();
  constexpr QSize kLeast(50, 18);  // in tiles on a small screen the prices get the room
  volumes_->setMinimumSize(kLeast);
  QCPAxis* const prices = prices_->axis(QCPAxis::atRight);
  price_ticker_ = QSharedPointer<ValueTicker>::create(
      *prices, 52, [this](double value, double) { return ToQt(model_.AxisText(value)); });
  prices->setTicker(price_ticker_);
  QCPAxis* const volumes = volumes_->axis(QCPAxis::atRight);
  volumes->setTicker(QSharedPointer<ValueTicker>::create(
      *volumes, 34, [](double value, double) { return ToQt(ShortVolumeText(value)); }));
  indicators_ = std::make_unique<IndicatorPlots>(
      model_, IndicatorPlots::Surroundings{surroundings_.plot, prices_, volumes_,
                                           surroundings_.legend_layer, [this] { return Add(); }});
}

QCPAxisRect* PlotPanes::Add() {
  QCPAxisRect* const rect = surroundings_.add_rect();
  rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins_);
  rect->axis(QCPAxis::atLeft)->grid()->setVisible(false);
  QCPAxis* const bars = rect->axis(QCPAxis::atBottom);
  if (!dates_) dates_ = QSharedPointer<BarDateTicker>::create(*bars, model_);
  bars->setTicker(dates_);
  new StrongGrid(*surroundings_.plot, *rect, *dates_);
  all_.push_back(rect);
  return rect;
}

QRect PlotPanes::Area() const {
  return panes_.empty() ? QRect() : prices_->rect().united(panes_.back()->rect());
}

QCPAxis::AxisType PlotPanes::ValueSide() const {
  return model_.Options().axis_at_left ? QCPAxis::atLeft : QCPAxis::atRight;
}

void PlotPanes::ShowValues(QCPAxisRect& pane, bool shown) const {
  constexpr int kLeastMargin = 48;
  QCPAxis* const right = pane.axis(QCPAxis::atRight);
  QCPAxis* const left = pane.axis(QCPAxis::atLeft);
  const bool at_left = ValueSide() == QCPAxis::atLeft;
  right->setTickLabels(shown && !at_left);
  right->setTicks(shown && !at_left);
  left->setVisible(shown && at_left);
  left->setTicker(right->ticker());
  left->setScaleType(right->scaleType());
  left->setRange(right->range());
  pane.setMinimumMargins(at_left ? QMargins(kLeastMargin, 1, 1, 1)
                                 : QMargins(1, 1, kLeastMargin, 1));
}

std::vector<QCPAxisRect*> PlotPanes::Wanted() const {
  std::vector<QCPAxisRect*> panes = {prices_};
  if (model_.ShowsVolume()) panes.push_back(volumes_);
  for (QCPAxisRect* const pane : indicators_->Panes()) panes.push_back(pane);
  return panes;
}

QList<double> PlotPanes::Heights() const {
  QList<double> heights = {100};
  if (model_.ShowsVolume()) heights.append(model_.Options().volume_height);
  for (std::size_t i = 0; i < indicators_->Panes().size(); ++i) {
    heights.append(indicators_->Of(i).choice.height);
  }
  return heights;
}

// The lowest pane shows the dates.
void PlotPanes::Arrange() {
  QCPLayoutGrid& layout = *surroundings_.plot->plotLayout();
  indicators_->Arrange();
  dates_->Forget();
  std::vector<QCPAxisRect*> wanted = Wanted();
  if (wanted != panes_ || layout.elementCount() != static_cast<int>(wanted.size())) {
    panes_ = std::move(wanted);
    for (QCPAxisRect* const rect : all_) {
      if (rect->layout() != nullptr) layout.take(rect);
    }
    layout.simplify();
    for (std::size_t i = 0; i < panes_.size(); ++i) {
      layout.addElement(static_cast<int>(i), 0, panes_[i]);
      panes_[i]->axis(QCPAxis::atBottom)->setTickLabels(i + 1 == panes_.size());
    }
    volumes_->setVisible(model_.ShowsVolume());
  }
  layout.setRowStretchFactors(Heights());
}

void PlotPanes::SetRanges() {
  constexpr double kVolumeRoom = 1.12;
  QCPAxis* const prices = prices_->axis(QCPAxis::atRight);
  prices->setScaleType(model_.Logarithmic() ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
  prices->setRange(model_.Prices().lower, model_.Prices().upper);
  const double highest = model_.HighestVolume();
  volumes_->axis(QCPAxis::atRight)->setRange(0, highest > 0 ? highest * kVolumeRoom : 1);
  const std::optional<double> base = model_.PercentBase();
  price_ticker_->SetUnit(base.value_or(0), base.value_or(100) / 100);
  const bool empty = model_.Series().size() == 0;
  prices->grid()->setVisible(!empty);
  indicators_->SetRanges();
  for (QCPAxisRect* const pane : panes_) ShowValues(*pane, pane != prices_ || !empty);
}

QString PlotPanes::ValueText(QPointF pixel) const {
  const auto found = std::ranges::find_if(
      panes_, [&](const QCPAxisRect* pane) { return pane->rect().contains(pixel.toPoint()); });
  if (found == panes_.end()) return {};
  const double value = (*found)->axis(QCPAxis::atRight)->pixelToCoord(pixel.y());
  const int decimals = model_.Series().decimals;
  if (*found == prices_) return ToQt(model_.AxisText(value));
  if (*found == volumes_) return ToQt(ShortVolumeText(std::max(0.0, value)));
  const auto place = static_cast<std::size_t>(found - panes_.begin());
  const ModelIndicator& indicator = indicators_->Of(place - (model_.ShowsVolume() ? 2 : 1));
  return ToQt(IndicatorValueText(value, indicator.row->format, decimals));
}

std::optional<std::size_t> PlotPanes::LineAt(QPointF pixel) const {
  constexpr int kReach = 3;
  for (std::size_t i = 0; i + 1 < panes_.size(); ++i) {
    const bool near = pixel.y() >= panes_[i]->rect().bottom() - kReach &&
                      pixel.y() <= panes_[i + 1]->rect().top() + kReach;
    if (near && pixel.x() <= prices_->rect().right()) return i;
  }
  return std::nullopt;
}

bool PlotPanes::Press(const QMouseEvent& event) {
  if (event.button() == Qt::LeftButton) dragged_line_ = LineAt(event.position());
  return dragged_line_.has_value();
}

// The lowest pane has the dates below it, which count as its own.
void PlotPanes::Move(const QMouseEvent& event) {
  constexpr double kLeastPixels = 30;
  if (!dragged_line_) return;
  const std::size_t pane = *dragged_line_;
  std::vector<double> heights;
  for (const QCPAxisRect* const rect : panes_) heights.push_back(rect->outerRect().height());
  const double both = heights[pane] + heights[pane + 1];
  if (both < 2 * kLeastPixels) return;
  heights[pane] = std::clamp(event.position().y() - panes_[pane]->outerRect().top(), kLeastPixels,
                             both - kLeastPixels);
  heights[pane + 1] = both - heights[pane];
  const auto percent = [&heights](std::size_t i) {
    return std::clamp(static_cast<int>(std::lround(100 * heights[i] / heights[0])),
                      ChosenIndicator::kLeastHeight, ChosenIndicator::kMostHeight);
  };
  ChartOptions options = model_.Options();
  std::size_t next = 1;
  if (model_.ShowsVolume()) options.volume_height = percent(next++);
  for (std::size_t i = 0; next < panes_.size(); ++i) {
    options.indicators[indicators_->Of(i).place].height = percent(next++);
  }
  surroundings_.heights_changed(options);
}

void PlotPanes::Release(const QMouseEvent& /*event*/) { dragged_line_.reset(); }

std::optional<Qt::CursorShape> PlotPanes::CursorAt(QPointF pixel) const {
  return LineAt(pixel) ? std::optional(Qt::SplitVCursor) : std::nullopt;
}

}  // namespace velumar
