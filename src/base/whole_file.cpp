#include "base/whole_file.h"

#include <cerrno>
#include <random>
#include <utility>

#include "base/paths.h"

namespace velumar {

namespace fs = std::filesystem;

FileError::FileError(const fs::path& file, std::string_view failure, int error)
    : FileError(file, failure, error, std::generic_category().message(error)) {}

FileError::FileError(const fs::path& file, std::string_view failure, int error, std::string reason)
    : std::system_error(error, std::generic_category()),
      reason_(std::move(reason)),
      text_(PathText(file) + " " + std::string(failure) + ": " + reason_) {}

void RefuseFolder(const fs::path& file, std::string_view failure) {
  throw FileError(file, failure, EISDIR, "it is a folder, not a file");
}

void RefuseDevice(const fs::path& file, std::string_view failure) {
  throw FileError(file, failure, EINVAL, "it is a pipe or a device, not a file");
}

void RefuseLargeFile(const fs::path& file, std::uintmax_t size, std::size_t limit) {
  throw FileError(file, kCantRead, EFBIG,
                  "it holds " + std::to_string(size) + " bytes, more than the limit of " +
                      std::to_string(limit) + " bytes");
}

fs::path NewNameBeside(const fs::path& file) {
  std::random_device random;
  return file.parent_path() / (".velumar-" + std::to_string(random()) + std::to_string(random()));
}

}  // namespace velumar
