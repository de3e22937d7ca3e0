#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/raw_file.h"

namespace velumar {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

std::int64_t Nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * kNanosecondsPerSecond + time.tv_nsec;
}

timespec Now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

FileStamp StampFrom(const struct stat& info) {
  return {.device = info.st_dev,
          .inode = info.st_ino,
          .size = info.st_size,
          .changed_ns = Nanoseconds(info.st_mtim)};
}

int OpenFlags(RawFile::Mode mode) {
  switch (mode) {
    case RawFile::Mode::kRead:
      return O_RDONLY;
    case RawFile::Mode::kChange:
      return O_RDWR;
    case RawFile::Mode::kCreate:
      return O_RDWR | O_CREAT;
    case RawFile::Mode::kRenew:
      return O_RDWR | O_CREAT | O_TRUNC;
    case RawFile::Mode::kNew:
      return O_RDWR | O_CREAT | O_EXCL;
  }
  return O_RDONLY;
}

// Checked before the file is opened: opening alone wakes some devices.
int OpenRegular(const std::filesystem::path& path, RawFile::Mode mode) {
  struct stat info {};
  if (stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
    errno = S_ISDIR(info.st_mode) ? EISDIR : ENOTSUP;
    return -1;
  }
  return open(path.c_str(), OpenFlags(mode) | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666);
}

}  // namespace

std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) return std::nullopt;
  return StampFrom(info);
}

std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path) {
  struct statx info {};
  if (statx(AT_FDCWD, path.c_str(), 0, STATX_INO | STATX_SIZE, &info) != 0) {
    // Sandboxes may forbid the newer call.
    const auto stamp = StampOf(path);
    if (!stamp) return std::nullopt;
    return FileIdentity{stamp->device, stamp->inode, stamp->size};
  }
  return FileIdentity{gnu_dev_makedev(info.stx_dev_major, info.stx_dev_minor), info.stx_ino,
                      static_cast<std::int64_t>(info.stx_size)};
}

bool IsLink(const std::filesystem::path& path) {
  std::error_code missing;
  return std::filesystem::is_symlink(path, missing);
}

bool IsWritable(const std::filesystem::path& file) { return access(file.c_str(), W_OK) == 0; }

void FlushFolder(const std::filesystem::path& folder) {
  // A file named without a folder is in the current one.
  const char* const path = folder.empty() ? "." : folder.c_str();
  const int opened = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened < 0) return;
  fsync(opened);
  close(opened);
}

RawFile::RawFile(const std::filesystem::path& path, Mode mode, FileFailure fail)
    : path_(path), fail_(fail), handle_(OpenRegular(path, mode)) {
  if (handle_ < 0) fail_(path_, mode == Mode::kRead ? kCantRead : kCantWrite, errno);
}

RawFile::~RawFile() {
  if (handle_ >= 0) close(handle_);
}

std::size_t RawFile::ReadAt(std::int64_t offset, ByteSpan into) const {
  std::size_t done = 0;
  while (done < into.size()) {
    const ssize_t got = pread(handle_, into.data() + done, into.size() - done,
                              offset + static_cast<std::int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail_(path_, kCantRead, errno);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

void RawFile::WriteAt(std::int64_t offset, ByteView bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t put = pwrite(handle_, bytes.data() + done, bytes.size() - done,
                               offset + static_cast<std::int64_t>(done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) fail_(path_, kCantWrite, errno);
    done += static_cast<std::size_t>(put);
  }
}

void RawFile::Truncate(std::int64_t size) {
  while (ftruncate(handle_, size) != 0) {
    if (errno != EINTR) fail_(path_, kCantWrite, errno);
  }
}

void RawFile::Flush() {
  while (fsync(handle_) != 0) {
    if (errno == EINVAL || errno == ENOTSUP) return;  // not supported by the file system
    if (errno != EINTR) fail_(path_, kCantWrite, errno);
  }
}

void RawFile::RenameTo(const std::filesystem::path& target) {
  if (rename(path_.c_str(), target.c_str()) != 0) fail_(target, kCantWrite, errno);
  path_ = target;
}

FileStamp RawFile::Stamp() const {
  struct stat info {};
  if (fstat(handle_, &info) != 0) fail_(path_, kCantRead, errno);
  return StampFrom(info);
}

void RawFile::StampNow() {
  const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, Now()};
  futimens(handle_, times);  // on failure the file keeps the time of the change, which works too
}

}  // namespace velumar
