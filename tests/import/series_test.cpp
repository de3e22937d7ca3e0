// From the rows of a series to its bars.
#include <random>
#include <sstream>

#include "base/dates.h"
#include "import/file_name.h"
#include "import/newest_bars.h"
#include "import/series_builder.h"

namespace velumar {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int kMinute = 60;
constexpr int kHour = 3600;
constexpr int kDay = 86400;

// `seconds` since 2 January 2020, a Thursday.
Bar BarAt(std::int64_t seconds, float price = 100, float volume = 1) {
  const int second = static_cast<int>(seconds % kDay);
  return {.date = DaysLater(20200102, static_cast<int>(seconds / kDay)),
          .time = second / kHour * 10000 + second / kMinute % 60 * 100 + second % 60,
          .open = price,
          .high = price + 1,
          .low = price - 1,
          .close = price + 0.5F,
          .volume = volume};
}

std::vector<Bar> BarsEvery(std::int64_t seconds, int count, std::int64_t start = 0) {
  std::vector<Bar> bars;
  for (int i = 0; i < count; ++i) {
    bars.push_back(BarAt(start + seconds * i, static_cast<float>(100 + i % 50)));
  }
  return bars;
}

std::vector<Bar> RandomMinutes(int days, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<Bar> bars;
  for (int day = 0; day < days; ++day) {
    for (int minute = 540; minute < 1020; ++minute) {
      if (random() % 4 == 0 && minute < 1019) continue;  // a thin market
      bars.push_back(BarAt(std::int64_t{day} * kDay + minute * kMinute,
                           static_cast<float>(random() % 1000),
                           static_cast<float>(random() % 1000)));
    }
  }
  return bars;
}

BuiltSeries Build(const std::vector<Bar>& bars, const ImportOptions& options = {},
                  std::optional<IntervalHint> hint = {},
                  std::size_t sample = SeriesBuilder::kSample) {
  SeriesBuilder builder(options, std::move(hint), sample);
  std::int64_t line = 2;
  for (const Bar& bar : bars) builder.Add(bar, line++, std::nullopt);
  return builder.Finish();
}

ImportOptions With(std::optional<int> interval) {
  ImportOptions options;
  options.interval = interval;
  return options;
}

// "5", "ask 10, 15 or D" or "refused".
std::string Decided(const BuiltSeries& built) {
  if (!built.refusal.empty()) return "refused";
  if (!built.questions.empty()) {
    const std::string& option = built.questions.front().option;
    return "ask" + option.substr(option.find(' '));
  }
  return IntervalText(built.interval);
}

TEST(Interval, IsNeverThatOfOtherBars) {
  std::vector<Bar> weeks = BarsEvery(7 * kDay, 20);
  const std::vector<Bar> hours = BarsEvery(kHour, 100);
  const std::vector<Bar> four_hours = BarsEvery(4 * kHour, 100);
  const std::vector<Bar> days = BarsEvery(kDay, 30);
  // The first hour is half as long, and there are no bars at night.
  const std::vector<Bar> session = {BarAt(34200), BarAt(36000), BarAt(39600), BarAt(43200),
                                    BarAt(34200 + kDay)};
  // A thin market: some bars follow one another, others are missing.
  std::vector<Bar> thin;
  for (const int place : {0, 1, 3, 4, 9, 12, 13, 18, 25, 26, 28})
    thin.push_back(BarAt(place * 300));
  const std::vector<Bar> seconds = BarsEvery(10, 500);
  const std::vector<Bar> two_minutes = BarsEvery(2 * kMinute, 500);
  const std::vector<Bar> strewn = {BarAt(34200), BarAt(40000 + kDay)};
  // The opening in UTC, before and after summer time.
  std::vector<Bar> openings;
  for (int i = 0; i < 20; ++i) openings.push_back(BarAt(i * kDay + (i < 10 ? 14 : 13) * kHour));
  const struct {
    const char* what;
    const std::vector<Bar>& bars;
    std::optional<int> hint;
    std::optional<int> asked;
    std::string decided;
  } rows[] = {
      {"seconds as 15", seconds, {}, 15, "15"},
      {"two minutes", two_minutes, {}, {}, "ask 10, 30, 60 or D"},
      {"two minutes as 5", two_minutes, {}, 5, "refused"},
      {"hours named daily", hours, kDaily, {}, "ask 60 or D"},
      {"hours named 5", hours, 5, {}, "ask 60 or D"},
      {"four hours", four_hours, {}, {}, "refused"},
      {"four hours named 60", four_hours, 60, {}, "ask D"},
      {"four hours as 60", four_hours, {}, 60, "refused"},
      {"four hours as daily", four_hours, {}, kDaily, "D"},
      {"days named 5", days, 5, {}, "ask D"},
      {"days as 60", days, {}, 60, "refused"},
      {"openings in UTC", openings, {}, {}, "D"},
      {"weeks as daily", weeks, {}, kDaily, "refused"},
      {"a session", session, {}, {}, "60"},
      {"a thin market named 5", thin, 5, {}, "5"},
      {"a thin market named 60", thin, 60, {}, "ask 5, 10, 15, 30, 60 or D"},
      {"strewn", strewn, {}, {}, "ask 5, 10, 15, 30, 60 or D"},
      {"strewn named 60", strewn, 60, {}, "60"},
      {"one day", {days.front()}, {}, {}, "D"},
  };
  for (const auto& row : rows) {
    std::optional<IntervalHint> hint;
    if (row.hint) hint = IntervalHint{.interval = *row.hint};
    EXPECT_EQ(Decided(Build(row.bars, With(row.asked), hint)), row.decided) << row.what;
  }
  std::ranges::reverse(weeks);
  EXPECT_EQ(Decided(Build(weeks, {}, {}, 10)), "refused") << "newest first, more than the sample";
}

TEST(Interval, OfAnUncertainHintHoldsOnlyIfTheBarsAgree) {
  const std::vector<Bar> days = BarsEvery(kDay, 30);
  const IntervalHint thirty{.interval = 30, .certain = false};
  const BuiltSeries daily = Build(days, {}, thirty);
  EXPECT_EQ(Decided(daily), "D");
  EXPECT_FALSE(daily.hint_holds);
  EXPECT_TRUE(Build(BarsEvery(1800, 30), {}, thirty).hint_holds);
}

TEST(FileName, GivesSymbolAndInterval) {
  const std::tuple<const char*, const char*, int, bool> cases[] = {
      {"EUR_USD_60", "EUR_USD", 60, true},
      {"SET_50", "SET_50", 0, true},
      {"_D", "_D", 0, true},
      {" gold ", "GOLD", 0, true},
      {"aapl_d", "AAPL", kDaily, true},
      {"AAPL-1d", "AAPL", kDaily, true},
      {"AAPL daily (1)", "AAPL", kDaily, false},
      {"EURUSD1440", "EURUSD", kDaily, false},
      {"US30", "US30", 0, true},
      {"DAX-30", "DAX-30", 0, true},
      {"BRK.B_D", "BRK.B", kDaily, true},
      {"XAUUSD.H4", "XAUUSD", 240, true},
      {"spx_5min", "SPX", 5, true},
      {"spx_31d", "SPX", 44640, true},
      {"NASDAQ_AAPL, 1W", "NASDAQ_AAPL", 10080, true}};
  for (const auto& [stem, symbol, interval, certain] : cases) {
    const NameGuess guess = GuessFromName(stem);
    EXPECT_EQ(guess.symbol, symbol) << stem;
    EXPECT_EQ(guess.interval.value_or(0), interval) << stem;
    EXPECT_EQ(guess.certain, certain) << stem;
  }
}

TEST(Aggregation, MergesBarsThatStartInTheSameInterval) {
  const Bar a{20200102, 93000, 10, 12, 9, 11, 16777216, 1};
  const Bar b{20200102, 93100, 11, 15, 11, 14, 1, 2};
  const Bar c{20200102, 93400, 14, 14, 5, 6, 1, 3};
  const Bar d{20200102, 93500, 6, 7, 6, 7, 1, 4};
  const Bar e{20200103, 93400, 6, 7, 6, 7, 1, 5};
  const BuiltSeries built = Build({a, b, c, d, e}, With(5));
  ASSERT_EQ(built.refusal, "");
  EXPECT_THAT(built.parts.at(0), ElementsAre(Bar{20200102, 93000, 10, 15, 5, 6, 16777218, 3},
                                             Bar{20200102, 93500, 6, 7, 6, 7, 1, 4},
                                             Bar{20200103, 93000, 6, 7, 6, 7, 1, 5}));
}

// Through five minutes or at once, in either order of the file, read as a whole or in pieces.
TEST(Aggregation, DoesNotDependOnTheWay) {
  std::vector<Bar> minutes = RandomMinutes(400, 1);
  ASSERT_GT(minutes.size(), SeriesBuilder::kSample);
  const std::vector<Bar> hours = Build(minutes, With(60)).parts.at(0);
  ASSERT_GT(hours.size(), 3000U);
  const std::vector<Bar> five = Build(minutes, With(5)).parts.at(0);
  // All days but the first that 32,768 bars hold in part only.
  std::vector<Bar> through_five = Build(five, With(60)).parts.at(0);
  std::vector<Bar> tail(hours.end() - static_cast<std::ptrdiff_t>(through_five.size() - 8),
                        hours.end());
  through_five.erase(through_five.begin(), through_five.begin() + 8);
  EXPECT_EQ(through_five, tail);
  std::ranges::reverse(minutes);
  EXPECT_EQ(Build(minutes, With(60)).parts.at(0), hours);

  std::vector<Bar> few(minutes.end() - 2000, minutes.end());
  const std::vector<Bar> expected = Build(few, With(30)).parts.at(0);
  std::ranges::shuffle(few, std::mt19937(2));
  EXPECT_EQ(Build(few, With(30)).parts.at(0), expected);
}

TEST(Aggregation, KnowsWhatIsNotComplete) {
  std::vector<Bar> bars;
  for (int day = 0; day < 3; ++day) {
    for (int minute = 600; minute < 960; minute += 5) {
      bars.push_back(BarAt(std::int64_t{day} * kDay + minute * kMinute));
    }
  }
  const auto last = [&](int interval, std::ptrdiff_t cut) {
    const std::vector<Bar> shorter(bars.begin(), bars.end() - cut);
    const BuiltSeries built = Build(shorter, With(interval));
    const Bar& bar = built.parts.at(0).back();
    return std::pair(bar.date, bar.time);
  };
  EXPECT_EQ(last(60, 0), std::pair(20200104, 150000));
  EXPECT_EQ(last(60, 1), std::pair(20200104, 140000));
  EXPECT_EQ(last(60, 11), std::pair(20200104, 140000));
  EXPECT_EQ(last(60, 12), std::pair(20200104, 140000)) << "which is complete";
  EXPECT_EQ(last(kDaily, 0), std::pair(20200104, 0)) << "the other days ended as early";
  EXPECT_EQ(last(kDaily, 1), std::pair(20200103, 0));

  // A first bar stays, but it may lack a part.
  const auto says_so = [&](int interval, std::ptrdiff_t cut, bool newest_first) {
    std::vector<Bar> later(bars.begin() + cut, bars.end());
    if (newest_first) std::ranges::reverse(later);
    // Newest first, with a sample smaller than the file.
    const std::size_t sample = newest_first ? 10 : SeriesBuilder::kSample;
    const BuiltSeries built = Build(later, With(interval), {}, sample);
    return std::ranges::count(built.remarks,
                              "the first bar, of 2 January 2020, may not be complete: the file "
                              "begins within it") == 1;
  };
  for (const bool newest_first : {false, true}) {
    EXPECT_FALSE(says_so(60, 0, newest_first));
    EXPECT_TRUE(says_so(60, 1, newest_first));
    EXPECT_FALSE(says_so(60, 12, newest_first));
    EXPECT_FALSE(says_so(kDaily, 0, newest_first)) << "the other days began as late";
    EXPECT_TRUE(says_so(kDaily, 1, newest_first));
  }
}

TEST(Aggregation, TakesLabelsAsEndsIfAsked) {
  const ImportOptions options = {.interval = 5, .label = BarLabel::kEnd};
  std::vector<Bar> bars;
  for (int minute = 1; minute <= 10; ++minute) bars.push_back(BarAt(kHour + minute * kMinute));
  bars.push_back(BarAt(30 * kDay));  // the last minute of the day before
  for (int minute = 1; minute <= 5; ++minute) bars.push_back(BarAt(30 * kDay + minute * kMinute));
  const std::vector<Bar> built = Build(bars, options).parts.at(0);
  ASSERT_EQ(built.size(), 4U);
  EXPECT_EQ(std::pair(built[3].date, built[3].time), std::pair(20200201, 0));
  EXPECT_EQ(std::pair(built[0].time, built[0].volume), std::pair(10000, 5.0F));
  EXPECT_EQ(std::pair(built[2].date, built[2].time), std::pair(20200131, 235500));
}

TEST(Series, KeepsTheFirstBarOfAMoment) {
  std::vector<Bar> bars = BarsEvery(kHour, 48);
  const std::vector<Bar> all = bars;
  Bar again = bars[3];
  again.close += 1;
  bars.insert(bars.begin() + 4, {bars[3], again});
  for (const bool newest_first : {false, true}) {
    if (newest_first) std::ranges::reverse(bars);
    const BuiltSeries built = Build(bars);
    EXPECT_EQ(built.parts.at(0), all);
    EXPECT_THAT(built.remarks, ElementsAre(StartsWith("1 bar is a repeated line"),
                                           StartsWith("1 bar has the moment of an earlier one")));
  }
}

TEST(Series, RefusesSeveralSecuritiesInOne) {
  for (const int days : {2, 100}) {
    std::vector<Bar> bars = BarsEvery(kDay, days);
    for (int i = 0; i < days; ++i) bars.push_back(BarAt(std::int64_t{i} * kDay, 7));
    EXPECT_THAT(Build(bars).refusal, HasSubstr("several securities"));
  }
}

TEST(Series, NamesTheLineOfALongFileThatIsNotSorted) {
  std::vector<Bar> bars = BarsEvery(kMinute, 150'000);
  bars.push_back(BarAt(0));
  EXPECT_THAT(Build(bars, With(60)).refusal, StartsWith("line 150002 is older than line "));
}

// 40,000 bars of three years.
TEST(Series, AsksWhatBecomesOfTooManyBars) {
  for (const bool newest_first : {false, true}) {
    for (const int copies : {1, 4}) {  // with more than the sample, too
      std::vector<Bar> bars = BarsEvery(30 * kMinute / copies, 40'000 * copies);
      if (newest_first) std::ranges::reverse(bars);
      ImportOptions options;
      if (copies > 1) options.interval = 30;
      const BuiltSeries asked = Build(bars, options);
      ASSERT_EQ(asked.questions.size(), 1U);
      EXPECT_EQ(asked.questions[0].option, "--last, --from, --split-by-year or --interval");
      EXPECT_EQ(asked.questions[0].answers.at(2).result, "20,000 bars");
      ASSERT_EQ(asked.bars, 40'000);

      const BuiltSeries last = Build(bars, asked.questions[0].answers.at(0).options);
      ASSERT_EQ(last.parts.at(0).size(), 32'768U);
      EXPECT_EQ(last.parts.at(0).back().date, DaysLater(20200102, 833));

      const BuiltSeries split = Build(bars, asked.questions[0].answers.at(1).options);
      ASSERT_EQ(split.parts.size(), 3U);
      EXPECT_EQ(split.parts.at(2021).size(), 365U * 48);
      EXPECT_EQ(split.parts.at(2021).front().date, 20210101);
    }
  }
}

TEST(Series, MayBeAsLongAsARunCanPlay) {
  for (const TooLong too_long : {TooLong::kAsk, TooLong::kSplitByYear}) {
    for (const std::size_t more : {0, 1}) {
      const auto bars = BarsEvery(10 * kMinute, static_cast<int>(kLongestSeries + more));
      EXPECT_EQ(Build(bars, {.too_long = too_long}).questions.size(), more);
    }
  }
}

TEST(NewestBars, OfTooManyLeaveOutTheOldest) {
  for (const bool backwards : {false, true}) {
    for (const bool without_newest : {false, true}) {
      std::vector<Bar> bars = BarsEvery(kHour, static_cast<int>(kLongestSeries) + 3);
      NewestBars newest;
      if (backwards) std::ranges::reverse(bars);
      for (const Bar& bar : bars) newest.Add(bar, backwards);
      if (backwards) std::ranges::reverse(bars);
      if (without_newest) bars.pop_back();
      EXPECT_EQ(
          newest.Take(backwards, without_newest),
          std::vector<Bar>(bars.end() - static_cast<std::ptrdiff_t>(kLongestSeries), bars.end()))
          << backwards << without_newest;
    }
  }
}

TEST(Series, WithNoBarInTheRequestedDaysIsRefused) {
  EXPECT_THAT(Build(BarsEvery(kHour, 200), {.from = 20300101}).refusal, HasSubstr("--from"));
}

// The local times of bars before and after, in hours and minutes.
TEST(Zones, ConvertTheClock) {
  const struct {
    const char* from;
    const char* to;
    std::int32_t day;
    std::vector<int> written;
    std::vector<int> converted;
  } rows[] = {
      {"Europe/Berlin", "America/New_York", 20200102, {1530, 1600}, {930, 1000}},
      {"Europe/Berlin", "UTC", 20201025, {100, 200, 200, 300}, {2300, 0, 100, 200}},
      {"Europe/Berlin", "UTC", 20201025, {210, 250, 220, 240, 300}, {10, 50, 120, 140, 200}},
      {"Europe/Berlin", "UTC", 20200329, {130, 230, 330}, {30, 130, 130}},
      {"America/New_York", "UTC", 20200308, {130, 330, 400}, {630, 730, 800}},
      {"UTC", "Europe/Berlin", 20200329, {30, 59, 100, 130}, {130, 159, 300, 330}},
      {"America/New_York", "Asia/Tokyo", 20200102, {930, 1600}, {2330, 600}},
  };
  for (const auto& row : rows) {
    const ImportOptions options = {.from_zone = row.from, .to_zone = row.to};
    for (int round = 0; round < 4; ++round) {
      const bool newest_first = round % 2 == 1;
      const int second = round < 2 ? 0 : 15;
      ZoneTimes zones(options, newest_first);
      std::vector<int> written = row.written;
      if (newest_first) std::ranges::reverse(written);
      std::vector<int> converted;
      for (const int time : written) {
        Bar bar{.date = row.day, .time = time * 100 + second};
        EXPECT_EQ(zones.Convert(bar, std::nullopt), row.day != 20200329 || time != 230);
        converted.push_back(bar.time / 100);
        EXPECT_EQ(bar.time % 100, second);
      }
      if (newest_first) std::ranges::reverse(converted);
      EXPECT_EQ(converted, row.converted) << row.from << round;
    }
  }
}

TEST(Zones, KnowTheRepeatedHourOfEachYear) {
  ZoneTimes zones({.from_zone = "Europe/Berlin"}, false);
  for (const int day : {20191027, 20201025, 20211031}) {
    std::vector<int> converted;
    for (const int time : {20000, 23000, 20000, 23000}) {
      Bar bar{.date = day, .time = time};
      zones.Convert(bar, std::nullopt);
      converted.push_back(bar.time);
    }
    EXPECT_THAT(converted, ElementsAre(0, 3000, 10000, 13000)) << day;
  }
}

TEST(Zones, ConvertEachBarOfALongFileOnce) {
  const ImportOptions options = {.interval = 60, .from_zone = "Asia/Tokyo", .to_zone = "UTC"};
  std::vector<Bar> bars = BarsEvery(kMinute, 9000, kDay);
  const auto expected = Build(BarsEvery(kMinute, 9000, kDay - 9 * kHour), With(60)).parts.at(0);
  for (int order = 0; order < 2; ++order, std::ranges::reverse(bars)) {
    EXPECT_EQ(Build(bars, options, {}, 10).parts.at(0), expected) << order;
  }
}

TEST(Zones, SayWhichTimesTheySkip) {
  constexpr std::int64_t kMarch29 = 87 * kDay;
  EXPECT_THAT(
      Build(BarsEvery(1800, 4, kMarch29 + kHour), {.from_zone = "Europe/Berlin"}).remarks,
      ElementsAre("2 bars have a time that Europe/Berlin skips when summer time begins, and "
                  "were read as if the clock had not moved (first on line 4)"));
}

TEST(Zones, UseTheOffsetOfTheLineAndRefuseWhatIsUnknown) {
  ZoneTimes zones({.utc = true}, false);
  Bar bar{.date = 20200101, .time = 3000};
  zones.Convert(bar, 60);
  EXPECT_EQ(std::pair(bar.date, bar.time), std::pair(20191231, 233000));
  EXPECT_THROW(zones.Convert(bar, std::nullopt), ImportError);
  // The day of a daily bar stays.
  const ImportOptions options = {.from_zone = "America/New_York", .to_zone = "Asia/Tokyo"};
  EXPECT_EQ(Build(BarsEvery(kDay, 10), options).parts.at(0), BarsEvery(kDay, 10));
}

}  // namespace
}  // namespace velumar
