// From the values of a CSV file to its bars, symbol and interval.
#include <limits>

#include "csv/csv_import.h"
#include "csv/csv_series.h"
#include "csv/csv_text.h"
#include "csv/csv_values.h"

namespace velumar {
namespace {

using testing::StartsWith;
using testing::ThrowsMessage;

TEST(CsvNumber, ReadsTheNearestFloat) {
  const std::pair<std::string, float> cases[] = {
      {"0e999", 0.0F},
      {"+1.5", 1.5F},
      {"1E-3", 0.001F},
      // Just above the middle of two floats; through a double it would become the lower one.
      {"1.00000005960464477540", 1.0F + std::numeric_limits<float>::epsilon()},
      {"1.17549435e-38", std::numeric_limits<float>::min()},
      {"-1.7014117e38", -0x1.fffffep126F},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(CsvNumber(text), value) << text;
  EXPECT_FALSE(std::signbit(CsvNumber("-0")));
}

TEST(CsvNumber, RefusesOtherTextsAndWhatCannotBeStored) {
  for (const std::string text : {"x", "1x", "1,5", "0x10", "+-1", "1e+"}) {
    EXPECT_THAT([&] { CsvNumber(text); },
                ThrowsMessage<CsvError>("\"" + text + "\" is not a number"));
  }
  for (const std::string text :
       {"1.7014118346046923e38", "1e400", "inf", "nan", "1.1754942e-38", "-1e-50"}) {
    EXPECT_THAT([&] { CsvNumber(text); },
                ThrowsMessage<CsvError>(StartsWith("\"" + text + "\" can't be stored")));
  }
}

TEST(CsvTime, ReadsColonsAndDigits) {
  for (const auto& [text, value] : {std::pair("9:30", 93000),
                                    {"9:30:15", 93015},
                                    {"23:59:59", 235959},
                                    {"00:00", 0},
                                    {"0930", 930}}) {
    EXPECT_EQ(CsvTime(text), value) << text;
  }
  for (const std::string refused : {"", "24:00", "23:60", "23:59:60", "240000", "1260", "0093000",
                                    "9:3", "9:30:", "09-30", "9:30 PM"}) {
    EXPECT_THROW(CsvTime(refused), CsvError) << refused;
  }
}

CsvDateFormat FormatOf(const std::string& pattern) {
  return pattern.empty() ? CsvDateFormat() : CsvDateFormat(pattern);
}

TEST(CsvDateFormat, ReadsDatesAndTheTimeAfterThem) {
  const std::tuple<std::string, std::string, int, std::optional<int>> cases[] = {
      {"", "19000101", 19000101, {}},
      {"", "20200102093000", 20200102, 93000},
      {"", "2020-01-02T09:30:15", 20200102, 93015},
      {"%d.%m.%Y", "2.1.2020 9:30", 20200102, 93000},
      {"%m/%d/%y", "01/02/69", 19690102, {}},
      {"%m/%d/%y", "01/02/68", 20680102, {}},
      {"%d-%b-%Y", "02-JAN-2020", 20200102, {}},
      {"%B %d, %Y", "january 2, 2020", 20200102, {}},
      {"%m/%d/%Y %I:%M %p", "01/02/2020 12:05 am", 20200102, 500},
      {"%d.%m.%Y %H:%M", "5.1.2024  9:05", 20240105, 90500},
      {"%d%m%y %H%M", "050124 0905", 20240105, 90500},
      {"%B%d%y %I%%%M %p", "Jan0524 9%05 am", 20240105, 90500},
  };
  for (const auto& [pattern, text, date, time] : cases) {
    const CsvDateTime read = FormatOf(pattern).Read(text);
    EXPECT_EQ(read.date, date) << text;
    EXPECT_EQ(read.time, time) << text;
  }
}

TEST(CsvDateFormat, RefusesOtherTexts) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
      {"",
       {"", "20201341", "20210229", "2020-02-30", "18991231", "2020-1-2", "2020/01/02",
        "02.01.2020", "2020010", "202001021", "202001020930", "2020-01-0293000", "2020-01-02 25:00",
        "-2020010"}},
      {"%d.%m.%Y", {"31.04.2020", "2020-01-02", "02.01.2020x"}},
      {"%d.%m.%Y %I:%M %p", {"02.01.2020 13:00 PM"}},
      {"%d %b %Y", {"02 Foo 2020"}},
      // One digit too few or too many would otherwise shift the numbers after it.
      {"%d.%m.%Y %H:%M",
       {"02.01.2020", "02.01.2020 09:30:00", "02.01.2020 24:00", ".01.2024 9:05",
        "005.01.2024 9:05", "05.001.2024 9:05", "05.01.924 9:05", "05.01.02024 9:05",
        "+5.01.2024 9:05", "05.01.-2024 9:05", "05.01.2024 9:5", "05.01.2024 9:005",
        "05.01.2024 9:+5"}},
      {"%d%m%y %H%M", {"05124 0905", "0501024 0905", "050124 055", "050124 00905"}},
      {"%B%d%y %I%%%M %p", {"January054 9%05 am", "Jan0524 9%5 am"}},
  };
  for (const auto& [pattern, texts] : cases) {
    const CsvDateFormat format = FormatOf(pattern);
    for (const std::string& text : texts) {
      EXPECT_THROW(format.Read(text), CsvError) << pattern << " reads " << text;
    }
  }
}

TEST(CsvDateFormat, RefusesPatternsWithoutADay) {
  for (const std::string pattern : {"", "yyyymmdd", "%Y-%m", "%d.%m", "%Y%d", "%Y%m%d%",
                                    "%Y%m%d %Q", "%%Y%m%d", "%Y%m%d %I:%M"}) {
    EXPECT_THROW(CsvDateFormat{pattern}, CsvError) << pattern;
  }
}

CsvSeries Read(std::string_view text) { return ReadCsvSeries(text, CsvDateFormat()); }

const Bar kBar = {.date = 20200102,
                  .time = 93000,
                  .open = 1,
                  .high = 4,
                  .low = 0.5,
                  .close = 2,
                  .volume = 100,
                  .open_interest = 7};

TEST(CsvSeries, FindsItsColumnsHoweverTheyAreWritten) {
  for (const std::string_view text : {
           "openinterest,VOLUME,close,low,high,open,time,date\n7,100,2,.5,4,1,09:30,2020-01-02",
           "\xEF\xBB\xBF<TICKER>,<PER>,<DTYYYYMMDD>,<TIME>,<OPEN>,<HIGH>,<LOW>,<CLOSE>,<VOL>,<"
           "OPENINT>\n"
           "X,5,20200102,093000,1,4,0.5,2,100,7\n",
           "DateTime\tOpen\tHigh\tLow\tClose\tVolume\topen_interest\r2020-01-02T09:30:00\t1\t4\t0."
           "5\t2"
           "\t100\t7\r",
           // The full name has priority over a short form.
           "Vol,Timestamp,Date,Time,Open,High,Low,Close,Volume,Note,OI,,\n"
           "x,y,2020-01-02 00:00:00,93000,1,4,0.5,2,100,\"a, \"\"b\"\"\",7,,,,\n",
       }) {
    EXPECT_THAT(Read(text).bars, testing::ElementsAre(kBar)) << text;
  }
}

TEST(CsvSeries, NamesTheLineThatCannotBeRead) {
  const std::string header = "date,time,open,high,low,close\n";
  const std::string first = "20200102,93000,1,2,1,1\n";
  std::string too_long = header;
  for (int i = 0; i < 65535; ++i) too_long += "\n\nx\n";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {header + first + "\r\n20200102,93500,1,2,1,x\n", "line 4: the close \"x\" is not a number"},
      {header + first + "20200102,93500,1,2,1\n", "line 3: has 5 fields, the header has 6"},
      {header + first + "20200102,93500,1,2,1,1,5\n", "line 3: has 7 fields, the header has 6"},
      {header + first + "20200102,93500,1,\"2,1,1\n", "line 3: has a quote that is not closed"},
      {header + first + first,
       "line 3: has the date and time of line 2; bars must be sorted, oldest first"},
      {header + first + "20200101,94000,1,2,1,1\n20200102,93500,a,2,1,1\n20200103,0,b,2,1,1\n",
       "line 3: is older than line 2; bars must be sorted, oldest first (and 2 more bad lines)"},
      {header + "2020-01-02 09:30,10:00,1,1,1,1\n",
       "line 2: the time in the date differs from the one in the column Time"},
      {"time,open,high,low\n", "no column Date, Close; the first line must name the columns"},
      {"date,open,high,low,close,Close\n", "the header names the column Close twice"},
      {"\xEF\xBB\xBF\r\n\r\n", "the file is empty"},
      {header, "the file has a header but no bars"},
      {std::string(5000, ','), "has more than 1000 fields"},
      {too_long, "has 65535 bars; a series holds at most 65534"},
      {std::string("d\0a\0", 4), "this is not plain text; save it as CSV in UTF-8"},
  };
  for (const auto& row : cases) {
    EXPECT_THAT([&] { Read(row.first); }, ThrowsMessage<CsvError>(row.second))
        << row.first.substr(0, 200);
  }
}

