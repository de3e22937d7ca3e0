#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "charthost/bar_series.h"
#include "charthost/indicators/catalogue.h"

namespace velumar {

// How a chart shows dates, prices and volumes. Dates are yyyymmdd, times hhmmss; a damaged date
// shows the numbers that it holds.

std::string DayText(std::int32_t date);      // "12 Feb 2015"
std::string LongDayText(std::int32_t date);  // "Thu 12 Feb 2015"
// "09:30", with seconds only if there are any.
std::string TimeText(std::int32_t time);

// The day of a bar, with its time if the series has times.
std::string MomentText(const BarSeries& series, int bar);

// "Daily" for -1, "Intraday" for 0 (unknown minutes), otherwise "5 minutes".
std::string IntervalTitle(int interval);

// Fixed decimals, no grouping, never a minus zero.
std::string PriceText(double value, int decimals);

// "+1.25%", without a sign for 0.
std::string PercentText(double percent);

// Whole numbers grouped in thousands; fractions, as crypto markets have them, with three decimals.
std::string VolumeText(float value);

// At most four characters for an axis: "950", "1.2K", "35M", "2.1B".
std::string ShortVolumeText(double value);

// The change from the previous close: "+1.25 (+0.83%)". No percentage of a zero close.
std::string ChangeText(double close, double previous_close, int decimals);

// An amount of money with its sign: "+1,250.00", "-3.50", "0.00".
std::string MoneyText(double money);

// "-" for NaN, where an indicator has too few bars.
std::string IndicatorValueText(double value, ValueFormat format, int decimals);

enum class ReadoutTone { kPlain, kUp, kDown };

// A label with its value in the line above the chart.
struct ReadoutPart {
  std::string label;
  std::string value;
  ReadoutTone tone = ReadoutTone::kPlain;
};

// Date, time, open, high, low, close, volume and change of a bar, without what the series lacks.
std::vector<ReadoutPart> BarReadout(const BarSeries& series, int bar);

}  // namespace velumar
