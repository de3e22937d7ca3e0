#include "marketdata/interval.h"

namespace velumar {
namespace {

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
  EXPECT_EQ(ReplayIntervalsText(), "D, 5, 10, 15, 30 or 60");
}

}  // namespace
}  // namespace velumar
