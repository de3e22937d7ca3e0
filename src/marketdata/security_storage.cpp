#include "marketdata/security_storage.h"

#include <algorithm>
#include <system_error>
#include <tuple>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/metalib_error.h"
#include "marketdata/series_file.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

constexpr int kFirstXmasterNumber = kHighestMasterNumber + 1;
constexpr std::size_t kLongestName = 45;
constexpr int kDailyFields = 7;
constexpr int kIntradayFields = 8;

bool IsHigh(IndexKind kind) { return kind == IndexKind::kXmaster; }

bool HoldsAll(const BarLayout& layout, const BarLayout& wanted) {
  return std::ranges::all_of(wanted.Fields(), [&](BarField field) { return layout.Has(field); });
}

SeriesEnds EndsOf(const std::vector<Bar>& bars) {
  if (bars.empty()) return {};
  const auto [first, last] = std::ranges::minmax_element(
      bars, {}, [](const Bar& bar) { return std::tuple(bar.date, bar.time); });
  return {.first_date = first->date,
          .first_time = first->time,
          .last_date = last->date,
          .last_time = last->time};
}

}  // namespace

BarLayout WantedLayout(int interval) {
  const bool intraday = interval != -1;
  return BarLayout::FromCount(intraday ? kIntradayFields : kDailyFields, intraday);
}

SecurityStorage::SecurityStorage(DirectoryIndex& index, const NewSecurity& security)
    : index_(index), found_(index.FindSeries(security.symbol, security.interval)) {
  for (const IndexKind kind : kIndexKinds) {
    if (!index_.IndexPath(kind).empty()) UseImage(kind);
  }
  if (images_.empty()) {
    UseImage(IndexKind::kMaster);
    UseImage(IndexKind::kEmaster);
  }
  DescribeSecurity(security);
  const BarLayout wanted = WantedLayout(security.interval);
  moves_ = found_ == nullptr || !HoldsAll(layout_, wanted) || IsShared(*found_);
  if (moves_) Move(security);
}

void SecurityStorage::UseImage(IndexKind kind) {
  images_.push_back({.kind = kind, .bytes = IndexImage(kind, index_.IndexPath(kind))});
}

bool SecurityStorage::Uses(IndexKind kind) const {
  return std::ranges::find(images_, kind, &Image::kind) != images_.end();
}

void SecurityStorage::DescribeSecurity(const NewSecurity& security) {
  if (found_ != nullptr) {
    record_ = found_->record;
    home_ = found_->listed_in;
    layout_ = index_.LayoutOf(*found_);
  }
  const bool intraday = security.interval != -1;
  record_.symbol = security.symbol;
  record_.time_frame = intraday ? 'I' : 'D';
  record_.minutes = intraday ? security.interval : 0;
  const std::string name =
      Trimmed(TextFromFile(TextForFile(security.name).substr(0, kLongestName)));
  if (!name.empty()) record_.name = name;
}

void SecurityStorage::Move(const NewSecurity& security) {
  layout_ = record_.layout = WantedLayout(security.interval);
  const bool stays_high = found_ != nullptr && IsHigh(home_);
  record_.file_number = stays_high ? 0 : FreeMasterNumber();
  if (record_.file_number != 0) {
    home_ = IndexKind::kMaster;
    return;
  }
  home_ = IndexKind::kXmaster;
  if (!Uses(home_)) UseImage(home_);
  record_.file_number = FreeNumber(home_, kFirstXmasterNumber, kHighestNumber);
  if (record_.file_number != 0) return;
  throw MetaLibError(MetaLibError::kDirectoryFull, "\"" + PathText(index_.Path()) +
                                                       "\": no file number is left for \"" +
                                                       security.symbol + "\"");
}

// 0 if none is left, or if there is neither MASTER nor EMASTER. A listed security needs no new
// record.
int SecurityStorage::FreeMasterNumber() const {
  const auto has_room = [&](const Image& image) {
    return found_ != nullptr || IsHigh(image.kind) || image.bytes.Records() < kMostMasterRecords;
  };
  const bool has_index = Uses(IndexKind::kMaster) || Uses(IndexKind::kEmaster);
  if (!has_index || !std::ranges::all_of(images_, has_room)) return 0;
  return FreeNumber(IndexKind::kMaster, 1, kHighestMasterNumber);
}

