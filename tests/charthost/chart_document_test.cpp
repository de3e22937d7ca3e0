#include "charthost/chart_document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "marketdata/metalib_writer.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// A folder with the symbol SCB daily and of 5 minutes, and ADVANC daily.
class ChartDocumentTest : public testing::Test {
 protected:
  ChartDocumentTest() {
    StoreSecurity(folder_, {"ADVANC", "Advanced Info", -1}, DailyBars(40), cache_);
    StoreSecurity(folder_, {"SCB", "Bank", -1}, DailyBars(300), cache_);
    StoreSecurity(folder_, {"SCB", "Bank", 5}, IntradayBars(60, 5), cache_);
  }

  // Replaces the bars of a series by that many.
  void KeepBars(const std::string& symbol, int interval, int count) {
    MetaLibWriter writer(cache_);
    writer.OpenDirectory(folder_);
    writer.SelectSeries(symbol, interval < 0 ? 1 : 0, interval);
    writer.WriteSeries({}, {}, {}, {}, {}, {}, {}, {});
    for (const Bar& bar : interval < 0 ? DailyBars(count) : IntradayBars(count, interval)) {
      writer.AppendBar(bar.date, bar.time, bar.open, bar.high, bar.low, bar.close, bar.volume, 0);
    }
    writer.CloseSecurity();
    writer.CloseDirectory();
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
  ASSERT_EQ(chart.Model().Series().size(), 300);
  EXPECT_EQ(chart.Model().Series().dates.back(), MadeDate(299));
  chart.Model().Window().Zoom(0.5);
  const double span = chart.Model().Window().Span();
  for (const int bars : {301, 331, 330, 300}) {
    KeepBars("SCB", -1, bars);
    chart.Refresh();
    ASSERT_EQ(chart.Model().Series().size(), bars);
    EXPECT_EQ(chart.Model().Series().dates.back(), MadeDate(bars - 1));
    EXPECT_EQ(chart.Model().Window().LastBar(), bars - 1);
    EXPECT_DOUBLE_EQ(chart.Model().Window().Span(), span);
    EXPECT_EQ(chart.Model().Average(1).size(), static_cast<std::size_t>(bars));
  }
}

// A working folder names all series of the run's directory, and only later one of them gets bars.
TEST_F(ChartDocumentTest, TurnsToTheSeriesThatGetsTheBars) {
  KeepBars("SCB", -1, 0);
  KeepBars("SCB", 5, 0);
  ChartDocument chart = Open("SCB");
  EXPECT_EQ(chart.Model().Series().size(), 0);
  EXPECT_EQ(chart.Error(), "");
  KeepBars("SCB", 5, 40);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), 5);
  EXPECT_EQ(chart.Model().Series().size(), 40);
  EXPECT_TRUE(chart.Model().Series().has_times);
  KeepBars("SCB", -1, 10);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), 5) << "stays with what it shows";
  KeepBars("SCB", 5, 0);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), -1);
}

TEST_F(ChartDocumentTest, ShowsTheReasonAndNoBarsWhileItCannotBeRead) {
  ChartDocument chart = Open("SCB");
  chart.Model().Window().Zoom(0.5);
  const double span = chart.Model().Window().Span();
  std::filesystem::rename(folder_, folder_ + ".away");
  chart.Refresh();
  EXPECT_EQ(chart.Error(), "Folder \"" + folder_ + "\" not found.");
  EXPECT_EQ(chart.Model().Series().size(), 0);
  EXPECT_TRUE(chart.Model().Average(0).empty());
  std::filesystem::create_directory(folder_);
  chart.Refresh();
  EXPECT_NE(chart.Error().find("No market data in"), std::string::npos);
  std::filesystem::remove(folder_);
  std::filesystem::rename(folder_ + ".away", folder_);
  chart.Refresh();
  EXPECT_EQ(chart.Error(), "");
  EXPECT_EQ(chart.Model().Series().size(), 300);
  EXPECT_EQ(chart.Model().Window().Span(), span);
  EXPECT_EQ(Open("XYZ").Error(), "There is no security \"XYZ\" in \"" + folder_ + "\".");
}

TEST_F(ChartDocumentTest, TypedLinesBecomeARequestOrASentence) {
  const auto securities = source_.List(folder_);
  ASSERT_EQ(securities.size(), 3U);
  EXPECT_FALSE(RequestOf({folder_, "advanc  ", std::nullopt}, securities).file_number);
  const std::pair<TypedChoice, std::string> kRefused[] = {
      {{folder_, "  ", std::nullopt}, "Type a symbol or choose a security from the list."},
      {{folder_, "ADV", std::nullopt}, "There is no security \"ADV\" in this folder."},
      {{folder_, "ADVANC", 5}, "\"ADVANC\" has no series \"5 minutes\" in this folder."}};
  for (const auto& [choice, sentence] : kRefused) {
    try {
      RequestOf(choice, securities);
      ADD_FAILURE() << sentence;
    } catch (const std::invalid_argument& failure) {
      EXPECT_EQ(failure.what(), sentence);
    }
  }
  // A row that was chosen stays chosen, also without bars.
  ChartDocument chart(source_, RequestOf({folder_, "scb", 5}, securities));
  KeepBars("SCB", 5, 0);
  chart.Refresh();
  EXPECT_EQ(chart.Interval(), 5);
  EXPECT_EQ(chart.Model().Series().size(), 0);
}

// A reader must never be in the way of the program that writes.
TEST_F(ChartDocumentTest, ReadsAFolderThatIsInUseAndLeavesNothingInIt) {
  MetaLibWriter writer(cache_);
  writer.OpenDirectory(folder_);
  const auto files = [&] {
    return std::distance(std::filesystem::directory_iterator(folder_), {});
  };
  const auto before = files();
  ChartDocument chart = Open("SCB");
  chart.Refresh();
  EXPECT_EQ(chart.Error(), "");
  EXPECT_EQ(files(), before);
}

TEST_F(ChartDocumentTest, ReportsItsStateAsJson) {
  StoreSecurity(folder_, {"TICK", "Tick", -1}, {{MadeDate(0), 0, 55, 56, 54, 55.51F, 9, 0}},
                cache_);
  const ChartDocument document = Open("TICK");
  const std::string text = StateLine("opened", {2, 1, "A \"title\""}, &document);
  const auto line = nlohmann::json::parse(text);
  EXPECT_EQ(line["event"], "opened");
  EXPECT_EQ(line["title"], "A \"title\"");
  EXPECT_EQ(line["chart"]["symbol"], "TICK");
  EXPECT_EQ(line["chart"]["folder"], folder_);
  EXPECT_EQ(line["chart"]["last"]["date"], MadeDate(0));
  EXPECT_EQ(line["chart"]["shown"][1], 0);
  EXPECT_TRUE(line["chart"]["error"].is_null());
  EXPECT_NE(text.find("\"close\":55.51}"), std::string::npos);
  EXPECT_TRUE(nlohmann::json::parse(StateLine("closed", {}, nullptr))["chart"].is_null());
}

}  // namespace
}  // namespace velumar
