#include "marketdata/metalib_writer.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <random>

#include "marketdata/directory_editor.h"
#include "marketdata/market_files.h"

namespace velumar {

namespace {

struct Writer : DirectoryTest {
  // Opens the directory, selects, works and closes, as each step of a replay does.
  template <typename Work>
  void With(std::string_view symbol, int interval, Work&& work) {
    MetaLibWriter writer(cache_);
    writer.OpenDirectory(Text());
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
    const auto column = [&bars]<typename Value>(Value Bar::*field) {
      std::vector<Value> values;
      for (const Bar& bar : bars) values.push_back(bar.*field);
      return values;
    };
    writer.WriteSeries(column(&Bar::date), column(&Bar::time), column(&Bar::open),
                       column(&Bar::high), column(&Bar::low), column(&Bar::close),
                       column(&Bar::volume), column(&Bar::open_interest));
  }

  void Append(std::string_view symbol, int interval, const Bar& bar) {
    With(symbol, interval, [&](MetaLibWriter& writer) { Append(writer, bar); });
  }
};

TEST_F(Writer, RandomChangesMatchASortedMap) {
  directory_.Write(
      "MASTER", Master({{.number = 1, .symbol = "AAA"},
                        {.number = 2, .symbol = "BBB", .frame = 'I', .fields = 8, .minutes = 15}}));
  std::mt19937 random(11);
  const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
  const auto some_date = [&] { return 20050101 + below(4) * 100 + below(25); };
  for (const auto& [symbol, interval] : {std::pair("AAA", -1), std::pair("BBB", 15)}) {
    std::map<std::pair<int, int>, Bar> model;  // by date, or by date and time
    const auto bars_of_model = [&] {
      std::vector<Bar> bars;
      for (const auto& entry : model) bars.push_back(entry.second);
      return bars;
    };
    for (int round = 0; round < 400; ++round) {
      const bool daily = interval == -1;
      const int time = daily ? 0 : 93000 + 1500 * below(3);
      const int date = some_date();
      const int kind = below(12);
      With(symbol, interval, [&](MetaLibWriter& writer) {
        for (int i = 0; kind < 6 && i < 3; ++i) {
          const Bar bar = TimedBar(some_date(), time, static_cast<float>(below(50)));
          Append(writer, bar);
          model[{bar.date, bar.time}] = bar;
        }
        if (kind >= 6 && kind < 11) {
          daily ? writer.DeleteDailyBar(date) : writer.DeleteIntradayBar(date, time);
          model.erase({date, time});
        }
        if (kind == 11 && below(5) == 0) {
          std::vector<Bar> bars = bars_of_model();
          std::ranges::shuffle(bars, random);
          bars.push_back(TimedBar(date, time, 1));
          bars.push_back(TimedBar(date, time, 2));
          Write(writer, bars);
          model[{date, time}] = bars.back();
        }
      });
      ASSERT_EQ(ReadBars(directory_, symbol, interval), bars_of_model()) << symbol << " " << round;
    }
  }
}

TEST_F(Writer, StepsTouchOnlyTheEndOfTheFile) {
  directory_.Write("MASTER", Master({{}}));
  directory_.Write("F1.DAT", DailyBytes({DailyBar(20050103), DailyBar(20050104)}));
  // A second name shows whether the file was replaced or changed in place.
  std::filesystem::create_hard_link(directory_ / "F1.DAT", directory_ / "twin");
  const auto in_place = [&] { return directory_.Read("twin") == directory_.Read("F1.DAT"); };
  With("AAA", -1, [&](MetaLibWriter& writer) {
    writer.DeleteDailyBar(20050104);
    EXPECT_EQ(directory_.Read("F1.DAT"), DailyBytes({DailyBar(20050103)}));
    Append(writer, DailyBar(20050107));
    EXPECT_TRUE(in_place());
    Append(writer, DailyBar(20050101));
    EXPECT_FALSE(in_place());
  });
  EXPECT_THAT(directory_.Names(), ElementsAre("F1.DAT", "MASTER", "twin"));
}

TEST_F(Writer, AnUnsortedFileIsSortedAndItsTornEndDropped) {
  directory_.Write("MASTER", Master({{}}));
  std::string bytes = DailyBytes({DailyBar(20050105), DailyBar(20050103, 1), DailyBar(20050110),
                                  DailyBar(20050103, 2), DailyBar(20050120)});
  bytes[2] = 5;  // the header counts four bars and itself
  directory_.Write("F1.DAT", bytes + "torn");
  With("AAA", -1, [&](MetaLibWriter& writer) {
    writer.DeleteDailyBar(20050120);  // it is not counted, so nothing happens
    Append(writer, DailyBar(20050107));
  });
  EXPECT_EQ(directory_.Read("F1.DAT"), DailyBytes({DailyBar(20050103, 2), DailyBar(20050105),
                                                   DailyBar(20050107), DailyBar(20050110)}));
  // A sorted one with bars after those that it counts.
  bytes = DailyBytes({DailyBar(20050103), DailyBar(20050104), DailyBar(20050105)});
  bytes[0] = bytes[2] = 2;  // the largest count so far, and the count
  directory_.Write("F1.DAT", bytes);
  Append("AAA", -1, DailyBar(20050110));
  EXPECT_EQ(directory_.Read("F1.DAT"),
            DailyBytes({DailyBar(20050103), DailyBar(20050110)}).replace(0, 1, "\x03"));
}

TEST_F(Writer, TheIndexesHaveTheDatesOfTheBarsAndKeepOtherBytes) {
  std::vector<Listed> low = {{.first = 1000101, .last = 1091231},
                             {.number = 2, .symbol = "BBB", .first = 1000101, .last = 1091231}};
  const auto master = [&low] { return Master(low).replace(49, 1, "S"); };  // of other programs
  directory_.Write("MASTER", master());
  directory_.Write("EMASTER", Emaster(low));
  std::string high =
      Xmaster({{.number = 256, .symbol = "XXX", .frame = 'I', .minutes = 5, .bits = 0xFF}})
          .replace(150 + 104, 4, WholeDate(1040101));  // when it was collected
  directory_.Write("XMASTER", high);
  Append("AAA", -1, DailyBar(20050103));
  Append("AAA", -1, DailyBar(20050104));
  for (const int time : {93000, 93500}) Append("XXX", 5, TimedBar(20050105, time));
  low[0].first = 1050103;
  low[0].last = 1050104;
  EXPECT_EQ(directory_.Read("MASTER"), master());
  EXPECT_EQ(directory_.Read("EMASTER"), Emaster(low));
  // Dates and times of the first bar and of the last.
  high.replace(150 + 108, 16, Hex("B9 F0 31 01 48 6B 01 00 B9 F0 31 01 3C 6D 01 00"));
  EXPECT_EQ(directory_.Read("XMASTER"), high);
  With("AAA", -1, [](MetaLibWriter& writer) { Write(writer, {}); });
  low[0].first = low[0].last = 0;
  EXPECT_EQ(directory_.Read("EMASTER"), Emaster(low));
  With("AAA", -1, [&](MetaLibWriter&) {
    std::swap(low[0], low[1]);  // another program sorts its list
    directory_.Write("MASTER", master());
  });
  EXPECT_EQ(directory_.Read("MASTER"), master()) << "the place is another security's by now";
}

TEST_F(Writer, ASeriesOfUnknownMinutesTakesThoseItIsWrittenWith) {
  directory_.Write("MASTER", Master({{.frame = 'I', .fields = 8}}));
  const std::vector<Bar> bars = {TimedBar(20050103, 93000), TimedBar(20050103, 100000)};
  With("AAA", 15, [&](MetaLibWriter& writer) { Write(writer, bars); });
  EXPECT_EQ(ReadBars(directory_, "AAA", 15), bars);  // not the 30 minutes between the bars
  EXPECT_EQ(ErrorOf([&] { ReadBars(directory_, "AAA", 30); }), MetaLibError::kSeriesNotFound);
}

TEST_F(Writer, KeepsOthersOutOfItsDirectory) {
  directory_.Write("MASTER", Master({{}}));
  const std::string path = Text();
  MetaLibWriter holder(cache_);
  MetaLibWriter other(cache_);
  holder.OpenDirectory(path);
  EXPECT_FALSE(holder.IsDirectoryInUse(path)) << "by another writer";
  EXPECT_TRUE(other.IsDirectoryInUse(path));
  EXPECT_EQ(ErrorOf([&] { other.OpenDirectory(path); }), MetaLibError::kDirectoryInUse);
  const auto store = [&] { StoreSecurity(path, {"BBB", "", -1}, {}, cache_); };
  EXPECT_EQ(ErrorOf(store), MetaLibError::kDirectoryInUse);
  EXPECT_TRUE(ReadBars(directory_).empty()) << "readers ignore the lock";
  holder.CloseDirectory();
  other.OpenDirectory(path);
}

TEST_F(Writer, ASeriesHasNoMoreBarsThanItsHeaderCanCount) {
  directory_.Write("MASTER", Master({{.fields = 4}}));
  std::vector<Bar> bars(65535);
  for (int i = 0; i < 65535; ++i) bars[i].date = 19500000 + i;
  With("AAA", -1, [&](MetaLibWriter& writer) {
    EXPECT_EQ(ErrorOf([&] { Write(writer, bars); }), MetaLibError::kSeriesFull);
    const auto store = [&] { StoreSecurity(Text() + "/new", {"AAA", "", -1}, bars, cache_); };
    EXPECT_EQ(ErrorOf(store), MetaLibError::kSeriesFull);
    EXPECT_FALSE(std::filesystem::exists(directory_ / "new"));
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

// Two changes within one tick of a file system's clock look the same: same size, same time. A time
// ahead has not settled, a time in the past has.
TEST_F(Writer, TheCacheSeesEveryChangeOfAnotherProgram) {
  using Clock = std::filesystem::file_time_type::clock;
  const auto ahead = Clock::now() + std::chrono::hours(1);
  const auto settled = Clock::now() - std::chrono::hours(1);
  const auto stamp = [&](const char* name, auto time) {
    std::error_code none;  // not every system lets a folder's time be set
    std::filesystem::last_write_time(directory_ / name, time, none);
  };
  const auto change = [&](const char* name, std::size_t offset, const std::string& bytes) {
    std::fstream file(directory_ / name, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(offset)) << bytes << std::flush;
    file.close();
    stamp(name, ahead);
  };
  directory_.Write("MASTER", Master({{.frame = 'I', .fields = 8}}));
  directory_.Write("F1.DAT", IntradayBytes({{20050103, 93000}, {20050103, 94500}}));
  stamp("MASTER", settled);
  for (const int minutes : {30, 45}) {
    change("F1.DAT", 32 * 2 + 4, Word(93000 + minutes * 100));
    EXPECT_THAT(List(), ElementsAre("AAA:" + std::to_string(minutes) + " F1 Alpha"));
  }
  for (const char* symbol : {"BBB", "CCC"}) {
    change("MASTER", 53 + 36, symbol);
    EXPECT_THAT(List(), ElementsAre(std::string(symbol) + ":45 F1 Alpha"));
  }
  stamp("MASTER", settled);
  EXPECT_EQ(List().size(), 1U);
  With("CCC", 45, [&](MetaLibWriter& writer) {
    change("MASTER", 53 + 7, "Omega");  // next to the dates that the writer updates
    Append(writer, TimedBar(20050104, 93000));
  });
  EXPECT_THAT(List(), ElementsAre("CCC:45 F1 Omega"));
  for (const auto time : {settled, ahead}) {
    directory_.Write("later", Emaster({{.number = 9, .symbol = "NEW"}}));
    stamp("", time);
    EXPECT_EQ(List().size(), 1U);
    std::filesystem::rename(directory_ / "later", directory_ / "EMASTER");
    stamp("", ahead);
    EXPECT_EQ(List().size(), 2U);
    std::filesystem::remove(directory_ / "EMASTER");
  }
  stamp("MASTER", settled);
  EXPECT_EQ(List().size(), 1U);
  for (const int date : {20050106, 20050105}) {
    With("CCC", 45, [&](MetaLibWriter& writer) {
      Write(writer, {TimedBar(20050104, 93000), TimedBar(date, 93000)});
    });
    EXPECT_EQ(SecuritiesOf(Text(), cache_).at(0).indexed_last_date, date) << "its own change";
  }
}

}  // namespace

}  // namespace velumar
