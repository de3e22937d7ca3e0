#include "csv/csv_series.h"

#include "csv/csv_import.h"
#include "csv/csv_text.h"

namespace velumar {
namespace {

CsvSeries Read(std::string_view text) { return ReadCsvSeries(text, CsvDateFormat()); }

std::string Complaint(std::string_view text) {
  try {
    Read(text);
  } catch (const CsvError& error) {
    return error.what();
  }
  return "";
}

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
  for (const auto& [text, complaint] : cases)
    EXPECT_EQ(Complaint(text), complaint) << text.substr(0, 200);
}

TEST(CsvSeries, ADailySeriesHasOneBarADay) {
  CsvSeries hours =
      Read("date,time,open,high,low,close\n20200102,10:00,1,1,1,1\n\n20200102,11:00,1,1,1,1\n");
  EXPECT_THAT(
      [&] { MakeDaily(hours); },
      testing::ThrowsMessage<CsvError>(testing::StartsWith("line 4: a second bar of 20200102")));
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
  const struct {
    Moments moments;
    std::optional<int> named;
    int interval;
  } kRows[] = {{days, {}, -1},  {days, 5, 0},      {closes, {}, -1}, {hours, {}, 60},
               {hours, 60, 60}, {hours, -1, 0},    {thin, {}, 30},   {thin, 5, 5},
               {thin, 60, 0},   {opening, {}, 30}, {strewn, 60, 60}, {strewn, {}, 0}};
  for (const auto& row : kRows) {
    EXPECT_EQ(Guessed(row.moments, row.named), row.interval) << &row - kRows;
  }
  // Gaps are rounded down to minutes.
  for (const auto& [second_bar, interval] :
       {std::pair(90459, 0), {90500, 5}, {90559, 5}, {90600, 0}}) {
    EXPECT_EQ(Guessed({{20200102, 90000}, {20200102, second_bar}}, {}), interval) << second_bar;
  }
}

}  // namespace
}  // namespace velumar
