#include "session/intervals.h"
#include "session/run_control.h"

namespace velumar {
namespace {

TEST(Delay, OnlySecondsThatTheClockCanHold) {
  const struct {
    const char* text;
    const char* usable;
  } cases[] = {{"0", "0"},    {"3", "3"},    {"10", "10"},  {"32", "32"}, {"33", "32"},
               {"999", "32"}, {"1e9", "32"}, {"", "3"},     {"abc", "3"}, {"2.5", "3"},
               {"-1", "3"},   {"-0", "-0"},  {"5.0", "5.0"}};
  for (const auto& c : cases) EXPECT_EQ(UsableDelay(c.text), c.usable) << c.text;
}

TEST(Intervals, SixCanBeReplayed) {
  EXPECT_EQ(ReplayableInterval("D"), (SeriesArguments{1, -1}));
  EXPECT_EQ(ReplayableInterval("05"), (SeriesArguments{0, 5}));
  EXPECT_EQ(ReplayableInterval("60"), (SeriesArguments{0, 60}));
  for (const char* text : {"", "d", "-1", "120", "1", "005", "15 "}) {
    EXPECT_FALSE(ReplayableInterval(text)) << text;
    EXPECT_EQ(IntervalToMatch(text), text);
  }
  EXPECT_EQ(IntervalToMatch("D"), "-1");
  EXPECT_EQ(IntervalToMatch("05"), "5");
}

}  // namespace
}  // namespace velumar
