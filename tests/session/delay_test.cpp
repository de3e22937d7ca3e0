#include "session/delay.h"

namespace velumar {
namespace {

TEST(Delay, OnlySecondsThatTheClockCanHold) {
  const struct {
    const char* text;
    const char* usable;
    int milliseconds;
  } cases[] = {
      {"0", "0", 0},           {"3", "3", 3000},     {"10", "10", 10000},  {"32", "32", 32000},
      {"33", "32", 32000},     {"999", "32", 32000}, {"1e9", "32", 32000}, {"", "3", 3000},
      {"abc", "3", 3000},      {"2.5", "2.5", 2500}, {"0.2", "0.2", 200},  {"32.001", "32", 32000},
      {"0.0001", "0.0001", 1}, {"-1", "3", 3000},    {"-0", "-0", 0},      {"5.0", "5.0", 5000}};
  for (const auto& c : cases) {
    EXPECT_EQ(UsableDelay(c.text), c.usable) << c.text;
    EXPECT_EQ(DelayMilliseconds(c.text), c.milliseconds) << c.text;
  }
  EXPECT_EQ(DelaySeconds(200), "0.2");
  EXPECT_EQ(DelaySeconds(32000), "32");
}

}  // namespace
}  // namespace velumar
