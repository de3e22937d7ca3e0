#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kUserAlone = 0600;

// A file that may only be read can be locked too. Returns -1 for anything but a regular file.
int OpenLock(const fs::path& file) {
  constexpr int kPlainly = O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
  int opened = ::open(file.c_str(), O_RDWR | O_CREAT | kPlainly, kUserAlone);
  if (opened < 0) opened = ::open(file.c_str(), O_RDONLY | kPlainly);
  struct stat status {};
  if (::fstat(opened, &status) == 0 && S_ISREG(status.st_mode)) return opened;
  ::close(opened);
  return -1;
}

bool IsStillThere(int opened, const fs::path& file) {
  struct stat ours {};
  struct stat there {};
  return ::fstat(opened, &ours) == 0 && ::stat(file.c_str(), &there) == 0 &&
         ours.st_dev == there.st_dev && ours.st_ino == there.st_ino;
}

}  // namespace

struct FileLock::Handle {
  explicit Handle(int opened) : descriptor(opened) {}
  ~Handle() { ::close(descriptor); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  int descriptor;
};

FileLock::FileLock(fs::path file) : file_(std::move(file)) {
  constexpr int kTries = 10;
  // Another process may remove its file after we open it and before we lock it.
  for (int tries = 0; tries < kTries; ++tries) {
    const int opened = OpenLock(file_);
    if (opened < 0) return;
    auto handle = std::make_unique<Handle>(opened);
    if (::flock(opened, LOCK_EX | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK) state_ = State::kHeldByAnother;
      return;
    }
    if (!IsStillThere(opened, file_)) continue;
    handle_ = std::move(handle);
    state_ = State::kHeld;
    return;
  }
}

FileLock::FileLock(FileLock&&) noexcept = default;

FileLock::~FileLock() = default;

void FileLock::Remove() {
  // If somebody deleted our file, another process may have created its own.
  if (state_ == State::kHeld && IsStillThere(handle_->descriptor, file_)) ::unlink(file_.c_str());
  handle_.reset();
  state_ = State::kImpossible;
}

}  // namespace velumar
