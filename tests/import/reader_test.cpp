// From the bytes of a price file to its rows. Whole files of all kinds are in `flavours`.
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include "import/date_pattern.h"
#include "import/moment_reader.h"
#include "import/price_number.h"
#include "import/price_reader.h"
#include "import/text_encoding.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using testing::ThrowsMessage;

constexpr NumberStyle kPoint{false};
constexpr NumberStyle kComma{true};

TEST(PriceNumber, ReadsTheNearestFloat) {
  const std::tuple<std::string, NumberStyle, int, float> cases[] = {
      {"0e999", kPoint, 0, 0.0F},
      {"+1.5", kPoint, 0, 1.5F},
      {"1E-3", kPoint, 0, 0.001F},
      // Just above the middle of two floats; through a double it would become the lower one.
      {"1.00000005960464477540", kPoint, 0, 1.0F + std::numeric_limits<float>::epsilon()},
      {"8.000000476837159", kPoint, 0, 8.000000953674316F},
      {"1.17549435e-38", kPoint, 0, std::numeric_limits<float>::min()},
      {"-1.7014117e38", kPoint, 0, -0x1.fffffep126F},
      {"12,34,567.5", kPoint, 0, 1234567.5F},
      {"123,456.5", kPoint, 0, 123456.5F},
      {"1 234,5", kComma, 0, 1234.5F},
      {"1\u202F234,5", kComma, 0, 1234.5F},
      {"12,5 €", kComma, 0, 12.5F},
      {"-4.5%", kPoint, 0, -4.5F},
  };
  for (const auto& [text, style, shift, value] : cases) {
    EXPECT_EQ(ReadNumber(text, style, shift).value, value) << text;
  }
  EXPECT_FALSE(std::signbit(ReadNumber("-0", kPoint, 0).value));
}

TEST(PriceNumber, AgreesWithTheLibraryOnRandomDecimals) {
  std::mt19937_64 random(19);
  for (int i = 0; i < 20000; ++i) {
    // Half of them are next to the middle of two floats, where rounding twice shows.
    const double middle = std::ldexp(static_cast<double>(random() % (1 << 24)) + 0.5, -10);
    std::string text =
        std::to_string(i % 2 == 0 ? middle : static_cast<double>(random() % 10000000));
    text.insert(random() % 2 == 0 ? text.size() : text.find('.') + 1, random() % 5, '0');
    const int shift = static_cast<int>(random() % 5);
    const std::string shifted = text + "e" + std::to_string(shift);
    float expected = 0;
    std::from_chars(shifted.data(), shifted.data() + shifted.size(), expected);
    ASSERT_EQ(ReadNumber(text, kPoint, shift).value, expected) << shifted;
  }
}

TEST(PriceNumber, IsTheSameWhateverFollowsIt) {
  std::mt19937_64 random(28);
  int slow = 0;
  constexpr std::string_view kFollowing[] = {
      "",         ",",         ",12.5,3", ";\xFF\xFE\x80\x90", "\xE2\x82\xAC 1234567",
      ".5.5.5.5", ":::::::::", "///////"};
  for (int i = 0; i < 20000; ++i) {
    std::string text = std::to_string(1000000000 + random() % 9000000000).substr(random() % 10);
    if (i % 4 != 0) text.insert(random() % (text.size() + 1), ".");
    const std::string line =
        text + std::string(kFollowing[text.find('.') == text.npos ? i % 5 : i % 8]);
    float expected = 0;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    PriceNumber number;
    const char* const end = TakePlainNumber(line.data(), line.data() + line.size(), '.', 0, number);
    if (!end) {
      ++slow;  // no number, or in the middle of two floats
      continue;
    }
    ASSERT_EQ(end, line.data() + text.size()) << line;
    ASSERT_EQ(number.value, expected) << line;
    const std::size_t whole = std::min(text.find('.'), text.size() - 1);
    ASSERT_EQ(number.decimals, static_cast<int>(text.size() - whole - 1)) << line;
  }
  EXPECT_LT(slow, 2000);
}

