#include "marketdata/metalib_writer.h"

#include <exception>
#include <optional>
#include <utility>

#include "base/ignoring.h"
#include "base/paths.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"

namespace velumar {

DirectoryIndex& MetaLibWriter::Open() const {
  if (!index_) ThrowNotOpen();
  return *index_;
}

SeriesFile& MetaLibWriter::Series(std::string_view call) {
  Open();
  if (!series_) ThrowNoSeriesSelected(call);
  return *series_;
}

// If the index did not have the minutes that the series was selected by.
void MetaLibWriter::UpdateIndexMinutes() {
  if (!security_->record.IsIntraday() || security_->record.minutes != 0) return;
  cache_.UpdateRecords(*index_, *security_, [this](IndexKind kind, ByteSpan record) {
    SetIndexMinutes(kind, record, interval_);
  });
  security_->record.minutes = interval_;
}

void MetaLibWriter::UpdateIndexDates(const SeriesEnds& ends) {
  cache_.UpdateRecords(*index_, *security_, [&ends](IndexKind kind, ByteSpan record) {
    SetIndexEnds(kind, record, ends);
  });
  security_->record.first_date = ends.first_date;
  security_->record.last_date = ends.last_date;
}

MetaLibWriter::~MetaLibWriter() {
  IgnoringErrors([this] { CloseDirectory(); });
}

bool MetaLibWriter::IsDirectoryInUse(std::string_view path) const {
  const std::filesystem::path directory = NativePath(path);
  if (index_) {
    const auto own = StampOf(index_->Path());
    const auto asked = StampOf(directory);
    const bool same = own && asked && own->device == asked->device && own->inode == asked->inode;
    if (same) return false;
  }
  return DirectoryLock::IsHeld(directory);
}

void MetaLibWriter::OpenDirectory(std::string_view path) {
  CloseDirectory();
  const auto seen = cache_.Load(path);
  auto lock = DirectoryLock::TryHold(seen->Path());
  if (!lock) ThrowInUse(seen->Path());
  // An earlier writer may have changed something before the lock was taken.
  index_ = cache_.Load(path);
  lock_ = std::move(lock);
}

void MetaLibWriter::CloseDirectory() {
  std::exception_ptr failure;
  try {
    CloseSecurity();
  } catch (const MetaLibError&) {
    failure = std::current_exception();
  }
  index_.reset();
  lock_.reset();
  if (failure) std::rethrow_exception(failure);
}

bool MetaLibWriter::SecurityExists(std::string_view symbol) const { return Open().Knows(symbol); }

void MetaLibWriter::SelectSeries(std::string_view symbol, int daily, int minutes) {
  DirectoryIndex& index = Open();
  CloseSecurity();
  const int interval = daily != 0 ? -1 : minutes;
  IndexedSecurity* const found = index.FindSeries(symbol, interval);
  if (found == nullptr) ThrowSeriesNotFound(symbol, interval, index.Path());
  series_.emplace(SeriesFile::Series{
      .path = index.DataPathForWriting(found->listed_in, found->record.file_number),
      .symbol = found->record.symbol,
      .layout = index.LayoutOf(*found),
      .is_intraday = found->record.IsIntraday(),
      .sorted = found->order_stamp});
  security_ = found;
  interval_ = interval;
}

void MetaLibWriter::CloseSecurity() {
  const auto closing = std::exchange(series_, std::nullopt);
  if (!closing) return;
  security_->order_stamp = closing->SortedStamp();
  if (security_->record.IsIntraday() && security_->record.minutes == 0) {
    security_->gap = interval_;
    security_->gap_stamp = closing->SortedStamp();
  }
  UpdateIndexDates(closing->Ends());
}

void MetaLibWriter::WriteSeries(const std::vector<std::int32_t>& dates,
                                const std::vector<std::int32_t>& times,
                                const std::vector<float>& opens, const std::vector<float>& highs,
                                const std::vector<float>& lows, const std::vector<float>& closes,
                                const std::vector<float>& volumes,
                                const std::vector<float>& open_interests) {
  SeriesFile& series = Series("WriteSeries");
  const std::size_t count = dates.size();
  for (const std::size_t size : {times.size(), opens.size(), highs.size(), lows.size(),
                                 closes.size(), volumes.size(), open_interests.size()}) {
    if (size == count) continue;
    throw MetaLibError(MetaLibError::kNotStorable,
                       security_->record.symbol + ": a series of " + std::to_string(count) +
                           " dates has " + std::to_string(size) + " values of another field");
  }
  std::vector<Bar> bars(count);
  for (std::size_t i = 0; i < count; ++i) {
    bars[i] = {dates[i], times[i],  opens[i],   highs[i],
               lows[i],  closes[i], volumes[i], open_interests[i]};
  }
  series.Stage(std::move(bars));
  UpdateIndexMinutes();
  series.CommitStaged();
}

void MetaLibWriter::AppendBar(std::int32_t date, std::int32_t time, float open, float high,
                              float low, float close, float volume, float open_interest) {
  Series("AppendBar").Put({date, time, open, high, low, close, volume, open_interest});
}

void MetaLibWriter::DeleteDailyBar(std::int32_t date) { Series("DeleteDailyBar").Remove(date, 0); }

void MetaLibWriter::DeleteIntradayBar(std::int32_t date, std::int32_t time) {
  Series("DeleteIntradayBar").Remove(date, time);
}

}  // namespace velumar
