#include "marketdata/index_update.h"

#include <algorithm>
#include <vector>

namespace velumar {

namespace {

// The bytes that differ, from the first to the last.
void WriteDifference(RawFile& file, std::int64_t offset, ByteView before, ByteView after) {
  const auto first = std::ranges::mismatch(before, after).in1 - before.begin();
  const auto last =
      std::mismatch(before.rbegin(), before.rend(), after.rbegin()).first.base() - before.begin();
  file.WriteAt(offset + first, after.subspan(static_cast<std::size_t>(first),
                                             static_cast<std::size_t>(last - first)));
}

}  // namespace

void UpdateIndexRecords(IndexCache::Entries& cache, const DirectoryIndex& index,
                        const IndexedSecurity& security,
                        const std::function<void(IndexKind, ByteSpan)>& change) {
  for (const IndexKind kind : kIndexKinds) {
    const std::int64_t offset = security.offsets[static_cast<std::size_t>(kind)];
    if (offset == IndexedSecurity::kNowhere) continue;
    RawFile file(index.IndexPath(kind), RawFile::Mode::kChange);
    std::vector<std::byte> before(IndexRecordSize(kind));
    if (file.ReadAt(offset, before) < before.size()) continue;
    if (FileNumberOf(kind, before) != security.told.file_number) continue;
    std::vector<std::byte> after = before;
    change(kind, after);
    if (before == after) continue;
    const FileStamp old_stamp = file.Stamp();
    WriteDifference(file, offset, before, after);
    file.StampNow();
    cache.NoteOwnChange(index, kind, old_stamp, file.Stamp());
  }
}

}  // namespace velumar