TEST(PriceNumber, RefusesOtherTextsAndWhatCannotBeStored) {
  for (const std::string text :
       {"x", "1x", "1,5", "0x10", "+-1", "1e+", ".", "1,2345", "1,23,45", ",123", "1.2.3",
        "1,234,5", "1 23", "1'23", "1 234,567", "inf", "nan", "K", "12 3/8"}) {
    EXPECT_THAT([&] { ReadNumber(text, kPoint, 0); },
                ThrowsMessage<ImportError>("\"" + text + "\" is not a number"));
  }
  for (const std::string text : {"1.7014118346046923e38", "1e400", "1.1754942e-38", "-1e-50"}) {
    EXPECT_THAT([&] { ReadNumber(text, kPoint, 0); },
                ThrowsMessage<ImportError>(StartsWith("\"" + text + "\" can't be stored")));
  }
}

using Texts = std::vector<std::string>;
using MomentNumbers = std::tuple<int, int, int>;  // date, time or -1, offset or 9999

MomentNumbers NumbersOf(const Moment& moment) {
  return {moment.date, moment.time.value_or(-1), moment.utc_offset.value_or(9999)};
}

MomentReader ReaderOf(DateOrder order) {
  DateStyle style;
  style.order = order;
  return {style, TimeDigits::kHoursAndMinutes};
}

TEST(MomentReader, ReadsDatesAndTimes) {
  const auto dmy = DateOrder::kDayMonthYear;
  const auto mdy = DateOrder::kMonthDayYear;
  const std::tuple<std::string, DateOrder, MomentNumbers> cases[] = {
      {"19000101", dmy, {19000101, -1, 9999}},
      {"2020-1-2", mdy, {20200102, -1, 9999}},
      {"202001020930", dmy, {20200102, 93000, 9999}},
      {"20200102093015", dmy, {20200102, 93015, 9999}},
      {"20200102 0930", dmy, {20200102, 93000, 9999}},
      {"2020/01/02 9:30", dmy, {20200102, 93000, 9999}},
      {"31.12.2019 24:00", dmy, {20200101, 0, 9999}},
      {"1/2/69", dmy, {19690201, -1, 9999}},
      {"02-JAN-2020", dmy, {20200102, -1, 9999}},
      {"2nd", dmy, {0, 0, 0}},
      {"Thu, January 2nd, 2020", dmy, {20200102, -1, 9999}},
      {"Jan 2, 20", dmy, {20200102, -1, 9999}},
      {"Jan 2, 202", dmy, {0, 0, 0}},
      {"2-Jan-202", dmy, {0, 0, 0}},
      {"20200102T0930+14:00", dmy, {20200102, 93000, 840}},
      {"Thursday 2 Sept 2020", mdy, {20200902, -1, 9999}},
      {"1/2/2020 12:05 AM", mdy, {20200102, 500, 9999}},
      {"1/2/2020 12:05:10 p.m.", mdy, {20200102, 120510, 9999}},
      {"1/2/2020 9 PM", mdy, {20200102, 210000, 9999}},
  };
  for (const auto& [text, order, expected] : cases) {
    MomentReader reader = ReaderOf(order);
    if (std::get<0>(expected) == 0) {
      EXPECT_THROW(reader.Date(text), ImportError) << text;
    } else {
      EXPECT_EQ(NumbersOf(reader.Date(text)), expected) << text;
      // Once more, as the next row of the same day.
      EXPECT_EQ(NumbersOf(reader.Date(text)), expected) << text;
    }
  }
}

TEST(TextEncoding, PairsTheHalvesOfUtf16) {
  const std::tuple<std::u16string, std::string, std::size_t> cases[] = {
      {u"a\u20AC\uFFFF", "a\xE2\x82\xAC\xEF\xBF\xBF", 3},
      {u"\U00010000b\U0010FFFF", "\U00010000b\U0010FFFF", 5},
      {{0xD83D, u'c'}, "\uFFFDc", 2},
      {{0xD83D, 0xD83D, 0xDE00}, "\uFFFD\U0001F600", 3},
      {{0xDC00, 0xDFFF}, "\uFFFD\uFFFD", 2},
      {{u'd', 0xDBFF}, "d", 1}};
  for (const auto& [units, expected, used] : cases) {
    for (const bool little : {true, false}) {
      std::string bytes;
      for (const char16_t unit : units) {
        const auto low = static_cast<char>(unit & 0xFF);
        const auto high = static_cast<char>(unit >> 8);
        bytes += little ? std::string{low, high} : std::string{high, low};
      }
      const Encoding encoding = little ? Encoding::kUtf16Little : Encoding::kUtf16Big;
      std::string text;
      const std::string half = little ? "" : "x";
      EXPECT_EQ(AppendUtf16(bytes + half, encoding, text), used * 2) << expected;
      EXPECT_EQ(text, expected);
    }
  }
}

