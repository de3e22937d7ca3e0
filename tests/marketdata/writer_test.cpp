#include "marketdata/metalib_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <utility>

#include "marketdata/index_cache.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

using testing::ElementsAre;

class Writer : public testing::Test {
 protected:
  // Opens the directory, selects, works and closes, as each step of a replay does.
  template <typename Work>
  void With(std::string_view symbol, int interval, Work&& work) {
    MetaLibWriter writer(cache_);
    writer.OpenDirectory(directory_.Text());
    writer.SelectSeries(symbol, interval == -1 ? 1 : 0, interval);
    work(writer);
    writer.CloseSecurity();
    writer.CloseDirectory();
  }

  static void Append(MetaLibWriter& writer, const Bar& bar) {
    writer.AppendBar(bar.date, bar.time, bar.open, bar.high, bar.low, bar.close, bar.volume,
                     bar.open_interest);
  }

  static void Write(MetaLibWriter& writer, const std::vector<Bar>& bars) {
    std::vector<int> dates;
    std::vector<int> times;
    std::vector<float> values[6];
    for (const Bar& bar : bars) {
      dates.push_back(bar.date);
      times.push_back(bar.time);
      const float columns[] = {bar.open,  bar.high,   bar.low,
                               bar.close, bar.volume, bar.open_interest};
      for (int i = 0; i < 6; ++i) values[i].push_back(columns[i]);
    }
    writer.WriteSeries(dates, times, values[0], values[1], values[2], values[3], values[4],
                       values[5]);
  }

  void Append(std::string_view symbol, int interval, const Bar& bar) {
    With(symbol, interval, [&](MetaLibWriter& writer) { Append(writer, bar); });
  }

  ScratchFolder directory_;
  IndexCache cache_;
};

// A sorted map is what a series is, by date or by date and time.
class Model {
 public:
  explicit Model(bool intraday) : intraday_(intraday) {}

  void Put(const Bar& bar) { bars_[KeyOf(bar.date, bar.time)] = bar; }
  void Remove(int date, int time) { bars_.erase(KeyOf(date, time)); }
  std::vector<Bar> Bars() const {
    std::vector<Bar> bars;
    for (const auto& entry : bars_) bars.push_back(entry.second);
    return bars;
  }

 private:
  std::pair<int, int> KeyOf(int date, int time) const { return {date, intraday_ ? time : 0}; }

  bool intraday_;
  std::map<std::pair<int, int>, Bar> bars_;
};

TEST_F(Writer, RandomWorkLeavesWhatASortedMapHolds) {
  directory_.Write(
      "MASTER", Master({{.number = 1, .symbol = "AAA"},
                        {.number = 2, .symbol = "BBB", .frame = 'I', .fields = 8, .minutes = 15}}));
  std::mt19937 random(11);
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  const auto some_date = [&] { return 20050101 + below(4) * 100 + below(25); };
  for (const auto& series : {std::pair("AAA", -1), std::pair("BBB", 15)}) {
    const char* const symbol = series.first;
    const int interval = series.second;
    Model model(interval != -1);
    for (int round = 0; round < 400; ++round) {
      const int time = interval == -1 ? 0 : 93000 + 1500 * below(3);
      const int date = some_date();
      const int kind = below(12);
      With(symbol, interval, [&](MetaLibWriter& writer) {
        for (int i = 0; kind < 6 && i < 3; ++i) {
          const Bar bar = TimedBar(some_date(), time, static_cast<float>(below(50)));
          Append(writer, bar);
          model.Put(bar);
          EXPECT_TRUE(interval == -1 ? writer.DailyBarExists(bar.date)
                                     : writer.IntradayBarExists(bar.date, bar.time));
        }
        if (kind >= 6 && kind < 11) {
          interval == -1 ? writer.DeleteDailyBar(date) : writer.DeleteIntradayBar(date, time);
          model.Remove(date, time);
        }
        if (kind == 11 && below(5) == 0) {
          std::vector<Bar> bars = model.Bars();
          std::ranges::shuffle(bars, random);
          bars.push_back(TimedBar(date, time, 1));
          bars.push_back(TimedBar(date, time, 2));
          Write(writer, bars);
          model.Put(bars.back());
        }
      });
      ASSERT_EQ(ReadBars(directory_, symbol, interval), model.Bars()) << symbol << " " << round;
    }
  }
}

