#include "shell/progress_filter_boxes.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "progress/filter_text.h"

namespace velumar {

namespace {

constexpr std::array kPeriodDays = {0, 7, 30, 90, 365};  // in the order of the list

enum Comparison { kNothing, kAllOthers, kTimeBefore, kSessionBefore };

// "2026-11-27", so many days before today.
std::string DayBefore(std::int32_t today, int days) { return IsoDate(DaysLater(today, -days)); }

std::vector<ComboBox::Row> RowsOf(const std::string& any, const std::vector<std::string>& names) {
  std::vector<ComboBox::Row> rows{{any}};
  rows.reserve(names.size() + 1);
  for (const std::string& name : names) rows.push_back({name});
  return rows;
}

// "Session 12: ABC, 2026-11-27".
std::string SessionLabel(const Played& played, const PlayedSession& session) {
  const bool is_run = session.scope.kind == LedgerScope::Kind::kRun;
  std::string label = (is_run ? "Run " : "Session ") + std::to_string(session.scope.number) + ": " +
                      played.symbols[static_cast<std::size_t>(session.symbol)];
  if (session.played_at.size() >= 10) label += ", " + session.played_at.substr(0, 10);
  return label;
}

// The row of a list after "any"; nothing for that one.
std::optional<int> Chosen(const ComboBox& list) {
  return list.Index() > 0 ? std::optional(list.Index() - 1) : std::nullopt;
}

int DaysOf(const ComboBox& periods) {
  return kPeriodDays.at(static_cast<std::size_t>(std::max(periods.Index(), 0)));
}

}  // namespace

void ProgressFilterBoxes::Connect(const std::function<void()>& changed) {
  const auto unless_listing = [this, changed] {
    if (!listing_) changed();
  };
  for (ComboBox* const list : controls_.Filters()) list->on_click = unless_listing;
  controls_.chkLookAhead.on_click = unless_listing;
  for (TextBox* const box : {&controls_.txtFromDay, &controls_.txtToDay}) {
    box->on_change = unless_listing;
  }
}

void ProgressFilterBoxes::List(const Played& played) {
  listing_ = true;
  std::set<std::int32_t> intervals;
  std::set<std::int8_t> hours;
  for (const PlayedSession& session : played.sessions) intervals.insert(session.interval);
  for (const PlayedTrade& trade : played.trades) {
    if (trade.hour != kAbsent) hours.insert(trade.hour);
  }
  intervals_.assign(intervals.begin(), intervals.end());
  hours_.assign(hours.begin(), hours.end());
  std::vector<std::string> interval_names;
  std::ranges::transform(intervals_, std::back_inserter(interval_names), IntervalLabel);
  std::vector<std::string> hour_names;
  hour_names.reserve(hours_.size());
  for (const std::int8_t hour : hours_) hour_names.push_back(std::to_string(hour) + ":00 to :59");
  std::vector<std::string> setups = played.setups;
  setups.insert(setups.begin(), "No setup");
  controls_.cbxOfSecurity.SetRows(RowsOf("All securities", played.symbols));
  controls_.cbxOfSetup.SetRows(RowsOf("All setups", setups));
  controls_.cbxOfInterval.SetRows(RowsOf("All intervals", interval_names));
  controls_.cbxOfHour.SetRows(RowsOf("Any hour", hour_names));
  ListSessions(played);
  for (ComboBox* const list : controls_.Filters()) list->SetIndex(0);
  for (TextBox* const box : {&controls_.txtFromDay, &controls_.txtToDay}) box->SetText("");
  listing_ = false;
}

void ProgressFilterBoxes::ListSessions(const Played& played) {
  std::vector<std::string> labels;
  sessions_.clear();
  labels.reserve(played.sessions.size());
  sessions_.reserve(played.sessions.size());
  for (auto session = played.sessions.rbegin(); session != played.sessions.rend(); ++session) {
    labels.push_back(SessionLabel(played, *session));
    sessions_.push_back(session->scope);
  }
  controls_.cbxOfSession.SetRows(RowsOf("All sessions", labels));
}

std::int32_t ProgressFilterBoxes::Day(TextBox& box) const {
  const auto day = TypedDate(Trimmed(box.Text()), platform_.locale.ShortDatePattern());
  box.SetForeColour(day || Trimmed(box.Text()).empty() ? box.DesignLook().colour : kRed);
  return day.value_or(0);
}

TradeFilter ProgressFilterBoxes::Filter() const {
  TradeFilter filter;
  filter.symbol = Chosen(controls_.cbxOfSecurity);
  if (const auto setup = Chosen(controls_.cbxOfSetup)) filter.setup = *setup - 1;
  if (const auto side = Chosen(controls_.cbxOfSide)) filter.is_long = *side == 0;
  if (const auto confidence = Chosen(controls_.cbxOfConfidence)) {
    filter.confidence = static_cast<std::uint8_t>(*confidence);
  }
  if (const auto blind = Chosen(controls_.cbxOfBlind)) filter.blind = *blind == 0;
  if (const int days = DaysOf(controls_.cbxOfPeriod); days != 0) {
    filter.played_from = DayBefore(platform_.clock.Today(), days - 1);
  }
  if (const auto interval = Chosen(controls_.cbxOfInterval)) {
    filter.interval = intervals_.at(static_cast<std::size_t>(*interval));
  }
  if (const auto day = Chosen(controls_.cbxOfDay)) filter.weekday = static_cast<std::int8_t>(*day);
  if (const auto hour = Chosen(controls_.cbxOfHour)) {
    filter.hour = hours_.at(static_cast<std::size_t>(*hour));
  }
  if (const auto session = Chosen(controls_.cbxOfSession)) {
    filter.sessions = {sessions_.at(static_cast<std::size_t>(*session))};
  }
  filter.from_day = Day(controls_.txtFromDay);
  filter.to_day = Day(controls_.txtToDay);
  filter.look_ahead = controls_.chkLookAhead.Checked();
  return filter;
}

ProgressFilterBoxes::Compared ProgressFilterBoxes::Compare(const Played& played,
                                                           const TradeFilter& filter,
                                                           const Selection& own) const {
  switch (controls_.cbxCompare.Index()) {
    case kAllOthers: {
      TradeFilter all;
      all.look_ahead = filter.look_ahead;
      const Selection every = Select(played, all);
      Selection others;
      std::ranges::set_difference(every, own, std::back_inserter(others));
      return {std::move(others)};
    }
    case kTimeBefore:
      return TheTimeBefore(played, filter);
    case kSessionBefore:
      return TheSessionBefore(played, filter);
    default:
      return {};
  }
}

ProgressFilterBoxes::Compared ProgressFilterBoxes::TheTimeBefore(const Played& played,
                                                                 TradeFilter filter) const {
  const int days = DaysOf(controls_.cbxOfPeriod);
  if (days == 0) {
    return {{}, "Choose a time, such as the last 30 days, to compare it with the time before."};
  }
  const std::int32_t today = platform_.clock.Today();
  filter.played_from = DayBefore(today, 2 * days - 1);
  filter.played_to = DayBefore(today, days);
  return {Select(played, filter)};
}

ProgressFilterBoxes::Compared ProgressFilterBoxes::TheSessionBefore(const Played& played,
                                                                    TradeFilter filter) const {
  const auto chosen = Chosen(controls_.cbxOfSession);
  if (!chosen) return {{}, "Choose a session to compare it with the one before."};
  const auto before = static_cast<std::size_t>(*chosen) + 1;
  if (before >= sessions_.size()) return {{}, "No session was played before this one."};
  filter.sessions = {sessions_[before]};
  return {Select(played, filter)};
}

}  // namespace velumar
