#include "marketdata/metalib_writer.h"

#include <exception>
#include <optional>
#include <utility>

#include "base/paths.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"
#include "marketdata/series_file.h"

namespace velumar {

struct MetaLibWriter::State {
  explicit State(IndexCache& index_cache) : cache(index_cache) {}

  DirectoryIndex& Open() const {
    if (!index) ThrowNotOpen();
    return *index;
  }

  SeriesFile& Series(std::string_view call) {
    Open();
    if (!series) ThrowNoSeriesSelected(call);
    return *series;
  }

  // If the index did not have the minutes that the series was selected by.
  void UpdateIndexMinutes() {
    if (!security->IsIntraday() || security->record.minutes != 0) return;
    cache.UpdateRecords(*index, *security, [this](IndexKind kind, ByteSpan record) {
      SetIndexMinutes(kind, record, interval);
    });
    security->record.minutes = interval;
  }

  void UpdateIndexDates(const SeriesFile& file) {
    const SeriesEnds ends = file.Ends();
    cache.UpdateRecords(*index, *security, [&ends](IndexKind kind, ByteSpan record) {
      SetIndexEnds(kind, record, ends);
    });
    security->record.first_date = ends.first_date;
    security->record.last_date = ends.last_date;
  }

  IndexCache& cache;
  std::shared_ptr<DirectoryIndex> index;
  std::optional<DirectoryLock> lock;
  IndexedSecurity* security = nullptr;  // the selected one, in *index
  int interval = -1;                    // that it was selected by
  std::optional<SeriesFile> series;
};

MetaLibWriter::MetaLibWriter(IndexCache& cache) : state_(std::make_unique<State>(cache)) {}

MetaLibWriter::~MetaLibWriter() {
  try {
    CloseDirectory();
  } catch (const std::exception&) {
    // To learn of it, close the directory first.
  }
}

bool MetaLibWriter::IsDirectoryInUse(std::string_view path) const {
  const std::filesystem::path directory = NativePath(path);
  if (state_->index) {
    const auto own = StampOf(state_->index->Path());
    const auto asked = StampOf(directory);
    const bool same = own && asked && own->device == asked->device && own->inode == asked->inode;
    if (same) return false;
  }
  return DirectoryLock::IsHeld(directory);
}

void MetaLibWriter::OpenDirectory(std::string_view path) {
  CloseDirectory();
  State& state = *state_;
  const auto seen = state.cache.Load(path);
  auto lock = DirectoryLock::TryHold(seen->Path());
  if (!lock) ThrowInUse(seen->Path());
  // An earlier writer may have changed something before the lock was taken.
  state.index = state.cache.Load(path);
  state.lock = std::move(lock);
}

void MetaLibWriter::CloseDirectory() {
  State& state = *state_;
  std::exception_ptr failure;
  try {
    CloseSecurity();
  } catch (const MetaLibError&) {
    failure = std::current_exception();
  }
  state.index.reset();
  state.lock.reset();
  if (failure) std::rethrow_exception(failure);
}

bool MetaLibWriter::SecurityExists(std::string_view symbol) const {
  return state_->Open().Knows(symbol);
}

void MetaLibWriter::SelectSeries(std::string_view symbol, int daily, int minutes) {
  State& state = *state_;
  DirectoryIndex& index = state.Open();
  CloseSecurity();
  const int interval = daily != 0 ? -1 : minutes;
  IndexedSecurity* const found = index.FindSeries(symbol, interval);
  if (found == nullptr) ThrowSeriesNotFound(symbol, interval, index.Path());
  state.series.emplace(SeriesFile::Series{
      .path = index.DataPathForWriting(found->listed_in, found->record.file_number),
      .symbol = found->record.symbol,
      .layout = index.LayoutOf(*found),
      .is_intraday = found->IsIntraday(),
      .sorted = found->order_stamp});
  state.security = found;
  state.interval = interval;
}

void MetaLibWriter::CloseSecurity() {
  State& state = *state_;
  const auto closing = std::exchange(state.series, std::nullopt);
  if (!closing) return;
  state.security->order_stamp = closing->SortedStamp();
  if (state.security->IsIntraday() && state.security->record.minutes == 0) {
    state.security->gap = state.interval;
    state.security->gap_stamp = closing->SortedStamp();
  }
  state.UpdateIndexDates(*closing);
}

void MetaLibWriter::WriteSeries(const std::vector<std::int32_t>& dates,
                                const std::vector<std::int32_t>& times,
                                const std::vector<float>& opens, const std::vector<float>& highs,
                                const std::vector<float>& lows, const std::vector<float>& closes,
                                const std::vector<float>& volumes,
                                const std::vector<float>& open_interests) {
  SeriesFile& series = state_->Series("WriteSeries");
  const std::size_t count = dates.size();
  for (const std::size_t size : {times.size(), opens.size(), highs.size(), lows.size(),
                                 closes.size(), volumes.size(), open_interests.size()}) {
    if (size == count) continue;
    throw MetaLibError(MetaLibError::kNotStorable,
                       state_->security->record.symbol + ": a series of " + std::to_string(count) +
                           " dates has " + std::to_string(size) + " values of another field");
  }
  std::vector<Bar> bars(count);
  for (std::size_t i = 0; i < count; ++i) {
    bars[i] = {dates[i], times[i],  opens[i],   highs[i],
               lows[i],  closes[i], volumes[i], open_interests[i]};
  }
  series.Stage(std::move(bars));
  state_->UpdateIndexMinutes();
  series.CommitStaged();
}

void MetaLibWriter::AppendBar(std::int32_t date, std::int32_t time, float open, float high,
                              float low, float close, float volume, float open_interest) {
  state_->Series("AppendBar").Put({date, time, open, high, low, close, volume, open_interest});
}

void MetaLibWriter::DeleteDailyBar(std::int32_t date) {
  state_->Series("DeleteDailyBar").Remove(date, 0);
}

void MetaLibWriter::DeleteIntradayBar(std::int32_t date, std::int32_t time) {
  state_->Series("DeleteIntradayBar").Remove(date, time);
}

}  // namespace velumar
