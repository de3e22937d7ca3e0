#include "marketdata/index_copy.h"

#include <span>
#include <vector>

#include "marketdata/directory_listing.h"
#include "marketdata/index_image.h"
#include "marketdata/index_record.h"
#include "marketdata/raw_file.h"

namespace velumar {

namespace {

// The header's count may be wrong, so every record in the file is cleared. A torn record at the end
// is dropped.
std::vector<std::byte> WithoutDates(IndexKind kind, std::vector<std::byte> bytes) {
  const std::size_t size = IndexRecordSize(kind);
  bytes.resize(bytes.size() - bytes.size() % size);
  for (std::size_t offset = size; offset < bytes.size(); offset += size) {
    ClearIndexDates(kind, std::span(bytes).subspan(offset, size));
  }
  return bytes;
}

}  // namespace

void CopyIndexFiles(const std::filesystem::path& from, const std::filesystem::path& to) {
  const DirectoryListing files = DirectoryListing::Read(from);
  for (const IndexKind kind : kIndexKinds) {
    const std::string_view name = files.Find(IndexFileName(kind));
    if (name.empty()) continue;
    const std::vector<std::byte> bytes = WithoutDates(kind, ReadIndexBytes(kind, from / name));
    RawFile::OpenUnlinked(to / name, RawFile::Mode::kRenew).WriteAt(0, bytes);
  }
}

}  // namespace velumar
