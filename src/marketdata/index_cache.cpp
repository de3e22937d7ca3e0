#include "marketdata/index_cache.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "marketdata/index_file.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

constexpr std::size_t kMostDirectories = 8;

FileStamp StampOrNone(const std::filesystem::path& path) {
  return path.empty() ? FileStamp() : StampOf(path).value_or(FileStamp());
}

std::optional<FileStamp> KeptIfSettled(const FileStamp& stamp) {
  return stamp.IsSettled() ? std::optional(stamp) : std::nullopt;
}

bool HasIndexFile(const DirectoryIndex& index) {
  return std::ranges::any_of(kIndexKinds,
                             [&](IndexKind kind) { return !index.IndexPath(kind).empty(); });
}

// Writes the bytes that differ, from the first to the last.
void WriteDifference(RawFile& file, std::int64_t offset, ByteView before, ByteView after) {
  const auto first = std::ranges::mismatch(before, after).in1 - before.begin();
  const auto last =
      std::mismatch(before.rbegin(), before.rend(), after.rbegin()).first.base() - before.begin();
  file.WriteAt(offset + first, after.subspan(static_cast<std::size_t>(first),
                                             static_cast<std::size_t>(last - first)));
}

[[noreturn]] void ThrowNoIndex(const std::filesystem::path& directory) {
  throw MetaLibError(MetaLibError::kNoData, "There is no market data in \"" + PathText(directory) +
                                                "\": it has no file MASTER, EMASTER or XMASTER");
}

}  // namespace

IndexCache::Entry& IndexCache::EntryOf(const std::filesystem::path& directory) {
  const auto found = std::ranges::find_if(
      entries_, [&](const Entry& entry) { return entry.index->Path() == directory; });
  if (found != entries_.end()) return *found;
  if (entries_.size() == kMostDirectories) entries_.erase(entries_.begin());
  return entries_.emplace_back(
      Entry{.index = std::make_shared<DirectoryIndex>(directory, DirectoryListing()),
            .directory = {},
            .files = {}});
}

std::shared_ptr<DirectoryIndex> IndexCache::Load(std::string_view directory) {
  const std::filesystem::path path = NativePath(directory);
  Entry& entry = EntryOf(path);
  const FileStamp stamp = StampOrNone(path);
  if (entry.directory != stamp) {
    entry.directory.reset();
    entry.index->SetFiles(DirectoryListing::Read(path));
    entry.directory = KeptIfSettled(stamp);
  }
  if (!HasIndexFile(*entry.index)) ThrowNoIndex(path);
  std::array<FileStamp, kIndexKinds.size()> stamps;
  for (const IndexKind kind : kIndexKinds) {
    stamps[static_cast<std::size_t>(kind)] = StampOrNone(entry.index->IndexPath(kind));
  }
  if (std::ranges::equal(entry.files, stamps)) return entry.index;
  entry.files = {};
  auto index = std::make_shared<DirectoryIndex>(path, entry.index->Files());
  for (const IndexKind kind : kIndexKinds) {
    index->Add(kind, ReadIndexBytes(kind, index->IndexPath(kind)));
  }
  std::ranges::transform(stamps, entry.files.begin(), KeptIfSettled);
  entry.index = std::move(index);
  return entry.index;
}

void IndexCache::UpdateRecords(const DirectoryIndex& index, const IndexedSecurity& security,
                               const std::function<void(IndexKind, ByteSpan)>& change) {
  for (const IndexKind kind : kIndexKinds) {
    const std::int64_t offset = security.offsets[static_cast<std::size_t>(kind)];
    if (offset == IndexedSecurity::kNotListed) continue;
    RawFile file(index.IndexPath(kind), RawFile::Mode::kChange, ThrowMarketFileError);
    std::vector<std::byte> before(IndexRecordSize(kind));
    if (file.ReadAt(offset, before) < before.size()) continue;
    if (FileNumberOf(kind, before) != security.record.file_number) continue;
    std::vector<std::byte> after = before;
    change(kind, after);
    if (before == after) continue;
    const FileStamp old_stamp = file.Stamp();
    WriteDifference(file, offset, before, after);
    file.StampNow();
    NoteOwnChange(index, kind, old_stamp, file.Stamp());
  }
}

void IndexCache::NoteOwnChange(const DirectoryIndex& index, IndexKind kind, const FileStamp& before,
                               const FileStamp& after) {
  for (Entry& entry : entries_) {
    if (entry.index.get() != &index) continue;
    KeptStamp& kept = entry.files[static_cast<std::size_t>(kind)];
    if (!kept || *kept == before) kept = after;
  }
}

}  // namespace velumar