TEST_F(Writer, StepsTouchTheEndOfTheFileAlone) {
  directory_.Write("MASTER", Master({{}}));
  const std::vector<Bar> old = {DailyBar(20050103), DailyBar(20050104), DailyBar(20050105)};
  directory_.Write("F1.DAT", DailyBytes(old));
  // A second name for the bytes shows whether the file was renewed or changed in its place.
  std::filesystem::create_hard_link(directory_ / "F1.DAT", directory_ / "twin");
  const auto in_place = [&] { return directory_.Read("twin") == directory_.Read("F1.DAT"); };
  With("AAA", -1, [&](MetaLibWriter& writer) {
    Append(writer, DailyBar(20050106));
    writer.DeleteDailyBar(20050106);
    writer.DeleteDailyBar(20050105);
    writer.DeleteDailyBar(20050104);
    writer.DeleteDailyBar(20010101);
    EXPECT_TRUE(in_place());
    EXPECT_EQ(directory_.Read("F1.DAT").size(), 28U * 2);
    Append(writer, DailyBar(20050107));
    EXPECT_TRUE(in_place());
    Append(writer, DailyBar(20050101));
    EXPECT_FALSE(in_place());
  });
  EXPECT_THAT(ReadBars(directory_),
              ElementsAre(DailyBar(20050101), DailyBar(20050103), DailyBar(20050107)));
  EXPECT_THAT(directory_.Names(), ElementsAre("F1.DAT", "MASTER", "twin"));
}

TEST_F(Writer, ADisorderedFileIsSortedAndItsTornEndIsDropped) {
  directory_.Write("MASTER", Master({{}}));
  std::string bytes = DailyBytes({DailyBar(20050105), DailyBar(20050103, 1), DailyBar(20050110),
                                  DailyBar(20050103, 2), DailyBar(20050120)});
  bytes[2] = 5;  // the header counts four bars and itself
  directory_.Write("F1.DAT", bytes + "torn");
  With("AAA", -1, [&](MetaLibWriter& writer) {
    EXPECT_TRUE(writer.DailyBarExists(20050105));
    EXPECT_FALSE(writer.DailyBarExists(20050120));
    Append(writer, DailyBar(20050107));
  });
  EXPECT_EQ(directory_.Read("F1.DAT"), DailyBytes({DailyBar(20050103, 2), DailyBar(20050105),
                                                   DailyBar(20050107), DailyBar(20050110)}));
}

TEST_F(Writer, TheIndexesHaveTheDatesOfTheBarsAndKeepOtherBytes) {
  std::vector<Listed> low = {{.number = 1, .first = 1000101, .last = 1091231},
                             {.number = 2, .symbol = "BBB", .first = 1000101, .last = 1091231}};
  directory_.Write("EMASTER", Emaster(low));
  std::string master = Master(low);
  master[49] = 'S';  // a serial number that other programs count
  directory_.Write("MASTER", master);
  directory_.Write("XMASTER", Xmaster({{.number = 256,
                                        .symbol = "XXX",
                                        .frame = 'I',
                                        .minutes = 5,
                                        .bits = 0xFF,
                                        .first = 1000101,
                                        .last = 1091231}}));
  Append("AAA", -1, DailyBar(20050103));
  Append("AAA", -1, DailyBar(20050104));
  Append("XXX", 5, TimedBar(20050105, 93000));
  low[0].first = 1050103;
  low[0].last = 1050104;
  master = Master(low);
  master[49] = 'S';
  EXPECT_EQ(directory_.Read("MASTER"), master);
  EXPECT_EQ(directory_.Read("EMASTER"), Emaster(low));
  // Date and time of the first bar, date of the last.
  EXPECT_EQ(directory_.Read("XMASTER").substr(150 + 108, 12),
            Hex("B9 F0 31 01 48 6B 01 00 B9 F0 31 01"));
  With("AAA", -1, [](MetaLibWriter& writer) { Write(writer, {}); });
  low[0].first = low[0].last = 0;
  EXPECT_EQ(directory_.Read("EMASTER"), Emaster(low));
}

