#include "charthost/measure.h"

#include <cmath>

#include "base/dates.h"
#include "base/number_text.h"
#include "charthost/bar_text.h"

namespace velumar {
namespace {

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
  text += ", " + ChangeText(to.price, from.price, series.decimals);
  const double per_point = stake.quantity * stake.profit_per_point;
  if (!std::isfinite(per_point) || per_point <= 0) return text;
  return text + ", " + MoneyText((to.price - from.price) * per_point) + " for quantity " +
         ReadableNumberText(static_cast<float>(stake.quantity));
}

}  // namespace velumar