TEST(MomentReader, ReadsUnixTimes) {
  const std::tuple<std::string, std::int64_t, MomentNumbers> cases[] = {
      {"1577957415.75", 1, {20200102, 93015, 0}},
      {"-1", 1, {19691231, 235959, 0}},
      {"-1", 1000, {19691231, 235959, 0}},
  };
  for (const auto& [text, per_second, expected] : cases) {
    DateStyle style;
    style.kind = DateStyle::Kind::kUnix;
    style.per_second = per_second;
    EXPECT_EQ(NumbersOf(MomentReader(style, {}).Date(text)), expected) << text;
  }
}

TEST(MomentReader, RefusesOtherDates) {
  for (const std::string text :
       {"", "20201341", "2020-02-30", "18991231", "202001021", "2020-01-0293000",
        "2020-01-02 25:00", "-2020010", "02.01.2020x", "32/01/2020", "1/2/3", "02 Foo 2020",
        "Jan 2", "2020-01-02 13:00 PM", "2020-01-02 9:3", "2020-01-02 1", "02.01/2020",
        "2020-01-02 09:30 +25:00"}) {
    MomentReader reader = ReaderOf(DateOrder::kDayMonthYear);
    EXPECT_THROW(reader.Date(text), ImportError) << text;
  }
}

TEST(MomentReader, ReadsTimesOfTheirOwn) {
  for (const auto& [text, value] : {std::pair("9:30", 93000),
                                    {"9:30:15", 93015},
                                    {"23:59:59.999", 235959},
                                    {"0", 0},
                                    {"093015", 93015},
                                    {"093015250", 93015},
                                    {"09:30 PM", 213000},
                                    {"24:00", 240000},
                                    {"2400", 240000},
                                    {"1899-12-30 09:30:00", 93000}}) {
    MomentReader reader = ReaderOf(DateOrder::kDayMonthYear);
    EXPECT_EQ(reader.Time(text).time, value) << text;
  }
  EXPECT_EQ(MomentReader({}, TimeDigits::kWithSeconds).Time("930").time, 930);
  for (const std::string text : {"", "24:01", "23:60", "23:59:60", "240001", "1260", "0093000",
                                 "9:3", "9:30:", "09-30", "13:30 PM", "x"}) {
    MomentReader reader = ReaderOf(DateOrder::kDayMonthYear);
    EXPECT_THROW(reader.Time(text), ImportError) << text;
  }
}

TEST(DatePattern, ReadsWhatItMatchesExactly) {
  const std::tuple<std::string, std::string, MomentNumbers> cases[] = {
      {"%d.%m.%Y", "2.1.2020 9:30", {20200102, 93000, 9999}},
      {"%m/%d/%y", "01/02/69", {19690102, -1, 9999}},
      {"%m/%d/%y", "01/02/68", {20680102, -1, 9999}},
      {"%d-%b-%Y", "02-JAN-2020", {20200102, -1, 9999}},
      {"%d%m%y %H%M", "050124 0905", {20240105, 90500, 9999}},
      {"%B%d%y %I%%%M %p", "Jan0524 9%05 am", {20240105, 90500, 9999}},
  };
  const auto reader_of = [](const std::string& pattern) {
    DateStyle style;
    style.kind = DateStyle::Kind::kPattern;
    style.pattern.emplace(pattern);
    return MomentReader(style, {});
  };
  for (const auto& [pattern, text, expected] : cases) {
    EXPECT_EQ(NumbersOf(reader_of(pattern).Date(text)), expected) << text;
  }
  // One digit too few or too many would otherwise shift the numbers after it.
  const std::pair<std::string, Texts> refused[] = {
      {"%d.%m.%Y", {"31.04.2020", "2020-01-02", "02.01.2020x"}},
      {"%d.%m.%Y %I:%M %p", {"02.01.2020 13:00 PM"}},
      {"%d.%m.%Y %H:%M",
       {"02.01.2020", "02.01.2020 09:30:00", ".01.2024 9:05", "005.01.2024 9:05", "05.01.924 9:05",
        "+5.01.2024 9:05", "05.01.-2024 9:05", "05.01.2024 9:5", "05.01.2024 9:005"}},
      {"%d%m%y %H%M", {"05124 0905", "0501024 0905", "050124 055", "050124 00905"}},
  };
  for (const auto& [pattern, texts] : refused) {
    for (const std::string& text : texts) {
      EXPECT_THROW(reader_of(pattern).Date(text), ImportError) << pattern << " reads " << text;
    }
  }
  for (const std::string pattern : {"", "yyyymmdd", "%Y-%m", "%d.%m", "%Y%d", "%Y%m%d%",
                                    "%Y%m%d %Q", "%%Y%m%d", "%Y%m%d %I:%M"}) {
    EXPECT_THROW(DatePattern{pattern}, ImportError) << pattern;
  }
}

