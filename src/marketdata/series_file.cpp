#include "marketdata/series_file.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

constexpr std::size_t kMostOffset = 0;

// A write within one page is finished before the system ends a process; a longer one may not be.
constexpr std::int64_t kPageSize = 4096;

bool CrossesPage(std::int64_t offset, std::size_t size) {
  return offset / kPageSize != (offset + static_cast<std::int64_t>(size) - 1) / kPageSize;
}

}  // namespace

SeriesFile::SeriesFile(Series series)
    : series_(std::move(series)),
      has_times_(series_.is_intraday && series_.layout.Has(BarField::kTime)) {
  if (StampOf(series_.path))
    Adopt(RawFile(series_.path, RawFile::Mode::kChange, ThrowMarketFileError));
}

void SeriesFile::Adopt(RawFile file) {
  file_.emplace(std::move(file));
  const FileStamp stamp = file_->Stamp();
  size_ = stamp.size;
  bars_ = UsableBarCount(*file_, series_.layout);
  is_sorted_ = stamp == series_.sorted || IsStrictlyRising(AllKeys());
}

std::string SeriesFile::FileName() const { return PathText(series_.path.filename()); }

std::int64_t SeriesFile::EndOf(int bars) const {
  return static_cast<std::int64_t>(series_.layout.RecordSize()) * (bars + 1);
}

SeriesFile::Key SeriesFile::KeyOf(std::int32_t date, std::int32_t time) const {
  return TimestampKey(date, has_times_ ? time : 0);
}

std::vector<std::byte> SeriesFile::AllRecords() const {
  std::vector<std::byte> records(series_.layout.RecordSize() * static_cast<std::size_t>(bars_));
  if (!records.empty()) file_->ReadAt(EndOf(0), records);
  return records;
}

std::vector<SeriesFile::Key> SeriesFile::AllKeys() const {
  const BarArrays bars = DecodeBars(series_.layout, AllRecords());
  std::vector<Key> keys(bars.dates.size());
  for (std::size_t i = 0; i < keys.size(); ++i) keys[i] = KeyOf(bars.dates[i], bars.times[i]);
  return keys;
}

