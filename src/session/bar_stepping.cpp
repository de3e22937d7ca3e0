#include "session/bar_stepping.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/ignoring.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

void Close(MetaLibWriter& writer) {
  writer.CloseSecurity();
  writer.CloseDirectory();
}

}  // namespace

std::int16_t BarStepper::FeedBar(int& index, std::string& symbol) {
  int bar = std::max(index, 0);
  const int last = session_.LastArrayIndex();
  if (bar > last) {
    bar = last;
    Change(symbol, {}, Direction::kForward);
  } else {
    Change(symbol, {bar, bar}, Direction::kForward);
  }
  index = bar;
  ShowMoment(bar);
  return -1;
}

std::int16_t BarStepper::FastFeed(std::int16_t& index, std::string& symbol) {
  const int start = std::max<int>(index, 0);
  const int newest = std::min(start + kFastStep, session_.LastArrayIndex());
  index = static_cast<std::int16_t>(Change(symbol, {start + 1, newest}, Direction::kForward));
  ShowMoment(index);
  return index;
}

std::int16_t BarStepper::UnfeedBar(std::int16_t& index, std::string& symbol) {
  int bar = std::max<int>(index, 0);
  if (bar > session_.LastArrayIndex()) {
    Change(symbol, {}, Direction::kBackward);
    bar = 0;
  } else {
    Change(symbol, {bar, bar}, Direction::kBackwardOne);
    --bar;
  }
  index = static_cast<std::int16_t>(bar);
  ShowPrice(bar);
  return -1;
}

std::int16_t BarStepper::FastUnfeed(std::int16_t& index, std::string& symbol) {
  const int newest = std::max<int>(index, 0);
  const int wanted = std::max(newest - kFastStep, 0);
  const int left = Change(symbol, {wanted + 1, newest}, Direction::kBackward);
  index = static_cast<std::int16_t>(newest);
  ShowPrice(left);
  return static_cast<std::int16_t>(left);
}

// The store is changed and closed, or it is as it was: a chart that ran ahead of the cursor would
// show the future. On a disk that takes nothing back either, the step has gone as far as it went.
int BarStepper::Change(std::string& symbol, Bars bars, Direction direction) {
  symbol = NormalisedSymbol(symbol);
  MetaLibWriter writer(cache_);
  Open(writer, symbol);
  try {
    Apply(writer, bars, direction);
    Close(writer);
    return direction == Direction::kForward ? bars.last : bars.first - 1;
  } catch (const MetaLibError&) {
    IgnoringErrors([&] { Close(writer); });
    IgnoringErrors([&] { TakeBack(symbol, bars, direction); });
    const std::optional<int> reached = Reached(symbol, bars, direction);
    if (!reached) throw;
    return *reached;
  }
}

std::optional<int> BarStepper::Reached(const std::string& symbol, Bars bars,
                                       Direction direction) const {
  std::set<std::pair<std::int32_t, std::int32_t>> stored;
  IgnoringErrors([&] {
    const auto series = ReplayableInterval(desktop_.form1().cbxPeriod.Text());
    MetaLibReader reader(cache_);
    reader.OpenDirectory(session_.SimDir);
    if (series) reader.SelectSeries(symbol, series->daily, series->minutes);
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
  if (direction == Direction::kForward) {
    for (int bar = bars.first; bar <= bars.last; ++bar) Append(writer, bar);
  } else if (direction == Direction::kBackwardOne) {
    Append(writer, bars.last);
    DeleteIfStored(writer, bars.last);
  } else {
    for (int bar = bars.last; bar >= bars.first; --bar) Delete(writer, bar);
  }
}

// Through a writer of its own, as the failed one may be in any state.
void BarStepper::TakeBack(const std::string& symbol, Bars bars, Direction direction) const {
  MetaLibWriter writer(cache_);
  Open(writer, symbol);
  IgnoringErrors([&] {
    Apply(writer, bars,
          direction == Direction::kForward ? Direction::kBackward : Direction::kForward);
  });
  IgnoringErrors([&] { Close(writer); });
}

void BarStepper::Open(MetaLibWriter& writer, const std::string& symbol) const {
  writer.OpenDirectory(session_.SimDir);
  if (!writer.SecurityExists(symbol)) return;
  if (const auto series = ReplayableInterval(desktop_.form1().cbxPeriod.Text())) {
    writer.SelectSeries(symbol, series->daily, series->minutes);
  }
}

void BarStepper::Append(MetaLibWriter& writer, int bar) const {
  const auto i = static_cast<std::size_t>(bar);
  writer.AppendBar(session_.BarDate.at(i), session_.BarTime.at(i), session_.BarOpen.at(i),
                   session_.BarHigh.at(i), session_.BarLow.at(i), session_.BarClose.at(i),
                   session_.BarVolume.at(i), session_.BarOpenInt.at(i));
}

void BarStepper::Delete(MetaLibWriter& writer, int bar) const {
  const auto i = static_cast<std::size_t>(bar);
  if (Daily()) {
    writer.DeleteDailyBar(session_.BarDate.at(i));
  } else {
    writer.DeleteIntradayBar(session_.BarDate.at(i), session_.BarTime.at(i));
  }
}

void BarStepper::DeleteIfStored(MetaLibWriter& writer, int bar) const {
  const auto i = static_cast<std::size_t>(bar);
  const bool stored =
      Daily() ? writer.DailyBarExists(session_.BarDate.at(i))
              : writer.IntradayBarExists(session_.BarDate.at(i), session_.BarTime.at(i));
  if (stored) Delete(writer, bar);
}

bool BarStepper::Daily() const { return desktop_.form1().cbxPeriod.Text() == kDailyInterval; }

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
