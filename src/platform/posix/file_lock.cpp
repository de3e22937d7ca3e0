#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string>
#include <system_error>
#include <thread>

#include "platform/posix/descriptor.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kUserAlone = 0600;

[[noreturn]] void Fail(int error, const fs::path& file, const std::string& what) {
  throw std::system_error(error, std::generic_category(), file.string() + " " + what);
}

Descriptor OpenOrFail(const fs::path& file, int flags, const std::string& what) {
  Descriptor descriptor(::open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kUserAlone));
  if (!descriptor.Valid()) Fail(errno, file, what);
  return descriptor;
}

void MakeFolders(const fs::path& folder) {
  if (folder.empty() || fs::is_directory(folder)) return;
  MakeFolders(folder.parent_path());
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) Fail(errno, folder, "can't be made");
}

// One that may only be read can be locked as well. Invalid for what is no regular file.
Descriptor OpenLock(const fs::path& file) {
  constexpr int kPlainly = O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
  Descriptor opened(::open(file.c_str(), O_RDWR | O_CREAT | kPlainly, kUserAlone));
  if (!opened.Valid()) opened = Descriptor(::open(file.c_str(), O_RDONLY | kPlainly));
  struct stat status {};
  const bool regular = ::fstat(opened.Get(), &status) == 0 && S_ISREG(status.st_mode);
  return regular ? std::move(opened) : Descriptor();
}

bool IsStillThere(const Descriptor& opened, const fs::path& file) {
  struct stat ours {};
  struct stat there {};
  return ::fstat(opened.Get(), &ours) == 0 && ::stat(file.c_str(), &there) == 0 &&
         ours.st_dev == there.st_dev && ours.st_ino == there.st_ino;
}

}  // namespace

struct FileLock::Held {
  Descriptor descriptor;
};

FileLock::FileLock(const fs::path& file) : held_(std::make_unique<Held>()) {
  using Clock = std::chrono::steady_clock;
  MakeFolders(file.parent_path());
  held_->descriptor = OpenOrFail(file, O_RDWR | O_CREAT, "can't be written");
  const auto end = Clock::now() + std::chrono::seconds(5);
  while (::flock(held_->descriptor.Get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS) return;
    if (errno != EWOULDBLOCK && errno != EINTR) Fail(errno, file, "can't be locked");
    if (Clock::now() >= end) Fail(EBUSY, file, "is locked by another program");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

FileLock::~FileLock() = default;

struct ProcessLock::Handle {
  Descriptor descriptor;
};

ProcessLock::ProcessLock(const fs::path& file) : file_(file), handle_(std::make_unique<Handle>()) {
  constexpr int kTries = 10;
  // The other process may remove its file between our opening and locking it.
  for (int tries = 0; tries < kTries; ++tries) {
    Descriptor opened = OpenLock(file);
    if (!opened.Valid()) return;
    if (::flock(opened.Get(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK) state_ = State::kHeldByAnother;
      return;
    }
    if (!IsStillThere(opened, file)) continue;
    handle_->descriptor = std::move(opened);
    state_ = State::kHeld;
    return;
  }
}

ProcessLock::~ProcessLock() { Release(); }

void ProcessLock::Release() {
  // Another process may have a file of its own there, if somebody has deleted ours.
  if (state_ == State::kHeld && IsStillThere(handle_->descriptor, file_)) ::unlink(file_.c_str());
  handle_->descriptor.Close();
  state_ = State::kImpossible;
}

FileState StateOf(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec,
          status.st_size};
}

}  // namespace velumar
