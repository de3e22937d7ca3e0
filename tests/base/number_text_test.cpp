#include "base/number_text.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "base/decimal.h"

namespace velumar {
namespace {

TEST(NumberText, PlainTextHasSevenSignificantDigits) {
  const struct {
    float value;
    const char* text;
  } cases[] = {
      {0.0F, "0"},
      {-0.0F, "0"},
      {-2.25F, "-2.25"},
      {1.0F / 3, "0.3333333"},
      {9999999.0F, "9999999"},
      {1e7F, "1E+07"},
      {123456789.0F, "1.234568E+08"},
      {0.00005F, "5E-05"},
      {-2.5e-6F, "-2.5E-06"},
      {1.5e-38F, "1.5E-38"},
      // Ties at the eighth digit go to the even one: both are exact floats.
      {1048576.5F, "1048576"},
      {1048577.5F, "1048578"},
      // Rounding up to the limit takes the exponent.
      {9999999.5F, "1E+07"},
  };
  for (const auto& c : cases) EXPECT_EQ(PlainNumberText(c.value), c.text);
}

TEST(NumberText, ReadableTextHasNoSmallExponent) {
  const struct {
    float value;
    const char* text;
  } cases[] = {{1.490116E-09F, "0"},
               {-5.551115E-17F, "0"},
               {0.00005F, "0.00005"},
               {-2.5e-6F, "-0.000003"},
               {0.0001F, "0.0001"},
               {100.5F, "100.5"},
               {0.0F, "0"}};
  for (const auto& c : cases) EXPECT_EQ(ReadableNumberText(c.value), c.text);
}

TEST(Decimal, DifferencesAreExact) {
  const struct {
    const char* a;
    const char* b;
    const char* difference;
  } cases[] = {{"0.7", "0.7", "0"},
               {"0.3", "0.1", "0.2e0"},
               {"1", "1e-9", "0.999999999e0"},
               {"1e9", "0.5", "0.9999999995e9"},
               {"0.1", "0.35", "-0.25e0"},
               {"-0.5", "99.5", "-0.1e3"},
               {"5", "-5", "0.1e2"},
               {"-3e20", "2e-3", "-0.300000000000000000000002e21"},
               {"2e-3", "3e20", "-0.299999999999999999999998e21"},
               {"0", "12.5", "-0.125e2"},
               {"12.5", "0", "0.125e2"}};
  for (const auto& c : cases) {
    const Decimal a = Decimal::FromText(c.a).value();
    const Decimal b = Decimal::FromText(c.b).value();
    EXPECT_EQ(a.Minus(b).Canonical(), c.difference) << c.a << " - " << c.b;
  }
}

TEST(NumberText, PatternsFillTheirPlaces) {
  const struct {
    float value;
    std::string_view pattern;
    const char* text;
  } cases[] = {
      {2000000.0F, kWholePattern, "2,000,000"},
      {-1234.0F, kWholePattern, "-1,234"},
      {-0.5F, kWholePattern, "-1"},
      {2.5F, kWholePattern, "3"},
      {2.499999F, kWholePattern, "2"},
      {-2.500001F, kWholePattern, "-3"},
      {-3e20F, kWholePattern, "-300,000,000,000,000,000,000"},
      {-0.4F, kWholePattern, "0"},
      {98765432.0F, kWholePattern, "98,765,430"},
      {100.125F, kTwoDecimalsPattern, "100.13"},
      {-0.004F, kTwoDecimalsPattern, "0.0"},
      // 1.005 is below its decimal as a float, but a trader sees 1.005.
      {1.005F, kTwoDecimalsPattern, "1.01"},
      {99.999F, kClosePattern, "100.0"},
      {1234.5F, kPricePattern, "1,234.50"},
      {0.005F, kPricePattern, "0.01"},
      {0.0F, "###,###,###,###", ""},
      {0.0F, kTimePattern, "00:00:00"},
      {93000.0F, kTimePattern, "09:30:00"},
      // Surplus digits go in front of the leftmost place.
      {160000.0F, "0#:##", "1600:00"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(PatternText(c.value, c.pattern), c.text) << c.value << " through " << c.pattern;
  }
}

TEST(NumberText, TextsThroughPatterns) {
  EXPECT_EQ(PatternText("1500", kWholePattern), "1,500");
  EXPECT_EQ(PatternText("2.5", kWholePattern), "3");
  EXPECT_EQ(PatternText(" 1,000 ", kWholePattern), "1,000");
  for (const char* text : {"", "abc", "1,2,3x", "--1", ".", "1e", ",", "1,5"}) {
    EXPECT_EQ(PatternText(text, kWholePattern), text);
  }
}

TEST(NumberText, TextToSingle) {
  const struct {
    const char* text;
    float value;
  } cases[] = {{"2,000,000", 2e6F},
               {" -1.5 ", -1.5F},
               {"+3", 3.0F},
               {".5", 0.5F},
               {"1.", 1.0F},
               {"1e3", 1000.0F},
               {"16777217", 16777216.0F},
               {"1e-60", 0.0F},
               {"3.4028235e38", std::numeric_limits<float>::max()}};
  for (const auto& c : cases) EXPECT_EQ(ToSingle(c.text), c.value) << c.text;
  for (const char* text :
       {"", " ", "abc", "1 2", "nan", "inf", "1e39", "99999999999999999999999999999999999999999999",
        "0x10", ",5", "1,5", "1,50,000", "1000,000", "1,000,", "1,,000", "0,500"}) {
    EXPECT_EQ(ToSingle(text), std::nullopt) << text;
  }
  EXPECT_EQ(ToDouble("0.1"), 0.1);
  EXPECT_EQ(ToDouble("1e99"), 1e99);
}

TEST(NumberText, TextToInt16RoundsToEven) {
  const struct {
    const char* text;
    int value;
  } cases[] = {{"7", 7},         {"2.5", 2},           {"3.5", 4},         {"-2.5", -2},
               {"0.5", 0},       {"1,000", 1000},      {"32767.4", 32767}, {"2.5000001", 3},
               {"2.4999999", 2}, {"-32768.5", -32768}, {"1e3", 1000}};
  for (const auto& c : cases) EXPECT_EQ(ToInt16(c.text), c.value) << c.text;
  for (const char* text : {"", "x", "32767.5", "32768", "-32769", "1e9999999999"}) {
    EXPECT_EQ(ToInt16(text), std::nullopt) << text;
  }
}

// Any float comes back from its digits, and a rounded one differs by no more than half a place.
TEST(NumberText, RandomFloatsSurviveTheirTexts) {
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

}  // namespace
}  // namespace velumar
