#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velumar {

// The order of the numbers in a date like 03/04/2020.
enum class DateOrder : std::uint8_t { kDayMonthYear, kMonthDayYear, kYearMonthDay };

// Which price counts as the close if a file has both: the close itself, or the adjusted one (open,
// high and low are then multiplied by the same factor).
enum class Prices : std::uint8_t { kAsTraded, kAdjusted };

// What happens to a series that is longer than a run can play.
enum class TooLong : std::uint8_t { kAsk, kKeepLast, kSplitByYear };

// The moment that a file writes next to a bar.
enum class BarLabel : std::uint8_t { kStart, kEnd };

// What the market data directory remembers of an imported file, so that an update can read it
// again: nothing, the file, or the file and that new files of its folder belong to the directory.
enum class Remember : std::uint8_t { kNothing, kFile, kFolder };

// What the user has decided. Whatever is missing is taken from the file and its name; what the file
// leaves open becomes a question.
struct ImportOptions {
  std::optional<std::string> symbol = {};  // any case; for a file with one series
  std::optional<std::string> name = {};    // default: that of the stored security, or the symbol
  std::optional<int> interval = {};        // kDaily or minutes; finer bars are aggregated
  std::optional<std::string> date_format = {};  // a pattern such as "%d.%m.%Y"
  std::optional<DateOrder> date_order = {};
  std::optional<bool> decimal_comma = {};  // or a decimal point
  std::optional<Prices> prices = {};
  std::optional<BarLabel> label = {};     // default: kStart
  int scale = 1;                          // prices are multiplied by it: a power of ten
  std::optional<std::int32_t> from = {};  // yyyymmdd, the first and the last day to import
  std::optional<std::int32_t> to = {};
  // Time zones as in the tz database: "Europe/Berlin". Times are kept as written unless one of
  // these is set. Without from_zone each line must state its offset; without to_zone times become
  // UTC.
  std::optional<std::string> from_zone = {};
  std::optional<std::string> to_zone = {};
  bool utc = false;  // convert times with an offset or suffix to UTC
  TooLong too_long = TooLong::kAsk;
  bool replace = false;  // start over instead of adding to the stored series
  Remember remember = Remember::kFile;

  bool operator==(const ImportOptions&) const = default;
};

// True for 1, 10, 100, ... up to 1,000,000.
constexpr bool IsScale(int scale) {
  for (int power = 1; power <= 1'000'000; power *= 10) {
    if (scale == power) return true;
  }
  return false;
}

}  // namespace velumar