// The number after the highest in use, else the lowest unused one; 0 if none is left. A file that
// is in no index is not overwritten.
int SecurityStorage::FreeNumber(IndexKind home, int lowest, int highest) const {
  const std::set<int> used = UsedNumbers(home);
  const auto is_free = [&](int number) {
    return !used.contains(number) && !index_.HasFilesOf(home, number);
  };
  const int next = used.empty() ? lowest : std::max(lowest, *used.rbegin() + 1);
  for (int number = next; number <= highest; ++number) {
    if (is_free(number)) return number;
  }
  for (int number = lowest; number <= highest; ++number) {
    if (is_free(number)) return number;
  }
  return 0;
}

std::set<int> SecurityStorage::UsedNumbers(IndexKind home) const {
  std::set<int> used;
  for (const Image& image : images_) {
    if (IsHigh(image.kind) != IsHigh(home)) continue;
    const std::vector<int> numbers = image.bytes.FileNumbers();
    used.insert(numbers.begin(), numbers.end());
  }
  return used;
}

bool SecurityStorage::IsShared(const IndexedSecurity& security) const {
  return std::ranges::count_if(index_.Securities(), [&](const IndexedSecurity& other) {
           return other.record.file_number == security.record.file_number &&
                  IsHigh(other.listed_in) == IsHigh(security.listed_in);
         }) > 1;
}

void SecurityStorage::Store(std::vector<Bar> bars) {
  const SeriesEnds ends = EndsOf(bars);
  SeriesFile data({.path = index_.DataPathForWriting(home_, record_.file_number),
                   .symbol = record_.symbol,
                   .layout = layout_,
                   .is_intraday = record_.IsIntraday()});
  data.Stage(std::move(bars));
  ChangeImages(ends);
  std::vector<FileReplacement> staged = StageImages();
  data.FlushStaged();
  for (FileReplacement& file : staged) file.Flush();
  data.CommitStaged();
  FlushFolder(index_.Path());
  for (FileReplacement& file : staged) file.Commit();
  FlushFolder(index_.Path());
  if (moves_) RemoveOldData();
}

std::int64_t SecurityStorage::OldOffset(IndexKind kind) const {
  return found_ == nullptr ? IndexedSecurity::kNotListed
                           : found_->offsets[static_cast<std::size_t>(kind)];
}

void SecurityStorage::ChangeImages(const SeriesEnds& ends) {
  for (Image& image : images_) {
    const std::int64_t offset = OldOffset(image.kind);
    const bool is_listed = offset != IndexedSecurity::kNotListed;
    if (IsHigh(image.kind) != IsHigh(home_)) {
      if (is_listed) image.bytes.RemoveAt(offset);
      continue;
    }
    const ByteSpan record = is_listed ? image.bytes.RecordAt(offset) : image.bytes.AddRecord();
    SetIndexIdentity(image.kind, record, record_);
    SetIndexEnds(image.kind, record, ends);
  }
}

// XMASTER comes first: while a security moves there, readers find its old entry before the new one.
std::vector<FileReplacement> SecurityStorage::StageImages() {
  std::ranges::sort(images_, std::ranges::greater(),
                    [](const Image& image) { return IsHigh(image.kind); });
  std::vector<FileReplacement> staged;
  for (Image& image : images_) {
    std::filesystem::path path = index_.IndexPath(image.kind);
    if (path.empty()) path = index_.Path() / index_.Files().Styled(IndexFileName(image.kind));
    staged.emplace_back(ReplacementOf(path)).Write(image.bytes.Finished());
  }
  return staged;
}

void SecurityStorage::RemoveOldData() const {
  if (found_ == nullptr || IsShared(*found_)) return;
  std::error_code ignored;
  for (const auto& path : {index_.DataPath(*found_), index_.ColumnsPath(*found_)}) {
    if (path) std::filesystem::remove(*path, ignored);
  }
}

}  // namespace velumar
