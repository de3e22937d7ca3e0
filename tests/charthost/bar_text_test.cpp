#include "charthost/bar_text.h"

#include <gtest/gtest.h>

#include "charthost/made_series.h"

namespace velumar {
namespace {

TEST(PriceText, ShowsNumbersAsTradersReadThem) {
  EXPECT_EQ(PriceText(-0.0001, 2), "0.00");
  EXPECT_EQ(VolumeText(-1000), "-1,000");
  EXPECT_EQ(VolumeText(11.2976F), "11.298");
  EXPECT_EQ(ChangeText(99.5, 100, 2), "-0.50 (-0.50%)");
  EXPECT_EQ(ChangeText(3, 0, 2), "+3.00");
}

TEST(PriceText, ShortensVolumesToFourCharacters) {
  const std::vector<std::pair<double, const char*>> cases = {
      {0, "0"},        {0.5, "0.50"},  {950, "950"},    {999.6, "1K"},    {1200, "1.2K"},
      {99999, "100K"}, {999999, "1M"}, {9.96e6, "10M"}, {2.14e9, "2.1B"}, {123.4e12, "123T"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(ShortVolumeText(value), text) << value;
}

TEST(BarSeries, IsShownWithTheDecimalsOfItsQuotes) {
  EXPECT_EQ(SeriesOf({3600, 3617}).decimals, 2);
  EXPECT_EQ(SeriesOf({1.07214F, 1.0726F}).decimals, 5);
  EXPECT_EQ(SeriesOf({76.24992F}).decimals, 4);  // a float holds no more digits
}

std::string LineOf(const std::vector<ReadoutPart>& parts) {
  std::string line;
  for (const ReadoutPart& part : parts) line += part.label + "=" + part.value + ";";
  return line;
}

TEST(Readout, LeavesOutWhatTheSeriesLacks) {
  BarSeries series = SeriesOf({10, 12.5F});
  EXPECT_EQ(LineOf(BarReadout(series, 0)), "=Mon 8 Jun 2015;O=10.00;H=10.00;L=10.00;C=10.00;");
  series.opens = {0, 0};
  series.times = {93000, 93505};
  series.volumes = {5, 1e6F};
  DescribeSeries(series);
  EXPECT_EQ(LineOf(BarReadout(series, 1)),
            "=Mon 8 Jun 2015;=09:35:05;H=12.50;L=12.50;C=12.50;Vol=1,000,000;"
            "Change=+2.50 (+25.00%);");
  EXPECT_EQ(BarReadout(series, 1).back().tone, ReadoutTone::kUp);
}

}  // namespace
}  // namespace velumar
