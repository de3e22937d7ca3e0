#include "import/date_pattern.h"

#include <date/date.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "import/field_text.h"
#include "import/price_reader.h"

namespace velumar {

namespace {

bool HasConversion(std::string_view pattern, std::string_view letters) {
  for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    if (letters.find(pattern[++i]) != std::string_view::npos) return true;
  }
  return false;
}

void RequireKnownConversions(std::string_view pattern) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    const std::string conversion(pattern.substr(i++, 2));
    constexpr std::string_view kKnown = "YymdbBHIpMS%";
    if (conversion.size() < 2 || kKnown.find(conversion[1]) == std::string_view::npos) {
      throw ImportError("the date format has an unknown \"" + conversion + "\"");
    }
  }
}

std::size_t CountLeading(std::string_view text, std::string_view characters) {
  return std::min(text.find_first_not_of(characters), text.size());
}

std::size_t MonthNameLength(std::string_view text, std::int32_t date) {
  const std::string name = UpperCased(DateText(date, "MMMM"));
  return UpperCased(text.substr(0, name.size())) == name ? name.size() : 3;
}

// The length of what a conversion has read at the start of `text`; nothing if it should have
// refused it. `date` is the date that was read.
std::optional<std::size_t> LengthRead(char conversion, std::string_view text, std::int32_t date) {
  if (conversion == '%') return 1;
  if (conversion == 'p') return 2;
  if (conversion == 'b' || conversion == 'B') return MonthNameLength(text, date);
  const bool short_form = std::string_view("mdHI").find(conversion) != std::string_view::npos;
  const std::size_t most = conversion == 'Y' ? 4 : 2;
  const std::size_t digits = std::min(CountLeading(text, kDigits), most);
  if (digits < (short_form ? 1 : most)) return std::nullopt;
  return digits;
}

// The date library also takes fewer digits, signs and decimal points, so that 100 would be 10:00
// in the pattern %H%M. True if all numbers of `text`, which it has read as `date`, are whole.
bool HasWholeNumbers(std::string_view text, std::string_view pattern, std::int32_t date) {
  static constexpr std::string_view kBlanks = " \t\n\v\f\r";
  const auto blank = [](char c) { return kBlanks.find(c) != std::string_view::npos; };
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    std::optional<std::size_t> length = 1;
    if (pattern[i] == '%') {
      length = LengthRead(pattern[++i], text, date);
    } else if (blank(pattern[i])) {
      const bool more = i > 0 && blank(pattern[i - 1]);
      length = CountLeading(text, kBlanks);
      if (length == 0 && !more) return false;
    }
    if (!length) return false;
    text.remove_prefix(std::min(*length, text.size()));
  }
  return true;
}

}  // namespace

DatePattern::DatePattern(std::string pattern) : pattern_(std::move(pattern)) {
  RequireKnownConversions(pattern_);
  for (const std::string_view needed : {"Yy", "mbB", "d"}) {
    if (!HasConversion(pattern_, needed)) {
      throw ImportError("the date format \"" + pattern_ + "\" needs a year, a month and a day");
    }
  }
  if (HasConversion(pattern_, "I") != HasConversion(pattern_, "p")) {
    throw ImportError("the date format \"" + pattern_ +
                      "\" has one of %I and %p without the other");
  }
}

std::optional<DatePattern::Match> DatePattern::Read(std::string_view text) const {
  std::istringstream stream{std::string(text)};
  date::fields<std::chrono::seconds> read;
  if (date::from_stream(stream, pattern_.c_str(), read).fail()) return std::nullopt;
  Match match{.date = static_cast<int>(read.ymd.year()) * 10000 +
                      static_cast<int>(unsigned{read.ymd.month()}) * 100 +
                      static_cast<int>(unsigned{read.ymd.day()})};
  if (!HasWholeNumbers(text, pattern_, match.date)) return std::nullopt;
  match.rest = text.substr(text.size() - static_cast<std::size_t>(stream.rdbuf()->in_avail()));
  if (read.has_tod) {
    match.time =
        static_cast<std::int32_t>(read.tod.hours().count() * 10000 +
                                  read.tod.minutes().count() * 100 + read.tod.seconds().count());
  }
  return match;
}

}  // namespace velumar
