#include "shell/print_preview.h"

#include <gtest/gtest.h>

namespace velumar {
namespace {

class PrintPreviewTest : public testing::Test {
 protected:
  PrintPreviewTest() { preview.Show(chart); }

  PreviewChart chart{{10575, 8295}, 10575, 8295};
  PrintPreview preview;
};

TEST_F(PrintPreviewTest, SheetAndADraggedChartFollowTheZoomWithinItsLimits) {
  EXPECT_EQ(preview.Sheet(), (TwipsSize{6000, 8500}));
  EXPECT_EQ(chart.shown, (TwipsSize{5287.5, 4147.5}));
  preview.Move({500, 500});  // no button down
  EXPECT_EQ(preview.ChartPlace(), TwipsPoint{});
  preview.Press({100, 100});
  preview.Move({600, 100});
  preview.Release({600, -400});
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{1000, -500}));
  preview.SetZoom(1000, chart);
  EXPECT_EQ(preview.Sheet(), (TwipsSize{12000, 17000}));
  EXPECT_EQ(chart.shown, (TwipsSize{10575, 8295}));
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{2000, -1000}));
  preview.ScrollSheet(2, 3);
  EXPECT_EQ(preview.SheetPlace(), (TwipsPoint{-800, -2700}));
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{2000, -1000}));
}

TEST_F(PrintPreviewTest, ASizeOfTheBarsCountsAtEveryLaterZoom) {
  preview.SetChartPercent(PictureSide::kWidth, 50, chart);
  preview.SetChartPercent(PictureSide::kWidth, 50, chart);  // from the last zoom, so not once more
  preview.SetChartPercent(PictureSide::kHeight, 100, chart);
  EXPECT_EQ(chart.shown, (TwipsSize{10575, 16590}));
  preview.SetZoom(100, chart);
  EXPECT_EQ(chart.shown, (TwipsSize{21150, 33180}));
  EXPECT_EQ(chart.whole_width, 21150);
}

TEST_F(PrintPreviewTest, TheNextPreviewTakesTheLastSizeAsFullSize) {
  chart.whole_width = static_cast<std::int32_t>(chart.shown.width);
  chart.whole_height = static_cast<std::int32_t>(chart.shown.height);
  PrintPreview second;
  second.Show(chart);
  second.SetZoom(100, chart);
  EXPECT_EQ(chart.shown, (TwipsSize{5287, 4147}));
}

}  // namespace
}  // namespace velumar
