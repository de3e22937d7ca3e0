#include "base/dates.h"

namespace velumar {
namespace {

TEST(Dates, ThePatternDecidesOrderAndWidth) {
  const struct {
    std::int32_t date;
    const char* pattern;
    const char* text;
  } cases[] = {
      {20070125, "M/d/yy", "1/25/07"},
      {20070203, "dddd, d. MMMM yyyy", "Saturday, 3. February 2007"},
      {20070203, "dd.MM.yyyy 'den'", "03.02.2007 den"},
      {0, "dd/MM/yyyy", "N/A"},
      // A damaged bar shows what it holds.
      {20071345, "d MMM yyyy", "45 13 2007"},
  };
  for (const auto& c : cases) EXPECT_EQ(DateText(c.date, c.pattern), c.text);
  EXPECT_EQ(IsoDateText("2007-02-31", "M/d/yyyy"), "2/31/2007") << "of a damaged bar";
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

}  // namespace
}  // namespace velumar