TEST(CsvSeries, ADailySeriesHasOneBarADay) {
  CsvSeries hours =
      Read("date,time,open,high,low,close\n20200102,10:00,1,1,1,1\n\n20200102,11:00,1,1,1,1\n");
  EXPECT_THAT([&] { MakeDaily(hours); },
              ThrowsMessage<CsvError>(StartsWith("line 4: a second bar of 20200102")));
}

TEST(CsvSeries, FindsPricesThatContradict) {
  // Open, high, low, close.
  EXPECT_FALSE(PricesContradict({0, 0, -1, -1, -1, -1}));
  EXPECT_TRUE(PricesContradict({0, 0, 1, 3, 2, 2}));
  EXPECT_TRUE(PricesContradict({0, 0, 2, 3, 2, 1}));
  EXPECT_TRUE(PricesContradict({0, 0, 4, 3, 2, 2}));
  EXPECT_TRUE(PricesContradict({0, 0, 2, 3, 2, 4}));
}

TEST(CsvGuess, TakesSymbolAndIntervalFromTheName) {
  const std::tuple<std::string, std::string, std::optional<int>> cases[] = {
      {"EUR_USD_60", "EUR_USD", 60},
      {"SET_50", "SET_50", {}},
      {"_D", "_D", {}},
      {" gold ", "GOLD", {}}};
  for (const auto& [stem, symbol, interval] : cases) {
    const CsvNameGuess guess = GuessFromName(stem);
    EXPECT_EQ(std::pair(guess.symbol, guess.interval), std::pair(symbol, interval)) << stem;
  }
}

