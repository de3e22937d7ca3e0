#include "charthost/measure.h"

#include "base/dates.h"
#include "charthost/bar_text.h"

namespace velumar {
namespace {

std::string CountText(int count, const char* unit) {
  return std::to_string(count) + " " + unit + (count == 1 || count == -1 ? "" : "s");
}

}  // namespace

std::string DistanceText(const BarSeries& series, const ChartPlace& from, const ChartPlace& to) {
  std::string text = CountText(to.bar - from.bar, "bar");
  const std::int32_t first = series.dates[from.bar];
  const std::int32_t last = series.dates[to.bar];
  if (IsRealDate(first) && IsRealDate(last)) {
    text += ", " + CountText(static_cast<int>(DayNumber(last) - DayNumber(first)), "day");
  }
  return text + ", " + ChangeText(to.price, from.price, series.decimals);
}

}  // namespace velumar
