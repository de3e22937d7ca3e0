#pragma once

#include <archive.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "base/raw_file.h"

namespace velumar {

// The bytes of a price file: the file itself, or what a gzip file or a zip with one file inside
// holds. Recognised by the contents, not by the name.
class FileBytes {
 public:
  // Throws ImportError, as does Read.
  explicit FileBytes(const std::filesystem::path& file);
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  // Fills `into`; returns less than its size only at the end.
  std::size_t Read(ByteSpan into);
  // "", "gzip" or "zip: NAME".
  const std::string& Container() const { return container_; }
  // From 0 to 1.
  double Progress() const;

 private:
  struct Close {
    void operator()(archive* unpacker) const { archive_read_free(unpacker); }
  };
  using Unpacker = std::unique_ptr<archive, Close>;

  static la_ssize_t ReadPacked(archive* unpacker, void* self, const void** bytes);
  static la_int64_t Seek(archive* unpacker, void* self, la_int64_t offset, int whence);

  Unpacker NewUnpacker();
  void OpenGzip();
  void OpenZip();
  std::string OnlyEntryOfZip();

  RawFile file_;
  std::int64_t size_ = 0;
  std::int64_t offset_ = 0;
  std::string container_;
  std::vector<std::byte> packed_;
  Unpacker unpacker_;  // null for a file that isn't packed
};

}  // namespace velumar
