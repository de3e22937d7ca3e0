#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

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

}  // namespace

std::optional<DirectoryLock> DirectoryLock::TryHold(const std::filesystem::path& directory,
                                                    std::string_view file_name) {
  RawFile file = RawFile::OpenUnlinked(directory / file_name, RawFile::Mode::kCreate);
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

}  // namespace velumar
