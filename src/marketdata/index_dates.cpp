#include "marketdata/index_dates.h"

#include <filesystem>
#include <span>
#include <vector>

#include "base/paths.h"
#include "marketdata/directory_listing.h"
#include "marketdata/index_image.h"
#include "marketdata/index_record.h"
#include "marketdata/raw_file.h"

namespace velumar {

namespace {

void ForgetIn(IndexKind kind, const std::filesystem::path& path) {
  std::vector<std::byte> bytes = ReadIndexBytes(kind, path);
  const std::size_t size = IndexRecordSize(kind);
  const std::size_t records = IndexRecordCount(kind, bytes);
  for (std::size_t record = 1; record <= records; ++record) {
    SetIndexEnds(kind, std::span(bytes).subspan(record * size, size), {});
  }
  RawFile(path, RawFile::Mode::kChange).WriteAt(0, bytes);
}

}  // namespace

void ForgetSeriesEnds(std::string_view directory) {
  const std::filesystem::path folder = NativePath(directory);
  const DirectoryListing files = DirectoryListing::Read(folder);
  for (const IndexKind kind : kIndexKinds) {
    const std::string_view name = files.Find(IndexFileName(kind));
    if (!name.empty()) ForgetIn(kind, folder / name);
  }
}

}  // namespace velumar
