#include "resultchart/result_plot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "resultchart/chart_colours.h"
#include "resultchart/chart_tickers.h"
#include "resultchart/chart_wall.h"
#include "resultchart/portfolio_series.h"

namespace velumar {

namespace {

constexpr int kAroundPlot = 14;
constexpr int kPlainPixels = 12;
constexpr int kTitlePixels = 16;

QPointF DepthFor(const QSize& size) {
  const double across = std::clamp(size.width() * 0.035, 8.0, 26.0);
  return {std::round(across), -std::round(across * 0.7)};
}

}  // namespace

ResultPlot::ResultPlot() {
  setBackground(QBrush(chart_colours::kGround));
  plotLayout()->clear();
  plotLayout()->setMargins(QMargins(kAroundPlot, kAroundPlot / 2, kAroundPlot, kAroundPlot));
  title_ = new QCPTextElement(this);
  plotLayout()->addElement(0, 0, title_);
  rect_ = new QCPAxisRect(this, false);
  QCPAxis* const places = rect_->addAxis(QCPAxis::atBottom);
  QCPAxis* const values = rect_->addAxis(QCPAxis::atLeft);
  const auto dates = QSharedPointer<DateTicker>::create(*places, scene_);
  const auto money = QSharedPointer<MoneyTicker>::create(*values, scene_);
  places->setTicker(dates);
  values->setTicker(money);
  plotLayout()->addElement(1, 0, rect_);
  new ChartWall(rect_, scene_, *dates, *money);
  new PortfolioSeries(places, values, scene_);
  SetFonts();
  StyleAxes();
  SetPoints({});
}

// In pixels: sizes in points would follow the printer's, not the picture's.
void ResultPlot::SetFonts() {
  QFont plain = font();
  plain.setPixelSize(kPlainPixels);
  setFont(plain);
  QFont heading = plain;
  heading.setPixelSize(kTitlePixels);
  heading.setBold(true);
  title_->setFont(heading);
  title_->setTextColor(chart_colours::kText);
}

void ResultPlot::SetPoints(ChartPoints points) {
  scene_.points = std::move(points);
  const std::size_t count = scene_.points.values.size();
  SetTitles(count > 0);
  // Half a place of room beside the first point and the last.
  rect_->axis(QCPAxis::atBottom)->setRange(-0.5, std::max(1.0, static_cast<double>(count)) - 0.5);
}

void ResultPlot::SetTitles(bool with_points) {
  title_->setText(with_points ? QStringLiteral("Portfolio Graph.") : QString());
  QCPAxis* const places = rect_->axis(QCPAxis::atBottom);
  QCPAxis* const values = rect_->axis(QCPAxis::atLeft);
  places->setLabel(with_points ? QStringLiteral("Action Date") : QString());
  values->setLabel(with_points ? QStringLiteral("Portfolio") : QString());
  places->setVisible(with_points);
  values->setVisible(with_points);
}

void ResultPlot::StyleAxes() {
  for (QCPAxis* const axis : rect_->axes()) {
    axis->setLayer(QStringLiteral("axes"));
    axis->grid()->setVisible(false);
    axis->setSubTicks(false);
    axis->setTickLength(0, 4);
    axis->setBasePen(QPen(chart_colours::kFrame, 0));
    axis->setTickPen(QPen(chart_colours::kFrame, 0));
    axis->setTickLabelColor(chart_colours::kFaint);
    axis->setTickLabelFont(font());
    axis->setLabelColor(chart_colours::kText);
    axis->setLabelFont(font());
    axis->setLabelPadding(6);
    axis->setTickLabelPadding(5);
  }
}

// Depth follows the size, values what is in sight.
void ResultPlot::Arrange(const QSize& size) {
  scene_.depth = HasDepth(scene_.type) ? DepthFor(size) : QPointF();
  const QPoint depth = scene_.depth.toPoint();
  rect_->setMinimumMargins(QMargins(8, 10 - depth.y(), 14 + depth.x(), 8));
  const QCPRange places = rect_->axis(QCPAxis::atBottom)->range();
  const ValueSpan values =
      FittingValues(scene_.points.values, {places.lower, places.upper}, StandsOnBase(scene_.type));
  rect_->axis(QCPAxis::atLeft)->setRange(values.lower, values.upper);
  // The marks are made before the rectangle has its size, and go by the size that it has: so it
  // gets it here.
  plotLayout()->setOuterRect(QRect(QPoint(), size));
  for (const auto phase :
       {QCPLayoutElement::upPreparation, QCPLayoutElement::upMargins, QCPLayoutElement::upLayout}) {
    plotLayout()->update(phase);
  }
}

void ResultPlot::PaintTo(QCPPainter& painter, const QSize& size) {
  Arrange(size);
  toPainter(&painter, size.width(), size.height());
}

}  // namespace velumar
