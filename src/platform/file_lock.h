#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace velumar {

// Held by one process at a time while the object lives; the system frees it when the process dies.
// Waits up to five seconds for another process. File systems that can't lock are used without.
// Throws std::system_error naming the file; missing folders are made.
class FileLock {
 public:
  explicit FileLock(const std::filesystem::path& file);
  ~FileLock();

 private:
  struct Held;
  std::unique_ptr<Held> held_;
};

// Held by one process for as long as it runs. A file that was left over by a crash or a copy of the
// folder locks nothing.
class ProcessLock {
 public:
  enum class State : std::uint8_t {
    kHeld,
    kHeldByAnother,
    kImpossible,  // the folder is read-only, something else has that name, ...
  };

  explicit ProcessLock(const std::filesystem::path& file);
  ~ProcessLock();

  State Held() const { return state_; }
  // Removes the file and frees the lock.
  void Release();

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
