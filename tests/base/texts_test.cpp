// Numbers, dates and symbols as texts.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>

#include "base/dates.h"
#include "base/decimal.h"
#include "base/number_text.h"
#include "base/text.h"

namespace velumar {
namespace {

TEST(NumberText, SevenSignificantDigitsAndNoSmallExponentForPeople) {
  const std::tuple<float, const char*, const char*> cases[] = {
      {-0.0F, "0", "0"},
      {123456789.0F, "1.234568E+08", "1.234568E+08"},
      {0.0001F, "0.0001", "0.0001"},
      {0.00005F, "5E-05", "0.00005"},
      {-2.5e-6F, "-2.5E-06", "-0.000003"},
      {-5.551115E-17F, "-5.551115E-17", "0"},
      // Halves at the eighth digit round to even: both are exact floats.
      {1048576.5F, "1048576", "1048576"},
      {1048577.5F, "1048578", "1048578"},
      // Rounding up to the limit takes the exponent.
      {9999999.5F, "1E+07", "1E+07"},
  };
  for (const auto& [value, plain, readable] : cases) {
    EXPECT_EQ(PlainNumberText(value), plain);
    EXPECT_EQ(ReadableNumberText(value), readable);
  }
}

TEST(Decimal, DifferencesAreExact) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"1", "1e-9", "0.999999999e0"},
      {"-0.5", "99.5", "-0.1e3"},
      {"2e-3", "3e20", "-0.299999999999999999999998e21"},
      {"0", "12.5", "-0.125e2"},
  };
  for (const auto& [left, right, difference] : cases) {
    const Decimal a = Decimal::FromText(left).value();
    const Decimal b = Decimal::FromText(right).value();
    EXPECT_EQ(a.Minus(b).Canonical(), difference) << left << " - " << right;
  }
}

TEST(NumberText, PatternsFillTheirPlaces) {
  const std::tuple<float, std::string_view, const char*> cases[] = {
      {2.5F, kWholePattern, "3"},
      {2.499999F, kWholePattern, "2"},
      {-0.5F, kWholePattern, "-1"},
      {-0.4F, kWholePattern, "0"},
      {-3e20F, kWholePattern, "-300,000,000,000,000,000,000"},
      // 1.005 is below its decimal as a float, but a trader sees 1.005.
      {1.005F, kTwoDecimalsPattern, "1.01"},
      {99.999F, kTwoDecimalsPattern, "100.0"},
      {0.0F, "###,###,###,###", ""},
      {93000.0F, kTimePattern, "09:30:00"},
      // Surplus digits come before the leftmost place.
      {160000.0F, "0#:##", "1600:00"},
  };
  for (const auto& [value, pattern, text] : cases) {
    EXPECT_EQ(PatternText(value, pattern), text) << value << " through " << pattern;
  }
  EXPECT_EQ(PatternText(" 1,000.5 ", kWholePattern), "1,001");
  EXPECT_EQ(PatternText("1,5", kWholePattern), "1,5");
  EXPECT_EQ(GroupedNumber("-123") + GroupedNumber("-1234.5678"), "-123-1,234.5678");
}

TEST(NumberText, TextsToNumbers) {
  const std::pair<const char*, float> cases[] = {
      {"2,000,000", 2e6F}, {" -1.5 ", -1.5F},
      {"+3", 3.0F},        {".5", 0.5F},
      {"1.", 1.0F},        {"1e3", 1000.0F},
      {"1e-60", 0.0F},     {"3.4028235e38", std::numeric_limits<float>::max()}};
  for (const auto& [text, value] : cases) EXPECT_EQ(ToSingle(text), value) << text;
  for (const char* text : {"", "abc", "1 2", "nan", "inf", "1e39", "0x10", "--1", "1e", ".", ",5",
                           "1,5", "1,50,000", "1000,000", "1,000,", "1,,000", "0,500"}) {
    EXPECT_EQ(ToSingle(text), std::nullopt) << text;
  }
}

