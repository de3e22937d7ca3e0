#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "marketdata/index_record.h"

namespace velumar {

// The bytes of an index file, as far as its 16-bit count can reach; empty if `path` is empty.
// Throws MetaLibError (kReadFailed).
std::vector<std::byte> ReadIndexBytes(IndexKind kind, const std::filesystem::path& path);

// The bytes of one index file while securities are added or removed. Unknown bytes of header and
// records are kept.
class IndexImage {
 public:
  // Reads the file; an empty `path` makes an empty index.
  IndexImage(IndexKind kind, const std::filesystem::path& path);

  IndexKind Kind() const { return kind_; }
  std::size_t Records() const { return records_; }
  std::vector<int> FileNumbers() const;
  ByteSpan RecordAt(std::int64_t offset);
  ByteSpan AddRecord();
  void RemoveAt(std::int64_t offset);

  // The bytes of the file, with up-to-date counts.
  ByteView Finished();

 private:
  IndexKind kind_;
  std::size_t records_ = 0;
  std::vector<std::byte> bytes_;
};

// Copies MASTER, EMASTER and XMASTER, in any letter case, without the dates of the series. They are
// removed before anything is written, so a working store never reveals how far its series go.
// Missing index files are skipped. Throws MetaLibError if `from` cannot be listed, a file cannot be
// read or written, or a link has the name of a copy.
void CopyIndexFiles(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace velumar
