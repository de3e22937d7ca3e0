#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace velumar {

// The system's exclusive lock on a file, which is made if it is missing. The constructor tries once
// and doesn't wait. The lock ends with the object or the process; a file left over by a crash or
// copied with its folder locks nothing.
class FileLock {
 public:
  enum class State : std::uint8_t {
    kHeld,
    kHeldByAnother,
    kImpossible,  // the folder is read-only, something else has that name, ...
  };

  explicit FileLock(std::filesystem::path file);
  FileLock(FileLock&&) noexcept;
  ~FileLock();

  State Held() const { return state_; }
  // Removes the file and releases the lock.
  void Remove();

 private:
  struct Handle;
  std::filesystem::path file_;
  std::unique_ptr<Handle> handle_;
  State state_ = State::kImpossible;
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
