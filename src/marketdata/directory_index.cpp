#include "marketdata/directory_index.h"

#include <string>
#include <utility>

namespace velumar {

namespace {

constexpr std::size_t kLongestColumnFile = 4096;

std::string ReadText(const std::filesystem::path& path) {
  const RawFile file(path, RawFile::Mode::kRead);
  std::string text(kLongestColumnFile, '\0');
  text.resize(file.ReadAt(0, std::as_writable_bytes(std::span(text))));
  return text;
}

std::string ColumnsFileName(int file_number) { return "F" + std::to_string(file_number) + ".DOP"; }

// MASTER's numbers hold where it tells any; the longer name wins.
void MergeTwin(IndexRecord& told, IndexRecord twin) {
  if (told.layout.Empty()) told.layout = twin.layout;
  if (told.minutes == 0) told.minutes = twin.minutes;
  if (twin.name.size() > told.name.size()) told.name = std::move(twin.name);
}

}  // namespace

DirectoryIndex::DirectoryIndex(std::filesystem::path path, DirectoryListing files)
    : path_(std::move(path)) {
  SetFiles(std::move(files));
}

void DirectoryIndex::SetFiles(DirectoryListing files) {
  files_ = std::move(files);
  for (const IndexKind kind : kIndexKinds) {
    index_paths_[static_cast<std::size_t>(kind)] = PathOf(IndexFileName(kind)).value_or("");
  }
}

const std::filesystem::path& DirectoryIndex::IndexPath(IndexKind kind) const {
  return index_paths_[static_cast<std::size_t>(kind)];
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

void DirectoryIndex::AddRecord(IndexKind kind, std::int64_t offset, IndexRecord told) {
  const auto slot = static_cast<std::size_t>(kind);
  IndexedSecurity* const twin =
      kind == IndexKind::kEmaster ? TwinInMaster(told.file_number) : nullptr;
  if (twin != nullptr) {
    twin->offsets[slot] = offset;
    MergeTwin(twin->told, std::move(told));
    return;
  }
  IndexedSecurity& added = securities_.emplace_back();
  added.told = std::move(told);
  added.listed_in = kind;
  added.offsets[slot] = offset;
  if (kind != IndexKind::kMaster) return;
  std::int32_t& place = by_master_number_[static_cast<std::size_t>(added.told.file_number)];
  if (place == 0) place = static_cast<std::int32_t>(securities_.size());
}

IndexedSecurity* DirectoryIndex::TwinInMaster(int file_number) {
  const std::int32_t place = by_master_number_[static_cast<std::size_t>(file_number)];
  return place == 0 ? nullptr : &securities_[static_cast<std::size_t>(place - 1)];
}

std::span<const std::uint32_t> DirectoryIndex::PlacesOf(std::string_view symbol) {
  if (by_symbol_.empty()) {
    for (std::uint32_t place = 0; place < securities_.size(); ++place) {
      by_symbol_[securities_[place].told.symbol].push_back(place);
    }
  }
  const auto found = by_symbol_.find(symbol);
  if (found == by_symbol_.end()) return {};
  return found->second;
}

bool DirectoryIndex::Knows(std::string_view symbol) { return !PlacesOf(symbol).empty(); }

IndexedSecurity* DirectoryIndex::FindSeries(std::string_view symbol, int interval) {
  IndexedSecurity* untold = nullptr;
  for (const std::uint32_t place : PlacesOf(symbol)) {
    IndexedSecurity& security = securities_[place];
    const int found = IntervalOf(security);
    if (found == interval) return &security;
    if (found == 0 && untold == nullptr) untold = &security;
  }
  return interval > 0 ? untold : nullptr;
}

int DirectoryIndex::IntervalOf(IndexedSecurity& security) const {
  if (!security.IsIntraday()) return -1;
  if (security.told.minutes != 0) return security.told.minutes;
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
  return PathOf(DataFileName(security.listed_in, security.told.file_number));
}

std::optional<std::filesystem::path> DirectoryIndex::ColumnsPath(
    const IndexedSecurity& security) const {
  return PathOf(ColumnsFileName(security.told.file_number));
}

BarLayout DirectoryIndex::LayoutOf(const IndexedSecurity& security) const {
  const auto columns = ColumnsPath(security);
  if (!columns) return security.told.layout;
  return ReorderedByColumnNames(security.told.layout, ReadText(*columns));
}

bool DirectoryIndex::HasFilesOf(IndexKind listed_in, int file_number) const {
  return PathOf(DataFileName(listed_in, file_number)) || PathOf(ColumnsFileName(file_number));
}

std::filesystem::path DirectoryIndex::DataPathToBe(IndexKind listed_in, int file_number) const {
  const std::string name = DataFileName(listed_in, file_number);
  return PathOf(name).value_or(path_ / files_.Styled(name));
}

}  // namespace velumar