struct ReadFileResult {
  FileFormat format;
  RowCounts counts;
  std::vector<PriceRow> rows;  // without texts
  std::vector<std::string> lines;
};

ReadFileResult ReadText(std::string_view text, const ImportOptions& options = {}) {
  const ScratchFolder folder;
  folder.Write("prices.csv", text);
  PriceReader reader(folder / "prices.csv", options);
  ReadFileResult result;
  for (auto rows = reader.Next(); !rows.empty(); rows = reader.Next()) {
    for (const PriceRow& row : rows) {
      result.rows.push_back(row);
      result.rows.back().ticker = {};
      result.rows.back().period = {};
      result.lines.emplace_back(reader.RawLine(row));
    }
  }
  result.format = reader.Format();
  result.counts = reader.Counts();
  EXPECT_EQ(reader.Progress(), 1);
  return result;
}

TEST(PriceReader, CountsWhatIsNoRow) {
  const auto read = ReadText(
      "Some title\nDate,Open,High,Low,Close,Volume\n\n2020-01-02,1,2,1,1.25,10\n# a comment\n"
      "2020-01-03,null,null,null,null,null\n2020-01-06,1,2,1,1.5,-\nDate,Open,High,Low,Close,"
      "Volume\n"
      "2020-01-07,1,2,1,1.125,10\nSource: us\n");
  EXPECT_EQ(read.counts.rows, 3);
  EXPECT_EQ(read.counts.skipped, 1);
  EXPECT_EQ(read.counts.first_skipped_line, 6);
  EXPECT_EQ(read.counts.other_lines, 4);
  EXPECT_EQ(read.format.header_line, 2);
  EXPECT_EQ(read.format.price_decimals, 3);
  EXPECT_EQ(read.rows[2].line, 9);
  EXPECT_EQ(read.lines[2], "2020-01-07,1,2,1,1.125,10");
}

TEST(PriceReader, NamesTheLineThatCannotBeRead) {
  const std::string header = "date,time,open,high,low,close\n";
  const std::string first = "20200102,93000,1,2,1,1\n";
  const std::string last = "20200103,93000,1,2,1,1\n";
  const std::pair<std::string, std::string> cases[] = {
      {header + first + "\r\n20200102,93500,1,2,1,x\n" + last,
       "line 4: the close \"x\" is not a number"},
      {header + first + "20200102,93500,1,2,1\n" + last, "line 3: has 5 fields, the header has 6"},
      {header + first + "20200102,93500,1,2,1,1,5\n", "line 3: has 7 fields, the header has 6"},
      {header + first + "20200102,93500,1,\"2,1,1\n" + last,
       "line 3: has a quote that is not closed"},
      {header + "20200102,93500,1,\"2,1,1\n\"20200103\",93000,1,2,1,1\n",
       "line 2: has a quote that is not closed"},
      {header + first + "20200230,93500,1,2,1,1\n",
       "line 3: the date \"20200230\" is not a valid date"},
      {header + first + "20200103,25:00,1,2,1,1\n",
       "line 3: the time \"25:00\" is not a valid time"},
      {header + "2020-01-02 09:30,10:00,1,1,1,1\n",
       "line 2: the time in the date differs from the one in its own column"},
      {"date,open,high,low\n20200102,1,2,1\n",
       "no column holds the close (line 1 names the columns)"},
      {"date,open,high,low,close,Close\n20200102,1,2,1,1,1\n",
       "the header names the column \"Close\" twice"},
      {"20200102,3,2,1,1\n",
       "no column holds the open, high, low, close; add a first line that names the columns"},
      {"\xEF\xBB\xBF\r\n\r\n", "the file is empty"},
      {header, "no line has a date and a price"},
      {std::string("ab\0\0\1\2\n", 7), "is not a text file; save the table as CSV"},
      {std::string(5 << 20, 'x'), "has a line of more than 1 MiB; is it a table?"},
  };
  for (const auto& row : cases) {
    EXPECT_THAT([&] { ReadText(row.first); }, ThrowsMessage<ImportError>(row.second))
        << row.first.substr(0, 200);
  }
}

