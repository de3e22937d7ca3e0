#pragma once

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

}  // namespace velumar
