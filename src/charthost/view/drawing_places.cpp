#include "charthost/view/drawing_places.h"

#include <QFontMetricsF>
#include <QObject>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "charthost/bar_text.h"
#include "charthost/view/chart_plot.h"
#include "charts/qt_text.h"

namespace velumar {

TimeAxis DrawingPlaces::Time() const {
  return {document_.Stored(), document_.Model().Series().starts, document_.Interval()};
}

Scene DrawingPlaces::MakeScene(const TimeAxis& time) const {
  const QRect area = plot_.Prices().rect();
  const int decimals = document_.Model().Series().decimals;
  const QFontMetricsF metrics(plot_.font());
  return {.time = time,
          .area = {double(area.left()), double(area.top()), double(area.right()),
                   double(area.bottom())},
          .to_pixel = [this](double place, double price) { return ToPixel(place, price); },
          .price_text = [decimals](double price) { return PriceText(price, decimals); },
          .text_size =
              [metrics](const std::string& text) {
                return Point{metrics.horizontalAdvance(ToQt(text)), metrics.height()};
              }};
}

bool DrawingPlaces::Contains(QPointF pixel) const {
  return document_.Model().Series().size() > 0 && plot_.Prices().rect().contains(pixel.toPoint());
}

double DrawingPlaces::PlaceAt(QPointF pixel) const {
  return plot_.Prices().axis(QCPAxis::atBottom)->pixelToCoord(pixel.x());
}

double DrawingPlaces::PriceAt(QPointF pixel) const {
  return plot_.Prices().axis(QCPAxis::atRight)->pixelToCoord(pixel.y());
}

Point DrawingPlaces::ToPixel(double place, double price) const {
  const bool drawable = price > 0 || !document_.Model().Logarithmic();
  return {plot_.Prices().axis(QCPAxis::atBottom)->coordToPixel(place),
          drawable ? plot_.Prices().axis(QCPAxis::atRight)->coordToPixel(price)
                   : std::numeric_limits<double>::quiet_NaN()};
}

Anchor DrawingPlaces::AnchorAt(QPointF pixel, bool snaps) const {
  const BarSeries& series = document_.Model().Series();
  Anchor anchor{Time().At(PlaceAt(pixel)), PriceAt(pixel)};
  const auto bar = std::lround(PlaceAt(pixel));
  if (!snaps || bar < 0 || bar >= series.size()) return anchor;
  const auto i = static_cast<std::size_t>(bar);
  std::vector<float> prices = {series.highs[i], series.lows[i], series.closes[i]};
  if (series.has_opens) prices.push_back(series.opens[i]);
  constexpr double kSnapReach = 9;  // pixels
  const auto snapped = SnappedPrice(prices, pixel.y(), kSnapReach,
                                    [this](double price) { return ToPixel(0, price).y; });
  anchor.price = snapped.value_or(anchor.price);
  return anchor;
}

// Up or down by pixels, so that its shape stays.
Drawing DrawingPlaces::Shifted(const Drawing& drawing, QPointF pixels) const {
  const TimeAxis time = Time();
  const double bars = std::round(PlaceAt(pixels) - PlaceAt({0, 0}));
  Drawing shifted = drawing;
  for (Anchor& anchor : shifted.anchors) {
    const double place = time.PlaceOf(anchor.time);
    const double y = ToPixel(place, anchor.price).y + pixels.y();
    if (bars != 0) anchor.time = time.At(place + bars);
    if (pixels.y() != 0 && std::isfinite(y)) anchor.price = PriceAt({0, y});
  }
  return shifted;
}

QString DrawingPlaces::TextOf(const Anchor& anchor) const {
  const BarSeries& series = document_.Model().Series();
  const TimeAnchor& time = anchor.time;
  QString text = ToQt(DayText(time.date));
  if (document_.Interval() >= 0 && time.time != 0) {
    text += QLatin1Char(' ') + ToQt(TimeText(time.time));
  }
  if (time.later == 1) text += QObject::tr(" + 1 bar");
  if (time.later > 1) text += QObject::tr(" + %1 bars").arg(time.later);
  return text + QStringLiteral(", ") + ToQt(PriceText(anchor.price, series.decimals));
}

}  // namespace velumar