using Moments = std::vector<std::pair<int, int>>;  // dates and times

// 0 if the bars or their contradiction to the name are refused.
int Guessed(const Moments& moments, std::optional<int> named) {
  std::vector<Bar> bars;
  for (const auto& [date, time] : moments) bars.push_back({.date = date, .time = time});
  try {
    return GuessInterval(bars, named);
  } catch (const CsvError&) {
    return 0;
  }
}

TEST(CsvGuess, TakesTheIntervalFromTheGaps) {
  const Moments days = {{20200102, 0}, {20200103, 0}, {20200106, 0}};
  const Moments closes = {{20200102, 160000}, {20200103, 160000}};
  // The first hour is half as long, and there are no bars at night.
  const Moments hours = {{20200102, 93000},
                         {20200102, 100000},
                         {20200102, 110000},
                         {20200102, 120000},
                         {20200103, 93000}};
  const Moments thin = {{20200102, 90000}, {20200102, 93000}, {20200102, 100000}};
  const Moments opening = {{20200102, 93000}, {20200102, 100000}, {20200102, 110000}};
  const Moments strewn = {{20200102, 93000}, {20200103, 110000}};
  const std::tuple<Moments, std::optional<int>, int> rows[] = {
      {days, {}, -1},    {days, 5, 0},   {closes, {}, -1}, {hours, {}, 60},
      {hours, 60, 60},   {hours, -1, 0}, {thin, {}, 30},   {thin, 5, 5},
      {opening, {}, 30}, {thin, 60, 0},  {strewn, 60, 60}, {strewn, {}, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(Guessed(std::get<0>(row), std::get<1>(row)), std::get<2>(row)) << &row - rows;
  }
  // Gaps are rounded down to minutes.
  for (const auto& [second_bar, interval] :
       {std::pair(90459, 0), {90500, 5}, {90559, 5}, {90600, 0}}) {
    EXPECT_EQ(Guessed({{20200102, 90000}, {20200102, second_bar}}, {}), interval) << second_bar;
  }
}

}  // namespace
}  // namespace velumar
