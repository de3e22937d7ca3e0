#include "charthost/view/chart_layers.h"

#include <algorithm>
#include <cmath>

namespace velumar {
namespace {

// Places columns on whole pixels of the screen, also where the screen has more of them than the
// window system counts, so that every edge is sharp.
class PixelGrid {
 public:
  explicit PixelGrid(double ratio) : ratio_(ratio) {}

  double Thin() const { return std::max(1.0, std::round(ratio_)) / ratio_; }
  double Snap(double at) const { return std::round(at * ratio_) / ratio_; }

  // The width of a body that leaves a thin line in its exact middle.
  double BodyWidth(double width) const {
    const double thin = std::max(1.0, std::round(ratio_));
    const double beside = std::max(0.0, std::floor((width * ratio_ - thin) / 2));
    return (thin + 2 * beside) / ratio_;
  }

  // A line or body around `middle`.
  QRectF Column(double middle, double width, double top, double bottom) const {
    const double left = Snap(middle - Thin() / 2) + Thin() / 2 - width / 2;
    const double snapped_top = Snap(top);
    const double height = std::max(Thin(), Snap(bottom) - snapped_top);
    return {left, snapped_top, width, height};
  }

 private:
  double ratio_;
};

constexpr double kBodyShare = 0.75;

double ColumnWidth(const ChartModel& model) { return model.PixelsPerBar() * model.BarsInColumn(); }

void FillRects(QCPPainter* painter, const QVector<QRectF>& rects, const QColor& color) {
  painter->setPen(Qt::NoPen);
  painter->setBrush(color);
  painter->drawRects(rects);
}

}  // namespace

void PriceLayer::draw(QCPPainter* painter) {
  rising_.clear();
  falling_.clear();
  switch (Model().Options().style) {
    case ChartStyle::kCandles:
      return Model().Series().has_opens ? DrawCandles(painter) : DrawBars(painter);
    case ChartStyle::kBars:
      return DrawBars(painter);
    case ChartStyle::kLine:
      return DrawLine(painter);
  }
}

void PriceLayer::DrawCandles(QCPPainter* painter) {
  const PixelGrid grid(painter->device()->devicePixelRatioF());
  const double body = grid.BodyWidth(ColumnWidth(Model()) * kBodyShare);
  for (const BarColumn& column : Model().Columns()) {
    QVector<QRectF>& rects = column.close >= column.open ? rising_ : falling_;
    const double x = X(column.place);
    const double open = Y(column.open);
    const double close = Y(column.close);
    rects.append(grid.Column(x, grid.Thin(), Y(column.high), Y(column.low)));
    rects.append(grid.Column(x, body, std::min(open, close), std::max(open, close)));
  }
  Fill(painter);
}

void PriceLayer::DrawBars(QCPPainter* painter) {
  const PixelGrid grid(painter->device()->devicePixelRatioF());
  const double arm = (grid.BodyWidth(ColumnWidth(Model()) * kBodyShare) - grid.Thin()) / 2;
  const bool has_opens = Model().Series().has_opens;
  for (const BarColumn& column : Model().Columns()) {
    QVector<QRectF>& rects = column.close >= column.open ? rising_ : falling_;
    const QRectF stem = grid.Column(X(column.place), grid.Thin(), Y(column.high), Y(column.low));
    rects.append(stem);
    const double close = grid.Snap(Y(column.close) - grid.Thin() / 2);
    rects.append({stem.right(), close, arm, grid.Thin()});
    if (!has_opens) continue;
    const double open = grid.Snap(Y(column.open) - grid.Thin() / 2);
    rects.append({stem.left() - arm, open, arm, grid.Thin()});
  }
  Fill(painter);
}

void PriceLayer::Fill(QCPPainter* painter) {
  FillRects(painter, rising_, Colors().up);
  FillRects(painter, falling_, Colors().down);
}

void PriceLayer::DrawLine(QCPPainter* painter) {
  line_.clear();
  for (const BarColumn& column : Model().Columns()) {
    line_.append({X(column.place), Y(column.close)});
  }
  painter->setAntialiasing(true);
  painter->setPen(QPen(Colors().line, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->setBrush(Qt::NoBrush);
  painter->drawPolyline(line_);
}

void AverageLayer::draw(QCPPainter* painter) {
  const ChartModel& model = Model();
  painter->setAntialiasing(true);
  painter->setBrush(Qt::NoBrush);
  for (std::size_t i = 0; i < model.Options().averages.size(); ++i) {
    const std::vector<double>& average = model.Average(i);
    if (average.empty()) continue;
    line_.clear();
    for (const BarColumn& column : model.Columns()) {
      const double value = average[column.last_bar];
      const bool drawable = std::isfinite(value) && (!model.Logarithmic() || value > 0);
      if (drawable) line_.append({X(column.place), Y(value)});
    }
    painter->setPen(QPen(Colors().averages[i], 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(line_);
  }
}

void VolumeLayer::draw(QCPPainter* painter) {
  rising_.clear();
  falling_.clear();
  const PixelGrid grid(painter->device()->devicePixelRatioF());
  const double body = grid.BodyWidth(ColumnWidth(Model()) * kBodyShare);
  const double floor = Y(0);
  for (const BarColumn& column : Model().Columns()) {
    if (column.volume <= 0) continue;
    QVector<QRectF>& rects = column.close >= column.open ? rising_ : falling_;
    rects.append(grid.Column(X(column.place), body, Y(column.volume), floor));
  }
  FillRects(painter, rising_, Colors().up_volume);
  FillRects(painter, falling_, Colors().down_volume);
}

}  // namespace velumar
