#include "import/column_values.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "base/dates.h"
#include "base/number_text.h"
#include "import/field_text.h"

namespace velumar {

namespace {

template <typename Is>
bool MostAre(const std::vector<std::string_view>& fields, Is is) {
  const auto count = static_cast<std::size_t>(std::ranges::count_if(fields, is));
  return count * 2 > fields.size();
}

bool LooksLikeTime(std::string_view field) {
  return std::ranges::any_of(std::array{TimeDigits::kHoursAndMinutes, TimeDigits::kWithSeconds},
                             [&](TimeDigits digits) {
                               const auto moment = ReadTimeText(field, digits);
                               return moment && IsRealTime(*moment->time);
                             });
}

}  // namespace

bool ColumnValues::AreDates(std::size_t column) const {
  return MostAre(sample_.Column(column),
                 [&](std::string_view field) { return LooksLikeDate(field, dates_); });
}

bool ColumnValues::AreUnixTimes(std::size_t column) const {
  return MostAre(sample_.Column(column), LooksLikeUnixTime);
}

bool ColumnValues::AreNumbers(std::size_t column) const {
  return MostAre(sample_.Column(column), LooksLikeNumber);
}

bool ColumnValues::AreTimes(std::size_t column) const {
  return MostAre(sample_.Column(column), LooksLikeTime);
}

bool ColumnValues::AreClockTimes(std::size_t column) const {
  const auto fields = sample_.Column(column);
  const bool has_zero = std::ranges::any_of(fields, [](std::string_view field) {
    return field.starts_with('0') && field.size() > 3 && std::ranges::all_of(field, IsDigit);
  });
  return AreTimes(column) && (has_zero || MostAre(fields, [](std::string_view field) {
                                return field.find(':') != std::string_view::npos;
                              }));
}

bool ColumnValues::AreWords(std::size_t column) const {
  return MostAre(sample_.Column(column), [](std::string_view field) {
    return std::ranges::any_of(field, IsLetter) && !LooksLikeNumber(field) && !LooksLikeTime(field);
  });
}

bool ColumnValues::AreDigits(std::size_t column) const {
  return MostAre(sample_.Column(column),
                 [](std::string_view field) { return std::ranges::all_of(field, IsDigit); });
}

bool ColumnValues::AreSixDigitDates(std::size_t column) const {
  const auto fields = sample_.Column(column);
  return !fields.empty() && std::ranges::all_of(fields, [](std::string_view field) {
    const auto date = ReadSixDigits(field);
    return date && IsRealDate(*date);
  });
}

bool ColumnValues::AreMissing(std::size_t column) const { return sample_.Column(column).empty(); }

bool ColumnValues::AreEndsOfDays(std::size_t column) const {
  const auto fields = sample_.Column(column);
  return !fields.empty() && std::ranges::all_of(fields, [](std::string_view field) {
    const auto moment = ReadTimeText(field, TimeDigits::kHoursAndMinutes);
    return moment && moment->time == kEndOfDay;
  });
}

std::size_t ColumnValues::Different(std::size_t column) const {
  const auto fields = sample_.Column(column);
  return std::set<std::string_view>(fields.begin(), fields.end()).size();
}

bool ColumnValues::CountRows(std::size_t column) const {
  std::optional<std::int64_t> before;
  for (const std::string_view field : sample_.Column(column)) {
    const auto number = ExactNumber<std::int64_t>(field);
    if (!number || (before && *number != *before + 1)) return false;
    before = number;
  }
  return before.has_value();
}

bool ColumnValues::HaveDate(std::size_t column) const {
  return std::ranges::any_of(sample_.Column(column),
                             [&](std::string_view field) { return LooksLikeDate(field, dates_); });
}

bool ColumnValues::HaveNumber(std::size_t column) const {
  return std::ranges::any_of(sample_.Column(column), LooksLikeNumber);
}

bool ColumnValues::HaveTime(std::size_t column) const {
  return std::ranges::any_of(sample_.Column(column), LooksLikeTime);
}

bool ColumnValues::ArePrices(std::size_t first, PriceOrder order, NumberStyle style) const {
  const std::size_t high = order == PriceOrder::kHighFirst ? 1 : 2;
  const std::size_t low = 3 - high;
  bool judged = false;
  for (std::size_t i = 0; i < sample_.lines.size(); ++i) {
    if (!sample_.is_row[i] || sample_.lines[i].size() < first + 4) continue;
    std::array<float, 4> prices{};
    for (std::size_t k = 0; k < prices.size(); ++k) {
      prices[k] = NumberIn(sample_.lines[i][first + k], style).value_or(PriceNumber{}).value;
    }
    const auto [lowest, highest] = std::ranges::minmax(prices);
    if (lowest == 0) continue;  // missing
    constexpr float kMostOfOneBar = 3;
    if (prices[high] != highest || prices[low] != lowest) return false;
    if (highest > 0 && highest > lowest * kMostOfOneBar) return false;
    judged = true;
  }
  return judged;
}

bool ColumnValues::AreNearPrices(std::size_t column, std::size_t prices, NumberStyle style) const {
  constexpr float kStep = 1.1F;
  bool value_decimals = false;
  bool price_decimals = false;
  int rows = 0;
  int steps = 0;
  float before = 0;
  for (std::size_t i = 0; i < sample_.lines.size(); ++i) {
    const std::vector<std::string>& fields = sample_.lines[i];
    if (!sample_.is_row[i] || fields.size() <= std::max(column, prices)) continue;
    const PriceNumber value = NumberIn(fields[column], style).value_or(PriceNumber{});
    const PriceNumber price = NumberIn(fields[prices], style).value_or(PriceNumber{});
    if (value.value < price.value / 2 || value.value > price.value * 2) return false;
    value_decimals |= value.decimals > 0;
    price_decimals |= price.decimals > 0;
    const float ratio = price.value == 0 ? 1 : value.value / price.value;
    ++rows;
    if (before > 0 && (ratio > before * kStep || before > ratio * kStep)) ++steps;
    before = ratio;
  }
  return steps * 4 <= rows && (value_decimals || !price_decimals);
}

bool ColumnValues::MayBeVolumes(std::size_t column, NumberStyle style) const {
  const auto fields = sample_.Column(column);
  std::size_t above_zero = 0;
  for (const std::string_view field : fields) {
    const float value = NumberIn(field, style).value_or(PriceNumber{}).value;
    if (value < 0 || field.ends_with('%')) return false;
    above_zero += value > 0 ? 1 : 0;
  }
  if (above_zero * 2 <= fields.size() || AreClockTimes(column)) return false;
  return fields.size() == 1 || (Different(column) > 1 && !CountRows(column));
}

}  // namespace velumar
