#include "charthost/bar_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "base/dates.h"
#include "base/number_text.h"

namespace velumar {
namespace {

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string Signed(double value, int decimals) {
  return (value > 0 ? "+" : "") + PriceText(value, decimals);
}

ReadoutTone ToneOf(double change) {
  if (change > 0) return ReadoutTone::kUp;
  return change < 0 ? ReadoutTone::kDown : ReadoutTone::kPlain;
}

}  // namespace

std::string DayText(std::int32_t date) { return DateText(date, "d MMM yyyy"); }

std::string LongDayText(std::int32_t date) { return DateText(date, "ddd d MMM yyyy"); }

std::string TimeText(std::int32_t time) {
  const int seconds = time % 100;
  const std::string minutes = TwoDigits(time / 10000) + ":" + TwoDigits(time / 100 % 100);
  return seconds == 0 ? minutes : minutes + ":" + TwoDigits(seconds);
}

std::string MomentText(const BarSeries& series, int bar) {
  std::string text = LongDayText(series.dates[bar]);
  if (series.has_times) text += "  " + TimeText(series.times[bar]);
  return text;
}

std::string IntervalTitle(int interval) {
  if (interval < 0) return "Daily";
  if (interval == 0) return "Intraday";
  return std::to_string(interval) + (interval == 1 ? " minute" : " minutes");
}

std::string PriceText(double value, int decimals) {
  std::array<char, 400> digits;  // room for every double
  const auto end =
      std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, decimals).ptr;
  std::string text(digits.begin(), end);
  if (text.find_first_not_of("-0.") == std::string::npos && text.starts_with('-')) text.erase(0, 1);
  return text;
}

std::string PercentText(double percent) { return Signed(percent, 2) + "%"; }

std::string VolumeText(float value) {
  const bool whole = value == std::floor(value) || std::abs(value) >= 1e6F;
  return GroupedNumber(PriceText(value, whole ? 0 : 3));
}

std::string ShortVolumeText(double value) {
  struct Unit {
    double size;
    const char* letter;
  };
  static constexpr std::array kUnits = {Unit{1e12, "T"}, Unit{1e9, "B"}, Unit{1e6, "M"},
                                        Unit{1e3, "K"}};
  for (const Unit& unit : kUnits) {
    if (std::abs(value) < unit.size * 0.9995) continue;
    const double count = value / unit.size;
    const bool tenths = std::abs(count) < 9.95 && std::round(count * 10) != std::round(count) * 10;
    return PriceText(count, tenths ? 1 : 0) + unit.letter;
  }
  const bool whole = value == std::floor(value) || std::abs(value) >= 10;
  return PriceText(value, whole ? 0 : 2);
}

std::string ChangeText(double close, double previous_close, int decimals) {
  const double change = close - previous_close;
  std::string text = Signed(change, decimals);
  if (previous_close == 0) return text;
  return text + " (" + PercentText(change / std::abs(previous_close) * 100) + ")";
}

std::string MoneyText(double money) {
  const std::string text = GroupedNumber(PriceText(money, 2));
  return text.starts_with('-') || text == "0.00" ? text : "+" + text;
}

std::string IndicatorValueText(double value, ValueFormat format, int decimals) {
  if (std::isnan(value)) return "-";
  switch (format) {
    case ValueFormat::kPrice:
      return PriceText(value, decimals);
    case ValueFormat::kDifference:
      return PriceText(value, decimals + 1);
    case ValueFormat::kShare:
      return PriceText(value, 1);
    case ValueFormat::kVolume:
      break;
  }
  return ShortVolumeText(value);
}

std::vector<ReadoutPart> BarReadout(const BarSeries& series, int bar) {
  const auto price = [&](float value) { return PriceText(value, series.decimals); };
  std::vector<ReadoutPart> parts;
  parts.push_back({"", LongDayText(series.dates[bar])});
  if (series.has_times) parts.push_back({"", TimeText(series.times[bar])});
  if (series.has_opens) parts.push_back({"O", price(series.opens[bar])});
  parts.push_back({"H", price(series.highs[bar])});
  parts.push_back({"L", price(series.lows[bar])});
  parts.push_back({"C", price(series.closes[bar])});
  if (series.has_volumes) parts.push_back({"Vol", VolumeText(series.volumes[bar])});
  if (bar > 0) {
    const float close = series.closes[bar];
    const float previous = series.closes[bar - 1];
    parts.push_back({"Change", ChangeText(close, previous, series.decimals),
                     ToneOf(static_cast<double>(close) - previous)});
  }
  return parts;
}

}  // namespace velumar
