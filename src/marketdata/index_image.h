#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "marketdata/index_record.h"

namespace velumar {

// The bytes of an index file, as far as its 16-bit count can reach; none where `path` is empty.
// Throws MetaLibError (kReadFailed).
std::vector<std::byte> ReadIndexBytes(IndexKind kind, const std::filesystem::path& path);

// The bytes of one index file while securities are added to it or taken out. Whatever the header
// and the records hold beyond our knowledge stays.
class IndexImage {
 public:
  // An empty index of that kind where `path` is empty.
  IndexImage(IndexKind kind, const std::filesystem::path& path);

  std::size_t Records() const { return records_; }
  std::vector<int> FileNumbers() const;
  ByteSpan RecordAt(std::int64_t offset);
  ByteSpan AddRecord();
  void RemoveAt(std::int64_t offset);

  // The whole file with its counts brought up to date.
  ByteView Sealed();

 private:
  IndexKind kind_;
  std::size_t records_ = 0;
  std::vector<std::byte> bytes_;
};

}  // namespace velumar
