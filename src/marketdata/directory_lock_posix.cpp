#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "base/links.h"
#include "marketdata/directory_lock.h"
#include "marketdata/file_error.h"

namespace velumar {

namespace {

// The lock belongs to the open file, so that two writers of one process also keep each other out.
struct flock WholeFile() {
  struct flock range {};
  range.l_type = F_WRLCK;
  range.l_whence = SEEK_SET;
  return range;
}

RawFile OpenLockFile(const std::filesystem::path& path) {
  if (IsLink(path)) ThrowWriteFailed(path, ELOOP);
  return RawFile(path, RawFile::Mode::kCreate);
}

}  // namespace

std::optional<DirectoryLock> DirectoryLock::TryHold(const std::filesystem::path& directory,
                                                    std::string_view file_name) {
  RawFile file = OpenLockFile(directory / file_name);
  struct flock range = WholeFile();
  if (fcntl(file.Handle(), F_OFD_SETLK, &range) == 0) return DirectoryLock(std::move(file));
  if (errno != EAGAIN && errno != EACCES) ThrowWriteFailed(file.Path(), errno);
  return std::nullopt;
}

bool DirectoryLock::IsHeld(const std::filesystem::path& directory) {
  if (!StampOf(directory / kFileName)) return false;
  const RawFile file(directory / kFileName, RawFile::Mode::kRead);
  struct flock range = WholeFile();
  if (fcntl(file.Handle(), F_OFD_GETLK, &range) != 0) ThrowReadFailed(file.Path(), errno);
  return range.l_type != F_UNLCK;
}

void DirectoryLock::Write(ByteView contents) {
  file_.WriteAt(0, contents);
  file_.Truncate(static_cast<std::int64_t>(contents.size()));
}

}  // namespace velumar
