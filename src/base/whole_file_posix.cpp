#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>

#include "base/descriptor_posix.h"
#include "base/whole_file.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kUserMode = 0600;
constexpr mode_t kUsualMode = 0666;  // less the user's mask

// Opening a regular file never waits.
Descriptor Open(const fs::path& file, int flags, mode_t mode = 0) {
  return Descriptor(::open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode));
}

void RequireRegular(const struct stat& status, const fs::path& file, std::string_view failure) {
  if (S_ISDIR(status.st_mode)) RefuseFolder(file, failure);
  if (!S_ISREG(status.st_mode)) RefuseDevice(file, failure);
}

void WriteAll(const Descriptor& out, std::string_view bytes, const fs::path& file) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(out.Get(), bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) throw FileError(file, kCantWrite, errno);
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// The permissions of the file to replace; nothing if there is none.
std::optional<mode_t> PermissionsOf(const fs::path& target, const fs::path& file) {
  struct stat status {};
  if (::stat(target.c_str(), &status) != 0) return std::nullopt;
  RequireRegular(status, file, kCantWrite);
  // A rename would succeed even where the user has forbidden writing.
  if (::access(target.c_str(), W_OK) != 0) throw FileError(file, kCantWrite, errno);
  return status.st_mode & 07777;
}

}  // namespace

void FlushFolder(const fs::path& folder) {
  // A file named without a folder lies in the current one.
  const Descriptor opened = Open(folder.empty() ? fs::path(".") : folder, O_RDONLY | O_DIRECTORY);
  if (opened.Valid()) ::fsync(opened.Get());
}

std::string ReadWholeFile(const fs::path& file, std::size_t limit) {
  struct stat status {};
  // Checked before it is opened: opening alone wakes some devices.
  if (::stat(file.c_str(), &status) != 0) throw FileError(file, kCantRead, errno);
  RequireRegular(status, file, kCantRead);
  if (static_cast<std::uintmax_t>(status.st_size) > limit) {
    RefuseLargeFile(file, static_cast<std::uintmax_t>(status.st_size), limit);
  }
  const Descriptor in = Open(file, O_RDONLY);
  if (!in.Valid()) throw FileError(file, kCantRead, errno);
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(status.st_size));
  std::array<char, 65536> block;
  while (true) {
    const ssize_t read = ::read(in.Get(), block.data(), block.size());
    if (read < 0 && errno == EINTR) continue;
    if (read < 0) throw FileError(file, kCantRead, errno);
    if (read == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(read));
    if (bytes.size() > limit) RefuseLargeFile(file, bytes.size(), limit);
  }
}

void ReplaceWholeFile(const fs::path& file, std::string_view bytes, FileAccess access) {
  std::error_code unresolved;
  const fs::path target = fs::weakly_canonical(file, unresolved);
  if (unresolved) throw FileError(file, kCantWrite, unresolved.value());
  const std::optional<mode_t> permissions = PermissionsOf(target, file);
  const fs::path fresh = NewNameBeside(target);
  const bool usual = access == FileAccess::kUsual;
  const Descriptor out = Open(fresh, O_WRONLY | O_CREAT | O_EXCL, usual ? kUsualMode : kUserMode);
  if (!out.Valid()) throw FileError(file, kCantWrite, errno);
  try {
    if (usual && permissions) ::fchmod(out.Get(), *permissions);
    WriteAll(out, bytes, file);
    if (::fsync(out.Get()) != 0) throw FileError(file, kCantWrite, errno);
    if (::rename(fresh.c_str(), target.c_str()) != 0) throw FileError(file, kCantWrite, errno);
  } catch (const FileError&) {
    ::unlink(fresh.c_str());
    throw;
  }
  FlushFolder(target.parent_path());
}

}  // namespace velumar
