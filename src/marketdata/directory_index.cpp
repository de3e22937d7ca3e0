#include "marketdata/directory_index.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "base/dates.h"
#include "base/paths.h"
#include "base/text.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

constexpr std::size_t kExtensionSize = 4;

bool IsMarketDataName(std::string_view upper_name) {
  if (upper_name.ends_with("MASTER")) return true;
  if (upper_name.size() <= kExtensionSize || upper_name[0] != 'F') return false;
  const auto extension = upper_name.substr(upper_name.size() - kExtensionSize);
  return extension == ".DAT" || extension == ".MWD" || extension == ".DOP";
}

bool IsRegular(const std::filesystem::directory_entry& entry) {
  std::error_code unreadable;
  return entry.is_regular_file(unreadable) && !unreadable;
}

bool IsLower(char c) { return c >= 'a' && c <= 'z'; }

[[noreturn]] void ThrowNoDirectory(const std::filesystem::path& directory, std::error_code error) {
  throw MetaLibError(MetaLibError::kNoData, "There is no market data in \"" + PathText(directory) +
                                                "\": " + error.message());
}

constexpr std::size_t kLongestColumnFile = 4096;

std::string ReadText(const std::filesystem::path& path) {
  const RawFile file(path, RawFile::Mode::kRead, ThrowMarketFileError);
  std::string text(kLongestColumnFile, '\0');
  text.resize(file.ReadAt(0, std::as_writable_bytes(std::span(text))));
  return text;
}

std::string ColumnsFileName(int file_number) { return "F" + std::to_string(file_number) + ".DOP"; }

// In minutes, between two bars of one day; 0 if no day has two bars.
int SmallestGap(const BarArrays& bars) {
  int smallest = 0;
  for (std::size_t i = 1; i < bars.dates.size(); ++i) {
    if (bars.dates[i] != bars.dates[i - 1]) continue;
    const int gap = MinuteOfDay(bars.times[i]) - MinuteOfDay(bars.times[i - 1]);
    if (gap > 0 && (smallest == 0 || gap < smallest)) smallest = gap;
  }
  return smallest;
}

// MASTER's numbers count, and the longer name.
void MergeTwin(IndexRecord& record, IndexRecord twin) {
  if (record.layout.Empty()) record.layout = twin.layout;
  if (record.minutes == 0) record.minutes = twin.minutes;
  if (twin.name.size() > record.name.size()) record.name = std::move(twin.name);
}

}  // namespace

DirectoryListing DirectoryListing::Read(const std::filesystem::path& directory) {
  DirectoryListing listing;
  std::error_code error;
  std::filesystem::directory_iterator at(directory, error);
  for (; !error && at != std::filesystem::directory_iterator(); at.increment(error)) {
    const std::string name = PathText(at->path().filename());
    const std::string upper = UpperCased(name);
    if (!IsMarketDataName(upper) || !IsRegular(*at)) continue;
    const auto [entry, is_new] = listing.names_.try_emplace(upper, name);
    if (!is_new && name < entry->second) entry->second = name;
    if (listing.sample_.empty() || name < listing.sample_) listing.sample_ = name;
  }
  if (error) ThrowNoDirectory(directory, error);
  return listing;
}

std::string_view DirectoryListing::Find(std::string_view upper_name) const {
  const auto found = names_.find(upper_name);
  return found == names_.end() ? std::string_view() : found->second;
}

std::string DirectoryListing::Styled(std::string_view upper_name) const {
  std::string styled(upper_name);
  if (std::ranges::none_of(sample_, IsLower)) return styled;
  for (std::size_t i = IsLower(sample_.front()) ? 0 : 1; i < styled.size(); ++i) {
    if (styled[i] >= 'A' && styled[i] <= 'Z') styled[i] = static_cast<char>(styled[i] - 'A' + 'a');
  }
  return styled;
}

std::filesystem::path DirectoryIndex::IndexPath(IndexKind kind) const {
  return PathOf(IndexFileName(kind)).value_or("");
}

void DirectoryIndex::Add(IndexKind kind, ByteView file) {
  const std::size_t size = IndexRecordSize(kind);
  const std::size_t records = IndexRecordCount(kind, file);
  securities_.reserve(securities_.size() + records);
  for (std::size_t i = 1; i <= records; ++i) {
    const ByteView record = file.subspan(i * size, size);
    if (FileNumberOf(kind, record) == 0) continue;
    AddRecord(kind, static_cast<std::int64_t>(i * size), ReadIndexRecord(kind, record));
  }
  by_symbol_.clear();
}

