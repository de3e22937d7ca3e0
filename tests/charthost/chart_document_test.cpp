#include "charthost/chart_document.h"

#include "marketdata/metalib_writer.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// A folder with the symbol SCB daily and of 5 minutes, and ADVANC daily.
struct ChartDocumentTest : testing::Test {
  ChartDocumentTest() {
    StoreSecurity(folder_, {"ADVANC", "Advanced Info", -1}, DailyBars(40), cache_);
    KeepBars(-1, 300);
    KeepBars(5, 60);
  }

  // Replaces the bars of a series of SCB by that many.
  void KeepBars(int interval, int count) {
    StoreSecurity(folder_, {"SCB", "Bank", interval},
                  interval < 0 ? DailyBars(count) : IntradayBars(count, interval), cache_);
  }

  ChartDocument Open(const std::string& symbol) {
    return {source_, {folder_, symbol, std::nullopt}};
  }

  ScratchFolder scratch_;
  std::string folder_ = scratch_.Sub("data");
  IndexCache cache_;
  SeriesSource source_{cache_};
};

TEST_F(ChartDocumentTest, ShowsTheBarsThatAreStoredAndFollowsThem) {
  ChartDocument chart = Open(" scb ");
  EXPECT_EQ(chart.Symbol(), "SCB");
  EXPECT_EQ(chart.Name(), "Bank");
  EXPECT_EQ(chart.Interval(), -1);
  chart.Model().Window().Zoom(0.5);
  const double span = chart.Model().Window().Span();
  for (const int bars : {301, 331, 300}) {
    KeepBars(-1, bars);
    chart.Refresh();
    ASSERT_EQ(chart.Model().Series().size(), bars);
    EXPECT_EQ(chart.Model().Series().dates.back(), MadeDate(bars - 1));
    EXPECT_EQ(chart.Model().Window().LastBar(), bars - 1);
    EXPECT_DOUBLE_EQ(chart.Model().Window().Span(), span);
    EXPECT_EQ(chart.Model().Indicators()[1].run.Line(0).size(), static_cast<std::size_t>(bars));
  }
}

// The newest bar is the month so far, whatever the replay does.
TEST_F(ChartDocumentTest, ShowsTheSeriesInAnotherFrameAndFollowsIt) {
  ChartDocument chart(source_, {folder_, "SCB", std::nullopt}, {{-1, {Frame::Unit::kMonth}}});
  EXPECT_EQ(chart.Model().Series().size(), 11);  // months of 28 days
  for (const int bars : {301, 309, 300}) {
    KeepBars(-1, bars);
    chart.Refresh();
    EXPECT_EQ(chart.Model().Series().size(), (bars + 27) / 28);
    EXPECT_TRUE(chart.Model().Series().newest_unfinished);
    EXPECT_EQ(chart.Model().Indicators()[0].run.Line(0).size(),
              static_cast<std::size_t>((bars + 27) / 28));
  }
  chart.ShowFrame({Frame::Unit::kWeek});
  const ChartDocument weeks(source_, {folder_, "SCB", std::nullopt}, {{-1, {Frame::Unit::kWeek}}});
  EXPECT_EQ(chart.Model().Series().starts, weeks.Model().Series().starts);
  chart.ShowFrame({Frame::Unit::kMonth});
  chart.Model().Window().ShowOldest();
  chart.Model().Window().ShowBetween(0, 9);
  chart.ShowFrame({});
  EXPECT_EQ(chart.Model().Series().size(), 300);
  EXPECT_EQ(chart.Model().Window().LastBar(), 10 * 28 - 1) << "the last day of the tenth month";
  chart.Model().Window().ShowBetween(100, 140);
  const double span = chart.Model().Window().Span();
  chart.Refresh();
  EXPECT_DOUBLE_EQ(chart.Model().Window().Span(), span);
  chart.ShowFrame({Frame::Unit::kMinutes, 60});
  EXPECT_EQ(chart.ShownFrame(), Frame()) << "days have no hours";
}

// A working folder names all series of the run's directory, and only later one of them gets bars.
TEST_F(ChartDocumentTest, SwitchesToTheSeriesThatGetsBars) {
  KeepBars(-1, 0);
  KeepBars(5, 0);
  ChartDocument chart = Open("SCB");
  EXPECT_EQ(chart.Model().Series().size(), 0);
  EXPECT_EQ(chart.Error(), "");
  KeepBars(5, 40);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), 5);
  EXPECT_EQ(chart.Model().Series().size(), 40);
  KeepBars(-1, 10);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), 5) << "stays with what it shows";
  KeepBars(5, 0);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), -1);

  const std::map<int, Frame> frames = {{-1, {Frame::Unit::kWeek}},
                                       {5, {Frame::Unit::kMinutes, 60}}};
  ChartDocument framed(source_, {folder_, "SCB", std::nullopt}, frames);
  EXPECT_EQ(framed.Model().Series().size(), 3) << "weeks";
  KeepBars(-1, 0);
  KeepBars(5, 40);
  framed.Refresh();
  const ChartDocument hours(source_, {folder_, "SCB", std::nullopt}, frames);
  EXPECT_EQ(framed.Model().Series().starts, hours.Model().Series().starts);
}

TEST_F(ChartDocumentTest, ShowsTheReasonAndNoBarsWhileItCannotBeRead) {
  ChartDocument chart = Open("SCB");
  chart.Model().Window().Zoom(0.5);
  const double span = chart.Model().Window().Span();
  std::filesystem::rename(folder_, folder_ + ".away");
  chart.Refresh();
  EXPECT_EQ(chart.Error(), "Folder \"" + folder_ + "\" not found.");
  EXPECT_EQ(chart.Model().Series().size(), 0);
  EXPECT_TRUE(chart.Model().Indicators()[0].run.Line(0).empty());
  std::filesystem::create_directory(folder_);
  chart.Refresh();
  EXPECT_NE(chart.Error().find("No market data in"), std::string::npos);
  std::filesystem::remove(folder_);
  std::filesystem::rename(folder_ + ".away", folder_);
  chart.Refresh();
  EXPECT_EQ(chart.Error(), "");
  EXPECT_EQ(chart.Model().Series().size(), 300);
  EXPECT_EQ(chart.Model().Window().Span(), span);
}

TEST_F(ChartDocumentTest, AChosenIntervalStaysChosenAndMustExist) {
  const auto securities = source_.List(folder_);
  EXPECT_THROW(RequestOf({folder_, "  ", std::nullopt}, securities), std::invalid_argument);
  EXPECT_THROW(RequestOf({folder_, "ADVANC", 5}, securities), std::invalid_argument);
  ChartDocument chart(source_, RequestOf({folder_, "scb", 5}, securities));
  KeepBars(5, 0);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), 5);
}

// A reader must never be in the way of the program that writes.
TEST_F(ChartDocumentTest, ReadsAFolderThatIsInUseAndLeavesNothingInIt) {
  MetaLibWriter writer(cache_);
  writer.OpenDirectory(folder_);
  const auto before = FilesOf(folder_);
  EXPECT_EQ(Open("SCB").Error(), "");
  EXPECT_EQ(FilesOf(folder_), before);
}

TEST_F(ChartDocumentTest, ReportsThePriceAsItWasQuoted) {
  StoreSecurity(folder_, {"TICK", "Tick", -1}, {{MadeDate(0), 0, 55, 56, 54, 55.51F, 9, 0}},
                cache_);
  const ChartDocument document = Open("TICK");
  EXPECT_NE(StateLine("opened", {}, &document).find("\"close\":55.51}"), std::string::npos);
}

}  // namespace
}  // namespace velumar
