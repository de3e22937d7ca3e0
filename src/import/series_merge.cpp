#include "import/series_merge.h"

#include <algorithm>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/text.h"
#include "import/security_names.h"
#include "import/wording.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

BarKey MomentOf(const Bar& bar) { return TimestampKey(bar.date, bar.time); }

std::vector<Bar> BarsOf(const BarArrays& arrays) {
  std::vector<Bar> bars(arrays.dates.size());
  for (std::size_t i = 0; i < bars.size(); ++i) {
    bars[i] = {.date = arrays.dates[i],
               .time = arrays.times[i],
               .open = arrays.opens[i],
               .high = arrays.highs[i],
               .low = arrays.lows[i],
               .close = arrays.closes[i],
               .volume = arrays.volumes[i],
               .open_interest = arrays.open_interests[i]};
  }
  return bars;
}

// False if the directory or its index is missing.
bool Opens(MetaLibReader& reader, std::string_view directory) {
  try {
    reader.OpenDirectory(directory);
    return true;
  } catch (const MetaLibError& error) {
    if (error.Number() == MetaLibError::kNoData) return false;
    throw;
  }
}

// Adds stored bars to those of the file, both oldest first. Of equal moments the file's bar counts,
// unless the file begins within it: an earlier file knew all of it.
std::vector<Bar> Merged(const std::vector<Bar>& stored, const ReadPrices::Series& read,
                        ImportedSeries& result) {
  std::vector<Bar> fresh = read.bars;
  if (read.begins_within_bar && !stored.empty() &&
      MomentOf(stored.front()) < MomentOf(fresh.front())) {
    const auto whole = std::ranges::lower_bound(stored, MomentOf(fresh.front()), {}, MomentOf);
    if (whole != stored.end() && MomentOf(*whole) == MomentOf(fresh.front()))
      fresh.front() = *whole;
  }
  std::vector<Bar> merged;
  merged.reserve(stored.size() + fresh.size());
  auto old = stored.begin();
  for (const Bar& bar : fresh) {
    for (; old != stored.end() && MomentOf(*old) < MomentOf(bar); ++old) {
      if (MomentOf(*old) > MomentOf(fresh.front())) ++result.kept;
      merged.push_back(*old);
    }
    const bool known = old != stored.end() && MomentOf(*old) == MomentOf(bar);
    result.added += known ? 0 : 1;
    result.changed += known && *old != bar ? 1 : 0;
    if (known) ++old;
    merged.push_back(bar);
  }
  merged.insert(merged.end(), old, stored.end());
  return merged;
}

void RequireSameScale(int stored, int wanted) {
  if (stored == wanted) return;
  throw ImportError("the stored prices are " +
                    (stored == 1 ? "not multiplied; leave out --scale"
                                 : "multiplied; set --scale " + std::to_string(stored)) +
                    ", or set --replace to start over");
}

// How many bars of a longer interval the bars make.
std::int64_t CountIn(int interval, const std::vector<Bar>& bars) {
  std::int64_t count = 0;
  BarKey last = -1;
  for (const Bar& bar : bars) {
    const int part = interval == kDaily ? 0 : MinuteOfDay(bar.time) / interval;
    const BarKey key = TimestampKey(bar.date, part);
    count += key != last ? 1 : 0;
    last = key;
  }
  return count;
}