void DirectoryIndex::AddRecord(IndexKind kind, std::int64_t offset, IndexRecord record) {
  const auto slot = static_cast<std::size_t>(kind);
  IndexedSecurity* const twin =
      kind == IndexKind::kEmaster ? TwinInMaster(record.file_number) : nullptr;
  if (twin != nullptr) {
    twin->offsets[slot] = offset;
    MergeTwin(twin->record, std::move(record));
    return;
  }
  IndexedSecurity& added = securities_.emplace_back();
  added.record = std::move(record);
  added.listed_in = kind;
  added.offsets[slot] = offset;
  if (kind != IndexKind::kMaster) return;
  std::int32_t& place = by_master_number_[static_cast<std::size_t>(added.record.file_number)];
  if (place == 0) place = static_cast<std::int32_t>(securities_.size());
}

IndexedSecurity* DirectoryIndex::TwinInMaster(int file_number) {
  const std::int32_t place = by_master_number_[static_cast<std::size_t>(file_number)];
  return place == 0 ? nullptr : &securities_[static_cast<std::size_t>(place - 1)];
}

std::span<const std::uint32_t> DirectoryIndex::PlacesOf(std::string_view symbol) {
  if (by_symbol_.empty()) {
    for (std::uint32_t place = 0; place < securities_.size(); ++place) {
      by_symbol_[securities_[place].record.symbol].push_back(place);
    }
  }
  const auto found = by_symbol_.find(symbol);
  if (found == by_symbol_.end()) return {};
  return found->second;
}

bool DirectoryIndex::Knows(std::string_view symbol) { return !PlacesOf(symbol).empty(); }

IndexedSecurity* DirectoryIndex::FindSeries(std::string_view symbol, int interval) {
  IndexedSecurity* unknown = nullptr;
  for (const std::uint32_t place : PlacesOf(symbol)) {
    IndexedSecurity& security = securities_[place];
    const int found = IntervalOf(security);
    if (found == interval) return &security;
    if (found == 0 && unknown == nullptr) unknown = &security;
  }
  return interval > 0 ? unknown : nullptr;
}

int DirectoryIndex::IntervalOf(IndexedSecurity& security) const {
  if (!security.record.IsIntraday()) return -1;
  if (security.record.minutes != 0) return security.record.minutes;
  const auto path = DataPath(security);
  const auto stamp = path ? StampOf(*path) : std::nullopt;
  if (!stamp) return 0;
  if (*stamp != security.gap_stamp) {
    security.gap = SmallestGap(DataFile(*path, LayoutOf(security)).ReadAll());
    security.gap_stamp = stamp->IsSettled() ? *stamp : FileStamp();
  }
  return security.gap;
}

std::optional<std::filesystem::path> DirectoryIndex::PathOf(std::string_view upper_name) const {
  const auto name = files_.Find(upper_name);
  if (name.empty()) return std::nullopt;
  return path_ / name;
}

std::optional<std::filesystem::path> DirectoryIndex::DataPath(
    const IndexedSecurity& security) const {
  return PathOf(DataFileName(security.listed_in, security.record.file_number));
}

std::optional<std::filesystem::path> DirectoryIndex::ColumnsPath(
    const IndexedSecurity& security) const {
  return PathOf(ColumnsFileName(security.record.file_number));
}

BarLayout DirectoryIndex::LayoutOf(const IndexedSecurity& security) const {
  const auto columns = ColumnsPath(security);
  if (!columns) return security.record.layout;
  return ReorderedByColumnNames(security.record.layout, ReadText(*columns));
}

bool DirectoryIndex::HasFilesOf(IndexKind listed_in, int file_number) const {
  return PathOf(DataFileName(listed_in, file_number)) || PathOf(ColumnsFileName(file_number));
}

std::filesystem::path DirectoryIndex::DataPathForWriting(IndexKind listed_in,
                                                         int file_number) const {
  const std::string name = DataFileName(listed_in, file_number);
  return PathOf(name).value_or(path_ / files_.Styled(name));
}

}  // namespace velumar
