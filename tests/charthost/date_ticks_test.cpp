#include "charthost/date_ticks.h"

#include <chrono>

namespace velumar {
namespace {

// Bars from 9:30 to 16:00 of the weekdays from January on, or one a day if `minutes` is 0.
BarSeries Weekdays(int first_year, int days, int minutes) {
  BarSeries series;
  series.has_times = minutes > 0;
  for (std::chrono::sys_days day = std::chrono::year(first_year) / 1 / 1; days > 0;
       day += std::chrono::days(1)) {
    if (std::chrono::weekday(day).iso_encoding() > 5) continue;
    --days;
    const std::chrono::year_month_day date = day;
    const unsigned month_day = unsigned(date.month()) * 100 + unsigned(date.day());
    for (int minute = 570; minute<960; minute += minutes> 0 ? minutes : 390) {
      series.dates.push_back(int(date.year()) * 10000 + static_cast<int>(month_day));
      series.times.push_back(minute / 60 * 10000 + minute % 60 * 100);
    }
  }
  return series;
}

std::string Texts(const std::vector<DateTick>& ticks) {
  std::string texts;
  for (const DateTick& tick : ticks) {
    texts += (texts.empty() ? "" : " | ") + tick.text + (tick.strong ? "*" : "");
  }
  return texts;
}

TEST(DateTicks, NameYearsMonthsDaysOrTimesByZoom) {
  const BarSeries daily = Weekdays(2003, 3000, 0);
  const BarSeries minutes = Weekdays(2004, 300, 5);
  struct Case {
    const BarSeries& series;
    AxisStretch stretch;
    const char* texts;
  };
  const std::vector<Case> cases = {
      {daily,
       {0, 2999, 0.3},
       "2003 | 2004 | 2005 | 2006 | 2007 | 2008 | 2009 | 2010 | 2011 | 2012 | 2013 | 2014"},
      {daily, {230, 560, 2}, "2004* | Apr | Jul | Oct | 2005*"},
      {daily, {350, 390, 20}, "10 May 2004 | 17 | 24 | 31 | Jun* | 14 | 21 | 28"},
      {daily, {258, 268, 80}, "29 | 30 | 31 | 2004* | 2 | 5 | 6 | 7 | 8 | 9 | 12"},
      {minutes, {100, 600, 2}, "5 Jan 2004 | 6 | 7 | 8 | 9 | 12"},
      {minutes, {150, 240, 8}, "5 Jan* | 11:00 | 12:00 | 13:00 | 14:00 | 15:00 | 6 Jan*"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Texts(DateTicks(c.series, c.stretch, 64)), c.texts);
  }
}

TEST(DateTicks, KeepTheirDistanceAtEveryZoom) {
  const BarSeries daily = Weekdays(2000, 5000, 0);
  const BarSeries minutes = Weekdays(2004, 100, 15);
  for (const BarSeries* series : {&daily, &minutes}) {
    for (double pixels = 0.05; pixels < 150; pixels *= 1.3) {
      const int last = std::min(series->size() - 1, 700 + static_cast<int>(1200 / pixels));
      const auto ticks = DateTicks(*series, {700, last, pixels}, 64);
      const bool wide = last - 700 > 200 / pixels && pixels < 60;
      EXPECT_TRUE(!wide || !ticks.empty()) << pixels;
      for (std::size_t i = 0; i < ticks.size(); ++i) {
        EXPECT_TRUE(ticks[i].bar >= 700 && ticks[i].bar <= last);
        EXPECT_FALSE(ticks[i].text.empty());
        const double distance = i == 0 ? 64 : (ticks[i].bar - ticks[i - 1].bar) * pixels;
        EXPECT_GE(distance, 64) << pixels;
      }
    }
  }
}

TEST(DateTicks, SurviveDamagedDatesAndEmptyStretches) {
  BarSeries series;
  series.dates = {0, -5, 99999999, 20041399, 20040101, 20040101};
  series.times = {0, -1, 999999, 0, 0, 0};
  series.has_times = true;
  EXPECT_FALSE(DateTicks(series, {0, 5, 200}, 64).empty());
  EXPECT_TRUE(DateTicks(series, {3, 2, 10}, 64).empty());
}

}  // namespace
}  // namespace velumar
