#include "platform/whole_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
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
  Descriptor descriptor(::open(file.c_str(), flags | O_CLOEXEC, kUserAlone));
  if (!descriptor.Valid()) Fail(errno, file, what);
  return descriptor;
}

void MakeFolders(const fs::path& folder) {
  if (folder.empty() || fs::is_directory(folder)) return;
  MakeFolders(folder.parent_path());
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) Fail(errno, folder, "can't be made");
}

void WriteAll(const Descriptor& descriptor, std::string_view bytes, const fs::path& file) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor.Get(), bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) Fail(errno, file, "can't be written");
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void WriteToDisk(const fs::path& file, std::string_view bytes) {
  const Descriptor descriptor =
      OpenOrFail(file, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW, "can't be written");
  WriteAll(descriptor, bytes, file);
  if (::fsync(descriptor.Get()) != 0) Fail(errno, file, "can't be written");
}

// A rename is on the disk once its folder is. Some file systems can't say so, which harms nothing.
void FlushFolder(const fs::path& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.Valid()) ::fsync(descriptor.Get());
}

}  // namespace

std::string ReadWholeFile(const fs::path& file) {
  const Descriptor descriptor = OpenOrFail(file, O_RDONLY, "can't be read");
  std::string bytes;
  std::array<char, 16384> block;
  while (true) {
    const ssize_t read = ::read(descriptor.Get(), block.data(), block.size());
    if (read < 0 && errno == EINTR) continue;
    if (read < 0) Fail(errno, file, "can't be read");
    if (read == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(read));
  }
}

void ReplaceWholeFile(const fs::path& file, std::string_view bytes) {
  // A link to a file elsewhere stays a link.
  const fs::path target = fs::weakly_canonical(file);
  MakeFolders(target.parent_path());
  // A rename would go through even where the user has forbidden writing.
  if (fs::exists(target) && ::access(target.c_str(), W_OK) != 0) {
    Fail(errno, file, "can't be written");
  }
  fs::path fresh = target;
  fresh += ".new";
  try {
    WriteToDisk(fresh, bytes);
    if (::rename(fresh.c_str(), target.c_str()) != 0) Fail(errno, file, "can't be replaced");
  } catch (const std::system_error&) {
    ::unlink(fresh.c_str());
    throw;
  }
  FlushFolder(target.parent_path());
}

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

FileState StateOf(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec,
          status.st_size};
}

}  // namespace velumar