TEST(PriceReader, DecidesTheOrderOfDayAndMonthByAllRows) {
  const std::tuple<std::string, bool, int> cases[] = {
      {"03/04/2020,1\n04/04/2020,1\n", true, 20200403},
      // Only one order rises or falls.
      {"01/12/2020,1\n02/01/2021,1\n01/02/2021,1\n", false, 20201201},
      {"12/11/2020,1\n12/10/2020,1\n11/12/2020,1\n", false, 20201211},
      {"98/01/02,1\n98/01/03,1\n", false, 19980102},
  };
  for (const auto& [rows, open, date] : cases) {
    const auto read = ReadText("Date,Close\n" + rows);
    EXPECT_EQ(read.format.date_order_open, open) << rows;
    EXPECT_EQ(read.rows[0].bar.date, date) << rows;
  }
  const std::string tickers =
      "A,01/12/2020,1\nA,02/01/2021,1\nA,01/02/2021,1\nB,01/12/2020,1\nB,01/12/2020,1\n";
  EXPECT_FALSE(ReadText("Ticker,Date,Close\n" + tickers).format.date_order_open);
}

// Of a single row too, with volumes near the prices, and after a further price.
TEST(PriceReader, InfersWhichColumnIsTheVolume) {
  const std::pair<std::string, float> cases[] = {
      {"20200102,12000.5,12001,12000,12000.5,12345\n", 12345},
      {"20200102;09:30;2;2;2;2;7\n", 7},
      {"2019-12-19;43000.5;43191;42922;43126.5;25480.25\n"
       "2019-12-20;43101.5;43227;43053;43098.5;45879.75\n"
       "2019-12-23;43144.5;43307;43088;43275.5;46817.5\n",
       46817.5F},
      {"2019-12-19;10.5;11;10;10.75;9.85;700\n2019-12-20;10.5;11;10;10.5;9.75;900\n", 900}};
  for (const auto& [text, volume] : cases) {
    EXPECT_EQ(ReadText(text).rows.back().bar.volume, volume) << text;
  }
}

TEST(PriceReader, InfersWhereTickerAndTimeAre) {
  const Bar expected{.date = 20200131,
                     .time = 130500,
                     .open = 2,
                     .high = 2.5F,
                     .low = 1.5F,
                     .close = 2.25F,
                     .volume = 7};
  for (const std::string& text :
       Texts{"GUM;5;20200131;1305;2;2.5;1.5;2.25;7\n", "31.01.2020;GUM;1305;2;2.5;1.5;2.25;7\n",
             "31.01.2020;1305;GUM;2;2.5;1.5;2.25;7\n", "1/31/2020 1:05 PM GUM 2 2.5 1.5 2.25 7\n",
             "1/31/2020  GUM  1:05:00 pm  2 2.5 1.5 2.25 7\n",
             "GUM 2020-01-31 13:05 2 2.5 1.5 2.25 7\n"}) {
    const auto read = ReadText(text);
    EXPECT_EQ(read.rows[0].bar, expected) << text;
    EXPECT_EQ(std::ranges::count(read.format.columns, PriceField::kTicker, &ColumnMeaning::field),
              1)
        << text;
  }
}

