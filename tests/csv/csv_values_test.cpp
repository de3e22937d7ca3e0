#include "csv/csv_values.h"

#include <limits>

#include "csv/csv_text.h"

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

}  // namespace
}  // namespace velumar
