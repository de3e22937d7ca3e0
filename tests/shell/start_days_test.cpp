#include "shell/start_days.h"

#include <algorithm>

#include "support/session_fixture.h"

namespace velumar {
namespace {

std::vector<std::int32_t> Days(int bars, int bars_a_day = 1) {
  std::vector<std::int32_t> days;
  for (int bar = 0; bar < bars; ++bar) days.push_back(MadeDate(bar / bars_a_day));
  return days;
}

TEST(StartDays, FirstAndLastLeaveARunBarsBeforeItsStart) {
  std::mt19937_64 random(1);
  for (const std::vector<std::int32_t>& days : {Days(0), Days(1), Days(20, 20)}) {
    for (const DayChoice choice : {DayChoice::kFirst, DayChoice::kLast, DayChoice::kRandom}) {
      EXPECT_EQ(StartDay(days, choice, random), std::nullopt) << "one day of " << days.size();
    }
  }
  EXPECT_EQ(StartDay(Days(2), DayChoice::kFirst, random), MadeDate(1));
  EXPECT_EQ(StartDay(Days(2), DayChoice::kLast, random), MadeDate(1));
  EXPECT_EQ(StartDay(Days(60, 20), DayChoice::kFirst, random), MadeDate(1));
  EXPECT_EQ(StartDay(Days(60, 20), DayChoice::kLast, random), MadeDate(2));
}

TEST(StartDays, RandomLeavesHistoryAndFutureWhereTheSeriesHasThem) {
  std::mt19937_64 random(2);
  for (const int bars_a_day : {1, 20}) {
    for (const int bars : {2 * bars_a_day, 340, 350, 360, 2000}) {
      const std::vector<std::int32_t> days = Days(bars, bars_a_day);
      std::ptrdiff_t lowest = bars;
      std::ptrdiff_t highest = 0;
      for (int i = 0; i < 2000; ++i) {
        const std::int32_t day = *StartDay(days, DayChoice::kRandom, random);
        const std::ptrdiff_t bar = std::ranges::find(days, day) - days.begin();
        lowest = std::min(lowest, bar);
        highest = std::max(highest, bar);
      }
      EXPECT_GE(lowest, bars >= 400 ? 250 : 1) << bars;
      EXPECT_LE(highest, bars >= 400 ? bars - 101 : bars - 1) << bars;
    }
  }
}

}  // namespace
}  // namespace velumar
