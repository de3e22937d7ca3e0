#include "marketdata/metalib_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
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
    std::map<std::pair<int, int>, Bar> model;  // by date, or by date and time
    const auto put = [&](const Bar& bar) { model[{bar.date, bar.time}] = bar; };
    const auto bars_of_model = [&] {
      std::vector<Bar> bars;
      for (const auto& entry : model) bars.push_back(entry.second);
      return bars;
    };
    for (int round = 0; round < 400; ++round) {
      const int time = interval == -1 ? 0 : 93000 + 1500 * below(3);
      const int date = some_date();
      const int kind = below(12);
      With(symbol, interval, [&](MetaLibWriter& writer) {
        for (int i = 0; kind < 6 && i < 3; ++i) {
          const Bar bar = TimedBar(some_date(), time, static_cast<float>(below(50)));
          Append(writer, bar);
          put(bar);
          EXPECT_TRUE(interval == -1 ? writer.DailyBarExists(bar.date)
                                     : writer.IntradayBarExists(bar.date, bar.time));
        }
        if (kind >= 6 && kind < 11) {
          interval == -1 ? writer.DeleteDailyBar(date) : writer.DeleteIntradayBar(date, time);
          model.erase({date, time});
        }
        if (kind == 11 && below(5) == 0) {
          std::vector<Bar> bars = bars_of_model();
          std::ranges::shuffle(bars, random);
          bars.push_back(TimedBar(date, time, 1));
          bars.push_back(TimedBar(date, time, 2));
          Write(writer, bars);
          put(bars.back());
        }
      });
      ASSERT_EQ(ReadBars(directory_, symbol, interval), bars_of_model()) << symbol << " " << round;
    }
  }
}

TEST_F(Writer, StepsTouchOnlyTheEndOfTheFile) {
  directory_.Write("MASTER", Master({{}}));
  const std::vector<Bar> old = {DailyBar(20050103), DailyBar(20050104), DailyBar(20050105)};
  directory_.Write("F1.DAT", DailyBytes(old));
  // A second name shows whether the file was replaced or changed in place.
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

TEST_F(Writer, AnUnsortedFileIsSortedAndItsTornEndDropped) {
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

TEST_F(Writer, ASeriesOfUnknownMinutesTakesThoseItIsWrittenWith) {
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

// Two changes within one tick of a file system's clock look the same: same size, same time. The
// time lies ahead, so it has never settled.
TEST_F(Writer, TheCacheSeesEveryChangeOfAnotherProgram) {
  const auto ahead = std::filesystem::file_time_type::clock::now() + std::chrono::hours(1);
  const auto stamp = [&](const char* name) {
    std::filesystem::last_write_time(directory_ / name, ahead);
  };
  const auto change = [&](const char* name, std::size_t offset, const std::string& bytes) {
    std::fstream file(directory_ / name, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(offset)) << bytes << std::flush;
    file.close();
    stamp(name);
  };
  directory_.Write("MASTER", Master({{.frame = 'I', .fields = 8}}));
  directory_.Write("F1.DAT", DataBytes(8, 3,
                                       {Word(1050103) + Word(93000) + std::string(24, '\0'),
                                        Word(1050103) + Word(94500) + std::string(24, '\0')}));
  for (const char* symbol : {"AAA", "BBB", "CCC"}) {
    change("MASTER", 53 + 36, symbol);
    for (const int minutes : {30, 45}) {
      change("F1.DAT", 32 * 2 + 4, Word(93000 + minutes * 100));
      EXPECT_THAT(ListOf(directory_.Text(), cache_),
                  ElementsAre(symbol + (":" + std::to_string(minutes)) + " F1 Alpha"));
    }
  }
  stamp("");
  EXPECT_EQ(SecuritiesIn(directory_.Text(), cache_).size(), 1U);
  directory_.Write("EMASTER", Emaster({{.number = 9, .symbol = "NEW"}}));
  stamp("");
  EXPECT_EQ(SecuritiesIn(directory_.Text(), cache_).size(), 2U);
}

}  // namespace

}  // namespace velumar
