#include "session/bar_stepping.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/ignoring.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "session/stored_bars.h"

namespace velumar {

namespace {

void Close(MetaLibWriter& writer) {
  writer.CloseSecurity();
  writer.CloseDirectory();
}

}  // namespace

void BarStepper::FeedBar(std::int16_t& index) {
  const int newest = std::min(index + 1, session_.LastArrayIndex());
  index = static_cast<std::int16_t>(Change({index + 1, newest}, Direction::kForward));
  ShowMoment(index);
}

void BarStepper::FastFeed(std::int16_t& index) {
  const int newest = std::min(std::max<int>(index, 0) + kFastStep, session_.LastArrayIndex());
  index = static_cast<std::int16_t>(Change({index + 1, newest}, Direction::kForward));
  ShowMoment(index);
}

void BarStepper::UnfeedBar(std::int16_t& index) {
  if (index < 0) return;
  index = static_cast<std::int16_t>(Change({index, index}, Direction::kBackward));
  ShowPrice(index);
}

void BarStepper::FastUnfeed(std::int16_t& index) {
  const Bars bars{std::max(index - kFastStep, 0) + 1, index};
  const int left =
      index < 0 ? Change({0, 0}, Direction::kForward) : Change(bars, Direction::kBackward);
  index = static_cast<std::int16_t>(left);
  ShowPrice(left);
}

void BarStepper::MoveTo(std::int16_t& index, int bar) {
  const int target = std::clamp(bar, 0, session_.LastArrayIndex());
  const bool forward = target > index;
  const Bars bars = forward ? Bars{index + 1, target} : Bars{target + 1, index};
  const int newest = bars.first > bars.last
                         ? index
                         : Change(bars, forward ? Direction::kForward : Direction::kBackward);
  index = static_cast<std::int16_t>(newest);
  ShowMoment(index);
}

// A step back removes compared bars before played ones, and a step forward adds them after, so that
// no compared bar is ever later than the played moment. If one can't be added, the next step does.
int BarStepper::Change(Bars bars, Direction direction) {
  const int before = direction == Direction::kForward ? bars.first - 1 : bars.last;
  try {
    if (direction == Direction::kBackward) compared_.Follow(bars.first - 1);
    const int newest = ChangePlayed(bars, direction);
    IgnoringErrors([&] { compared_.Follow(newest); });
    return newest;
  } catch (const MetaLibError&) {
    IgnoringErrors([&] { compared_.Follow(before); });
    throw;
  }
}

// If a step fails, the store is restored: a chart ahead of the cursor would show the future. If
// that fails too, the step ends at the bar that it reached.
int BarStepper::ChangePlayed(Bars bars, Direction direction) {
  MetaLibWriter writer(cache_);
  Open(writer);
  try {
    Apply(writer, bars, direction);
    Close(writer);
    return direction == Direction::kForward ? bars.last : bars.first - 1;
  } catch (const MetaLibError&) {
    IgnoringErrors([&] { Close(writer); });
    IgnoringErrors([&] { TakeBack(bars, direction); });
    const std::optional<int> reached = Reached(bars, direction);
    if (!reached) throw;
    return *reached;
  }
}

std::optional<int> BarStepper::Reached(Bars bars, Direction direction) const {
  std::set<std::pair<std::int32_t, std::int32_t>> stored;
  IgnoringErrors([&] {
    const auto series = ReplayableInterval(session_.Run.interval);
    MetaLibReader reader(cache_);
    reader.OpenDirectory(session_.SimDir);
    if (series) reader.SelectSeries(session_.Run.symbol, series->daily, series->minutes);
    reader.ReadSeries();
    for (std::size_t i = 0; i < reader.GetDates().size(); ++i) {
      stored.emplace(reader.GetDates()[i], Daily() ? 0 : reader.GetTimes()[i]);
    }
  });
  const auto holds = [&](int bar) {
    const auto i = static_cast<std::size_t>(bar);
    return stored.contains({session_.BarDate.at(i), Daily() ? 0 : session_.BarTime.at(i)});
  };
  const bool forward = direction == Direction::kForward;
  const int before = forward ? bars.first - 1 : bars.last;
  int newest = before;
  if (forward) {
    while (newest < bars.last && holds(newest + 1)) ++newest;
  } else {
    while (newest >= bars.first && !holds(newest)) --newest;
  }
  return newest == before ? std::nullopt : std::optional(newest);
}

void BarStepper::Apply(MetaLibWriter& writer, Bars bars, Direction direction) const {
  const int older = bars.first;
  const int newer = bars.last + 1;
  const bool forward = direction == Direction::kForward;
  MoveStoredBars(writer, SeriesView(session_), Daily(), forward ? older : newer,
                 forward ? newer : older);
}

// Uses a new writer, since the failed one may be in any state.
void BarStepper::TakeBack(Bars bars, Direction direction) const {
  MetaLibWriter writer(cache_);
  Open(writer);
  IgnoringErrors([&] {
    Apply(writer, bars,
          direction == Direction::kForward ? Direction::kBackward : Direction::kForward);
  });
  IgnoringErrors([&] { Close(writer); });
}

void BarStepper::Open(MetaLibWriter& writer) const {
  const std::string& symbol = session_.Run.symbol;
  writer.OpenDirectory(session_.SimDir);
  if (!writer.SecurityExists(symbol)) return;
  if (const auto series = ReplayableInterval(session_.Run.interval)) {
    writer.SelectSeries(symbol, series->daily, series->minutes);
  }
}

bool BarStepper::Daily() const { return session_.Run.interval == kDailyInterval; }

void BarStepper::ShowPrice(int bar) {
  if (bar < 0) return;
  session_.MarketPrice = session_.BarClose.at(static_cast<std::size_t>(bar));
  session_.NewestShownBar = std::max(session_.NewestShownBar, static_cast<std::int16_t>(bar));
}

void BarStepper::ShowMoment(int bar) {
  ShowPrice(bar);
  if (bar < 0) return;
  session_.CurrentDate = std::to_string(session_.BarDate.at(static_cast<std::size_t>(bar)));
  session_.CurrentTime = std::to_string(session_.BarTime.at(static_cast<std::size_t>(bar)));
}

}  // namespace velumar
