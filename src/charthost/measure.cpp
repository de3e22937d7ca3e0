#include "charthost/measure.h"

#include <cmath>

#include "base/dates.h"
#include "base/number_text.h"
#include "charthost/bar_text.h"

namespace velumar {
namespace {

// As the chart shows it, so that the money is that of the points.
double Rounded(double price, int decimals) {
  const double scale = std::pow(10, decimals);
  return std::round(price * scale) / scale;
}

std::string CountText(int count, const char* unit) {
  return std::to_string(count) + " " + unit + (count == 1 || count == -1 ? "" : "s");
}

}  // namespace

std::string DistanceText(const BarSeries& series, const ChartPlace& from, const ChartPlace& to,
                         const Stake& stake) {
  std::string text = CountText(to.bar - from.bar, "bar");
  const std::int32_t first = series.dates[from.bar];
  const std::int32_t last = series.dates[to.bar];
  if (IsRealDate(first) && IsRealDate(last)) {
    text += ", " + CountText(static_cast<int>(DayNumber(last) - DayNumber(first)), "day");
  }
  const double start = Rounded(from.price, series.decimals);
  const double end = Rounded(to.price, series.decimals);
  text += ", " + ChangeText(end, start, series.decimals);
  const double per_point = stake.quantity * stake.profit_per_point;
  if (!std::isfinite(per_point) || per_point <= 0) return text;
  return text + ", " + MoneyText((end - start) * per_point) + " for quantity " +
         ReadableNumberText(static_cast<float>(stake.quantity));
}

}  // namespace velumar
