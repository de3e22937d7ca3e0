#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace velumar {

// All of these throw std::system_error naming the file, with an error number of errno.h.

std::string ReadWholeFile(const std::filesystem::path& file);

// Writes a new file, for this user alone, and renames it over `file` once it is on the disk.
// Missing folders are made.
void ReplaceWholeFile(const std::filesystem::path& file, std::string_view bytes);

// Held by one process at a time while the object lives; the system frees it when the process dies.
// Waits up to five seconds for another process. File systems that can't lock are used without.
class FileLock {
 public:
  explicit FileLock(const std::filesystem::path& file);
  ~FileLock();

 private:
  struct Held;
  std::unique_ptr<Held> held_;
};

// Tells one state of a file on disk from another.
struct FileState {
  static constexpr std::int64_t kNoFile = -1;

  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;
  std::int64_t size = kNoFile;
  bool operator==(const FileState&) const = default;
};

// kNoFile where there is none.
FileState StateOf(const std::filesystem::path& file);

}  // namespace velumar
