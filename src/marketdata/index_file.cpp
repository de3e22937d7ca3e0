#include "marketdata/index_file.h"

#include <algorithm>
#include <span>

#include "marketdata/directory_index.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

constexpr std::size_t kMostRecordsRead = 65536;  // with the header

// The header's count may be wrong, so every record of the file is cleared. An incomplete record at
// the end is dropped.
std::vector<std::byte> WithoutDates(IndexKind kind, std::vector<std::byte> bytes) {
  const std::size_t size = IndexRecordSize(kind);
  bytes.resize(bytes.size() - bytes.size() % size);
  for (std::size_t offset = size; offset < bytes.size(); offset += size) {
    ClearIndexDates(kind, std::span(bytes).subspan(offset, size));
  }
  return bytes;
}

}  // namespace

std::vector<std::byte> ReadIndexBytes(IndexKind kind, const std::filesystem::path& path) {
  if (path.empty()) return {};
  const RawFile file(path, RawFile::Mode::kRead, ThrowMarketFileError);
  const auto most = static_cast<std::int64_t>(kMostRecordsRead * IndexRecordSize(kind));
  std::vector<std::byte> bytes(static_cast<std::size_t>(std::min(file.Size(), most)));
  bytes.resize(file.ReadAt(0, bytes));
  return bytes;
}

IndexImage::IndexImage(IndexKind kind, const std::filesystem::path& path)
    : kind_(kind), bytes_(ReadIndexBytes(kind, path)) {
  records_ = IndexRecordCount(kind_, bytes_);
  const std::size_t size = IndexRecordSize(kind_);
  if (bytes_.size() < size) bytes_ = NewIndexHeader(kind_);
  bytes_.resize(size * (records_ + 1));  // bytes after the last record are no security
}

std::vector<int> IndexImage::FileNumbers() const {
  std::vector<int> numbers;
  const std::size_t size = IndexRecordSize(kind_);
  for (std::size_t i = 1; i <= records_; ++i) {
    numbers.push_back(FileNumberOf(kind_, ByteView(bytes_).subspan(i * size, size)));
  }
  return numbers;
}

ByteSpan IndexImage::RecordAt(std::int64_t offset) {
  return ByteSpan(bytes_).subspan(static_cast<std::size_t>(offset), IndexRecordSize(kind_));
}

ByteSpan IndexImage::AddRecord() {
  const auto offset = static_cast<std::int64_t>(bytes_.size());
  const std::vector<std::byte> record = NewIndexRecord(kind_);
  bytes_.insert(bytes_.end(), record.begin(), record.end());
  ++records_;
  return RecordAt(offset);
}

void IndexImage::RemoveAt(std::int64_t offset) {
  const auto first = bytes_.begin() + offset;
  bytes_.erase(first, first + static_cast<std::ptrdiff_t>(IndexRecordSize(kind_)));
  --records_;
}

ByteView IndexImage::Finished() {
  const std::vector<int> numbers = FileNumbers();
  const int highest = numbers.empty() ? 0 : *std::ranges::max_element(numbers);
  SetIndexCount(kind_, ByteSpan(bytes_).first(IndexRecordSize(kind_)), records_, highest);
  return bytes_;
}

void CopyIndexFiles(const std::filesystem::path& from, const std::filesystem::path& to) {
  const DirectoryListing files = DirectoryListing::Read(from);
  for (const IndexKind kind : kIndexKinds) {
    const std::string_view name = files.Find(IndexFileName(kind));
    if (name.empty()) continue;
    const std::vector<std::byte> bytes = WithoutDates(kind, ReadIndexBytes(kind, from / name));
    RawFile::OpenUnlinked(to / name, RawFile::Mode::kRenew, ThrowMarketFileError).WriteAt(0, bytes);
  }
}

}  // namespace velumar