TEST_F(Writer, ASeriesOfUnknownMinutesTakesThoseThatItIsWrittenWith) {
  const Listed unknown = {.number = 1, .frame = 'I', .fields = 8};
  directory_.Write("master", Master({unknown, {.number = 2, .symbol = "BBB"}}));
  const std::vector<Bar> bars = {TimedBar(20050103, 93000), TimedBar(20050103, 100000)};
  With("AAA", 15, [&](MetaLibWriter& writer) { Write(writer, bars); });
  EXPECT_EQ(ReadBars(directory_, "AAA", 15), bars);  // not the 30 minutes between the bars
  EXPECT_THAT(directory_.Names(), ElementsAre("f1.dat", "master"));
  IndexCache cache;
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory_.Text());
  EXPECT_EQ(ErrorOf([&] { reader.SelectSeries("AAA", 0, 30); }), MetaLibError::kSeriesNotFound);
}

TEST_F(Writer, WhatCanNotBeStoredIsNamedAndChangesNothing) {
  directory_.Write("MASTER", Master({{}, {.number = 2, .symbol = "ODD", .fields = 99}}));
  Append("AAA", -1, DailyBar(20050103));
  const std::string before = directory_.Read("F1.DAT");
  Bar huge = DailyBar(20050104);
  huge.low = std::numeric_limits<float>::infinity();
  for (const auto& [bar, field] : {std::pair(huge, "low"), std::pair(DailyBar(-5), "date")}) {
    std::string text;
    EXPECT_EQ(ErrorOf([&] { Append("AAA", -1, bar); }, &text), MetaLibError::kNotStorable);
    for (const std::string& part :
         {std::string("F1.DAT"), std::string("AAA"), std::string(field)}) {
      EXPECT_THAT(text, testing::HasSubstr(part));
    }
    const auto write = [&](MetaLibWriter& writer) { Write(writer, {DailyBar(20060101), bar}); };
    EXPECT_EQ(ErrorOf([&] { With("AAA", -1, write); }), MetaLibError::kNotStorable);
  }
  EXPECT_EQ(directory_.Read("F1.DAT"), before);
  EXPECT_EQ(ErrorOf([&] { Append("ODD", -1, DailyBar(20050103)); }), MetaLibError::kNotStorable);
}

TEST_F(Writer, ASeriesEndsAtTheLastCountThereIs) {
  directory_.Write("MASTER", Master({{.fields = 4}}));
  std::vector<Bar> bars(65535);
  for (int i = 0; i < 65535; ++i) {
    bars[i].date = (1950 + i / 1000) * 10000 + i % 1000;
  }
  With("AAA", -1, [&](MetaLibWriter& writer) {
    EXPECT_EQ(ErrorOf([&] { Write(writer, bars); }), MetaLibError::kSeriesFull);
    bars.pop_back();
    Write(writer, bars);
    for (const int date : {20991231, 19490101}) {
      EXPECT_EQ(ErrorOf([&] { Append(writer, DailyBar(date)); }), MetaLibError::kSeriesFull);
    }
    writer.DeleteDailyBar(bars.back().date);
    Append(writer, bars.back());
  });
  EXPECT_EQ(ReadBars(directory_).size(), 65534U);
}

TEST_F(Writer, TheCacheSeesWhatOtherProgramsChange) {
  directory_.Write("MASTER", Master({{}}));
  Append("AAA", -1, DailyBar(20050103));
  const auto symbols = [&] {
    std::string found;
    for (const SecurityInfo& info : SecuritiesIn(directory_.Text(), cache_)) {
      found += info.symbol + std::to_string(info.bars) + " ";
    }
    return found;
  };
  // Changes that keep the size of the file, within the same tick of its clock.
  std::fstream file(directory_ / "MASTER", std::ios::in | std::ios::out | std::ios::binary);
  for (const char* symbol : {"AAA", "BBB", "CCC", "DDD", "EEE", "FFF", "GGG", "ZZZ"}) {
    file.seekp(53 + 36);
    file << symbol << std::flush;
    EXPECT_EQ(symbols(), std::string(symbol) + "1 ");
    Append(symbol, -1, DailyBar(20050103));
  }
  directory_.Write("EMASTER", Emaster({{.number = 9, .symbol = "NEW"}}));
  EXPECT_EQ(symbols(), "ZZZ1 NEW0 ");
  directory_.Write("F9.DAT", DailyBytes({DailyBar(20050103), DailyBar(20050104)}));
  EXPECT_EQ(symbols(), "ZZZ1 NEW2 ");
  std::filesystem::remove(directory_ / "F9.DAT");
  EXPECT_EQ(symbols(), "ZZZ1 NEW0 ");
}

}  // namespace

}  // namespace velumar
