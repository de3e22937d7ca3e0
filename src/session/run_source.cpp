#include "session/run_source.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "base/ignoring.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

// Where a run starts whose date is after the last bar.
constexpr int kFallbackBar = 250;

std::string SeriesName(const RunSeries& series) {
  return "The series " + series.symbol + " at interval " + series.interval;
}

// Looks at the index alone: another security's damaged data file must not stop a run.
bool AnySecurity(const std::string& directory, IndexCache& cache,
                 const std::function<bool(const std::string& symbol, int interval)>& wanted) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    if (wanted(reader.SecuritySymbol(), reader.SecurityInterval())) return true;
  }
  return false;
}

bool StoredInLowerCase(const RunSeries& series, IndexCache& cache) {
  bool found = false;
  IgnoringErrors([&] {
    found = AnySecurity(series.directory, cache, [&](const std::string& listed, int) {
      return listed != series.symbol && UpperCased(listed) == series.symbol;
    });
  });
  return found;
}

SeriesArguments RequireInterval(const RunSeries& series) {
  if (const auto interval = ReplayableInterval(series.interval)) return *interval;
  throw MetaLibError(kNotReplayable, "The interval \"" + series.interval + "\" of " +
                                         series.symbol + " can't be replayed: choose " +
                                         ReplayIntervalsText() + ".");
}

// A series of unknown minutes is found under any interval.
void RequireKnownMinutes(const RunSeries& series, int minutes, IndexCache& cache) {
  if (AnySecurity(series.directory, cache, [&](const std::string& listed, int interval) {
        return listed == series.symbol && interval == minutes;
      })) {
    return;
  }
  throw MetaLibError(kNotReplayable, "The series " + series.symbol +
                                         " can't be replayed, because the minutes of its bars "
                                         "are unknown. Import it again with an interval.");
}

void RequireLength(const RunSeries& series, std::size_t bars) {
  if (bars > 0 && bars <= kLongestSeries) return;
  const std::string limit = "at most " + std::to_string(kLongestSeries) + " bars can be replayed";
  throw MetaLibError(kNotReplayable,
                     SeriesName(series) + " holds " +
                         (bars == 0 ? "no bars (0; " + limit + ")."
                                    : std::to_string(bars) + " bars; " + limit + "."));
}

void RequireOrder(const RunSeries& series, const BarArrays& bars) {
  const auto moment = [&bars](std::size_t bar) {
    return std::pair(bars.dates[bar], bars.times[bar]);
  };
  for (std::size_t i = 1; i < bars.dates.size(); ++i) {
    if (moment(i - 1) < moment(i)) continue;
    throw MetaLibError(kNotReplayable, SeriesName(series) + " can't be replayed: at " +
                                           std::to_string(bars.dates[i]) +
                                           " its bars are out of order, and they have no times.");
  }
}

// Half of the last index, rounded to even.
int Middle(int last_index) { return static_cast<int>(std::nearbyint(last_index / 2.0)); }

int StartBar(const std::vector<std::int32_t>& days, std::int32_t start_day) {
  const int last = static_cast<int>(days.size()) - 1;
  const auto at = std::ranges::lower_bound(days, start_day);
  if (at != days.end()) return static_cast<int>(at - days.begin());
  const int fallback = last > kFallbackBar ? kFallbackBar : Middle(last);
  // A run starts with the first bar of a day.
  const std::int32_t day = days[static_cast<std::size_t>(fallback)];
  return static_cast<int>(std::ranges::lower_bound(days, day) - days.begin());
}

}  // namespace

BarArrays ReadReplayable(const RunSeries& series, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(series.directory);
  const SeriesArguments interval = RequireInterval(series);
  try {
    reader.SelectSeries(series.symbol, interval.daily, interval.minutes);
  } catch (const MetaLibError& error) {
    if (error.Number() != MetaLibError::kSeriesNotFound || !StoredInLowerCase(series, cache)) throw;
    throw MetaLibError(error.Number(), std::string(error.what()) + "\rThe directory holds " +
                                           series.symbol +
                                           " in lower case; only symbols in upper case can be "
                                           "replayed.");
  }
  if (interval.daily == 0) RequireKnownMinutes(series, interval.minutes, cache);
  reader.ReadSeries();
  RequireLength(series, reader.GetDates().size());
  RequireOrder(series, reader.Bars());
  return reader.Bars();
}

ShownSeries ReadRunSeries(const RunSeries& series, const std::optional<BlindKey>& key,
                          IndexCache& cache) {
  RunSeries real = series;
  if (key) {
    real.symbol = key->symbol;
    real.start_day = key->start_day;
  }
  try {
    BarArrays bars = ReadReplayable(real, cache);
    const int start = StartBar(bars.dates, real.start_day);
    if (key) key->mask.Hide(bars);
    return {std::move(bars), start};
  } catch (const MetaLibError& error) {
    if (!key) throw;
    throw MetaLibError(error.Number(), "The series of this blind run can't be read any more.");
  }
}

}  // namespace velumar
