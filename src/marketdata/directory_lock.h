#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "marketdata/raw_file.h"

namespace velumar {

// Holds a directory for one writer: an advisory lock on a small file in it. The system frees the
// lock when the object or its process dies, however that happens; the file stays and means nothing
// by itself. Readers and the chart program never look at it.
class DirectoryLock {
 public:
  static constexpr std::string_view kFileName = ".velumar.lock";

  // nullopt: another writer holds the directory. Throws MetaLibError (kWriteFailed) if the file
  // can't be locked: it can't be made, is a link or no regular file.
  static std::optional<DirectoryLock> TryHold(const std::filesystem::path& directory,
                                              std::string_view file_name = kFileName);
  static bool IsHeld(const std::filesystem::path& directory);

  // Replaces the contents of the locked file, which others may read.
  void Write(ByteView contents);

 private:
  explicit DirectoryLock(RawFile file) : file_(std::move(file)) {}

  RawFile file_;
};

}  // namespace velumar
