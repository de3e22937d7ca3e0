#include "marketdata/metalib_reader.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "marketdata/data_file.h"
#include "marketdata/index_entries.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

[[noreturn]] void ThrowNoBar(const std::string& text) {
  throw MetaLibError(MetaLibError::kNoBar, text);
}

}  // namespace

struct MetaLibReader::State {
  explicit State(IndexCache& index_cache) : cache(index_cache) {}

  DirectoryIndex& Open() const {
    if (!index) ThrowNotOpen();
    return *index;
  }

  const IndexedSecurity& Selected(std::string_view call) const {
    Open();
    if (!selected) ThrowNoSeriesSelected(call);
    return *current;
  }

  const BarArrays& Read() const {
    if (!bars) {
      throw MetaLibError(MetaLibError::kNoSeries,
                         "ReadSeries must be called before its bars are used");
    }
    return *bars;
  }

  const IndexedSecurity& Current() const {
    if (current == nullptr) {
      throw MetaLibError(MetaLibError::kNoSeries,
                         "ReadSecurityHeader must be called before its values are used");
    }
    return *current;
  }

  std::size_t BarAtCursor() const {
    if (!bar_read) ThrowNoBar("No bar was read at the cursor");
    return cursor;
  }

  void Enter(const IndexedSecurity* security, int its_interval) {
    current = security;
    interval = its_interval;
    selected = false;
    bars.reset();
    MoveTo(0);
  }

  void LeaveSecurity() { Enter(nullptr, -1); }

  void MoveTo(std::size_t place) {
    cursor = place;
    bar_read = false;
  }

  IndexCache& cache;
  std::shared_ptr<DirectoryIndex> index;
  std::size_t next = 0;                      // index of the security after the current one
  const IndexedSecurity* current = nullptr;  // in *index; its header was read, or it was selected
  int interval = -1;                         // of the current security
  bool selected = false;                     // its bars may be read
  std::optional<BarArrays> bars;
  std::size_t cursor = 0;
  bool bar_read = false;
};

MetaLibReader::MetaLibReader(IndexCache& cache) : state_(std::make_unique<State>(cache)) {}
MetaLibReader::~MetaLibReader() = default;

void MetaLibReader::OpenDirectory(std::string_view path) {
  CloseDirectory();
  state_->index = state_->cache.Contents().Load(path);
}

void MetaLibReader::CloseDirectory() {
  state_->LeaveSecurity();
  state_->index.reset();
  state_->next = 0;
}

int MetaLibReader::SecurityCount() const {
  return static_cast<int>(state_->Open().Securities().size());
}

int MetaLibReader::NextSecurity() {
  State& state = *state_;
  state.LeaveSecurity();
  if (state.next == state.Open().Securities().size()) return 0;
  ++state.next;
  return 1;
}

void MetaLibReader::ReadSecurityHeader() {
  State& state = *state_;
  DirectoryIndex& index = state.Open();
  if (state.next == 0) ThrowNoSeriesSelected("ReadSecurityHeader");
  IndexedSecurity& security = index.Securities()[state.next - 1];
  state.Enter(&security, index.IntervalOf(security));
}

const std::string& MetaLibReader::SecuritySymbol() const { return state_->Current().record.symbol; }

const std::string& MetaLibReader::SecurityName() const { return state_->Current().record.name; }

int MetaLibReader::SecurityInterval() const {
  state_->Current();
  return state_->interval;
}

SecurityInfo MetaLibReader::Security() const {
  const IndexedSecurity& security = state_->Current();
  const DirectoryIndex& index = state_->Open();
  SecurityInfo info{.symbol = security.record.symbol,
                    .name = security.record.name,
                    .interval = state_->interval,
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

void MetaLibReader::CloseSecurity() { state_->LeaveSecurity(); }

void MetaLibReader::SelectSeries(std::string_view symbol, int daily, int minutes) {
  State& state = *state_;
  DirectoryIndex& index = state.Open();
  const int interval = daily != 0 ? -1 : minutes;
  const IndexedSecurity* const found = index.FindSeries(symbol, interval);
  if (found == nullptr) ThrowSeriesNotFound(symbol, interval, index.Path());
  state.Enter(found, interval);
  state.selected = true;
}

void MetaLibReader::ReadSeries() {
  State& state = *state_;
  const IndexedSecurity& selected = state.Selected("ReadSeries");
  const DirectoryIndex& index = state.Open();
  const auto path = index.DataPath(selected);
  BarArrays bars = path ? DataFile(*path, index.LayoutOf(selected)).ReadAll() : BarArrays();
  // Without times, the bars of one day differ only in their position, so all are kept.
  if (state.interval == -1 || index.LayoutOf(selected).Has(BarField::kTime)) SortBars(bars);
  state.bars = std::move(bars);
  state.MoveTo(0);
}

const BarArrays& MetaLibReader::Bars() const { return state_->Read(); }
const std::vector<std::int32_t>& MetaLibReader::GetDates() const { return Bars().dates; }
const std::vector<std::int32_t>& MetaLibReader::GetTimes() const { return Bars().times; }
const std::vector<float>& MetaLibReader::GetOpens() const { return Bars().opens; }
const std::vector<float>& MetaLibReader::GetHighs() const { return Bars().highs; }
const std::vector<float>& MetaLibReader::GetLows() const { return Bars().lows; }
const std::vector<float>& MetaLibReader::GetCloses() const { return Bars().closes; }
const std::vector<float>& MetaLibReader::GetVolumes() const { return Bars().volumes; }
const std::vector<float>& MetaLibReader::GetOpenInterests() const { return Bars().open_interests; }

void MetaLibReader::SeekDate(std::string_view date_text, int /*mode*/) {
  const auto& dates = GetDates();
  std::int32_t date = 0;
  const char* const end = date_text.data() + date_text.size();
  const auto parsed = std::from_chars(date_text.data(), end, date);
  const bool is_number = parsed.ec == std::errc() && parsed.ptr == end;
  const auto found =
      std::ranges::find_if(dates, [date](std::int32_t stored) { return stored >= date; });
  if (!is_number || found == dates.end()) {
    throw MetaLibError(MetaLibError::kDateNotFound,
                       "There is no bar on or after the date \"" + std::string(date_text) + "\"");
  }
  state_->MoveTo(static_cast<std::size_t>(found - dates.begin()));
}

void MetaLibReader::MoveToStart() {
  GetDates();
  state_->MoveTo(0);
}

void MetaLibReader::MoveToEnd() { state_->MoveTo(GetDates().size()); }

void MetaLibReader::MoveBy(int bars) {
  const auto count = static_cast<std::int64_t>(GetDates().size());
  const std::int64_t place = static_cast<std::int64_t>(state_->cursor) + bars;
  if (place < 0 || place >= count) {
    ThrowNoBar("The cursor can't move to bar " + std::to_string(place + 1) + " of " +
               std::to_string(count));
  }
  state_->MoveTo(static_cast<std::size_t>(place));
}

void MetaLibReader::ReadBar() {
  if (state_->cursor >= GetDates().size()) ThrowNoBar("There is no bar at the cursor");
  state_->bar_read = true;
}

std::int32_t MetaLibReader::BarDateAtCursor() const { return GetDates()[state_->BarAtCursor()]; }
std::int32_t MetaLibReader::BarTimeAtCursor() const { return GetTimes()[state_->BarAtCursor()]; }

}  // namespace velumar
