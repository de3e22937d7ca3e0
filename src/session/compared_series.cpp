#include "session/compared_series.h"

#include <algorithm>
#include <string>
#include <utility>

#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "session/stored_bars.h"
#include "session/working_store.h"

namespace velumar {

namespace {

bool IsPlayed(const SecurityInfo& security, const RunSeries& run) {
  return security.symbol == run.symbol &&
         std::to_string(security.interval) == IntervalToMatch(run.interval);
}

// A daily bar is the whole day, whatever time its file holds.
BarKey MomentOf(std::int32_t date, std::int32_t time, int interval) {
  return TimestampKey(date, interval == kDaily ? 0 : time);
}

void Select(MetaLibWriter& writer, const SecurityInfo& security) {
  const bool daily = security.interval == kDaily;
  writer.SelectSeries(security.symbol, daily ? 1 : 0, security.interval);
}

[[noreturn]] void Refuse(const SecurityInfo& security, const std::string& why) {
  throw MetaLibError(kNotReplayable, "The series " + security.symbol + " (" +
                                         IntervalName(security.interval) +
                                         ") can't be compared: " + why);
}

}  // namespace

bool ComparedSeries::Add(int file_number) {
  // The store of a blind run lists no other series, and its file numbers are its own.
  if (session_.Run.blind) return false;
  const auto is_asked_for = [file_number](const SecurityInfo& security) {
    return security.file_number == file_number;
  };
  if (std::ranges::any_of(all_, is_asked_for, &Series::security)) return false;
  const std::vector<SecurityInfo> listed = SecuritiesOf(session_.Run.directory, cache_);
  const auto found = std::ranges::find_if(listed, is_asked_for);
  if (found == listed.end()) {
    throw MetaLibError(MetaLibError::kSeriesNotFound, "There is no series with the file number " +
                                                          std::to_string(file_number) + " in \"" +
                                                          session_.Run.directory + "\"");
  }
  if (IsPlayed(*found, session_.Run)) return false;
  if (all_.size() == kMost) {
    Refuse(*found, "at most " + std::to_string(kMost) +
                       " series are compared at once. Close the chart of another one first.");
  }
  all_.push_back(Read(*found));
  return true;
}

ComparedSeries::Series ComparedSeries::Read(const SecurityInfo& security) const {
  if (security.interval == 0) {
    Refuse(security, "the minutes of its bars are unknown. Import it again with an interval.");
  }
  MetaLibReader reader(cache_);
  reader.OpenDirectory(session_.Run.directory);
  reader.SelectSeries(security.symbol, security.interval == kDaily ? 1 : 0, security.interval);
  if (reader.Security().file_number != security.file_number) {
    Refuse(security, "the directory lists it twice.");
  }
  reader.ReadSeries();
  Series series{.security = security, .bars = reader.Bars(), .moments = {}};
  for (std::size_t i = 0; i < series.bars.dates.size(); ++i) {
    series.moments.push_back(
        MomentOf(series.bars.dates[i], series.bars.times[i], security.interval));
  }
  if (!IsStrictlyRising(series.moments)) {
    Refuse(security, "its bars are out of order, and they have no times.");
  }
  return series;
}

void ComparedSeries::Remove(int file_number) {
  const auto series = std::ranges::find_if(all_, [file_number](const Series& candidate) {
    return candidate.security.file_number == file_number;
  });
  if (series == all_.end()) return;
  MetaLibWriter writer(cache_);
  writer.OpenDirectory(session_.SimDir);
  Store(writer, *series, 0);
  writer.CloseDirectory();
  all_.erase(series);
}

void ComparedSeries::Follow(int played) {
  if (std::ranges::all_of(
          all_, [&](const Series& series) { return series.stored == Closed(series, played); })) {
    return;
  }
  MetaLibWriter writer(cache_);
  writer.OpenDirectory(session_.SimDir);
  for (Series& series : all_) Store(writer, series, Closed(series, played));
  writer.CloseDirectory();
}

int ComparedSeries::Closed(const Series& series, int played) const {
  if (played < 0) return 0;
  const auto bar = static_cast<std::size_t>(played);
  const std::string& interval = session_.Run.interval;
  const bool daily = interval == kDailyInterval;
  const BarKey now =
      MomentOf(session_.BarDate.at(bar), session_.BarTime.at(bar), daily ? kDaily : 0);
  const auto begun = std::ranges::upper_bound(series.moments, now) - series.moments.begin();
  const bool same = std::to_string(series.security.interval) == IntervalToMatch(interval);
  return static_cast<int>(same || begun == 0 ? begun : begun - 1);
}

// After a failure nobody knows how many bars are there, so the next call writes them all.
void ComparedSeries::Store(MetaLibWriter& writer, Series& series, int count) {
  if (series.stored == count) return;
  const int before = std::exchange(series.stored, kUnknown);
  Select(writer, series.security);
  const SeriesView bars(series.bars);
  if (before == kUnknown) {
    WriteStoredBars(writer, bars, count);
  } else {
    MoveStoredBars(writer, bars, series.security.interval == kDaily, before, count);
  }
  writer.CloseSecurity();
  series.stored = count;
}

}  // namespace velumar
