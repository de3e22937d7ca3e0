#include "marketdata/index_image.h"

#include <algorithm>

#include "marketdata/raw_file.h"

namespace velumar {

namespace {

constexpr std::size_t kMostRecordsRead = 65536;  // with the header

}  // namespace

std::vector<std::byte> ReadIndexBytes(IndexKind kind, const std::filesystem::path& path) {
  if (path.empty()) return {};
  const RawFile file(path, RawFile::Mode::kRead);
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
  bytes_.resize(size * (records_ + 1));  // what lies behind the last record is no security
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

ByteView IndexImage::Sealed() {
  const std::vector<int> numbers = FileNumbers();
  const int highest = numbers.empty() ? 0 : *std::ranges::max_element(numbers);
  SetIndexCount(kind_, ByteSpan(bytes_).first(IndexRecordSize(kind_)), records_, highest);
  return bytes_;
}

}  // namespace velumar
