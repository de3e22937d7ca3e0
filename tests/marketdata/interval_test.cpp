#include "marketdata/interval.h"

namespace velumar {
namespace {

TEST(Intervals, FiveMinutesMayBeWritten05) {
  EXPECT_EQ(ReplayableInterval("05"), (SeriesArguments{0, 5}));
  EXPECT_EQ(IntervalToMatch("05"), "5");
  for (const char* text : {"", "d", "-1", "005"}) EXPECT_FALSE(ReplayableInterval(text)) << text;
}

}  // namespace
}  // namespace velumar
