#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "marketdata/raw_file.h"

namespace velumar {

// How a writer holds a directory for itself: an advisory lock on a small file in it. The system
// frees the lock when the object or its process dies, however that comes about; the file stays and
// means nothing by itself. Readers and the chart program never look at it.
class DirectoryLock {
 public:
  static constexpr std::string_view kFileName = ".velumar.lock";

  // nullopt: another writer holds the directory. Throws MetaLibError (kWriteFailed) where the lock
  // can't be made.
  static std::optional<DirectoryLock> TryHold(const std::filesystem::path& directory);
  static bool IsHeld(const std::filesystem::path& directory);

 private:
  explicit DirectoryLock(RawFile file) : file_(std::move(file)) {}

  RawFile file_;
};

}  // namespace velumar
