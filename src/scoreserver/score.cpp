#include "scoreserver/score.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "base/dates.h"
#include "base/number_text.h"
#include "results/figure_texts.h"
#include "scoreserver/visible_text.h"

namespace velumar {

namespace {

constexpr std::array<std::string_view, 4> kKeys = {
    "&score=", "&zanno=yes&symbol=", "&startdate=", "&enddate="};

std::string Limited(std::string_view text, std::size_t longest, const std::string& what) {
  if (text.size() > longest) {
    throw BadScore("the " + what + " is longer than " + std::to_string(longest) + " bytes");
  }
  if (const auto character = InvisibleCharacter(text)) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "U+%04X", static_cast<unsigned>(*character));
    throw BadScore("the " + what + " contains an invisible character (" + number.data() + ")");
  }
  return std::string(text);
}

std::string Name(std::string_view text) {
  if (IsBlank(text)) throw BadScore("the name is blank");
  return Limited(text, kLongestName, "name");
}

// A run stores its money as a 32-bit float, so no score is larger.
double Money(std::string_view text) {
  constexpr double kMost = 1e39;
  const auto money = ExactNumber<double>(text);
  // The comparison is false for a NaN.
  if (!money || !(std::abs(*money) <= kMost)) {
    throw BadScore("the score is not a number, or out of range");
  }
  return *money;
}

std::int32_t Date(std::string_view text, const std::string& what) {
  constexpr std::size_t kDigits = 8;
  const auto date = ExactNumber<std::int32_t>(text);
  if (text.size() != kDigits || !date || !IsRealDate(*date)) {
    throw BadScore("the " + what + " is not a date yyyymmdd");
  }
  return *date;
}

}  // namespace

Score ParseScore(std::string_view query) {
  constexpr std::string_view kFirst = "username=";
  if (!query.starts_with(kFirst)) throw BadScore("\"username=\" is missing");
  query.remove_prefix(kFirst.size());
  std::array<std::string_view, kKeys.size()> values;
  // From the end, since only the name may contain something like a key.
  for (std::size_t i = kKeys.size(); i-- > 0;) {
    const std::size_t key = query.rfind(kKeys[i]);
    if (key == std::string_view::npos) {
      throw BadScore("\"" + std::string(kKeys[i]) + "\" is missing");
    }
    values[i] = query.substr(key + kKeys[i].size());
    query = query.substr(0, key);
  }
  return {.name = Name(query),
          .money = Money(values[0]),
          .symbol = Limited(values[1], kLongestSymbol, "symbol"),
          .start_date = Date(values[2], "start date"),
          .end_date = Date(values[3], "end date")};
}

std::string ScoreLine(std::size_t rank, const Score& score) {
  constexpr std::size_t kWidth = 2;
  std::string place = std::to_string(rank);
  place.insert(0, kWidth - std::min(kWidth, place.size()), ' ');
  return place + ".  " + MoneyText(score.money) + "  " +
         (score.name.empty() ? "anonymous" : Escaped(score.name)) + "  " + Escaped(score.symbol) +
         "  " + IsoDate(score.start_date) + " to " + IsoDate(score.end_date);
}

}  // namespace velumar
