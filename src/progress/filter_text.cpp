#include "progress/filter_text.h"

#include <algorithm>
#include <array>

#include "base/dates.h"

namespace velumar {

namespace {

constexpr std::array kDayNames{"Monday", "Tuesday",  "Wednesday", "Thursday",
                               "Friday", "Saturday", "Sunday"};

std::string SpanText(const std::string& from, const std::string& to,
                     const LedgerDateText& date_text) {
  std::string text = from.empty() ? "" : "from " + date_text(from);
  if (!to.empty()) text += (text.empty() ? "" : " ") + ("to " + date_text(to));
  return text;
}

std::string DayOrNothing(std::int32_t day) { return day == 0 ? std::string() : IsoDate(day); }

std::string SessionsText(const std::vector<LedgerScope>& sessions) {
  constexpr std::size_t kMostSessions = 10;
  std::vector<std::string> names;
  for (const LedgerScope& scope : sessions) {
    const bool session = scope.kind == LedgerScope::Kind::kSession;
    names.push_back((session ? "session " : "run ") + std::to_string(scope.number));
  }
  return ListedNames(names, kMostSessions);
}

}  // namespace

std::vector<std::string> FilterTexts(const TradeFilter& filter, const Played& played,
                                     const LedgerDateText& date_text) {
  std::vector<std::string> texts;
  const auto add = [&texts](const std::string& name, const std::string& text) {
    if (!text.empty()) texts.push_back(name + ": " + text);
  };
  if (filter.symbol) add("Security", played.symbols.at(static_cast<std::size_t>(*filter.symbol)));
  if (filter.interval) add("Interval", IntervalLabel(*filter.interval));
  if (filter.setup) add("Setup", *filter.setup == kAbsent ? "none" : played.SetupAt(*filter.setup));
  if (filter.is_long) add("Side", *filter.is_long ? "long" : "short");
  if (filter.blind) add("Sessions", *filter.blind ? "only blind ones" : "only those not blind");
  add("Entered", SpanText(DayOrNothing(filter.from_day), DayOrNothing(filter.to_day), date_text));
  add("Played", SpanText(filter.played_from, filter.played_to, date_text));
  if (filter.confidence) {
    add("Confidence", *filter.confidence == 0 ? "none" : std::to_string(*filter.confidence));
  }
  if (filter.weekday) add("Weekday", kDayNames.at(static_cast<std::size_t>(*filter.weekday)));
  if (filter.hour) add("Hour", std::to_string(*filter.hour) + ":00 to :59");
  add("Only", SessionsText(filter.sessions));
  return texts;
}

std::string ListedNames(const std::vector<std::string>& names, std::size_t most) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), most); ++i) {
    text += (i == 0 ? "" : ", ") + names[i];
  }
  if (names.size() > most) text += " and " + std::to_string(names.size() - most) + " more";
  return text;
}

std::string IntervalLabel(std::int32_t interval) {
  return interval == kAbsent ? "Daily bars" : std::to_string(interval) + "-minute bars";
}

}  // namespace velumar
