#include "import/column_values.h"

#include <algorithm>
#include <array>
#include <set>

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

}  // namespace velumar
