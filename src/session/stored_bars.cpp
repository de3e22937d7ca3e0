#include "session/stored_bars.h"

#include <cstdlib>
#include <vector>

namespace velumar {

namespace {

// More bars than these are written as one file.
constexpr int kMostSteps = 30;

void Append(MetaLibWriter& writer, const SeriesView& bars, int bar) {
  const auto i = static_cast<std::size_t>(bar);
  writer.AppendBar(bars.dates.at(i), bars.times.at(i), bars.opens.at(i), bars.highs.at(i),
                   bars.lows.at(i), bars.closes.at(i), bars.volumes.at(i),
                   bars.open_interests.at(i));
}

void Delete(MetaLibWriter& writer, const SeriesView& bars, bool daily, int bar) {
  const auto i = static_cast<std::size_t>(bar);
  if (daily) {
    writer.DeleteDailyBar(bars.dates.at(i));
  } else {
    writer.DeleteIntradayBar(bars.dates.at(i), bars.times.at(i));
  }
}

}  // namespace

SeriesView::SeriesView(const SimSession& session)
    : dates(session.BarDate),
      times(session.BarTime),
      opens(session.BarOpen),
      highs(session.BarHigh),
      lows(session.BarLow),
      closes(session.BarClose),
      volumes(session.BarVolume),
      open_interests(session.BarOpenInt) {}

SeriesView::SeriesView(const BarArrays& bars)
    : dates(bars.dates),
      times(bars.times),
      opens(bars.opens),
      highs(bars.highs),
      lows(bars.lows),
      closes(bars.closes),
      volumes(bars.volumes),
      open_interests(bars.open_interests) {}

void MoveStoredBars(MetaLibWriter& writer, const SeriesView& bars, bool daily, int before,
                    int after) {
  if (std::abs(after - before) > kMostSteps) return WriteStoredBars(writer, bars, after);
  for (int bar = before; bar < after; ++bar) Append(writer, bars, bar);
  for (int bar = before; bar > after; --bar) Delete(writer, bars, daily, bar - 1);
}

void WriteStoredBars(MetaLibWriter& writer, const SeriesView& bars, int count) {
  const auto first = [count](const auto& all) {
    return std::vector(all.begin(), all.begin() + count);
  };
  writer.WriteSeries(first(bars.dates), first(bars.times), first(bars.opens), first(bars.highs),
                     first(bars.lows), first(bars.closes), first(bars.volumes),
                     first(bars.open_interests));
}

}  // namespace velumar
