#include "platform/posix/locale.h"

#include <cstdlib>

namespace velumar {
namespace {

// The formats come from the locales of many countries.
TEST(LocalePosix, TurnsFormatsIntoPatterns) {
  const struct {
    const char* format;
    const char* pattern;
    const char* separator;
  } formats[] = {
      {"%d/%m/%Y", "dd/MM/yyyy", "/"},
      {"%d.%m.%Y", "dd.MM.yyyy", "."},
      {"%d. %m. %y", "dd. MM. yy", ". "},
      {"%-d.%-m.%Y", "d.M.yyyy", "."},
      {"%-m/%-d/%y", "M/d/yy", "/"},
      {"%F", "yyyy-MM-dd", "-"},
      {"%D", "MM/dd/yy", "/"},
      {"%d/%m-%Y", "dd/MM-yyyy", "/"},
      {"%d/%m/%Ey", "dd/MM/yyyy", "/"},
      {"%Oy/%Om/%Od", "yy/MM/dd", "/"},
      {"%Y年%m月%d日", "yyyy年MM月dd日", "/"},
      {"%A %d %b %Y", "dddd dd MMM yyyy", " "},
      {"%a, %Y.eko %bren %da", "ddd, yyyy.'eko' MMM'ren' dd'a'", "/"},
      {"%OC%Oy %b %Od %A", "yyyy MMM dd dddd", " "},
      {"%C%y%m%d", "yyyyMMdd", "/"},
      // A field is missing or there twice, or a pattern can't express the format.
      {"%d %b", "M/d/yyyy", "/"},
      {"%d/%m/%Y (%y)", "M/d/yyyy", "/"},
      {"week %V, %d/%m/%Y", "M/d/yyyy", "/"},
      {"%d d'%m %Y", "M/d/yyyy", "/"},
      {"%d/%m/%", "M/d/yyyy", "/"},
      {"", "M/d/yyyy", "/"},
  };
  for (const auto& row : formats) {
    const std::string pattern = PatternOfDateFormat(row.format);
    EXPECT_EQ(pattern, row.pattern) << row.format;
    EXPECT_EQ(SeparatorOfPattern(pattern), row.separator) << row.format;
  }
}

TEST(LocalePosix, NeutralAndUnknownLocalesPutTheMonthFirst) {
  for (const char* const name : {"C", "POSIX", "C.UTF-8", "C.utf8", "xx_YY.UTF-8"}) {
    ::setenv("LC_ALL", name, 1);
    const PosixLocale locale;
    EXPECT_EQ(locale.ShortDatePattern(), "M/d/yyyy") << name;
    EXPECT_EQ(locale.DateSeparator(), "/") << name;
  }
  ::unsetenv("LC_ALL");
}

}  // namespace
}  // namespace velumar
