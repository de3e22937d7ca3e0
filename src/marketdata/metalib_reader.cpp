#include "marketdata/metalib_reader.h"

#include <algorithm>
#include <optional>

#include "base/number_text.h"
#include "marketdata/data_file.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

[[noreturn]] void ThrowNoBar(const std::string& text) {
  throw MetaLibError(MetaLibError::kNoBar, text);
}

}  // namespace

DirectoryIndex& MetaLibReader::Open() const {
  if (!index_) ThrowNotOpen();
  return *index_;
}

const IndexedSecurity& MetaLibReader::Current() const {
  if (current_ == nullptr) {
    throw MetaLibError(MetaLibError::kNoSeries,
                       "ReadSecurityHeader must be called before its values are used");
  }
  return *current_;
}

void MetaLibReader::SetCurrent(const IndexedSecurity* security, int interval) {
  current_ = security;
  interval_ = interval;
  selected_ = false;
  bars_.reset();
  MoveTo(0);
}

void MetaLibReader::MoveTo(std::size_t place) {
  cursor_ = place;
  bar_read_ = false;
}

void MetaLibReader::OpenDirectory(std::string_view path) {
  CloseDirectory();
  index_ = cache_.Load(path);
}

void MetaLibReader::CloseDirectory() {
  CloseSecurity();
  index_.reset();
  next_ = 0;
}

int MetaLibReader::SecurityCount() const { return static_cast<int>(Open().Securities().size()); }

int MetaLibReader::NextSecurity() {
  CloseSecurity();
  if (next_ == Open().Securities().size()) return 0;
  ++next_;
  return 1;
}

void MetaLibReader::ReadSecurityHeader() {
  DirectoryIndex& index = Open();
  if (next_ == 0) ThrowNoSeriesSelected("ReadSecurityHeader");
  IndexedSecurity& security = index.Securities()[next_ - 1];
  SetCurrent(&security, index.IntervalOf(security));
}

const std::string& MetaLibReader::SecuritySymbol() const { return Current().record.symbol; }

const std::string& MetaLibReader::SecurityName() const { return Current().record.name; }

int MetaLibReader::SecurityInterval() const {
  Current();
  return interval_;
}

SecurityInfo MetaLibReader::Security() const {
  const IndexedSecurity& security = Current();
  const DirectoryIndex& index = Open();
  SecurityInfo info{.symbol = security.record.symbol,
                    .name = security.record.name,
                    .interval = interval_,
                    .fields = security.record.layout.Columns(),
                    .file_number = security.record.file_number,
                    .indexed_first_date = security.record.first_date,
                    .indexed_last_date = security.record.last_date};
  const auto path = index.DataPath(security);
  if (!path) return info;
  const DataFile file(*path, index.LayoutOf(security));
  info.bars = file.Bars();
  if (info.bars == 0) return info;
  info.first_date = file.BarAt(0).date;
  info.last_date = file.BarAt(info.bars - 1).date;
  return info;
}

void MetaLibReader::SelectSeries(std::string_view symbol, int daily, int minutes) {
  DirectoryIndex& index = Open();
  const int interval = daily != 0 ? -1 : minutes;
  const IndexedSecurity* const found = index.FindSeries(symbol, interval);
  if (found == nullptr) ThrowSeriesNotFound(symbol, interval, index.Path());
  SetCurrent(found, interval);
  selected_ = true;
}

void MetaLibReader::ReadSeries() {
  const DirectoryIndex& index = Open();
  if (!selected_) ThrowNoSeriesSelected("ReadSeries");
  const auto path = index.DataPath(*current_);
  const BarLayout layout = index.LayoutOf(*current_);
  BarArrays bars = path ? DataFile(*path, layout).ReadAll() : BarArrays();
  // Without times, the bars of one day differ only in their position, so all are kept.
  if (interval_ == -1 || layout.Has(BarField::kTime)) SortBars(bars);
  bars_ = std::move(bars);
  MoveTo(0);
}

const BarArrays& MetaLibReader::Bars() const {
  if (!bars_) {
    throw MetaLibError(MetaLibError::kNoSeries,
                       "ReadSeries must be called before its bars are used");
  }
  return *bars_;
}

void MetaLibReader::SeekDate(std::string_view date_text, int /*mode*/) {
  const auto& dates = GetDates();
  const auto date = ExactNumber<std::int32_t>(date_text);
  const auto found =
      std::ranges::find_if(dates, [date](std::int32_t stored) { return stored >= date; });
  if (!date || found == dates.end()) {
    throw MetaLibError(MetaLibError::kDateNotFound,
                       "There is no bar on or after the date \"" + std::string(date_text) + "\"");
  }
  MoveTo(static_cast<std::size_t>(found - dates.begin()));
}

void MetaLibReader::MoveToStart() {
  GetDates();
  MoveTo(0);
}

void MetaLibReader::MoveBy(int bars) {
  const auto count = static_cast<std::int64_t>(GetDates().size());
  const std::int64_t place = static_cast<std::int64_t>(cursor_) + bars;
  if (place < 0 || place >= count) {
    ThrowNoBar("The cursor can't move to bar " + std::to_string(place + 1) + " of " +
               std::to_string(count));
  }
  MoveTo(static_cast<std::size_t>(place));
}

void MetaLibReader::ReadBar() {
  if (cursor_ >= GetDates().size()) ThrowNoBar("There is no bar at the cursor");
  bar_read_ = true;
}

std::int32_t MetaLibReader::BarDateAtCursor() const {
  if (!bar_read_) ThrowNoBar("No bar was read at the cursor");
  return GetDates()[cursor_];
}

std::vector<SecurityInfo> ReadSecurities(MetaLibReader& reader) {
  std::vector<SecurityInfo> securities;
  securities.reserve(reader.SecurityCount());
  while (reader.NextSecurity() > 0) {
    reader.ReadSecurityHeader();
    securities.push_back(reader.Security());
  }
  return securities;
}

std::vector<SecurityInfo> SecuritiesOf(std::string_view directory, IndexCache& cache) {
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  return ReadSecurities(reader);
}

}  // namespace velumar
