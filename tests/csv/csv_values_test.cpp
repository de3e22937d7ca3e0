#include "csv/csv_values.h"

#include <limits>

#include "csv/csv_text.h"

namespace velumar {
namespace {

template <typename Read>
std::string Complaint(Read read) {
  try {
    read();
  } catch (const CsvError& error) {
    return error.what();
  }
  return "";
}

TEST(CsvNumber, ReadsTheNearestFloat) {
  const std::vector<std::pair<std::string, float>> cases = {
      {"0e999", 0.0F},
      {"+1.5", 1.5F},
      {".5", 0.5F},
      {"5.", 5.0F},
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
  for (const std::string text : {"x", "1x", "1,5", "1.2.3", "0x10", "--1", "+-1", "1e+", "-"}) {
    EXPECT_EQ(Complaint([&] { CsvNumber(text); }), "\"" + text + "\" is not a number");
  }
  for (const std::string text : {"-1e39", "1.7014118346046923e38", "1e400", "inf", "nan", "1e-39",
                                 "1.1754942e-38", "-1e-50"}) {
    EXPECT_THAT(Complaint([&] { CsvNumber(text); }),
                testing::StartsWith("\"" + text + "\" can't be stored"));
  }
}

TEST(CsvTime, ReadsColonsAndDigits) {
  const std::vector<std::pair<std::string, int>> cases = {
      {"9:30", 93000}, {"9:30:15", 93015}, {"23:59:59", 235959}, {"00:00", 0}, {"0930", 930},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(CsvTime(text), value) << text;
  for (const std::string refused : {"", "24:00", "23:60", "23:59:60", "240000", "1260", "0093000",
                                    "9:3", "9:30:", "09:30:00.5", "09-30", "9:30 PM", "-1"}) {
    EXPECT_NE(Complaint([&] { CsvTime(refused); }), "") << refused;
  }
}

TEST(CsvDateFormat, ReadsDatesAndTheTimeAfterThem) {
  const struct {
    std::string pattern;
    std::string text;
    int date;
    std::optional<int> time;
  } cases[] = {
      {"", "19000101", 19000101, {}},
      {"", "20200102093000", 20200102, 93000},
      {"", "2020-01-02 09:30", 20200102, 93000},
      {"", "2020-01-02T09:30:15", 20200102, 93015},
      {"%d.%m.%Y", "2.1.2020 9:30", 20200102, 93000},
      {"%m/%d/%y", "01/02/69", 19690102, {}},
      {"%m/%d/%y", "01/02/68", 20680102, {}},
      {"%d-%b-%Y", "02-JAN-2020", 20200102, {}},
      {"%B %d, %Y", "january 2, 2020", 20200102, {}},
      {"%Y-%m-%d %H:%M:%S.000", "2020-01-02 09:30:15.000", 20200102, 93015},
      {"%m/%d/%Y %I:%M %p", "01/02/2020 12:05 am", 20200102, 500},
  };
  for (const auto& row : cases) {
    const CsvDateFormat format = row.pattern.empty() ? CsvDateFormat() : CsvDateFormat(row.pattern);
    const CsvDateTime read = format.Read(row.text);
    EXPECT_EQ(read.date, row.date) << row.text;
    EXPECT_EQ(read.time, row.time) << row.text;
  }
}

TEST(CsvDateFormat, RefusesOtherTexts) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
      {"",
       {"", "20201341", "20210229", "2020-02-30", "18991231", "2020-1-2", "2020/01/02",
        "02.01.2020", "2020010", "202001021", "202001020930", "2020-01-0293000", "2020-01-02 25:00",
        "-2020010"}},
      {"%d.%m.%Y", {"31.04.2020", "2020-01-02", "02.01.2020x"}},
      {"%d.%m.%Y %H:%M", {"02.01.2020", "02.01.2020 09:30:00", "02.01.2020 24:00"}},
      {"%d.%m.%Y %I:%M %p", {"02.01.2020 13:00 PM"}},
      {"%d %b %Y", {"02 Foo 2020"}},
  };
  for (const auto& [pattern, texts] : cases) {
    const CsvDateFormat format = pattern.empty() ? CsvDateFormat() : CsvDateFormat(pattern);
    for (const std::string& text : texts) {
      EXPECT_NE(Complaint([&] { format.Read(text); }), "") << pattern << " reads " << text;
    }
  }
}

// One digit too few or too many would otherwise shift the numbers after it.
TEST(CsvDateFormat, CountsTheDigitsOfNumbers) {
  const struct {
    std::string pattern;
    std::optional<int> time;
    std::vector<std::string> read;  // all as 5 January 2024
    std::vector<std::string> refused;
  } kRows[] = {
      {"%d.%m.%Y",
       {},
       {"5.1.2024", "05.01.2024"},
       {".01.2024", "005.01.2024", "05..2024", "05.001.2024", "05.01.24", "05.01.924",
        "05.01.02024", "+5.01.2024", "05.+1.2024", "05.01.+2024", "05.01.-2024"}},
      {"%m/%d/%y", {}, {"1/5/24", "01/05/24"}, {"01/05/4", "01/05/024", "01/05/+24"}},
      {"%d%m%y", {}, {"050124"}, {"05124", "10124", "0512", "0501024"}},
      {"%B%d%y", {}, {"Jan0524", "january0524", "JANUARY0524"}, {"January054", "Jan+524"}},
      {"%d%bJ%Y", {}, {"5JanJ2024", "05JanuaryJ2024"}, {"05JanJ924", "05JanuaryJ924"}},
      {"%Y%m%d %H%M",
       90500,
       {"20240105 0905", "20240105   0905"},
       {"202401050905", "20240105 055", "20240105 100", "20240105 110", "20240105 9",
        "20240105 00905"}},
      {"%Y%m%d %H:%M:%S",
       90500,
       {"20240105 9:05:00", "20240105 09:05:00"},
       {"20240105 9:5:00", "20240105 009:05:00", "20240105 9:005:00", "20240105 9:05:0",
        "20240105 9:05:0.", "20240105 9:05:.0", "20240105 9:05:000", "20240105 +9:05:00",
        "20240105 9:+5:00", "20240105 9:05:+0"}},
      {"%Y%m%d %I%%%M %p",
       90500,
       {"20240105 9%05 am", "20240105 09%05 AM"},
       {"20240105 9%5 AM", "20240105 +9%05 AM", "20240105 009%05 AM"}},
      {"%p%I%M %Y%m%d", 90500, {"AM0905 20240105"}, {"AM095 20240105", "AM+905 20240105"}},
  };
  for (const auto& row : kRows) {
    const CsvDateFormat format(row.pattern);
    for (const std::string& text : row.read) {
      const CsvDateTime read = format.Read(text);
      EXPECT_EQ(std::pair(read.date, read.time), std::pair(20240105, row.time)) << text;
    }
    for (const std::string& text : row.refused) {
      EXPECT_NE(Complaint([&] { format.Read(text); }), "") << row.pattern << " reads " << text;
    }
  }
}

TEST(CsvDateFormat, RefusesPatternsWithoutADay) {
  for (const std::string pattern : {"", "yyyymmdd", "%Y-%m", "%d.%m", "%Y%d", "%Y%m%d%",
                                    "%Y%m%d %Q", "%%Y%m%d", "%Y%m%d %I:%M"}) {
    EXPECT_NE(Complaint([&] { CsvDateFormat{pattern}; }), "") << pattern;
  }
}

}  // namespace
}  // namespace velumar