TEST(NumberText, TextToInt16RoundsToEven) {
  const std::pair<const char*, int> cases[] = {
      {"1,000", 1000},  {"2.5", 2},       {"3.5", 4},           {"-2.5", -2},
      {"2.5000001", 3}, {"2.4999999", 2}, {"-32768.5", -32768}, {"32767.4", 32767}};
  for (const auto& [text, value] : cases) EXPECT_EQ(ToInt16(text), value) << text;
  for (const char* text : {"", "x", "32767.5", "-32769", "1e9999999999"}) {
    EXPECT_EQ(ToInt16(text), std::nullopt) << text;
  }
}

// Any float reads back from its digits, and a rounded one differs by at most half a place.
TEST(NumberText, RandomFloatsReadBackFromTheirText) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::uint32_t> bits;
  for (int i = 0; i < 5000; ++i) {
    const std::uint32_t pattern = bits(random);
    float value = 0;
    std::memcpy(&value, &pattern, sizeof value);
    if (!std::isfinite(value)) continue;
    const double plain = ToDouble(PlainNumberText(value)).value();
    EXPECT_NEAR(plain, value, std::abs(double{value}) * 0.6e-6) << value;
    if (std::abs(value) > 1e6F) continue;
    const double shown = ToDouble(PatternText(value, kPricePattern)).value();
    EXPECT_NEAR(shown, value, 0.005 + std::abs(double{value}) * 1e-7) << value;
  }
}

TEST(Dates, ThePatternDecidesOrderAndWidth) {
  const std::tuple<std::int32_t, const char*, const char*> cases[] = {
      {20070125, "M/d/yy", "1/25/07"},
      {20070203, "dddd, d. MMMM yyyy", "Saturday, 3. February 2007"},
      {20070203, "dd.MM.yyyy 'den'", "03.02.2007 den"},
      {0, "dd/MM/yyyy", "N/A"},
      // A damaged bar shows what it holds.
      {20071345, "d MMM yyyy", "45 13 2007"},
  };
  for (const auto& [date, pattern, text] : cases) EXPECT_EQ(DateText(date, pattern), text);
  EXPECT_EQ(IsoDateText("2007-02-31", "M/d/yyyy"), "2/31/2007") << "of a damaged bar";
  EXPECT_EQ(IsoMinuteText("2007-12-25 16:30", "d MMM yyyy"), "25 Dec 2007 16:30");
  EXPECT_EQ(IsoMinuteText("2007-12-25 16:30:59", "M/d/yyyy"), "12/25/2007 16:30");
  EXPECT_EQ(IsoMinuteText("2007-12-25 16:3", "M/d/yyyy"), "2007-12-25 16:3");
  for (const char* other : {"", "2007/01/25", "2007-01-25 10:00"}) {
    EXPECT_EQ(IsoDateText(other, "d/M/yyyy"), other);
  }
}

TEST(Dates, TextsReadBack) {
  for (const char* pattern : {"dd/MM/yyyy", "M/d/yy", "yyyy-MM-dd", "yyyyMMdd", "d MMM yyyy"}) {
    for (const std::int32_t date : {20070203, 19991231, 20290101, 19300101, 20240229}) {
      EXPECT_EQ(DateFromText(DateText(date, pattern), pattern), date) << pattern;
    }
  }
  for (const char* text : {"", "abc", "29/02/1900", "1/2", "1/2/2007/4", "25/25/2007"}) {
    EXPECT_EQ(DateFromText(text, "dd/MM/yyyy"), std::nullopt) << text;
  }
  EXPECT_EQ(DaysLater(20080301, -1), 20080229);
}

TEST(Text, SymbolsAreTrimmedAndUpperCasedInAsciiOnly) {
  EXPECT_EQ(NormalisedSymbol("  abc yz "), "ABC YZ");
  EXPECT_EQ(NormalisedSymbol("caf\xC3\xA9"), "CAF\xC3\xA9");
}

TEST(Text, EveryByteSurvivesTheRoundTrip) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(Utf8ToLatin1(Latin1ToUtf8(bytes)), bytes);
  EXPECT_THROW(Utf8ToLatin1("\xE2\x82\xAC"), std::invalid_argument);
  EXPECT_THROW(Utf8ToLatin1("\xC3"), std::invalid_argument);
}

}  // namespace
}  // namespace velumar
