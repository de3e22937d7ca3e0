#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace velumar {

// Closes the file descriptor that it holds; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor() { Close(); }

  int Get() const { return fd_; }
  bool Valid() const { return fd_ >= 0; }
  void Close();

 private:
  int fd_;
};

// All of these throw std::system_error naming the file.

std::string ReadWholeFile(const std::filesystem::path& file);

// Writes a new file, for this user alone, and renames it over `file` once it is on the disk.
// Missing folders are made.
void ReplaceFile(const std::filesystem::path& file, std::string_view bytes);

// Held by one process at a time while the object lives; the system frees it when the process dies.
// Waits up to five seconds for another process. File systems that can't lock are used without.
class FileLock {
 public:
  explicit FileLock(const std::filesystem::path& file);

 private:
  Descriptor descriptor_;
};

}  // namespace velumar