// Most changes are at the end, so the last two bars come first.
int SeriesFile::LowerBound(Key key) const {
  for (const int last : {bars_ - 1, bars_ - 2}) {
    if (last < 0 || KeyAt(last) < key) return last + 1;
  }
  int low = 0;
  int high = bars_ - 2;
  while (low < high) {
    const int middle = (low + high) / 2;
    if (KeyAt(middle) < key) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

SeriesEnds SeriesFile::Ends() const {
  if (bars_ == 0) return {};
  const Bar first = BarAt(0);
  const Bar last = BarAt(bars_ - 1);
  return {.first_date = first.date,
          .first_time = first.time,
          .last_date = last.date,
          .last_time = last.time};
}

void SeriesFile::RequireColumns() const {
  if (!series_.layout.Empty()) return;
  throw MetaLibError(MetaLibError::kNotStorable,
                     FileName() + ": " + series_.symbol +
                         ": the index files do not say which fields its bars have");
}

std::vector<std::byte> SeriesFile::Encoded(const Bar& bar) const {
  std::vector<std::byte> record(series_.layout.RecordSize());
  const auto refused = EncodeBar(series_.layout, bar, record);
  if (refused) ThrowNotStorable(FileName(), series_.symbol, bar, *refused);
  return record;
}

void SeriesFile::Put(const Bar& bar) {
  RequireColumns();
  const std::vector<std::byte> record = Encoded(bar);
  Sort();
  const Key key = KeyOf(bar);
  const int index = LowerBound(key);
  if (Holds(index, key)) {
    Overwrite(index, record);
  } else if (index == bars_) {
    Append(record);
  } else {
    Insert(index, record);
  }
}

void SeriesFile::Remove(std::int32_t date, std::int32_t time) {
  const Key key = KeyOf(date, time);
  if (!is_sorted_ && std::ranges::count(AllKeys(), key) == 0) return;
  Sort();
  const int index = LowerBound(key);
  if (Holds(index, key)) RemoveAt(index);
}

void SeriesFile::Sort() {
  if (is_sorted_) return;
  const std::vector<std::byte> records = AllRecords();
  const std::size_t size = series_.layout.RecordSize();
  std::vector<std::byte> ordered;
  ordered.reserve(records.size());
  for (const std::size_t place : SortedPlaces(AllKeys())) {
    const auto record = ByteView(records).subspan(place * size, size);
    ordered.insert(ordered.end(), record.begin(), record.end());
  }
  Rewrite(ordered);
}

// The count is written last: until then the new bar does not exist. Bytes of an older, longer
// series must be gone before the count grows.
void SeriesFile::Append(ByteView record) {
  if (bars_ == kMostBars) ThrowSeriesFull(FileName(), series_.symbol);
  MakeRoomAtEnd();
  try {
    file_->WriteAt(EndOf(bars_), record);
    size_ = EndOf(bars_ + 1);
    WriteCount(bars_ + 1);
  } catch (...) {
    file_->Truncate(EndOf(bars_));
    size_ = EndOf(bars_);
    throw;
  }
  ++bars_;
}

void SeriesFile::MakeRoomAtEnd() {
  if (!file_) {
    file_.emplace(series_.path, RawFile::Mode::kCreate, ThrowMarketFileError);
    size_ = file_->Size();
  }
  if (size_ < EndOf(0)) file_->WriteAt(0, Header(0));
  if (size_ > EndOf(bars_)) file_->Truncate(EndOf(bars_));
  size_ = EndOf(bars_);
}

void SeriesFile::Overwrite(int index, ByteView record) {
  const std::int64_t offset = EndOf(index);
  std::vector<std::byte> stored(record.size());
  file_->ReadAt(offset, stored);
  if (std::ranges::equal(stored, record)) return;
  if (!CrossesPage(offset, record.size())) {
    file_->WriteAt(offset, record);
    return;
  }
  std::vector<std::byte> records = AllRecords();
  std::ranges::copy(record, records.begin() + offset - EndOf(0));
  Rewrite(records);
}

void SeriesFile::Insert(int index, ByteView record) {
  if (bars_ == kMostBars) ThrowSeriesFull(FileName(), series_.symbol);
  std::vector<std::byte> records = AllRecords();
  records.insert(records.begin() + EndOf(index) - EndOf(0), record.begin(), record.end());
  Rewrite(records);
}

void SeriesFile::RemoveAt(int index) {
  if (index == bars_ - 1) {
    CutTo(index);
    return;
  }
  std::vector<std::byte> records = AllRecords();
  const auto record = records.begin() + EndOf(index) - EndOf(0);
  records.erase(record, record + static_cast<std::ptrdiff_t>(series_.layout.RecordSize()));
  Rewrite(records);
}

// The count is written first: bytes after it are not part of the series.
void SeriesFile::CutTo(int bars) {
  WriteCount(bars);
  bars_ = bars;
  file_->Truncate(EndOf(bars));
  size_ = EndOf(bars);
}

std::vector<std::byte> SeriesFile::Header(int bars) const {
  std::vector<std::byte> header(series_.layout.RecordSize());
  if (size_ >= EndOf(0)) file_->ReadAt(0, header);
  const auto records = static_cast<std::uint16_t>(bars + 1);
  const auto most = LoadAt<std::uint16_t>(header, kMostOffset);
  if (most != 0 && most < records) StoreAt<std::uint16_t>(header, kMostOffset, records);
  StoreAt<std::uint16_t>(header, kRecordsOffset, records);
  return header;
}

void SeriesFile::WriteCount(int bars) {
  file_->WriteAt(0, ByteView(Header(bars)).first(kCountsSize));
}

void SeriesFile::Stage(std::vector<Bar> bars) {
  RequireColumns();
  std::vector<Key> keys(bars.size());
  std::ranges::transform(bars, keys.begin(), [this](const Bar& bar) { return KeyOf(bar); });
  const std::size_t size = series_.layout.RecordSize();
  std::vector<std::byte> records;
  records.reserve(bars.size() * size);
  for (const std::size_t place : SortedPlaces(keys)) {
    const auto record = Encoded(bars[place]);
    records.insert(records.end(), record.begin(), record.end());
  }
  StageRecords(records);
}

void SeriesFile::StageRecords(ByteView records) {
  const std::size_t bars = records.size() / series_.layout.RecordSize();
  if (bars > kMostBars) ThrowSeriesFull(FileName(), series_.symbol);
  std::vector<std::byte> whole = Header(static_cast<int>(bars));
  whole.insert(whole.end(), records.begin(), records.end());
  staged_.emplace(ReplacementOf(series_.path)).Write(whole);
}

void SeriesFile::CommitStaged() {
  Adopt(staged_->Commit());
  staged_.reset();
}

void SeriesFile::Rewrite(ByteView records) {
  StageRecords(records);
  CommitStaged();
}

FileStamp SeriesFile::SortedStamp() const {
  return file_ && is_sorted_ ? file_->Stamp() : FileStamp();
}

}  // namespace velumar
