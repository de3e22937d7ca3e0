#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "base/raw_file.h"

namespace velumar {

// The file that marks a folder as the working store of a run, which empties it. It is locked while
// the run holds it.
inline constexpr std::string_view kWorkingStoreMark = ".velumar-store";

// Holds a directory for one writer, with a lock on a small file in it. The system releases the lock
// when the object or its process ends, however that happens; the file stays, and its existence
// means nothing. Readers and the chart program ignore it.
//
// It is not QLockFile, which works with process numbers, so a crashed writer on another machine or
// a reused number would keep the directory in use.
class DirectoryLock {
 public:
  static constexpr std::string_view kFileName = ".velumar.lock";

  // Returns nullopt if another writer holds the directory. Throws MetaLibError (kWriteFailed) if
  // the file can't be created or locked, is a link or is not a regular file.
  static std::optional<DirectoryLock> TryHold(const std::filesystem::path& directory,
                                              std::string_view file_name = kFileName);
  // True while a writer of any process holds the directory. Throws MetaLibError.
  static bool IsHeld(const std::filesystem::path& directory);

  // Replaces the contents of the locked file, which others may read.
  void Write(ByteView contents) {
    file_.WriteAt(0, contents);
    file_.Truncate(static_cast<std::int64_t>(contents.size()));
  }

 private:
  explicit DirectoryLock(RawFile file) : file_(std::move(file)) {}

  RawFile file_;
};

}  // namespace velumar
