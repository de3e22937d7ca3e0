#include "results/print_preview.h"

#include <gtest/gtest.h>

namespace velumar {
namespace {

struct FakeChart : PreviewChart {
  double Width() const override { return width; }
  double Height() const override { return height; }
  void SetWidth(double value) override { width = value; }
  void SetHeight(double value) override { height = value; }
  std::int32_t chwd() const override { return full_width; }
  std::int32_t chht() const override { return full_height; }
  void SetChwd(std::int32_t value) override { full_width = value; }
  void SetChht(std::int32_t value) override { full_height = value; }

  double width = 10575;
  double height = 8295;
  std::int32_t full_width = 10575;
  std::int32_t full_height = 8295;
};

TEST(PrintPreviewTest, SheetAndChartFollowTheZoomWithinItsLimits) {
  FakeChart chart;
  PrintPreview preview(chart);
  EXPECT_EQ(preview.Sheet(), (TwipsSize{6000, 8500}));
  EXPECT_EQ(preview.ChartSize(), (TwipsSize{5287.5, 4147.5}));
  preview.SetZoom(1);
  EXPECT_EQ(preview.Sheet(), (TwipsSize{3000, 4250}));
  preview.SetZoom(1000);
  EXPECT_EQ(preview.Sheet(), (TwipsSize{12000, 17000}));
  EXPECT_EQ(preview.ChartSize(), (TwipsSize{10575, 8295}));
}

TEST(PrintPreviewTest, TheSheetTurnsAndTurnsBackAtEveryZoom) {
  FakeChart chart;
  PrintPreview preview(chart);
  preview.ToggleOrientation();
  EXPECT_EQ(preview.Sheet(), (TwipsSize{8500, 6000}));
  EXPECT_EQ(preview.PrintOrientation(), 2);
  preview.SetZoom(100);
  EXPECT_EQ(preview.Sheet(), (TwipsSize{17000, 12000}));
  preview.ToggleOrientation();
  EXPECT_EQ(preview.Sheet(), (TwipsSize{12000, 17000}));
  EXPECT_EQ(preview.PrintOrientation(), 1);
}

TEST(PrintPreviewTest, ADraggedChartKeepsItsPlaceOnTheSheet) {
  FakeChart chart;
  PrintPreview preview(chart);
  preview.Move({500, 500});  // no button down
  EXPECT_EQ(preview.ChartPlace(), TwipsPoint{});
  preview.Press({100, 100});
  preview.Move({600, 100});
  preview.Release({600, -400});
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{1000, -500}));
  preview.SetZoom(100);
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{2000, -1000}));
  preview.SetZoom(25);
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{500, -250}));
  preview.ScrollSheet(2, 3);
  EXPECT_EQ(preview.SheetPlace(), (TwipsPoint{-800, -2700}));
  EXPECT_EQ(preview.ChartPlace(), (TwipsPoint{500, -250}));
}

TEST(PrintPreviewTest, ASizeOfTheBarsCountsAtEveryLaterZoom) {
  FakeChart chart;
  PrintPreview preview(chart);
  preview.SetChartPercent(PictureSide::kWidth, 50);
  preview.SetChartPercent(PictureSide::kWidth, 50);  // from the last zoom, so not once more
  preview.SetChartPercent(PictureSide::kHeight, 100);
  EXPECT_EQ(preview.ChartSize(), (TwipsSize{10575, 16590}));
  preview.SetZoom(100);
  EXPECT_EQ(preview.ChartSize(), (TwipsSize{21150, 33180}));
  EXPECT_EQ(chart.full_width, 21150);
}

TEST(PrintPreviewTest, TheNextPreviewCountsWhatTheLastOneLeftAsWhole) {
  FakeChart chart;
  PrintPreview{chart};
  chart.full_width = static_cast<std::int32_t>(chart.width);
  chart.full_height = static_cast<std::int32_t>(chart.height);
  PrintPreview second(chart);
  second.SetZoom(100);
  EXPECT_EQ(second.ChartSize(), (TwipsSize{5287, 4147}));
  EXPECT_EQ(second.PrintQualityCode(), -3);
  second.SetQuality(2);
  second.SetCopies(10);
  EXPECT_EQ(second.PrintQualityCode(), -4);
  EXPECT_EQ(second.NoOfCopies(), 10);
}

}  // namespace
}  // namespace velumar
