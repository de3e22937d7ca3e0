#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace velumar {

// The system's exclusive lock on a file, which is created if it is missing. The constructor tries
// once and doesn't wait. The lock ends with the object or the process, so a file left by a crash or
// copied with its folder locks nothing. (QLockFile relies on the process number in such a file.)
class FileLock {
 public:
  enum class State : std::uint8_t {
    kHeld,
    kHeldByAnother,
    kImpossible,  // the folder is read-only, the name is taken by a folder, ...
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

}  // namespace velumar
