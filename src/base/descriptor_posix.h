#pragma once

#include <unistd.h>

#include <utility>

namespace velumar {

// A file descriptor, closed with the object; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Descriptor() { Close(); }

  int Get() const { return fd_; }
  bool Valid() const { return fd_ >= 0; }
  void Close() {
    if (Valid()) ::close(std::exchange(fd_, -1));
  }

 private:
  int fd_;
};

}  // namespace velumar