// Several blocks of lines, the one that decides at the end.
TEST(PriceReader, ReadsTheSameRowsWhateverTheBytes) {
  std::string text = "Title\nDate;Time;Open;High;Low;Close;TICKVOL;VOL\n";
  constexpr int kRows = 60000;
  for (int i = 0; i < kRows; ++i) {
    const int minute = i % 1440;
    const std::string close = std::to_string(i % 90 + 10) + (i % 3 == 0 ? ".5" : ".25");
    text += (i < 50000 ? "03/04/2020;" : "14/04/2020;") + std::to_string(minute / 60) + ":" +
            (minute % 60 < 10 ? "0" : "") + std::to_string(minute % 60) + ";" + close + ";" +
            close + ";" + close + ";" + close + (i % 1000 == 7 ? ";\"7\";0\n" : ";7;0\n");
  }
  const auto plain = ReadText(text);
  ASSERT_EQ(plain.counts.rows, kRows);
  EXPECT_FALSE(plain.format.date_order_open);
  EXPECT_EQ(plain.rows[0].bar.date, 20200403);
  EXPECT_EQ(plain.rows[7].bar.volume, 7);
  EXPECT_EQ(plain.rows.back().line, kRows + 2);

  std::string wide = "\xFF\xFE";
  for (const char c : text) wide += {c, '\0'};
  std::string cr = text;
  std::ranges::replace(cr, '\n', '\r');
  std::string quoted;
  for (const char c : text) {
    if (c == '"') continue;
    quoted += c == ';' ? "\";\"" : c == '\n' ? "\"\r\n\"" : std::string(1, c);
  }
  quoted.pop_back();
  const std::string western = "\xC9t\xE9" + text.substr(5) + "Source: \xE9\n";
  for (const std::string& other : {wide, cr, "\"" + quoted, western}) {
    const auto read = ReadText(other);
    ASSERT_EQ(read.counts.rows, kRows);
    for (std::size_t i = 0; i < plain.rows.size(); ++i) {
      ASSERT_EQ(read.rows[i].bar, plain.rows[i].bar) << i;
      ASSERT_EQ(read.rows[i].line, plain.rows[i].line) << i;
    }
  }
}

TEST(PriceReader, DecidesDecimalSignsByAllRows) {
  const std::tuple<std::string, float, float> cases[] = {
      {"Date;Close\n2020-01-02;1,234\n2020-01-03;999\n2020-01-06;1,001\n", 1234, 999},
      {"Date;Close\n2020-01-02;1.234\n2020-01-03;1.5\n", 1.234F, 1.5F},
      {"Date;Close\n02.01.2020;1,234\n03.01.2020;1,235\n", 1.234F, 1.235F},
      {"Date,Close\n2020-01-02,1.234\n2020-01-03,1.235\n", 1.234F, 1.235F},
      {"Date,Close,Volume\n2020-01-02,12,\"1,234\"\n2020-01-03,13,\"1,235\"\n", 12, 13},
      {"Date\tClose\n2020-01-02\t1.234,5\n2020-01-03\t1.234\n", 1234.5F, 1234},
      {"Date;Close\n2020-01-02;1'234,5\n2020-01-03;1'234,25\n", 1234.5F, 1234.25F},
      {"Date\tClose\n2020.01.02\t1.234\n2020.01.03\t1.235\n", 1.234F, 1.235F},
      {"Date,Close\n13.01.2020 09:00,1.234\n14.01.2020 10:00,1.235\n", 1.234F, 1.235F},
      // Volumes without groups: the sign in the prices is the decimal one.
      {"Date;Close;Volume\n13/01/2020;1,234;99000\n14/01/2020;1,235;7\n", 1.234F, 1.235F},
      {"Date;Close;Volume\n13/01/2020;1.234;99000\n14/01/2020;1.235;7\n", 1.234F, 1.235F},
  };
  for (const auto& [text, first, second] : cases) {
    const auto read = ReadText(text);
    EXPECT_EQ(read.rows[0].bar.close, first) << text;
    EXPECT_EQ(read.rows[1].bar.close, second) << text;
  }
  for (const std::string text :
       {"Date;Close\n02.01.2020;1.234\n03.01.2020;1.235\n",
        "Date;Close\n13/01/2020;1,234\n14/01/2020;1,235\n",
        "Date|Close\n13/01/2020|1.234\n14/01/2020|1.235\n",
        "Date;Close;Volume\n13/01/2020;12;1,234\n14/01/2020;13;1,235\n",
        "\"Date\",\"Close\",\"Volume\"\n\"2020-01-02\",\"1,464\",\"9999\"\n"}) {
    EXPECT_THROW(ReadText(text), FormatUndecided) << text;
  }
}

TEST(PriceReader, FindsDatesByTheirNameNotTheirSize) {
  const auto read = ReadText(
      "DATE,CLOSE,TURNOVER\n871030,7.5,484376808\n871102,7.25,650772003\n871103,7.5,963722370\n");
  EXPECT_EQ(read.format.dates, "yymmdd");
  EXPECT_EQ(read.rows[0].bar.date, 19871030);
  EXPECT_THROW(ReadText("DAY,CLOSE,TURNOVER\n1,7.5,484376808\n2,7.25,650772003\n"), ImportError);
}

}  // namespace
}  // namespace velumar
