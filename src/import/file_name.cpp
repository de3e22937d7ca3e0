#include "import/file_name.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "import/field_text.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr int kMinutesPerDay = 1440;
constexpr std::string_view kBetweenWords = "_- ,.";

// Minutes of one unit; 0 for a text that is not a unit.
int MinutesOfUnit(std::string_view unit) {
  constexpr std::array<std::pair<std::string_view, int>, 18> kUnits = {
      {{"M", 1},
       {"MIN", 1},
       {"MINS", 1},
       {"MINUTE", 1},
       {"MINUTES", 1},
       {"H", 60},
       {"HR", 60},
       {"HOUR", 60},
       {"HOURS", 60},
       {"HOURLY", 60},
       {"D", kMinutesPerDay},
       {"DAY", kMinutesPerDay},
       {"DAILY", kMinutesPerDay},
       {"W", 7 * kMinutesPerDay},
       {"WEEK", 7 * kMinutesPerDay},
       {"WEEKLY", 7 * kMinutesPerDay},
       {"MN", 30 * kMinutesPerDay},
       {"MONTHLY", 30 * kMinutesPerDay}}};
  const auto* const found =
      std::ranges::find(kUnits, unit, [](const auto& one) { return one.first; });
  return found == kUnits.end() ? 0 : found->second;
}

bool AreDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of(kDigits) == std::string_view::npos;
}

std::optional<int> Checked(std::int64_t minutes) {
  if (minutes == kMinutesPerDay) return kDaily;
  constexpr int kMost = 31 * kMinutesPerDay;
  return minutes > 0 && minutes <= kMost ? std::optional(static_cast<int>(minutes)) : std::nullopt;
}

std::string WithoutCopyNumber(std::string_view stem) {
  const auto open = stem.rfind(" (");
  const bool numbered = open != std::string_view::npos && stem.ends_with(')') &&
                        AreDigits(stem.substr(open + 2, stem.size() - open - 3));
  return Trimmed(numbered ? stem.substr(0, open) : stem);
}

// A word that can only mean an interval, such as "M5"; one without a number, and a number alone,
// only after "_".
bool IsCertain(std::string_view word, char before, int interval) {
  const bool bare = word.find_first_of(kDigits) == std::string_view::npos || AreDigits(word);
  return bare ? before == '_' && IsReplayInterval(interval) : UpperCased(word) != "1M";
}

// A word that names an interval, as the last one or followed by numbers such as dates.
std::optional<NameGuess> GuessFromWords(std::string_view stem) {
  std::size_t end = stem.size();
  while (true) {
    const auto before = stem.find_last_of(kBetweenWords, end - 1);
    if (before == std::string_view::npos || before == 0) return std::nullopt;
    const std::string_view word = stem.substr(before + 1, end - before - 1);
    const bool is_last = end == stem.size();
    const std::optional<int> interval = IntervalFromWord(word);
    if (interval && (is_last || !AreDigits(word)) && !(AreDigits(word) && stem[before] != '_')) {
      const auto symbol = stem.find_last_not_of(kBetweenWords, before);
      if (symbol == std::string_view::npos) return std::nullopt;
      return NameGuess{.symbol = NormalisedSymbol(stem.substr(0, symbol + 1)),
                       .interval = interval,
                       .certain = IsCertain(word, stem[before], *interval)};
    }
    if (!word.empty() && kDigits.find(word.front()) == std::string_view::npos) return std::nullopt;
    end = before;
  }
}

// "EURUSD60": a pair of currencies, and minutes.
std::optional<NameGuess> GuessFromPair(std::string_view stem) {
  constexpr std::size_t kPair = 6;
  if (stem.size() <= kPair || stem.find_first_of(kDigits) != kPair) return std::nullopt;
  const std::optional<int> interval = IntervalFromWord(stem.substr(kPair));
  if (!interval || !AreDigits(stem.substr(kPair))) return std::nullopt;
  return NameGuess{
      .symbol = NormalisedSymbol(stem.substr(0, kPair)), .interval = interval, .certain = false};
}

}  // namespace

std::optional<int> IntervalFromWord(std::string_view word) {
  const std::string upper = UpperCased(Trimmed(word));
  const auto digits = upper.find_first_of(kDigits);
  if (digits == std::string::npos) return Checked(MinutesOfUnit(upper));
  const auto digits_end = std::min(upper.find_first_not_of(kDigits, digits), upper.size());
  const auto number = ExactNumber<int>(
      std::string_view(upper).substr(digits, std::min<std::size_t>(digits_end - digits, 6)));
  // The unit is before or after the number.
  const std::string unit = upper.substr(0, digits) + upper.substr(digits_end);
  if (digits > 0 && digits_end < upper.size()) return std::nullopt;
  if (!unit.empty()) return Checked(std::int64_t{*number} * MinutesOfUnit(unit));
  // Minutes, unless it is a year or another number.
  const bool usual =
      *number > 0 && (kMinutesPerDay % *number == 0 || *number == 7 * kMinutesPerDay ||
                      *number == 30 * kMinutesPerDay);
  return usual ? Checked(*number) : std::nullopt;
}

NameGuess GuessFromName(std::string_view stem) {
  const std::string name = WithoutCopyNumber(stem);
  std::optional<NameGuess> guess = GuessFromWords(name);
  if (!guess) guess = GuessFromPair(name);
  if (!guess) guess = NameGuess{.symbol = NormalisedSymbol(name)};
  guess->whole = NormalisedSymbol(name);
  return *guess;
}

}  // namespace velumar
