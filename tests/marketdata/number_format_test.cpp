#include "marketdata/number_format.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "marketdata/interval.h"
#include "marketdata/market_files.h"

namespace velumar {

namespace {

std::uint32_t WordOf(std::string_view hex) {
  std::uint32_t word = 0;
  std::memcpy(&word, Hex(hex).data(), sizeof word);
  return word;
}

TEST(NumberFormat, KnownBytesAndNumbers) {
  const std::pair<const char*, float> kRows[] = {
      {"00 00 00 00", 0},          {"00 00 A0 82", -2.5F},
      {"18 4F 00 95", 1051107},  // the date 2005-11-07
      {"00 00 80 03", -0x1p-126F}, {"FF FF 7F FF", 0x1.FFFFFEp126F},
  };
  for (const auto& [bytes, value] : kRows) {
    EXPECT_EQ(FloatFromMbf(WordOf(bytes)), value) << bytes;
    EXPECT_EQ(MbfFromFloat(value), WordOf(bytes)) << bytes;
  }
  EXPECT_EQ(FloatFromMbf(WordOf("FF FF FF 02")), 0) << "below the range of floats";
  EXPECT_EQ(MbfFromFloat(std::numeric_limits<float>::denorm_min()), 0U);
  EXPECT_EQ(MbfFromFloat(0x1p127F), std::nullopt);
}

TEST(NumberFormat, EveryOtherWordReadsBack) {
  std::mt19937 random(1);
  for (int i = 0; i < 100000; ++i) {
    const auto word = static_cast<std::uint32_t>(random()) | 0x04000000U;
    EXPECT_EQ(MbfFromFloat(FloatFromMbf(word)), word);
  }
}

TEST(Intervals, FiveMinutesMayBeWritten05) {
  EXPECT_EQ(ReplayableInterval("05"), (SeriesArguments{0, 5}));
  EXPECT_EQ(IntervalToMatch("05"), "5");
  for (const char* text : {"", "d", "-1", "005"}) EXPECT_FALSE(ReplayableInterval(text)) << text;
}

TEST(NumberFormat, ImpossibleDatesAndTimesReadAsZero) {
  EXPECT_EQ(DateFromStored(1051107), 20051107);
  for (const float stored : {-5.0F, 1e8F, std::nanf("")}) {
    EXPECT_EQ(DateFromStored(stored), 0) << stored;
    EXPECT_EQ(TimeFromStored(stored), 0) << stored;
  }
  for (const int date : {19000000, 18991231, std::numeric_limits<int>::min(), 36000101}) {
    EXPECT_EQ(StoredDate(date), std::nullopt) << date;  // 36000101: an odd number beyond 2^24
  }
  EXPECT_EQ(StoredTime(-1), std::nullopt);
}

}  // namespace

}  // namespace velumar
