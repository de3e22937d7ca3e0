#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "marketdata/directory_lock.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

// The lock belongs to the open file, so that it also separates two writers of one process.
struct flock WholeFile() {
  struct flock range {};
  range.l_type = F_WRLCK;
  range.l_whence = SEEK_SET;
  return range;
}

}  // namespace

std::optional<DirectoryLock> DirectoryLock::TryHold(const std::filesystem::path& directory,
                                                    std::string_view file_name) {
  RawFile file =
      RawFile::OpenUnlinked(directory / file_name, RawFile::Mode::kCreate, ThrowMarketFileError);
  struct flock range = WholeFile();
  if (fcntl(file.Handle(), F_OFD_SETLK, &range) == 0) return DirectoryLock(std::move(file));
  if (errno != EAGAIN && errno != EACCES) ThrowMarketFileError(file.Path(), kCantWrite, errno);
  return std::nullopt;
}

bool DirectoryLock::IsHeld(const std::filesystem::path& directory) {
  if (!StampOf(directory / kFileName)) return false;
  const RawFile file(directory / kFileName, RawFile::Mode::kRead, ThrowMarketFileError);
  struct flock range = WholeFile();
  if (fcntl(file.Handle(), F_OFD_GETLK, &range) != 0)
    ThrowMarketFileError(file.Path(), kCantRead, errno);
  return range.l_type != F_UNLCK;
}

}  // namespace velumar