// The answers are those of a file that is too long by itself. What does not replace stored bars
// goes to other series, with the bars of this file only.
ImportQuestion TooLongQuestion(const ReadPrices::Series& series, const std::vector<Bar>& merged,
                               const ImportOptions& options) {
  ImportQuestion question{.text = "With the stored bars, " + series.found.symbol + " has " +
                                  Counted(static_cast<std::int64_t>(merged.size()), "bar") +
                                  "; a run can play " +
                                  GroupedNumber(std::to_string(kLongestSeries)) + ".",
                          .option = "--last, --split-by-year, --interval or --replace"};
  const auto add = [&](const std::string& text, const std::string& result) -> ImportOptions& {
    return question.Add(text, result, options);
  };
  const std::vector<Bar>& bars = series.bars;
  add("keep the last " + Counted(kLongestSeries, "bar"),
      "from " + DayText(merged[merged.size() - kLongestSeries].date))
      .too_long = TooLong::kKeepLast;
  const std::string first_year = std::to_string(bars.front().date / 10000);
  const std::string last_year = std::to_string(bars.back().date / 10000);
  add("one series for each year", first_year == last_year
                                      ? first_year + " of this file"
                                      : first_year + " to " + last_year + " of this file")
      .too_long = TooLong::kSplitByYear;
  for (const int interval : {10, 15, 30, 60, kDaily}) {
    const int own = series.found.interval;
    if (own == kDaily || (interval != kDaily && (interval <= own || interval % own != 0))) continue;
    add(interval == kDaily ? "daily bars" : "bars of " + IntervalName(interval),
        Counted(CountIn(interval, bars), "bar") + " of this file")
        .interval = interval;
  }
  add("start over", "only the bars of this file").replace = true;
  return question;
}

void KeepPlayable(const ReadPrices::Series& series, const ImportOptions& options,
                  std::vector<Bar>& bars) {
  if (bars.size() <= kLongestSeries) return;
  if (options.too_long != TooLong::kKeepLast) {
    throw SeriesUndecided(TooLongQuestion(series, bars, options));
  }
  bars.erase(bars.begin(), bars.end() - kLongestSeries);
}

}  // namespace

SeriesMerge::SeriesMerge(std::string_view directory, IndexCache& cache)
    : directory_(directory), cache_(cache) {
  MetaLibReader reader(cache_);
  if (!Opens(reader, directory_)) return;
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    names_.try_emplace({reader.SecuritySymbol(), reader.SecurityInterval()}, reader.SecurityName());
  }
}

std::optional<SeriesMerge::Known> SeriesMerge::Find(const Key& key) {
  if (const auto place = places_.find(key); place != places_.end()) {
    const NewSeries& changed = changed_[place->second];
    return Known{changed.security.name, changed.bars};
  }
  const auto name = names_.find(key);
  if (name == names_.end()) return std::nullopt;
  MetaLibReader reader(cache_);
  reader.OpenDirectory(directory_);
  reader.SelectSeries(key.first, key.second == kDaily ? 1 : 0, key.second);
  reader.ReadSeries();
  return Known{name->second, BarsOf(reader.Bars())};
}

std::optional<std::size_t> SeriesMerge::Add(const ReadPrices::Series& series,
                                            const ImportOptions& options, ImportedSeries& result) {
  const Key key(series.found.symbol, series.found.interval);
  const std::optional<Known> known = Find(key);
  NewSeries wanted{.security = {key.first, series.found.name, key.second}, .bars = series.bars};
  std::string& name = wanted.security.name;
  const ScaledName known_name = ScaledNameOf(known ? known->name : "");
  if (known && !options.name) name = known_name.base + ScaleSuffix(options.scale);
  if (name.empty()) name = known ? known->name : key.first;
  if (options.scale != 1 && NameAsStored(name) != Trimmed(name)) {
    throw ImportError("the name \"" + name +
                      "\" is too long to end with the scale; set a shorter --name");
  }
  name = NameAsStored(name);
  RequireStorable(wanted.security);
  const auto place = places_.find(key);
  if (!known || options.replace) {
    result.added = static_cast<std::int64_t>(wanted.bars.size());
    result.replaced = true;
  } else {
    RequireSameScale(known_name.scale, options.scale);
    wanted.bars = Merged(known->bars, series, result);
    KeepPlayable(series, options, wanted.bars);
    if (wanted.bars == known->bars && name == known->name) {
      return place == places_.end() ? std::nullopt : std::optional(place->second);
    }
  }
  bars_ += wanted.bars.size();
  if (place != places_.end()) {
    changed_[place->second] = std::move(wanted);
    return place->second;
  }
  changed_.push_back(std::move(wanted));
  return places_[key] = changed_.size() - 1;
}

}  // namespace velumar
