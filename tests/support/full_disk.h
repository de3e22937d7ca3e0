#pragma once

#include <sys/resource.h>

#include <csignal>

namespace velumar {

// Files of this process end after `bytes` for as long as the object lives, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

}  // namespace velumar
