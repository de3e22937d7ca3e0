#include "resultchart/thinning.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace velumar {
namespace {

TEST(ThinningTest, ALineIsCutExactlyAtTheEndsOfTheSpan) {
  const std::vector<double> values = {0, 10, 20, 40};
  EXPECT_EQ(ThinnedLine(values, {0.5, 2.5}, 100),
            (std::vector<LinePoint>{{0.5, 5}, {1, 10}, {2, 20}, {2.5, 30}}));
  EXPECT_EQ(ThinnedLine(values, {1.25, 1.75}, 100),
            (std::vector<LinePoint>{{1.25, 12.5}, {1.75, 17.5}}));
  EXPECT_TRUE(ThinnedLine({}, {-0.5, 0.5}, 100).empty());
}

TEST(ThinningTest, ManyPointsBecomeFewWithoutLosingAnExtreme) {
  std::vector<double> values(100'000, 1000);
  values[31'415] = 1500;
  values[92'653] = -20;
  const AxisSpan whole = {-0.5, 99'999.5};
  const auto line = ThinnedLine(values, whole, 800);
  EXPECT_LE(line.size(), 4U * 801);
  EXPECT_TRUE(std::ranges::is_sorted(line, {}, &LinePoint::place));
  EXPECT_NE(std::ranges::find(line, LinePoint{31'415, 1500}), line.end());
  EXPECT_NE(std::ranges::find(line, LinePoint{92'653, -20}), line.end());

  const auto bars = ThinnedSlots(values, whole, 800, 0);
  EXPECT_LE(bars.size(), 801U);
  EXPECT_EQ(bars.front().left, -0.5);
  EXPECT_EQ(bars.back().right, 99'999.5);
  EXPECT_NE(std::ranges::find(bars, 1500, &Slot::value), bars.end());
  for (std::size_t i = 1; i < bars.size(); ++i) EXPECT_EQ(bars[i].left, bars[i - 1].right);
}

TEST(ThinningTest, ValuesOnABaseStartAtZeroUnlessNothingWouldBeSeenOfThem) {
  const auto fit = [](std::vector<double> values, bool on_base) {
    return FittingValues(values, {-0.5, static_cast<double>(values.size()) - 0.5}, on_base);
  };
  EXPECT_EQ(fit({20, 100}, true), (ValueSpan{0, 106}));
  EXPECT_GT(fit({990, 1000}, true).lower, 900);
  EXPECT_EQ(fit({-50, 50}, true), (ValueSpan{-56, 56}));
  EXPECT_GT(fit({20, 100}, false).lower, 0);
  const ValueSpan one = fit({500}, false);
  EXPECT_LT(one.lower, 500);
  EXPECT_GT(one.upper, 500);
  EXPECT_EQ(fit({}, true), (ValueSpan{0, 1}));
}

}  // namespace
}  // namespace velumar
